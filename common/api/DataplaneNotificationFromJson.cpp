#include "common/api/JsonFields.h"
#include "common/api/QuillApiDefsUtil.h"

namespace {

namespace json = boost::json;
using namespace json_fields;

std::string textMember(const Members& object, std::string_view key) {
    return toTextBeforeNul(member(object, key));
}

DataplaneDestination_t toDestination(const json::value& value) {
    const Members object = toObject(value);
    return {
        .host = textMember(object, "host"),
        // Cut without a look at what is lost: the backend's ports fit, and a port that does not is shown
        // anyhow.
        .port = static_cast<std::uint16_t>(toCounter(member(object, "port"))),
        .proto = toEnumeration<DataplaneProto>(member(object, "proto")),
        .timestamp = toTimePoint(member(object, "timestamp")),
    };
}

std::vector<DataplaneDestination_t> toDestinations(const Members& alert) {
    const json::value* destinations = alert.find("destinations");
    if (!destinations) {
        throwBadParameter();
    }
    return toList(toArray(*destinations), toDestination);
}

/// Not in the order of the fields: of several faults the first one read is the one that is told.
DataplaneAlert_t toAlert(const json::value& value) {
    const Members object = toObject(value);
    DataplaneAlert_t alert;
    alert.code = toCounter(member(object, "code"));
    alert.timestamp = toTimePoint(member(object, "timestamp"));
    alert.destinations = toDestinations(object);
    alert.url_label = textMember(object, "url_label");
    alert.url = textMember(object, "url");
    alert.toast_message = textMember(object, "toast_message");
    alert.tile_message = textMember(object, "tile_message");
    alert.long_message = textMember(object, "long_message");
    alert.short_message = textMember(object, "short_message");
    alert.title = textMember(object, "title");
    alert.category = toEnumeration<DataplaneAlertCategory>(member(object, "category"));
    return alert;
}

/// As above.
DataplaneAuthRequest_t toAuthRequest(const json::value& value) {
    const Members object = toObject(value);
    DataplaneAuthRequest_t request;
    request.timestamp = toTimePoint(member(object, "timestamp"));
    request.destination = toDestination(member(object, "destination"));
    request.cookie_name = textMember(object, "cookie_name");
    request.end_url = textMember(object, "end_url");
    request.start_url = textMember(object, "start_url");
    request.context_id = textMember(object, "context_id");
    return request;
}

bool decodeDataplane(const Members& object, DataplaneNotification_t& notification) {
    const json::string* version = findText(object, "version");
    if (!version) {
        return false;
    }
    notification.version = version->c_str(); // every text of a dataplane document ends at its first NUL byte
    return readList(object, "dataplane_alerts", notification.dataplane_alerts, toAlert) &&
           readList(object, "dataplane_auth_requests", notification.dataplane_auth_requests, toAuthRequest);
}

} // namespace

DataplaneNotification_t DataplaneNotificationFromJson(json::value value, std::error_code& error) {
    return decodeDocument<DataplaneNotification_t>(value, error, decodeDataplane);
}
