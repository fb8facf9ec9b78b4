#include "common/api/QuillApiDefsUtil.h"
#include "presentation-plugin/PresentationPluginImpl.h"
#include "presentation-plugin/PresentationPluginImplRaise.h"

#include <boost/json/monotonic_resource.hpp>
#include <boost/json/parse.hpp>

#include <exception>
#include <optional>
#include <system_error>
#include <type_traits>
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

} // namespace

/// Parses and decodes a document. What is wrong with it goes to the log.
/// @return none if it is unusable
template <class Decode>
auto PresentationPluginImpl::decoded(std::string_view json, const Intake& intake, Decode decode)
    -> std::optional<std::invoke_result_t<Decode, boost::json::value, std::error_code&>> {
    // The value lives in kept memory, and what a large one needs beyond goes as a whole.
    boost::json::monotonic_resource memory(parseMemory.data(), parseMemory.size());
    boost::system::error_code notParsed;
    boost::json::value value = boost::json::parse(json, notParsed, &memory);
    if (notParsed) {
        logFailure(intake.function, intake.notJson, notParsed.message());
        return std::nullopt;
    }
    std::error_code error;
    auto record = decode(std::move(value), error);
    if (error) {
        logFailure(intake.function, intake.notDecoded, error.message());
        return std::nullopt;
    }
    return record;
}

/// The steps that all documents share; `take` does those between them and raises the event.
template <class Take>
void PresentationPluginImpl::takeIn(const char* json, const Intake& intake, Take take) {
    const std::lock_guard lock(smMutex);
    try {
        take(std::string_view(json ? json : ""));
    } catch (const std::exception& failure) {
        // The backend's thread must not see a failure of ours.
        logFailure(intake.function, intake.notDecoded, failure.what());
    } catch (...) {
        logFailure(intake.function, intake.notDecoded, "unknown exception");
    }
}

void PresentationPluginImpl::copyToHostLog(const Intake& intake, std::string_view json) {
    sendText([&](common2::TextBuffer& out) { screens.apiLog(out, intake.apiLogElement, json); });
}

template <class Event, class Decode>
void PresentationPluginImpl::takeInEvent(const char* json, const Intake& intake, Decode decode) {
    takeIn(json, intake, [&](std::string_view text) {
        auto record = decoded(text, intake, decode);
        if (record) {
            const Event event{std::move(*record)};
            copyToHostLog(intake, text);
            raise(event, intake.function);
        }
    });
}

template <class Event, class Record, class Decode>
void PresentationPluginImpl::takeInCached(const char* json, const Intake& intake, Decode decode,
                                          const std::shared_ptr<const Record>& cached, KnownText& known) {
    takeIn(json, intake, [&](std::string_view text) {
        const bool isKnown = known.isOf(cached, text);
        Event event{cached};
        if (!isKnown) {
            auto record = decoded(text, intake, decode);
            if (!record) {
                return;
            }
            event.notification = std::make_shared<const Record>(std::move(*record));
        }
        copyToHostLog(intake, text);
        raise(event, intake.function);
        if (!isKnown && cached == event.notification) {
            known.keep(cached, text);
        }
    });
}

void PresentationPluginImpl::StatusNotification(const char* json) {
    takeInCached<StatusNotification_e>(json,
                                       {"PresentationPluginImpl::StatusNotification",
                                        "Failed to parse status notification: ",
                                        "Failed to parse JSON status notification: ", "statusnotification"},
                                       StatusNotificationFromJson, cachedStatus, knownStatusText);
}

void PresentationPluginImpl::EnrollmentStatusNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse enrollment status notification: ";
    takeInEvent<EnrollmentStatusNotification_e>(json,
                                                {"PresentationPluginImpl::EnrollmentStatusNotification",
                                                 words, words, "enrollmentstatusnotification"},
                                                EnrollmentStatusNotificationFromJson);
}

void PresentationPluginImpl::EnrollmentAuthRequest(const char* json) {
    constexpr std::string_view words = "Failed to parse enrollment auth request: ";
    takeInEvent<EnrollmentAuthRequest_e>(
        json, {"PresentationPluginImpl::EnrollmentAuthRequest", words, words, "enrollmentauthrequest"},
        EnrollmentAuthRequestFromJson);
}

void PresentationPluginImpl::UnenrollmentStatusNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse unenrollment status notification: ";
    takeInEvent<UnenrollmentStatusNotification_e>(json,
                                                  {"PresentationPluginImpl::UnenrollmentStatusNotification",
                                                   words, words, "unenrollmentstatusnotification"},
                                                  UnenrollmentStatusNotificationFromJson);
}

void PresentationPluginImpl::DataplaneNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse dataplane notification: ";
    takeInCached<DataplaneNotification_e>(
        json, {"PresentationPluginImpl::DataplaneNotification", words, words, "dataplanenotification"},
        DataplaneNotificationFromJson, cachedDataplane, knownDataplaneText);
}
