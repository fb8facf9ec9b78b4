#include "presentation-plugin/alerts/WrenAlertPayload.h"

#include "xml/Base64.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <utility>

namespace {

namespace json = boost::json;

json::object alertObject(const WrenAlert_t& alert) {
    json::object object{{"title", alert.title},
                        {"shortDescription", alert.short_message},
                        {"longDescription", alert.long_message}};
    if (alert.action) {
        object["actions"].emplace_array().push_back(alert.action->toJson());
    }
    return object;
}

json::array alertArray(const WrenAlertList_t& list) {
    json::array array;
    array.reserve(list.alerts.size());
    for (const WrenAlert_t& alert : list.alerts) {
        array.push_back(alertObject(alert));
    }
    return array;
}

json::object pageStrings(const WrenAlertList_t& list) {
    return {{"alertSectionTitle", list.section_title},
            {"alertSectionDescription", list.section_description},
            {"alertSectionActionLabel", list.section_action_label},
            {"alertListTitle", list.list_title},
            {"alertListDescription", list.list_description}};
}

std::string payload(const char* flow, json::object value) {
    json::object object{{"flow", flow}};
    object["value"] = std::move(value);
    return base64Encode(json::serialize(object));
}

} // namespace

std::string buildAlertPayload(const WrenAlertList_t& list) {
    json::object value;
    value["alerts"] = alertArray(list);
    if (list.alerts.size() > 1) {
        value["multiAlertPageStrings"] = pageStrings(list);
    }
    return payload("alert", std::move(value));
}

std::string buildProgressPayload(std::string_view title, std::uint32_t percent) {
    return payload("enrollment", {{"state", "progress"}, {"title", title}, {"percent_complete", percent}});
}
