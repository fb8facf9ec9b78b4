#include "host/serve/RequestDesk.h"

#include "host/serve/EventDocument.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace host::serve {
namespace {

constexpr std::array<std::string_view, 6> stepNames{"create", "register",   "start",
                                                    "stop",   "unregister", "dispose"};
static_assert(stepNames.size() == static_cast<std::size_t>(LifecycleStep::Dispose) + 1);

LifecycleStep stepOf(std::string_view name) {
    return static_cast<LifecycleStep>(std::find(stepNames.begin(), stepNames.end(), name) -
                                      stepNames.begin());
}

/// What may wait for the delivery thread at a time, in bytes.
constexpr std::size_t mostDelivered = std::size_t{32} << 20;

const ScreenControl* browserControl(const ScreenPopup& popup) {
    const auto found = std::find_if(popup.controls.begin(), popup.controls.end(),
                                    [](const auto& control) { return control.element == "webbrowser"; });
    return found == popup.controls.end() ? nullptr : &*found;
}

} // namespace

void RequestDesk::carryOut(const PageRequest& request, Done done) {
    switch (request.kind()) {
    case RequestKind::Press:
    case RequestKind::Close:
    case RequestKind::BrowseError:
    case RequestKind::Cookie:
    case RequestKind::PageEvent:
        return carryOutOnScreen(request, std::move(done));
    case RequestKind::ClearHistory:
        screen.clearHistory();
        return done({});
    case RequestKind::Slow:
        host.setSlowness(static_cast<std::uint32_t>(request.number("milliseconds")));
        return done({});
    default:
        return carryOutByHost(request, std::move(done));
    }
}

void RequestDesk::carryOutOnScreen(const PageRequest& request, Done done) {
    std::string event;
    try {
        event = eventOf(request);
    } catch (const RequestFault& fault) {
        return done(fault.what());
    }
    host.sendEvent(std::move(event), std::move(done));
}

void RequestDesk::carryOutByHost(const PageRequest& request, Done done) {
    switch (request.kind()) {
    case RequestKind::Event:
        return host.sendEvent(request.text("xml"), std::move(done));
    case RequestKind::Lifecycle:
        return host.step(stepOf(request.text("step")), std::move(done));
    case RequestKind::Service:
        return host.setKnobs(request.text("json"), std::move(done));
    case RequestKind::Scenario:
        return host.startScenario(request.text("json"), std::move(done));
    case RequestKind::Pace:
        return host.setPace(static_cast<std::uint32_t>(request.number("percent")), std::move(done));
    case RequestKind::Fail:
        return host.fail(request.text("operation"), static_cast<std::uint32_t>(request.number("result")),
                         static_cast<std::uint32_t>(request.number("times")), std::move(done));
    case RequestKind::Heal:
        return host.heal(std::move(done));
    default:
        break;
    }
    const auto count = static_cast<unsigned>(request.number("count", 1));
    const std::string& text = request.text("json");
    if (text.size() * count > mostDelivered) {
        return done("so many documents of that length are too much: " + std::to_string(mostDelivered) +
                    " bytes are the most");
    }
    host.deliver(request.text("document"), text, count, std::move(done));
}

void RequestDesk::reportLogin(std::uint64_t browser, const LoginEnd& end) {
    const LivePopup* popup = screen.findBrowser(browser);
    const ScreenControl* control = popup != nullptr ? browserControl(popup->popup) : nullptr;
    const std::string event = end.hasCookie ? "OnPress" : "OnError";
    if (control != nullptr && !control->attribute(event).empty()) {
        host.sendEvent(browserReport(*control, event, {{end.hasCookie ? "value" : "error", end.text}}),
                       [](const std::string&) {});
    }
}

std::string RequestDesk::eventOf(const PageRequest& request) const {
    switch (request.kind()) {
    case RequestKind::Press:
        return pressOf(request);
    case RequestKind::Close:
        return closeOf(request);
    case RequestKind::BrowseError:
        return browserReport(browserOf(request, "OnError"), "OnError", {{"error", request.text("error")}});
    case RequestKind::Cookie:
        return browserReport(browserOf(request, "OnPress"), "OnPress", {{"value", request.text("value")}});
    default:
        return browserReport(browserOf(request, "OnBrowseEvent"), "OnBrowseEvent",
                             {{"type", request.text("type")}, {"value", request.text("value")}});
    }
}

std::string RequestDesk::pressOf(const PageRequest& request) const {
    const std::string& id = request.text("control");
    const ScreenControl* control = screen.findControl(id);
    if (control == nullptr) {
        throw RequestFault(request.id(), "there is no control " + id);
    }
    if (control->isHidden() || control->isDisabled()) {
        throw RequestFault(request.id(),
                           "the control " + id + " is " + (control->isHidden() ? "hidden" : "disabled"));
    }
    const std::string event = request.text("event", "OnPress");
    // An attribute of another name may hold anything; an event's begins like this.
    if (!event.starts_with("On") || control->attribute(event).empty()) {
        throw RequestFault(request.id(), "the control " + id + " has no event " + event);
    }
    return eventDocument(control->attribute(event));
}

std::string RequestDesk::closeOf(const PageRequest& request) const {
    const LivePopup* popup = screen.findPopup(request.text("popup"));
    if (popup == nullptr) {
        throw RequestFault(request.id(), "there is no popup " + request.text("popup"));
    }
    for (const ScreenControl& control : popup->popup.controls) {
        if (!control.attribute("OnClose").empty()) {
            return eventDocument(control.attribute("OnClose"));
        }
    }
    throw RequestFault(request.id(), "the popup " + request.text("popup") + " cannot be closed");
}

const ScreenControl& RequestDesk::browserOf(const PageRequest& request, std::string_view event) const {
    const LivePopup* popup = screen.findPopup(request.text("popup"));
    if (popup == nullptr) {
        throw RequestFault(request.id(), "there is no popup " + request.text("popup"));
    }
    const ScreenControl* control = browserControl(popup->popup);
    if (control == nullptr || control->attribute(event).empty()) {
        throw RequestFault(request.id(),
                           "the popup " + request.text("popup") + " has no browser that takes that");
    }
    return *control;
}

} // namespace host::serve
