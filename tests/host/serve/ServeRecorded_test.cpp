// What the server records of a live run: it plays again, and it holds no secrets.
#include "host/Files.h"
#include "tests/host/Paths.h"
#include "tests/host/serve/ServedProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using test::enrollDialog;
using test::ServedProgram;
using test::ViewerClient;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class ServeRecorded : public ::testing::Test {
protected:
    /// Enrolls with that password, to the end of the enrollment's popup.
    static void enroll(ServedProgram& program, ViewerClient& viewer, const std::string& password) {
        EXPECT_EQ(viewer.request(R"("do":"pace","percent":0)"), "");
        viewer.readUntil(
            [&] { return viewer.tileText() == "Registration is required to access secure resources."; });
        EXPECT_EQ(viewer.request(R"("do":"press","control":"quill_tile_enroll_action_btn")"), "");
        viewer.readUntil([&] { return viewer.browser(enrollDialog) != nullptr; });
        const std::string path = viewer.browser(enrollDialog)->at("address").as_string().c_str();
        const test::HttpResponse answer = program.ask(
            "POST", program.root() + path, "user=robin&password=" + password,
            {{"Origin", "http://" + program.host()}, {"Content-Type", "application/x-www-form-urlencoded"}});
        EXPECT_THAT(answer.body(), HasSubstr("You can go back"));
        viewer.readUntil([&] { return viewer.tileText() == "Wren Gate is active."; });
        viewer.readUntil([&] { return viewer.browser(enrollDialog) == nullptr; });
    }

    /// Replays the recording with the program. @return what it prints
    std::string replay() const {
        const test::ProcessEnd end = test::runProcess(
            {.program = test::hostProgram, .arguments = {"replay", file}, .joinsErrors = true});
        EXPECT_EQ(end.exitCode, 0);
        return end.out;
    }

    const test::TemporaryFolder folder;
    const std::string file = (folder.path() / "served run.jsonl").string();
};

TEST_F(ServeRecorded, EnrollmentPlaysAgain) {
    for (const std::string option : {"--with-secrets", ""}) {
        std::vector<std::string> arguments{"--record", file};
        if (!option.empty()) {
            arguments.push_back(option);
        }
        ServedProgram program(arguments);
        ViewerClient viewer(program);
        enroll(program, viewer, "wren");
        EXPECT_FALSE(viewer.hasEntry("\"out\":\"violation\""));
        EXPECT_EQ(program.terminate(), 0);
        EXPECT_THAT(replay(), EndsWith(" outputs as expected\n")) << option;
    }
}

TEST_F(ServeRecorded, HoldsNoSecrets) {
    ServedProgram program({"--record", file});
    ViewerClient viewer(program);
    EXPECT_EQ(viewer.request(R"("do":"service","json":"{\"logins\":{\"enrollment\":)"
                             R"({\"cookie\":\"planted-cookie\",\"password\":\"planted-password\"}}}")"),
              "");
    enroll(program, viewer, "planted-password");
    EXPECT_TRUE(viewer.hasEntry("planted-cookie"));
    EXPECT_EQ(viewer.request(R"("do":"event","xml":"<vtguiEvent id=\"x\">)"
                             R"(<webbrowser id=\"w\" type=\"t\" value=\"planted-value\"/></vtguiEvent>")"),
              "EventNotification answered -10");
    EXPECT_EQ(viewer.request(R"("do":"deliver","document":"DataplaneNotification","json":)"
                             R"("{\"version\":\"1\",\"note\":\"planted-value\",)"
                             R"(\"u\":\"https://idp.example/go?t=planted-query\"}")"),
              "");
    viewer.readUntil([&] { return viewer.hasEntry("planted-query"); });
    EXPECT_EQ(program.terminate(), 0);
    const std::string recording = host::readFile(file);
    EXPECT_THAT(recording, HasSubstr("redacted-"));
    EXPECT_THAT(recording, HasSubstr("https://idp.example/go?redacted-"));
    EXPECT_THAT(recording, Not(HasSubstr("planted")));
    EXPECT_THAT(recording, Not(HasSubstr("?login="))) << "the query of the login itself";
    EXPECT_THAT(replay(), EndsWith(" outputs as expected\n"));
}

TEST_F(ServeRecorded, FileThatCannotBeWrittenIsAnErrorAtOnce) {
    ServedProgram program({"--record", "/nonexistent/file"});
    EXPECT_EQ(program.address(), "");
    EXPECT_EQ(program.wait(), 2);
}

} // namespace
