#include "common/api/JsonFields.h"
#include "common/api/QuillApiDefsUtil.h"

namespace {

namespace json = boost::json;
using namespace json_fields;

/// Reads a text that must be a literal of the enumeration.
template <class Enumeration>
bool readLiteral(const json::string& text, Enumeration& field) {
    const auto value = valueOfLiteral<Enumeration>(std::string_view(text.data(), text.size()));
    field = value.value_or(Enumeration::Unknown);
    return value.has_value();
}

template <class Status>
bool readStatus(const Members& object, Status& status) {
    const json::string* text = findText(object, "status");
    return text && readLiteral(*text, status);
}

/// The key must be there, but a value that is no text quietly stands for `None`.
template <class Substatus>
bool readSubstatus(const Members& object, Substatus& substatus) {
    const json::value* value = object.find("substatus");
    if (!value) {
        return false;
    }
    if (const json::string* text = value->if_string()) {
        return readLiteral(*text, substatus);
    }
    substatus = Substatus::None;
    return true;
}

/// A context that is absent or no text is an empty context.
void readContext(const Members& object, std::string& context) {
    static_cast<void>(readText(object, "enrollment_context", context));
}

/// Enrollment and unenrollment status differ in their enumerations alone.
template <class Notification>
bool decodeProgress(const Members& object, Notification& notification) {
    if (!readText(object, "version", notification.version) || !readStatus(object, notification.status) ||
        !readSubstatus(object, notification.substatus) ||
        !readText(object, "enrollment_id", notification.enrollment_id)) {
        return false;
    }
    readContext(object, notification.enrollment_context);
    return true;
}

bool decodeAuthRequest(const Members& object, EnrollmentAuthRequest_t& request) {
    if (!readText(object, "version", request.version) ||
        !readText(object, "enrollment_id", request.enrollment_id) ||
        !readText(object, "start_url", request.start_url) || !readText(object, "end_url", request.end_url) ||
        !readText(object, "cookie_name", request.cookie_name)) {
        return false;
    }
    readContext(object, request.enrollment_context);
    return true;
}

} // namespace

EnrollmentStatusNotification_t EnrollmentStatusNotificationFromJson(json::value value,
                                                                    std::error_code& error) {
    return decodeDocument<EnrollmentStatusNotification_t>(value, error, decodeProgress);
}

EnrollmentAuthRequest_t EnrollmentAuthRequestFromJson(json::value value, std::error_code& error) {
    return decodeDocument<EnrollmentAuthRequest_t>(value, error, decodeAuthRequest);
}

UnenrollmentStatusNotification_t UnenrollmentStatusNotificationFromJson(json::value value,
                                                                        std::error_code& error) {
    return decodeDocument<UnenrollmentStatusNotification_t>(value, error, decodeProgress);
}
