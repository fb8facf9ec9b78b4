#include "common/api/QuillApiDefsUtil.h"
#include "presentation-plugin/PresentationPluginImpl.h"
#include "presentation-plugin/PresentationPluginImplRaise.h"

#include <boost/json/parse.hpp>

#include <exception>
#include <optional>
#include <system_error>
#include <utility>

/// What tells one document from another.
struct PresentationPluginImpl::Intake {
    std::string_view function;   ///< the callback as the log names it
    std::string_view notJson;    ///< log words for text that is no JSON
    std::string_view notDecoded; ///< log words for JSON of the wrong shape
    const char* apiLogElement;   ///< element of the host's log that takes the raw text
};

namespace {

void logFailure(std::string_view function, std::string_view words, std::string_view reason,
                int line = __builtin_LINE()) {
    COMMON2_LOG_AT(DBG_ERROR, common2::sourceName(__FILE__), line, function) << words << reason;
}

std::optional<boost::json::value> parseDocument(const char* json, std::string_view function,
                                                std::string_view words) {
    boost::system::error_code error;
    boost::json::value value = boost::json::parse(json ? json : "", error);
    if (error) {
        logFailure(function, words, error.message());
        return std::nullopt;
    }
    return value;
}

} // namespace

template <class Decode, class ToEvent>
void PresentationPluginImpl::takeIn(const char* json, const Intake& intake, Decode decode, ToEvent toEvent) {
    const std::lock_guard lock(smMutex);
    try {
        std::optional<boost::json::value> value = parseDocument(json, intake.function, intake.notJson);
        if (!value) {
            return;
        }
        std::error_code error;
        auto record = decode(std::move(*value), error);
        if (error) {
            logFailure(intake.function, intake.notDecoded, error.message());
            return;
        }
        const auto event = toEvent(std::move(record));
        sendText([&](common2::TextBuffer& out) { screens.apiLog(out, intake.apiLogElement, json); });
        raise(event, intake.function);
    } catch (const std::exception& failure) {
        // The backend's thread must not see a failure of ours.
        logFailure(intake.function, intake.notDecoded, failure.what());
    } catch (...) {
        logFailure(intake.function, intake.notDecoded, "unknown exception");
    }
}

void PresentationPluginImpl::StatusNotification(const char* json) {
    takeIn(json,
           {"PresentationPluginImpl::StatusNotification", "Failed to parse status notification: ",
            "Failed to parse JSON status notification: ", "statusnotification"},
           StatusNotificationFromJson, [](StatusNotification_t&& record) {
               return StatusNotification_e{std::make_shared<const StatusNotification_t>(std::move(record))};
           });
}

void PresentationPluginImpl::EnrollmentStatusNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse enrollment status notification: ";
    takeIn(json,
           {"PresentationPluginImpl::EnrollmentStatusNotification", words, words,
            "enrollmentstatusnotification"},
           EnrollmentStatusNotificationFromJson, [](EnrollmentStatusNotification_t&& record) {
               return EnrollmentStatusNotification_e{std::move(record)};
           });
}

void PresentationPluginImpl::EnrollmentAuthRequest(const char* json) {
    constexpr std::string_view words = "Failed to parse enrollment auth request: ";
    takeIn(json, {"PresentationPluginImpl::EnrollmentAuthRequest", words, words, "enrollmentauthrequest"},
           EnrollmentAuthRequestFromJson,
           [](EnrollmentAuthRequest_t&& record) { return EnrollmentAuthRequest_e{std::move(record)}; });
}

void PresentationPluginImpl::UnenrollmentStatusNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse unenrollment status notification: ";
    takeIn(json,
           {"PresentationPluginImpl::UnenrollmentStatusNotification", words, words,
            "unenrollmentstatusnotification"},
           UnenrollmentStatusNotificationFromJson, [](UnenrollmentStatusNotification_t&& record) {
               return UnenrollmentStatusNotification_e{std::move(record)};
           });
}

void PresentationPluginImpl::DataplaneNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse dataplane notification: ";
    takeIn(json, {"PresentationPluginImpl::DataplaneNotification", words, words, "dataplanenotification"},
           DataplaneNotificationFromJson, [](DataplaneNotification_t&& record) {
               return DataplaneNotification_e{
                   std::make_shared<const DataplaneNotification_t>(std::move(record))};
           });
}
