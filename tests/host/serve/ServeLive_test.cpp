// The server with viewers: the real module, the stand-in service, real sockets.
#include "tests/host/serve/ServedProgram.h"

#include <boost/asio/buffer.hpp>
#include <boost/json/serialize.hpp>
#include <boost/system/system_error.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

namespace json = boost::json;
using test::enrollDialog;
using test::ServedProgram;
using test::ViewerClient;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* enrollButton = "quill_tile_enroll_action_btn";

class ServeLive : public ::testing::Test {
protected:
    ~ServeLive() override { EXPECT_EQ(program.terminate(), 0); }

    /// Waits for the device to be known as not enrolled, and lets nothing take its time.
    static void awaitTile(ViewerClient& viewer) {
        EXPECT_EQ(viewer.request(R"("do":"pace","percent":0)"), "");
        viewer.readUntil(
            [&] { return viewer.tileText() == "Registration is required to access secure resources."; });
    }
    /// Presses Enroll and waits for the login. @return the path of its frame
    static std::string openLogin(ViewerClient& viewer) {
        EXPECT_EQ(viewer.request(R"("do":"press","control":"quill_tile_enroll_action_btn")"), "");
        viewer.readUntil([&] { return viewer.browser(enrollDialog) != nullptr; });
        EXPECT_EQ(viewer.browser(enrollDialog)->at("operation"), "browse_for_cookie");
        return viewer.browser(enrollDialog)->at("address").as_string().c_str();
    }
    test::HttpResponse login(const std::string& path, const std::string& form) const {
        return program.ask(
            "POST", program.root() + path, form,
            {{"Origin", "http://" + program.host()}, {"Content-Type", "application/x-www-form-urlencoded"}});
    }

    ServedProgram program;
};

TEST_F(ServeLive, GreetsAViewer) {
    ViewerClient viewer(program);
    EXPECT_EQ(viewer.hello.at("type"), "hello");
    const json::object& module = viewer.hello.at("module").as_object();
    EXPECT_EQ(module.at("identity"), "com.norvane.vantor.presentation.quill");
    EXPECT_EQ(module.at("label"), "Wren Gate");
    EXPECT_EQ(module.at("version"), "5.1.11.2143");
    EXPECT_EQ(module.at("interface"), "cpp");
    EXPECT_THAT(module.at("path").as_string().c_str(), HasSubstr("kes_wren_presentation_plugin"));
    EXPECT_EQ(viewer.hello.at("stand_in"), true);
    EXPECT_EQ(json::serialize(viewer.hello.at("schema")), R"({"title":"a schema"})");
    EXPECT_EQ(json::serialize(viewer.hello.at("machine")), R"({"states":[]})");
    EXPECT_EQ(json::serialize(viewer.hello.at("operations")),
              R"(["GetQuillApiFactory","CreateApi","Start","InitiateEnrollment","InitiateReEnrollment",)"
              R"("EnrollmentAuthReply","CancelEnrollment","InitiateUnenrollment","PerformConfigSync",)"
              R"("TriggerPostureReports","DataplaneAuthReply","Stop"])");
    EXPECT_EQ(json::serialize(viewer.hello.at("documents")),
              R"(["StatusNotification","EnrollmentStatusNotification","EnrollmentAuthRequest",)"
              R"("UnenrollmentStatusNotification","DataplaneNotification"])");
    viewer.readUntil([&] { return viewer.has("screen") && viewer.has("machine") && viewer.has("service"); });
    viewer.readUntil([&] { return viewer.state("root") == "Started_s"; });
    EXPECT_EQ(viewer.state("main"), "MainActive_s");
    viewer.readUntil([&] { return viewer.service().at("connections") == 1; });
}

TEST_F(ServeLive, EntriesAreNumberedFromOneWithoutAGap) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    ASSERT_THAT(viewer.entries, Not(IsEmpty()));
    std::int64_t expected = 0;
    for (const json::object& entry : viewer.entries) {
        EXPECT_EQ(entry.at("seq"), ++expected);
        EXPECT_TRUE(entry.at("time").is_int64());
        EXPECT_GE(entry.at("thread").to_number<unsigned>(), 1u);
        EXPECT_NE(entry.contains("do"), entry.contains("out"));
        EXPECT_EQ(entry.contains("input"), entry.contains("out"));
    }
}

