// The notices as documents: every one of a whole story, and what their parts have to be.
#include "host/strict/NoticeVocabulary.h"
#include "host/strict/StrictHost.h"
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/ScreenLine.h"
#include "host/validate/Story.h"
#include "host/validate/Trial.h"

#include <algorithm>

namespace host::validate {
namespace {

/// The story under a strict host's eyes, and its plugin's end.
Lines violationsIn(Trial& trial, Rule rule) {
    std::mutex mutex;
    Lines broken;
    StrictHost strict([&](const Violation& violation) {
        const std::lock_guard lock(mutex);
        if (violation.rule == rule) {
            broken.push_back(violation.text);
        }
    });
    const auto callbacks = strict.makeCallbacks([](std::uintptr_t, const char*) {}, [](std::uintptr_t) {});
    auto made = makePlugin(trial.module(), trial.way());
    expect(made != nullptr, "the module makes no object");
    const auto plugin = strict.watched(std::move(made));
    plugin->Register("", Trial::usualHandle, callbacks.get(), &trial.translator());
    tellStory(*plugin, trial.backend());
    plugin->dispose();
    trial.backend().deliverAndWait(WRENSIM_LATEST_API, wrensim_status_notification,
                                   "{\"version\":\"1\",\"state\":\"error\"}");
    return broken;
}

template <Rule rule>
void keepsTheRule(Trial& trial) {
    const Lines broken = violationsIn(trial, rule);
    expect(broken.empty(), broken.empty() ? "" : broken.front());
}

/// All notices of the story, less those that cannot be read.
std::vector<NoticeElement> storysNotices(Trial& trial) {
    trial.create();
    trial.registerHost();
    return trial
        .step([&] {
            tellStory(trial.plugin(), trial.backend());
            return 0;
        })
        .notices();
}

std::string attributeNamesOf(const NoticeElement& element) {
    std::string names;
    for (const auto& [name, value] : element.attributes) {
        names.append(names.empty() ? "" : " ").append(name);
    }
    return names;
}

void stampsEveryNotice(Trial& trial) {
    for (const NoticeElement& notice : storysNotices(trial)) {
        const NoticeElement* popup = notice.child("popup");
        const NoticeElement& stamped =
            notice.attribute("type") == "popup" && popup != nullptr ? *popup : notice;
        expect(!stamped.attribute("timestamp").empty(), joined({"no time in \"", screenLine(notice), "\""}));
        expect(&stamped == &notice || !notice.has("timestamp"), "a popup's notice has a time of its own");
    }
}

void ordersItsAttributes(Trial& trial) {
    for (const NoticeElement& notice : storysNotices(trial)) {
        const std::string_view type = notice.attribute("type");
        const std::string seen = attributeNamesOf(notice);
        const bool hasState = notice.has("state");
        const std::string_view wanted = type == "apilog"  ? "module type tag timestamp"
                                        : type == "popup" ? "module type"
                                        : hasState        ? "module type timestamp state"
                                                          : "module type timestamp";
        expectEqual(joined({"attributes of \"", screenLine(notice), "\""}), seen, wanted);
    }
}

/// Each event attribute of the elements is the element's id, a line and the attribute's name.
void expectBound(const NoticeElement& element) {
    for (const auto& [name, value] : element.attributes) {
        if (isEventAttribute(name)) {
            expectEqual(joined({name, " of <", element.name, ">"}), value,
                        joined({element.attribute("id"), "_", name}));
        }
    }
    std::for_each(element.children.begin(), element.children.end(), &expectBound);
}

void bindsEventsByTheirControls(Trial& trial) {
    for (const NoticeElement& notice : storysNotices(trial)) {
        expectBound(notice);
    }
}

void bindsScreensOnce(Trial& trial) {
    for (const NoticeElement& notice : storysNotices(trial)) {
        if (notice.attribute("type") == "update") {
            for (const NoticeElement& control : notice.children) {
                expect(!control.has("OnPress"),
                       joined({"an update binds ", control.attribute("id"), " again"}));
            }
        }
    }
}

void escapesMarkup(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    const Step shown =
        trial.dataplane(with(dataplaneDocument(1, 0), "/dataplane_alerts/0/tile_message", awkwardText));
    const NoticeElement tile = shown.notice("tile ");
    const NoticeElement* status = findById(tile, "simple_status");
    expectEqual("the status line", status != nullptr ? status->attribute("value") : "",
                std::string_view(awkwardText));
}

void copiesDocumentsWhole(Trial& trial) {
    trial.begin();
    const std::string text = R"( {"version":"1","state":"error","substate":"<&>\"]]>"} )";
    const NoticeElement notice =
        trial.deliver(wrensim_status_notification, text).notice("apilog statusnotification");
    expectEqual("the copy", notice.children.at(0).text, text);
}

constexpr Check noticeTable[] = {
    {"notices.readable", "Every notice is one well-formed document in UTF-8.", Through::Both,
     &keepsTheRule<Rule::ReadableNotice>},
    {"notices.module", "Every notice names the module that it comes from.", Through::Both,
     &keepsTheRule<Rule::ForeignModule>},
    {"notices.elements", "Notices hold only elements of the protocol, each in its place.", Through::Both,
     &keepsTheRule<Rule::UnknownElement>},
    {"notices.attributes", "Elements have only the attributes that they are known for, each once.",
     Through::Both, &keepsTheRule<Rule::UnknownAttribute>},
    {"notices.complete", "Elements have the attributes that they cannot do without.", Through::Both,
     &keepsTheRule<Rule::MissingAttribute>},
    {"notices.values", "Attributes have values that they can have.", Through::Both,
     &keepsTheRule<Rule::BadValue>},
    {"notices.setup-first", "A control or list is set up before it is updated.", Through::Both,
     &keepsTheRule<Rule::UpdateBeforeSetup>},
    {"dispose.silence", "After the object's end nobody is called.", Through::Both,
     &keepsTheRule<Rule::CallbackAfterDispose>},
    {"notices.time", "Every notice has a time: a popup's stands on the popup.", Through::Both,
     &stampsEveryNotice},
    {"notices.order", "A notice's attributes stand in their order.", Through::Both, &ordersItsAttributes},
    {"notices.event-ids", "An event's id is its control's id, \"_\" and the attribute's name.", Through::Both,
     &bindsEventsByTheirControls},
    {"notices.bound-once", "Buttons of the screen are bound in the setup and never in an update.",
     Through::Both, &bindsScreensOnce},
    {"notices.escaping", "Texts with markup and any letters arrive as they are.", Through::Both,
     &escapesMarkup},
    {"notices.copies", "The host's log gets documents byte by byte.", Through::Both, &copiesDocumentsWhole},
};

} // namespace

std::span<const Check> noticeChecks() { return noticeTable; }

} // namespace host::validate
