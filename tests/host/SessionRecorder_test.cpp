#include "host/SessionRecorder.h"

#include "host/SessionFile.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

class SessionRecorder : public ::testing::Test {
protected:
    void begin() { recorder.input(host::parseSession(R"({"do":"interfaces"})", "file").inputs.front()); }
    /// What was written since the last input.
    std::string outputs() {
        const std::string all = stream.str();
        const std::string input = "{\"do\":\"interfaces\"}\n";
        return all.substr(all.rfind(input) + input.size());
    }

    std::ostringstream stream;
    host::SessionRecorder recorder{stream};
};

TEST_F(SessionRecorder, WritesEachOutputWithItsKeysInTheirOrder) {
    constexpr PluginInterfaceEntry entries[] = {{"a", 3}, {"b", 1}};
    begin();
    recorder.interfaces({entries, 2});
    recorder.created(true);
    recorder.created(false);
    recorder.result(-10);
    recorder.result(true);
    recorder.result(0, 12, "5.1");
    recorder.result(-3, 12, std::nullopt);
    recorder.decrypted(-2, 0, static_cast<unsigned char>(255));
    recorder.decrypted(-2, 0, std::nullopt);
    recorder.notice("host", 7, "<a b=\"c\"/>\n");
    recorder.stopDone("host", 4294967295u); // the greatest on every system
    recorder.apiCall("Start", nullptr);
    recorder.apiCall("PerformConfigSync", "{\"version\":\"1\"}");
    recorder.log({2, "A::b", "File", 12, "\xC3\xA4 \x01"});
    EXPECT_EQ(outputs(),
              R"({"n":1,"out":"interfaces","entries":[{"name":"a","version":3},{"name":"b","version":1}]}
{"n":1,"out":"created","object":true}
{"n":1,"out":"created","object":false}
{"n":1,"out":"result","value":-10}
{"n":1,"out":"result","value":true}
{"n":1,"out":"result","value":0,"size":12,"text":"5.1"}
{"n":1,"out":"result","value":-3,"size":12,"text":null}
{"n":1,"out":"result","value":-2,"size":0,"first_byte":255}
{"n":1,"out":"result","value":-2,"size":0,"first_byte":null}
{"n":1,"out":"notice","callbacks":"host","handle":7,"xml":"<a b=\"c\"/>\n"}
{"n":1,"out":"stop_done","callbacks":"host","handle":4294967295}
{"n":1,"out":"api","operation":"Start","json":null}
{"n":1,"out":"api","operation":"PerformConfigSync","json":"{\"version\":\"1\"}"}
{"n":1,"out":"log","severity":2,"function":"A::b","file":"File","line":12,"message":"ä \u0001"}
)");
}

TEST_F(SessionRecorder, BytesThatAreNoTextGoOutInBase64) {
    begin();
    recorder.notice("host", 7, "\xFF");
    recorder.apiCall("Start", "\xFF");
    recorder.result(0, 2, "\xFF");
    recorder.log({2, "\xFF", "\xFF", 12, "\xFF\xFE"});
    EXPECT_EQ(outputs(), R"({"n":1,"out":"notice","callbacks":"host","handle":7,"xml_base64":"/w=="}
{"n":1,"out":"api","operation":"Start","json_base64":"/w=="}
{"n":1,"out":"result","value":0,"size":2,"text_base64":"/w=="}
{"n":1,"out":"log","severity":2,"function_base64":"/w==","file_base64":"/w==","line":12,"message_base64":"//4="}
)");
}

TEST_F(SessionRecorder, CountsInputs) {
    begin();
    begin();
    recorder.created(true);
    EXPECT_EQ(stream.str(), "{\"do\":\"interfaces\"}\n{\"do\":\"interfaces\"}\n"
                            "{\"n\":2,\"out\":\"created\",\"object\":true}\n");
}

TEST_F(SessionRecorder, DropsWhatBelongsToNoInput) {
    recorder.created(true);
    EXPECT_EQ(stream.str(), "");
    begin();
    recorder.end();
    recorder.created(true);
    EXPECT_EQ(outputs(), "");
}

TEST_F(SessionRecorder, KeepsLinesWholeWhenThreadsWriteAtOnce) {
    begin();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this] {
            for (int round = 0; round < 100; ++round) {
                recorder.stopDone("host", 7);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::istringstream lines(outputs());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_EQ(line, R"({"n":1,"out":"stop_done","callbacks":"host","handle":7})");
    }
    EXPECT_EQ(count, 400);
}

TEST_F(SessionRecorder, LeavesOutWhatIsLoggedOfTheMachine) {
    begin();
    recorder.log({0, "VantorDeviceID::getDeviceDetailsFromCache", "VantorDeviceID", 1, "x"});
    recorder.log({3, "CHash::GetHash", "Hash", 1, "x"});
    recorder.log({3, "TesselSandpiperId::IdentifySpMachineId", "TesselSandpiperId", 1, "x"});
    recorder.log({3, "TesselClientRetriever::TesselClientRetriever", "TesselClientRetriever", 1, "x"});
    EXPECT_EQ(outputs(), "");
    recorder.log({0, "VantorDeviceIDs::other", "File", 1, "x"});
    EXPECT_NE(outputs(), "");
}

} // namespace