TEST_F(ServeLive, EnrollsFromTheFirstPressToTheActiveTile) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    const std::string path = openLogin(viewer);
    viewer.readUntil([&] { return viewer.state("enroll") == "EnrollAuthenticating_s"; });

    const test::HttpResponse form = program.get(path);
    EXPECT_EQ(form.result_int(), 200u);
    EXPECT_THAT(form.body(), HasSubstr("<form method=\"post\">"));
    EXPECT_THAT(std::string(form["Content-Security-Policy"]), HasSubstr("form-action 'self'"));
    EXPECT_THAT(std::string(form["Content-Security-Policy"]), HasSubstr("frame-ancestors 'self'"));
    EXPECT_EQ(form["Referrer-Policy"], "same-origin");

    const test::HttpResponse again = login(path, "user=robin&password=wrong");
    EXPECT_EQ(again.result_int(), 200u);
    EXPECT_THAT(again.body(), HasSubstr("That password is wrong."));

    const test::HttpResponse done = login(path, "user=robin&password=wren");
    EXPECT_EQ(done.result_int(), 200u);
    EXPECT_THAT(done.body(), HasSubstr("You can go back"));
    viewer.readUntil([&] { return viewer.tileText() == "Wren Gate is active."; });
    EXPECT_TRUE(viewer.hasEntry(
        R"("do":"event","xml":"<vtguiEvent id=\"quill_enrollment_browser_web_control_OnPress)"));
    EXPECT_TRUE(viewer.hasEntry("EnrollmentAuthReply"));
    viewer.readUntil([&] { return viewer.browser(enrollDialog) == nullptr; });
    EXPECT_EQ(program.get(path).result_int(), 410u) << "the login is over";
    EXPECT_THAT(viewer.screen().at("toasts").as_array().back().at("texts").at(0).as_string().c_str(),
                StartsWith("Congratulations!"));
    viewer.readUntil([&] { return viewer.state("main") == "MainActive_s"; });
    viewer.readUntil([&] { return viewer.service().at("scenario").at("device").at("enrolled") == true; });
}

TEST_F(ServeLive, RecordingHoldsNoCookie) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(viewer.request(R"("do":"service","json":"{\"logins\":{\"enrollment\":{\"cookie\":\"\"}}}")"),
              "");
    const std::string path = openLogin(viewer);
    EXPECT_EQ(viewer.request(R"("do":"cookie","popup":"quill_enrollment_browser_dialog","value":"s3cr3t")"),
              "");
    const std::string recording = program.get("session.jsonl").body();
    EXPECT_THAT(recording, HasSubstr(R"(value=\"redacted-)"));
    EXPECT_THAT(recording, Not(HasSubstr("s3cr3t")));
}

TEST_F(ServeLive, AllViewersSeeTheSame) {
    ViewerClient first(program);
    ViewerClient second(program);
    awaitTile(first);
    openLogin(first);
    second.readUntil([&] { return second.browser(enrollDialog) != nullptr; });
    EXPECT_EQ(second.request(R"("do":"close","popup":"quill_enrollment_browser_dialog")"), "");
    const auto isBack = [](ViewerClient& viewer) {
        return viewer.tileText() == "Registration is required to access secure resources." &&
               viewer.browser(enrollDialog) == nullptr && viewer.state("main") == "MainActive_s";
    };
    first.readUntil([&] { return isBack(first); });
    second.readUntil([&] { return isBack(second); });
}

TEST_F(ServeLive, ControlsCanBePressedOnlyWhileTheyCanBeSeen) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(viewer.request(R"("do":"press","control":"nothing")"), "there is no control nothing");
    EXPECT_EQ(viewer.request(R"("do":"press","control":"quill_tile_cancel_action_btn")"),
              "the control quill_tile_cancel_action_btn is hidden");
    EXPECT_EQ(viewer.request(R"("do":"press","control":"quill_adv_unenroll_btn")"),
              "the control quill_adv_unenroll_btn is disabled");
    EXPECT_EQ(viewer.request(R"("do":"press","control":"simple_status")"),
              "the control simple_status has no event OnPress");
    EXPECT_EQ(viewer.request(R"("do":"press","control":"quill_tile_enroll_action_btn","event":"label")"),
              "the control quill_tile_enroll_action_btn has no event label");
    EXPECT_EQ(viewer.request(R"("do":"close","popup":"nothing")"), "there is no popup nothing");
    EXPECT_EQ(viewer.request(R"("do":"cookie","popup":"nothing","value":"x")"), "there is no popup nothing");
    EXPECT_EQ(viewer.request(R"("do":"event","xml":"nothing")"), "EventNotification answered -10");
}

