#include "tests/backend-sim/BackendTest.h"

#include <string>
#include <vector>

namespace {

using test::BackendTest;

using Request = QuillApiResult (IQuillApi::*)(const char*);

/// One request operation: its document and the keys in it.
struct Row {
    const char* operation;
    Request request;
    const char* json;
    std::vector<std::string> keys;
};

const std::vector<Row>& rows() {
    static const std::vector<Row> all{
        {"InitiateEnrollment",
         &IQuillApi::InitiateEnrollment,
         R"({"version":"1","enrollment_choice_id":"choice-1","enrollment_context":""})",
         {"version", "enrollment_choice_id", "enrollment_context"}},
        {"InitiateReEnrollment",
         &IQuillApi::InitiateReEnrollment,
         R"({"version":"1","enrollment_id":"enr-1","enrollment_context":"c"})",
         {"version", "enrollment_id", "enrollment_context"}},
        {"EnrollmentAuthReply",
         &IQuillApi::EnrollmentAuthReply,
         R"({"version":"1","enrollment_id":"enr-1","enrollment_cookie":"x"})",
         {"version", "enrollment_id", "enrollment_cookie"}},
        {"CancelEnrollment",
         &IQuillApi::CancelEnrollment,
         R"({"version":"1","enrollment_id":"enr-1"})",
         {"version", "enrollment_id"}},
        {"InitiateUnenrollment",
         &IQuillApi::InitiateUnenrollment,
         R"({"version":"1","enrollment_id":"enr-1","enrollment_context":""})",
         {"version", "enrollment_id", "enrollment_context"}},
        {"PerformConfigSync",
         &IQuillApi::PerformConfigSync,
         R"({"version":"1","enrollment_id":"enr-1"})",
         {"version", "enrollment_id"}},
        {"TriggerPostureReports", &IQuillApi::TriggerPostureReports, R"({"version":"1"})", {"version"}},
        {"DataplaneAuthReply",
         &IQuillApi::DataplaneAuthReply,
         R"({"version":"1","context_id":"ctx-1","authorization_cookie":"x"})",
         {"version", "context_id", "authorization_cookie"}},
    };
    return all;
}

class RequestReader : public BackendTest, public ::testing::WithParamInterface<Row> {
protected:
    QuillApiResult send(const std::string& json) { return (*api.*GetParam().request)(json.c_str()); }

    std::shared_ptr<IQuillApi> api = startApi();
};

std::string quoted(const std::string& text) { return '"' + text + '"'; }

TEST_P(RequestReader, TakesItsDocument) { EXPECT_EQ(send(GetParam().json), QuillApiResult::Success); }

TEST_P(RequestReader, TakesWhiteSpaceAroundAndInside) {
    EXPECT_EQ(send(" \t\r\n" + std::string(GetParam().json) + " \n"), QuillApiResult::Success);
}

TEST_P(RequestReader, RefusesNullPointer) {
    EXPECT_EQ((*api.*GetParam().request)(nullptr), QuillApiResult::NullPointer);
}

TEST_P(RequestReader, RefusesWhatIsNoJson) {
    for (const char* text : {"", " ", "{", "nonsense", "\xff", "{\"version\":\"\xff\"}", "{'version':'1'}"}) {
        EXPECT_EQ(send(text), QuillApiResult::BadParameter) << text;
    }
    const std::string document = GetParam().json;
    EXPECT_EQ(send(document + "x"), QuillApiResult::BadParameter);
    EXPECT_EQ(send(document + document), QuillApiResult::BadParameter);
    EXPECT_EQ(send(document.substr(0, document.size() - 1)), QuillApiResult::BadParameter);
    EXPECT_EQ(send(document.substr(0, document.size() - 1) + ",}"), QuillApiResult::BadParameter);
    EXPECT_EQ(send("/* comment */" + document), QuillApiResult::BadParameter);
}

TEST_P(RequestReader, RefusesWhatIsNoObject) {
    for (const char* text : {"null", "true", "1", "1.5", "\"version\"", "[]", "[\"version\"]"}) {
        EXPECT_EQ(send(text), QuillApiResult::BadParameter) << text;
    }
    EXPECT_EQ(send("[" + std::string(GetParam().json) + "]"), QuillApiResult::BadParameter);
}

TEST_P(RequestReader, RefusesMissingKey) {
    EXPECT_EQ(send("{}"), QuillApiResult::BadParameter);
    for (const std::string& missing : GetParam().keys) {
        std::string document;
        for (const std::string& key : GetParam().keys) {
            if (key != missing) {
                document += (document.empty() ? "" : ",") + quoted(key) + ":\"1\"";
            }
        }
        EXPECT_EQ(send("{" + document + "}"), QuillApiResult::BadParameter) << "without " << missing;
    }
}

TEST_P(RequestReader, RefusesUnknownKey) {
    std::string document = GetParam().json;
    document.insert(document.size() - 1, ",\"other\":\"\"");
    EXPECT_EQ(send(document), QuillApiResult::BadParameter);
}

TEST_P(RequestReader, RefusesKeyThatDiffersInCase) {
    std::string document = GetParam().json;
    document[document.find("version")] = 'V';
    EXPECT_EQ(send(document), QuillApiResult::BadParameter);
}

TEST_P(RequestReader, RefusesKeyThatComesTwice) {
    std::string document = GetParam().json;
    document.insert(document.size() - 1, ",\"version\":\"1\"");
    EXPECT_EQ(send(document), QuillApiResult::BadParameter);
}

TEST_P(RequestReader, RefusesValueThatIsNoText) {
    for (const std::string& other : GetParam().keys) {
        for (const char* value :
             {"1", "-1", "1.5", "true", "null", "[]", "{}", "[\"1\"]", "{\"version\":\"1\"}"}) {
            std::string document;
            for (const std::string& key : GetParam().keys) {
                document +=
                    (document.empty() ? "" : ",") + quoted(key) + ":" + (key == other ? value : "\"1\"");
            }
            EXPECT_EQ(send("{" + document + "}"), QuillApiResult::BadParameter) << document;
        }
    }
}

TEST_P(RequestReader, RefusesDeepNestingWithoutHarm) {
    EXPECT_EQ(send(std::string(100'000, '[')), QuillApiResult::BadParameter);
    EXPECT_EQ(send("{\"version\":" + std::string(100'000, '[')), QuillApiResult::BadParameter);
}

TEST_P(RequestReader, IsRefusedBeforeStartAndAfterStop) {
    const auto fresh = makeApi();
    EXPECT_EQ((*fresh.*GetParam().request)(GetParam().json), QuillApiResult::InvalidState);
    EXPECT_EQ(api->Stop(), QuillApiResult::Success);
    EXPECT_EQ(send(GetParam().json), QuillApiResult::InvalidState);
}

TEST_P(RequestReader, AnswersWithTheResultThatWasToldForItsName) {
    ASSERT_TRUE(wrensim_set_result(GetParam().operation, 12, 1));
    EXPECT_EQ(send(GetParam().json), QuillApiResult::Exception);
    EXPECT_EQ(send(GetParam().json), QuillApiResult::Success);
}

INSTANTIATE_TEST_SUITE_P(Operations, RequestReader, ::testing::ValuesIn(rows()),
                         [](const auto& row) { return std::string(row.param.operation); });

} // namespace
