// What nobody should send, and many at once. The orders come from the seed.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <array>
#include <atomic>
#include <thread>

namespace host::validate {
namespace {

namespace json = boost::json;

constexpr std::array documents{wrensim_status_notification, wrensim_enrollment_status_notification,
                               wrensim_enrollment_auth_request, wrensim_unenrollment_status_notification,
                               wrensim_dataplane_notification};

/// A sound document of any kind, in one of its states.
json::value soundDocument(WrenSimDocument document, Dice& dice) {
    constexpr std::array statuses{"started", "error", "complete"};
    constexpr std::array substatuses{"", "success", "internal_error"};
    switch (document) {
    case wrensim_status_notification:
        return std::array{initDocument(), errorDocument("no_service"), notEnrolledDocument(),
                          enrolledDocument()}
            .at(dice.below(4));
    case wrensim_enrollment_auth_request:
        return loginDocument();
    case wrensim_dataplane_notification: {
        const std::size_t alerts = dice.below(4);
        return dataplaneDocument(alerts, dice.below(3));
    }
    case wrensim_enrollment_status_notification:
    case wrensim_unenrollment_status_notification:
        break;
    }
    const char* status = statuses.at(dice.below(statuses.size()));
    return progressDocument(status, substatuses.at(dice.below(substatuses.size())));
}

/// Changes, takes out, doubles or cuts some bytes; none becomes a NUL, which would end the text.
std::string damaged(std::string text, Dice& dice) {
    for (std::size_t count = dice.below(4) + 1; count > 0 && !text.empty(); --count) {
        const std::size_t at = dice.below(text.size());
        const char byte = static_cast<char>(dice.below(255) + 1);
        switch (dice.below(4)) {
        case 0:
            text[at] = byte;
            break;
        case 1:
            text.erase(at, dice.below(8) + 1);
            break;
        case 2:
            text.insert(at, 1, byte);
            break;
        default:
            text.resize(at);
        }
    }
    return text;
}

constexpr std::array eventIds{
    "quill_tile_enroll_action_btn_OnPress",
    "quill_tile_cancel_action_btn_OnPress",
    "quill_tile_details_action_btn_OnPress",
    "quill_tile_verify_action_btn_OnPress",
    "quill_adv_unenroll_btn_OnPress",
    "quill_config_sync_btn_OnPress",
    "quill_toast_enroll_action_btn_OnPress",
    "quill_tile_verify_action_toast_btn_OnPress",
    "quill_tile_details_action_toast_btn_OnPress",
    "wren_client_error_gen_close_btn_OnClose",
    "wren_client_error_close_btn_OnPress",
    "quill_enrollment_browser_web_control_OnPress",
    "quill_enrollment_browser_web_control_OnError",
    "quill_enrollment_browser_close_btn_OnClose",
    "quill_dataplane_auth_browser_web_control_OnPress",
    "quill_dataplane_auth_browser_web_control_OnError",
    "quill_dataplane_auth_browser_close_btn_OnClose",
    "quill_alert_browser_web_control_OnBrowseEvent",
    "quill_alert_browser_web_control_OnError",
    "quill_alert_browser_close_btn_OnClose",
};

std::string anyEvent(Dice& dice) {
    constexpr std::array types{"", "posture-update", "re-enroll", "dataplane-auth"};
    constexpr std::array controls{"quill_alert_browser_web_control", "quill_enrollment_browser_web_control",
                                  "quill_dataplane_auth_browser_web_control"};
    const char* id = eventIds.at(dice.below(eventIds.size()));
    const char* control = controls.at(dice.below(controls.size()));
    return joined({"<vtguiEvent id=\"", id, "\"><webbrowser id=\"", control, "\" type=\"",
                   types.at(dice.below(types.size())), "\" value=\"context-1\"/></vtguiEvent>"});
}

void expectAnswer(std::int32_t result, std::string_view xml) {
    expect(result == 0 || result == -10, joined({"the result of ", xml, " is ", std::to_string(result)}));
}

void standsDamagedDocuments(Trial& trial) {
    trial.begin();
    for (int round = 0; round < 1000; ++round) {
        const WrenSimDocument document = documents.at(trial.dice().below(documents.size()));
        const std::string text = json::serialize(soundDocument(document, trial.dice()));
        trial.deliver(document, damaged(text, trial.dice()));
    }
    trial.begin();
    trial.expectUsable();
}

void standsDamagedEvents(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    for (int round = 0; round < 1000; ++round) {
        const std::string xml = damaged(anyEvent(trial.dice()), trial.dice());
        expectAnswer(trial.event(xml).result, xml);
    }
    trial.begin();
    trial.expectUsable();
}

void standsRandomBytes(Trial& trial) {
    trial.begin();
    for (int round = 0; round < 300; ++round) {
        std::string bytes(trial.dice().below(200), ' ');
        for (char& byte : bytes) {
            byte = static_cast<char>(trial.dice().below(255) + 1);
        }
        expectEqual("the result of random bytes", trial.event(bytes).result, -10);
        trial.deliver(documents.at(trial.dice().below(documents.size())), bytes);
    }
    trial.expectUsable();
}

void standsAnyOrder(Trial& trial) {
    for (int walk = 0; walk < 20; ++walk) {
        trial.begin();
        for (int round = 0; round < 60; ++round) {
            if (trial.dice().below(2) == 0) {
                const std::string xml = anyEvent(trial.dice());
                expectAnswer(trial.event(xml).result, xml);
            } else {
                const WrenSimDocument document = documents.at(trial.dice().below(documents.size()));
                trial.deliver(document, json::serialize(soundDocument(document, trial.dice())));
            }
        }
        expectEqual("Stop", trial.stop().result, 0);
        expectEqual("Start", trial.start().result, 0);
        trial.expectUsable();
    }
}

void standsManyThreads(Trial& trial) {
    trial.begin();
    std::atomic<bool> isEnding = false;
    std::atomic<bool> isWrong = false;
    std::vector<std::jthread> threads;
    for (std::uint64_t number = 0; number < 3; ++number) {
        threads.emplace_back([&, dice = Dice(trial.dice().below(1'000'000) + number)]() mutable {
            while (!isEnding) {
                const std::int32_t result = trial.plugin().EventNotification(anyEvent(dice).c_str());
                isWrong = isWrong || (result != 0 && result != -10);
            }
        });
    }
    for (int round = 0; round < 200; ++round) {
        const WrenSimDocument document = documents.at(trial.dice().below(documents.size()));
        trial.deliver(document, json::serialize(soundDocument(document, trial.dice())));
    }
    for (int round = 0; round < 20; ++round) {
        trial.stop();
        trial.start();
    }
    isEnding = true;
    threads.clear();
    expect(!isWrong, "an event had another result than 0 or -10");
    trial.stop();
    trial.begin();
    trial.expectUsable();
}

void standsLongLists(Trial& trial) {
    constexpr std::size_t count = 2000;
    trial.begin();
    trial.status(enrolledDocument());
    expectEqual("the tile of many alerts", lineAt(trial.dataplane(dataplaneDocument(count, 0)).changed(), 0),
                "tile update Attention \"Some issues may be affecting secure resource access. Please review "
                "the provided details.\" \"Alerts available\" [Details]");
    expectEqual("notices of the details", trial.press("quill_tile_details_action_btn").shown(),
                {"popup quill_alert_browser_dialog browse_for_local_content"});
    json::value document = enrolledDocument();
    json::array& enrollments = document.as_object()["enrollments"].as_array();
    enrollments.resize(count, json::value(enrollments[0]));
    expect(!trial.status(document).changed().empty(), "many enrollments draw nothing");
}

void standsLongTexts(Trial& trial) {
    const std::string text(1'000'000, 'x');
    trial.begin();
    trial.status(enrolledDocument());
    expectEqual("the tile",
                lineAt(trial
                           .dataplane(with(dataplaneDocument(1, 0), "/dataplane_alerts/0/tile_message",
                                           json::string(text)))
                           .changed(),
                       0) == joined({"tile update Attention \"", text, "\" \"Access blocked\" [Details]"}),
                true);
    expectEqual("the result of an unknown id of a megabyte",
                trial.event(joined({"<vtguiEvent id=\"", text, "\"/>"})).result, -10);
}

void cutsTextsAtNul(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    const Step step = trial.dataplane(
        with(dataplaneDocument(1, 0), "/dataplane_alerts/0/tile_message", json::string("a\0b", 3)));
    expectEqual("the tile", lineAt(step.changed(), 0),
                "tile update Attention \"a\" \"Access blocked\" [Details]");
}

void answersInsideACallback(Trial& trial) {
    trial.create();
    bool isRight = true;
    std::size_t calls = 0;
    PluginObject& plugin = trial.plugin();
    HostCallbacks nosy(
        [&](std::uintptr_t, const char*) {
            std::uint32_t size = 0;
            ++calls;
            isRight = isRight && plugin.GetLabel(nullptr, &size) == -3 && plugin.IsUIEnabled() &&
                      plugin.SupportsInterface(presentationInterfaceName, 3) &&
                      plugin.IsMultiUserModeEnabled();
        },
        [](std::uintptr_t) {});
    plugin.Register("", 7, &nosy, &trial.translator());
    expectEqual("Start", plugin.Start(), 0);
    trial.status(enrolledDocument());
    expectEqual("Stop", plugin.Stop(0), 0);
    expect(calls > 0 && isRight, "an answer inside a callback is wrong");
}

constexpr Check robustnessTable[] = {
    {"robustness.damaged-documents", "Damaged documents do no harm.", Through::Both, &standsDamagedDocuments},
    {"robustness.damaged-events", "Damaged events are taken or refused and do no harm.", Through::Both,
     &standsDamagedEvents},
    {"robustness.random-bytes", "Random bytes are neither event nor document and do no harm.", Through::Both,
     &standsRandomBytes},
    {"robustness.any-order", "Events and documents in any order leave a plugin that works.", Through::Both,
     &standsAnyOrder},
    {"robustness.threads", "Events, documents, stops and starts on many threads at once do no harm.",
     Through::Both, &standsManyThreads},
    {"robustness.long-lists", "Lists of 2,000 alerts or enrollments are drawn.", Through::Both,
     &standsLongLists},
    {"robustness.long-texts", "Texts of a megabyte are drawn.", Through::Both, &standsLongTexts},
    {"robustness.nul", "A text ends at its first NUL.", Through::Both, &cutsTextsAtNul},
    {"robustness.inside-callback", "What needs no turn may be asked inside a callback.", Through::Both,
     &answersInsideACallback},
};

} // namespace

std::span<const Check> robustnessChecks() { return robustnessTable; }

} // namespace host::validate