TEST_F(ServeLive, BrowserReportsErrorsAndEvents) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    openLogin(viewer);
    EXPECT_EQ(viewer.request(
                  R"("do":"page_event","popup":"quill_enrollment_browser_dialog","type":"t","value":"v")"),
              "the popup quill_enrollment_browser_dialog has no browser that takes that");
    EXPECT_EQ(
        viewer.request(R"("do":"browse_error","popup":"quill_enrollment_browser_dialog","error":"gone")"),
        "");
    EXPECT_TRUE(viewer.hasEntry(R"(quill_enrollment_browser_web_control_OnError\"><webbrowser )"
                                R"(id=\"quill_enrollment_browser_web_control\" error=\"gone\"/>)"));
}

TEST_F(ServeLive, AlertPageIsLocalAndGetsNewDetails) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(
        viewer.request(
            R"("do":"scenario","json":"{\"device\":{\"enrolled\":true,\"certificate\":\"revoked\"},\"delays\":{\"first_status\":0}}")"),
        "");
    viewer.readUntil([&] {
        const json::object* details = viewer.control("quill_tile_details_action_btn");
        return details != nullptr && details->at("hidden") == false;
    });
    EXPECT_EQ(viewer.request(R"("do":"press","control":"quill_tile_details_action_btn")"), "");
    constexpr const char* alertDialog = "quill_alert_browser_dialog";
    viewer.readUntil([&] { return viewer.browser(alertDialog) != nullptr; });
    const json::object shown = *viewer.browser(alertDialog);
    EXPECT_EQ(shown.at("address"), "pages/wren/v1/index.html");
    EXPECT_EQ(shown.at("operation"), "browse_for_local_content");
    EXPECT_EQ(program.get("pages/wren/v1/index.html").result_int(), 200u);
    EXPECT_EQ(viewer.request(R"("do":"service","json":"{\"certificate\":\"expired\"}")"), "");
    viewer.readUntil([&] { return viewer.browser(alertDialog)->at("operation") == "dispatch_event"; });
    EXPECT_EQ(viewer.browser(alertDialog)->at("number"), shown.at("number"));
    EXPECT_EQ(viewer.browser(alertDialog)->at("address"), shown.at("address"));
    EXPECT_NE(viewer.browser(alertDialog)->at("detail"), shown.at("detail"));
    EXPECT_NE(viewer.browser(alertDialog)->at("detail_number"), shown.at("detail_number"));
    EXPECT_EQ(viewer.request(
                  R"("do":"page_event","popup":"quill_alert_browser_dialog","type":"re-enroll","value":"")"),
              "");
    EXPECT_EQ(viewer.request(R"("do":"close","popup":"quill_alert_browser_dialog")"), "");
    viewer.readUntil([&] { return viewer.browser(alertDialog) == nullptr; });
}

TEST_F(ServeLive, LifecycleIsInTheViewersHands) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(viewer.request(R"("do":"lifecycle","step":"create")"), "there is a plugin object already");
    EXPECT_EQ(viewer.request(R"("do":"lifecycle","step":"stop")"), "");
    viewer.readUntil([&] { return viewer.state("root") == "Registered_s"; });
    EXPECT_EQ(viewer.request(R"("do":"lifecycle","step":"stop")"), "Stop answered -10");
    EXPECT_EQ(viewer.request(R"("do":"lifecycle","step":"unregister")"), "");
    EXPECT_EQ(viewer.request(R"("do":"lifecycle","step":"dispose")"), "");
    viewer.readUntil([&] { return viewer.state("root").empty() && viewer.control(enrollButton) == nullptr; });
    EXPECT_EQ(viewer.request(R"("do":"event","xml":"x")"), "there is no plugin object");
    for (const char* step : {"create", "register", "start"}) {
        EXPECT_EQ(viewer.request(std::string(R"("do":"lifecycle","step":")") + step + "\""), "");
    }
    viewer.readUntil(
        [&] { return viewer.tileText() == "Registration is required to access secure resources."; });
}

TEST_F(ServeLive, BackendFailsOnDemand) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(viewer.request(R"("do":"lifecycle","step":"stop")"), "");
    EXPECT_EQ(viewer.request(R"("do":"fail","operation":"Start","result":3,"times":9)"), "");
    EXPECT_EQ(viewer.request(R"("do":"lifecycle","step":"start")"), "Start answered -10");
    EXPECT_EQ(viewer.request(R"("do":"heal")"), "");
    EXPECT_EQ(viewer.request(R"("do":"lifecycle","step":"start")"), "");
}

TEST_F(ServeLive, HistoryIsClearedForAll) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_THAT(viewer.screen().at("history").as_array(), Not(IsEmpty()));
    EXPECT_EQ(viewer.request(R"("do":"clear_history")"), "");
    viewer.readUntil([&] { return viewer.screen().at("history").as_array().empty(); });
}

