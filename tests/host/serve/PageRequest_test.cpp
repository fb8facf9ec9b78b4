#include "host/serve/PageRequest.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using host::serve::PageRequest;
using host::serve::RequestFault;
using host::serve::RequestKind;

/// What is wrong with a message, behind the id that the answer goes to.
std::string complaint(const std::string& message) {
    try {
        const PageRequest request(message);
    } catch (const RequestFault& fault) {
        return (fault.id ? std::to_string(*fault.id) : "-") + std::string(": ") + fault.what();
    }
    return "none";
}

TEST(PageRequest, EveryKindIsRead) {
    const struct {
        const char* message;
        RequestKind kind;
    } rows[] = {
        {R"({"id":1,"do":"press","control":"c"})", RequestKind::Press},
        {R"({"id":1,"do":"press","control":"c","event":"OnClose"})", RequestKind::Press},
        {R"({"id":1,"do":"close","popup":"p"})", RequestKind::Close},
        {R"({"id":1,"do":"browse_error","popup":"p","error":"e"})", RequestKind::BrowseError},
        {R"({"id":1,"do":"cookie","popup":"p","value":"v"})", RequestKind::Cookie},
        {R"({"id":1,"do":"page_event","popup":"p","type":"t","value":""})", RequestKind::PageEvent},
        {R"({"id":1,"do":"event","xml":"<x/>"})", RequestKind::Event},
        {R"({"id":1,"do":"lifecycle","step":"create"})", RequestKind::Lifecycle},
        {R"({"id":1,"do":"lifecycle","step":"register"})", RequestKind::Lifecycle},
        {R"({"id":1,"do":"lifecycle","step":"start"})", RequestKind::Lifecycle},
        {R"({"id":1,"do":"lifecycle","step":"stop"})", RequestKind::Lifecycle},
        {R"({"id":1,"do":"lifecycle","step":"unregister"})", RequestKind::Lifecycle},
        {R"({"id":1,"do":"lifecycle","step":"dispose"})", RequestKind::Lifecycle},
        {R"({"id":1,"do":"service","json":"{}"})", RequestKind::Service},
        {R"({"id":1,"do":"scenario","json":"{}"})", RequestKind::Scenario},
        {R"({"id":1,"do":"pace","percent":10000})", RequestKind::Pace},
        {R"({"id":1,"do":"fail","operation":"Start","result":4294967295,"times":0})", RequestKind::Fail},
        {R"({"id":1,"do":"fail","operation":"GetQuillApiFactory","result":0,"times":1})", RequestKind::Fail},
        {R"({"id":1,"do":"heal"})", RequestKind::Heal},
        {R"({"id":1,"do":"slow","milliseconds":5000})", RequestKind::Slow},
        {R"({"id":1,"do":"deliver","document":"StatusNotification","json":""})", RequestKind::Deliver},
        {R"({"id":1,"do":"deliver","document":"EnrollmentAuthRequest","json":"","count":10000})",
         RequestKind::Deliver},
        {R"({"do":"clear_history","id":1})", RequestKind::ClearHistory},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(complaint(row.message), "none");
        EXPECT_EQ(PageRequest(row.message).kind(), row.kind) << row.message;
    }
}

TEST(PageRequest, HoldsItsValues) {
    const PageRequest request(
        R"({"id":9007199254740991,"do":"deliver","document":"DataplaneNotification","json":"\u00e4","count":2})");
    EXPECT_EQ(request.id(), 9'007'199'254'740'991u);
    EXPECT_EQ(request.text("json"), "\xc3\xa4");
    EXPECT_EQ(request.text("document"), "DataplaneNotification");
    EXPECT_EQ(request.number("count", 1), 2u);
    EXPECT_EQ(request.number("other", 7), 7u);
    EXPECT_EQ(request.text("other", "x"), "x");
}

TEST(PageRequest, WhatIsWrongIsTold) {
    const struct {
        const char* message;
        const char* complaint;
    } rows[] = {
        {"[]", "-: a request must be an object"},
        {"\"x\"", "-: a request must be an object"},
        {R"({"do":"heal"})", R"(-: a request needs an "id", a whole number from 0 to 9007199254740991)"},
        {R"({"do":"heal","id":-1})",
         R"(-: a request needs an "id", a whole number from 0 to 9007199254740991)"},
        {R"({"do":"heal","id":"1"})",
         R"(-: a request needs an "id", a whole number from 0 to 9007199254740991)"},
        {R"({"do":"heal","id":1.5})",
         R"(-: a request needs an "id", a whole number from 0 to 9007199254740991)"},
        {R"({"do":"heal","id":9007199254740992})",
         R"(-: a request needs an "id", a whole number from 0 to 9007199254740991)"},
        {R"({"id":3})", R"(3: a request needs a "do")"},
        {R"({"id":3,"do":"dance"})", R"(3: unknown "do": "dance")"},
        {R"({"id":3,"do":7})", R"(3: unknown "do": 7)"},
        {R"({"id":3,"do":"press"})", R"(3: "press" needs "control")"},
        {R"({"id":3,"do":"press","control":1})", R"(3: "control" must be a text)"},
        {R"({"id":3,"do":"press","control":"c","x":1})", R"(3: "press" knows no key "x")"},
        {R"({"id":3,"do":"heal","heal":true})", R"(3: "heal" knows no key "heal")"},
        {R"({"id":3,"do":"press","control":"c","control":"d"})", R"(3: "control" is given twice)"},
        {R"({"id":3,"do":"lifecycle","step":"pause"})",
         R"(3: "step" must be "create", "register", "start", "stop", "unregister" or "dispose")"},
        {R"({"id":3,"do":"pace","percent":10001})", R"(3: "percent" must be a whole number from 0 to 10000)"},
        {R"({"id":3,"do":"pace","percent":"1"})", R"(3: "percent" must be a whole number from 0 to 10000)"},
        {R"({"id":3,"do":"slow","milliseconds":5001})",
         R"(3: "milliseconds" must be a whole number from 0 to 5000)"},
        {R"({"id":3,"do":"fail","operation":"Start","result":4294967296,"times":1})",
         R"(3: "result" must be a whole number from 0 to 4294967295)"},
        {R"({"id":3,"do":"deliver","document":"StatusNotification","json":"","count":0})",
         R"(3: "count" must be a whole number from 1 to 10000)"},
        {R"({"id":3,"do":"deliver","document":"Status","json":""})",
         R"(3: "document" must be "StatusNotification", "EnrollmentStatusNotification", )"
         R"("EnrollmentAuthRequest", "UnenrollmentStatusNotification" or "DataplaneNotification")"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(complaint(row.message), row.complaint) << row.message;
    }
}

TEST(PageRequest, WhatIsNoJsonIsTold) {
    for (const std::string message :
         {"", "{", "hello", "{\"id\":1,}", "{\"id\":1} {}", "\xff\xfe", "{\"id\":1,\"do\":\"\xff\"}"}) {
        EXPECT_TRUE(complaint(message).starts_with("-: a request must be JSON: ")) << message;
    }
    EXPECT_TRUE(complaint(std::string(100'000, '[')).starts_with("-: a request must be JSON: "));
}

} // namespace
