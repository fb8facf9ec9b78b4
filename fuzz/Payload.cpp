// The payload of the local pages: what is written is what the page reads.

#include "fuzz/Require.h"
#include "presentation-plugin/alerts/WrenAlertPayload.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

namespace json = boost::json;

/// Any text in UTF-8, which is all that the decoders let through.
std::string takeText(FuzzedDataProvider& input) {
    std::string text;
    for (std::size_t left = input.ConsumeIntegralInRange<std::size_t>(0, 24); left > 0; --left) {
        const auto byte = input.ConsumeIntegral<std::uint8_t>();
        if (byte < 0x80) {
            text += static_cast<char>(byte);
        } else {
            text += static_cast<char>(0xC2 + byte % 30);
            text += static_cast<char>(0x80 + byte % 64);
        }
    }
    return text;
}

std::string decoded(const std::string& text) {
    std::string bytes;
    std::uint32_t bits = 0;
    int count = 0;
    const std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (const char digit : text.substr(0, text.find('='))) {
        const std::size_t value = alphabet.find(digit);
        fuzz::require(value != std::string_view::npos, "Base64 has 64 digits");
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return bytes;
}

WrenAlert_t takeAlert(FuzzedDataProvider& input) {
    WrenAlert_t alert;
    alert.title = takeText(input);
    alert.short_message = takeText(input);
    alert.long_message = takeText(input);
    switch (input.ConsumeIntegralInRange(0, 2)) {
    case 1:
        alert.action = std::make_shared<WrenAlertRemoteAction>(takeText(input), takeText(input));
        break;
    case 2:
        alert.action = std::make_shared<WrenAlertLocalAction>(
            takeText(input), takeText(input), takeText(input), takeText(input), takeText(input));
        break;
    default:
        break;
    }
    return alert;
}

void requireAlert(const json::object& read, const WrenAlert_t& alert) {
    fuzz::require(read.at("title") == json::string(alert.title), "the title");
    fuzz::require(read.at("shortDescription") == json::string(alert.short_message), "the short message");
    fuzz::require(read.at("longDescription") == json::string(alert.long_message), "the long message");
    fuzz::require(read.contains("actions") == (alert.action != nullptr), "an action where there is one");
    if (alert.action) {
        fuzz::require(read.at("actions").as_array().at(0) == alert.action->toJson(), "the action");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    WrenAlertList_t list;
    while (input.remaining_bytes() > 0 && list.alerts.size() < 40) {
        list.alerts.push_back(takeAlert(input));
    }
    list.list_title = takeText(input);
    const json::object page = json::parse(decoded(buildAlertPayload(list))).as_object();
    fuzz::require(page.at("flow") == "alert", "the flow");
    const json::object& value = page.at("value").as_object();
    const json::array& alerts = value.at("alerts").as_array();
    fuzz::require(alerts.size() == list.alerts.size(), "all alerts");
    for (std::size_t number = 0; number < alerts.size(); ++number) {
        requireAlert(alerts[number].as_object(), list.alerts[number]);
    }
    fuzz::require(value.contains("multiAlertPageStrings") == (alerts.size() > 1),
                  "page texts for several alerts");

    const std::string title = takeText(input);
    const json::value progress = json::parse(decoded(buildProgressPayload(title, 7)));
    fuzz::require(progress.at("value").at("title") == json::string(title), "the progress page's title");
    return 0;
}