TEST_F(ServeLive, RawDocumentsAreDeliveredInABurst) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(viewer.request(R"("do":"deliver","document":"StatusNotification","json":"mark","count":50)"),
              "");
    const auto count = [&] {
        std::size_t number = 0;
        for (const json::object& entry : viewer.entries) {
            number +=
                entry.contains("do") && entry.at("do") == "deliver" && entry.at("json") == "mark" ? 1 : 0;
        }
        return number;
    };
    viewer.readUntil([&] { return count() == 50; });
    EXPECT_EQ(viewer.request(R"("do":"deliver","document":"StatusNotification","count":10000,"json":")" +
                             std::string(4'000, 'x') + "\""),
              "so many documents of that length are too much: 33554432 bytes are the most");
}

TEST_F(ServeLive, ViewerWhoNeverReadsHoldsUpNobody) {
    ViewerClient idle(program);
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(viewer.request(R"("do":"deliver","document":"StatusNotification","json":")" +
                             std::string(10'000, 'x') + R"(","count":3000)"),
              "");
    EXPECT_EQ(viewer.request(R"("do":"deliver","document":"StatusNotification","json":"the last")"), "");
    viewer.readUntil([&] { return viewer.hasEntry("\"json\":\"the last\""); });
    EXPECT_EQ(viewer.request(R"("do":"service","json":"{\"posture\":\"unreachable\"}")"), "");
    ViewerClient late(program);
    late.readUntil([&] { return late.has("screen"); });
}

TEST_F(ServeLive, WrongMessagesAreAnsweredOneByOne) {
    ViewerClient viewer(program);
    const auto answerTo = [&](const std::string& message) {
        viewer.send(message);
        while (true) {
            const json::object answer = viewer.read();
            if (answer.at("type") == "reply") {
                return json::serialize(answer);
            }
        }
    };
    EXPECT_THAT(answerTo("{"), StartsWith(R"({"type":"reply","id":null,"error":"a request must be JSON: )"));
    EXPECT_EQ(answerTo("[]"), R"({"type":"reply","id":null,"error":"a request must be an object"})");
    EXPECT_EQ(answerTo(R"({"id":5,"do":"dance"})"),
              R"({"type":"reply","id":5,"error":"unknown \"do\": \"dance\""})");
    viewer.stream().binary(true);
    EXPECT_EQ(answerTo(R"({"id":6,"do":"heal"})"),
              R"({"type":"reply","id":null,"error":"a request must be a text"})");
    viewer.stream().text(true);
    EXPECT_EQ(answerTo(R"({"id":7,"do":"heal"})"), R"({"type":"reply","id":7})");
}

TEST_F(ServeLive, ManyRequestsAtOnceAreAllAnswered) {
    ViewerClient viewer(program);
    for (int i = 0; i < 500; ++i) {
        viewer.send(R"({"id":)" + std::to_string(i) + R"(,"do":"heal"})");
    }
    for (int i = 0; i < 500;) {
        const json::object answer = viewer.read();
        if (answer.at("type") == "reply") {
            EXPECT_EQ(answer.at("id"), i++);
        }
    }
}

TEST_F(ServeLive, MessageThatIsTooLongEndsTheSocketAlone) {
    ViewerClient viewer(program);
    ViewerClient other(program);
    viewer.send(R"({"id":1,"do":"event","xml":")" + std::string(std::size_t{1} << 20, 'x') + "\"}");
    EXPECT_THROW(viewer.readUntil([] { return false; }), boost::system::system_error);
    EXPECT_EQ(viewer.stream().reason().code, boost::beast::websocket::close_code::too_big);
    EXPECT_EQ(other.request(R"("do":"heal")"), "");
}

TEST_F(ServeLive, ForeignPagesGetNoSocket) {
    for (const std::string& origin : {std::string(), std::string("null"), std::string("http://evil.test"),
                                      "http://localhost:" + std::to_string(program.port())}) {
        EXPECT_THROW(ViewerClient(program, origin), boost::system::system_error) << origin;
    }
    const std::string upgrade =
        "\r\nConnection: Upgrade, close\r\nUpgrade: websocket\r\nSec-WebSocket-Version: 13\r\n"
        "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n";
    EXPECT_THAT(program.exchange("GET " + program.root() + "live HTTP/1.1\r\nHost: " + program.host() +
                                 upgrade + "Origin: http://evil.test\r\n\r\n"),
                StartsWith("HTTP/1.1 403 "));
}

TEST_F(ServeLive, ViewersHearOfTheEnd) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    ServedProgram other; // ended here, so that this viewer can read on
    ViewerClient watching(other);
    EXPECT_EQ(watching.request(R"("do":"pace","percent":0)"), "");
    EXPECT_EQ(other.interrupt(), 0);
    json::object last;
    try {
        while (true) {
            last = watching.read();
        }
    } catch (const boost::system::system_error&) {
    }
    EXPECT_EQ(json::serialize(last), R"({"type":"goodbye","reason":"the host has ended"})");
    EXPECT_TRUE(watching.hasEntry("\"do\":\"stop\""));
    EXPECT_TRUE(watching.hasEntry("\"do\":\"dispose\""));
    EXPECT_EQ(watching.stream().reason().code, boost::beast::websocket::close_code::going_away);
}

TEST_F(ServeLive, SlowHostStaysAnswerable) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(viewer.request(R"("do":"slow","milliseconds":5000)"), "");
    EXPECT_EQ(viewer.request(R"("do":"deliver","document":"StatusNotification","json":"slow")"), "");
    viewer.readUntil([&] { return viewer.hasEntry(R"("json":"slow")"); });
    EXPECT_EQ(viewer.request(R"("do":"clear_history")"), "");
    EXPECT_EQ(program.get("").result_int(), 200u);
}

