#include "host/serve/ScreenJson.h"

#include "host/Text.h"

#include <boost/json/array.hpp>
#include <boost/json/string.hpp>
#include <boost/json/value.hpp>

#include <algorithm>

namespace host::serve {
namespace {

namespace json = boost::json;

/// The text as a JSON text may hold it.
json::string textOf(std::string_view text) {
    if (isUtf8(text)) {
        return json::string(text);
    }
    json::string plain(text);
    std::replace_if(
        plain.begin(), plain.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '?');
    return plain;
}

/// @param make makes the JSON of an element
template <class Range, class Make>
json::array arrayOf(const Range& range, Make make) {
    json::array array;
    array.reserve(range.size());
    for (const auto& element : range) {
        array.emplace_back(make(element));
    }
    return array;
}

json::object controlJson(const ScreenControl& control) {
    json::object attributes;
    for (const auto& [key, value] : control.attributes) {
        attributes.emplace(textOf(key), textOf(value));
    }
    return {
        {"element", control.element},          {"id", textOf(control.id())},
        {"hidden", control.isHidden()},        {"disabled", control.isDisabled()},
        {"attributes", std::move(attributes)},
    };
}

json::object partJson(const ScreenPart& part) {
    const auto label = std::find_if(part.controls.begin(), part.controls.end(),
                                    [](const auto& control) { return control.element == "label"; });
    return {
        {"kind", part.isTile() ? "tile" : "group"},
        {"title", label == part.controls.end() ? json::string() : textOf(label->attribute("value"))},
        {"controls", arrayOf(part.controls, controlJson)},
    };
}

json::object rowJson(const StatisticsRow& row) {
    return {{"id", textOf(row.id)}, {"columns", arrayOf(row.columns, textOf)}};
}

json::object groupJson(const StatisticsGroup& group) {
    return {{"id", textOf(group.id)}, {"title", textOf(group.title)}, {"rows", arrayOf(group.rows, rowJson)}};
}

json::object statisticsJson(const ScreenModel& model) {
    json::object lists;
    for (const auto& [id, groups] : model.statistics()) {
        lists.emplace(textOf(id), arrayOf(groups, groupJson));
    }
    return lists;
}

json::value browserJson(const std::optional<LiveBrowser>& browser) {
    if (!browser) {
        return nullptr;
    }
    return {
        {"number", browser->number},
        {"control", textOf(browser->control)},
        {"operation", textOf(browser->operation)},
        {"address", textOf(browser->address)},
        {"start_url", textOf(browser->startUrl)},
        {"final_url", textOf(browser->finalUrl)},
        {"cookie_name", textOf(browser->cookieName)},
        {"detail", textOf(browser->detail)},
        {"detail_number", browser->detailNumber},
    };
}

json::object popupJson(const LivePopup& live) {
    const ScreenPopup& popup = live.popup;
    return {
        {"id", textOf(popup.id)},
        {"type", textOf(popup.type)},
        {"title", textOf(popup.title)},
        {"texts", arrayOf(popup.texts, textOf)},
        {"controls", arrayOf(popup.controls, controlJson)},
        {"number", live.number},
        {"browser", browserJson(live.browser)},
    };
}

json::object toastJson(const LiveToast& live) {
    const ScreenPopup& toast = live.toast;
    return {
        {"number", live.number},
        {"time", live.time},
        {"id", textOf(toast.id)},
        {"title", textOf(toast.title)},
        {"texts", arrayOf(toast.texts, textOf)},
        {"controls", arrayOf(toast.controls, controlJson)},
    };
}

json::object messageJson(const LiveMessage& message) {
    return {{"number", message.number}, {"time", message.time}, {"text", textOf(message.text)}};
}

} // namespace

json::object screenJson(const LiveScreen& screen) {
    const ScreenModel& model = screen.model();
    return {
        {"window", screen.window()},
        {"parts", arrayOf(model.parts(), partJson)},
        {"tray", {{"state", textOf(model.trayState())}, {"text", textOf(model.trayText())}}},
        {"statistics", statisticsJson(model)},
        {"popups", arrayOf(screen.popups(), popupJson)},
        {"toasts", arrayOf(screen.toasts(), toastJson)},
        {"history", arrayOf(screen.history(), messageJson)},
    };
}

} // namespace host::serve