TEST_F(ServeLive, LoginElsewhereIsNoFrameAndTakesACookieByHand) {
    ViewerClient viewer(program);
    awaitTile(viewer);
    EXPECT_EQ(viewer.request(R"("do":"service","json":"{\"delays\":{\"authentication_request\":600000}}")"),
              "");
    EXPECT_EQ(viewer.request(R"("do":"pace","percent":100)"), "");
    EXPECT_EQ(viewer.request(R"("do":"press","control":"quill_tile_enroll_action_btn")"), "");
    viewer.readUntil([&] { return viewer.state("enroll") == "EnrollStarted_s"; });
    EXPECT_EQ(
        viewer.request(R"("do":"deliver","document":"EnrollmentAuthRequest","json":"{\"version\":\"1\",)"
                       R"(\"enrollment_id\":\"enr-1\",\"start_url\":\"https://elsewhere.test/\",)"
                       R"(\"end_url\":\"https://elsewhere.test/end\",\"cookie_name\":\"c\",)"
                       R"(\"enrollment_context\":\"\"}")"),
        "");
    viewer.readUntil([&] { return viewer.browser(enrollDialog) != nullptr; });
    const json::object& browser = *viewer.browser(enrollDialog);
    EXPECT_EQ(browser.at("address"), "");
    EXPECT_EQ(browser.at("start_url"), "https://elsewhere.test/");
    EXPECT_EQ(browser.at("final_url"), "https://elsewhere.test/end");
    EXPECT_EQ(browser.at("cookie_name"), "c");
    EXPECT_EQ(viewer.request(R"("do":"cookie","popup":"quill_enrollment_browser_dialog","value":"by hand")"),
              "");
    viewer.readUntil([&] { return viewer.state("enroll") == "EnrollProgress_s"; });
    EXPECT_TRUE(viewer.hasEntry(R"(\"enrollment_cookie\":\"by hand\")"));
}

TEST(ServeOptions, ScenarioIsLoadedBeforeTheStart) {
    const std::string file = ::testing::TempDir() + "served scenario.json";
    std::ofstream(file) << R"({"device":{"enrolled":true},"delays":{"first_status":0}})";
    ServedProgram program({"--scenario", file, "--log", "DBG_WARN", "--slow", "1"});
    ViewerClient viewer(program);
    viewer.readUntil([&] { return viewer.tileText() == "Wren Gate is active."; });
    EXPECT_TRUE(viewer.hasEntry("\"do\":\"scenario\""));
    EXPECT_FALSE(viewer.hasEntry("\"severity\":0"));
    EXPECT_EQ(viewer.state("main"), "MainActive_s");
    EXPECT_EQ(program.terminate(), 0);
    std::remove(file.c_str());
}

TEST(ServeOptions, SecretsStayInTheRecordingOnDemand) {
    ServedProgram program({"--with-secrets"});
    ViewerClient viewer(program);
    EXPECT_EQ(viewer.request(R"("do":"event","xml":"<vtguiEvent id=\"s3cr3t\"/>")"),
              "EventNotification answered -10");
    EXPECT_THAT(program.get("session.jsonl").body(), HasSubstr("s3cr3t"));
}

} // namespace
