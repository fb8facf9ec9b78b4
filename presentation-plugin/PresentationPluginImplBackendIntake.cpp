#include "common/api/QuillApiDefsUtil.h"
#include "presentation-plugin/PresentationPluginImpl.h"
#include "presentation-plugin/PresentationPluginImplRaise.h"

#include <boost/json/monotonic_resource.hpp>
#include <boost/json/parse.hpp>

#include <exception>
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

} // namespace

/// Parses a document and has it decoded. What is wrong with it goes to the log.
/// @return whether it is usable
template <class Decode>
bool PresentationPluginImpl::readDocument(std::string_view json, const Intake& intake, Decode decode) {
    // The value lives in kept memory, and what a large one needs beyond goes as a whole.
    boost::json::monotonic_resource memory(parseMemory.data(), parseMemory.size());
    boost::system::error_code notParsed;
    boost::json::value value = boost::json::parse(json, notParsed, &memory);
    if (notParsed) {
        logFailure(intake.function, intake.notJson, notParsed.message());
        return false;
    }
    std::error_code notDecoded;
    decode(std::move(value), notDecoded);
    if (notDecoded) {
        logFailure(intake.function, intake.notDecoded, notDecoded.message());
        return false;
    }
    return true;
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

template <class Event, class Record>
void PresentationPluginImpl::takeInEvent(const char* json, const Intake& intake, Decoder<Record> decode) {
    takeIn(json, intake, [&](std::string_view text) {
        Record record;
        const auto decodeValue = [&](boost::json::value&& value, std::error_code& error) {
            record = decode(std::move(value), error);
        };
        if (readDocument(text, intake, decodeValue)) {
            const Event event{std::move(record)};
            copyToHostLog(intake, text);
            raise(event, intake.function);
        }
    });
}

template <class Event, class Record, class Read>
void PresentationPluginImpl::takeInCached(const char* json, const Intake& intake,
                                          const std::shared_ptr<const Record>& cached, KnownText& known,
                                          Read read) {
    takeIn(json, intake, [&](std::string_view text) {
        const bool isKnown = known.isOf(cached, text);
        const Event event{isKnown ? cached : read(text)};
        if (!event.notification) {
            return;
        }
        copyToHostLog(intake, text);
        raise(event, intake.function);
        if (!isKnown && cached == event.notification) {
            known.keep(cached, text);
        }
    });
}

void PresentationPluginImpl::StatusNotification(const char* json) {
    const Intake intake{"PresentationPluginImpl::StatusNotification", "Failed to parse status notification: ",
                        "Failed to parse JSON status notification: ", "statusnotification"};
    takeInCached<StatusNotification_e>(
        json, intake, cachedStatus, knownStatusText,
        [&](std::string_view text) -> std::shared_ptr<const StatusNotification_t> {
            const std::shared_ptr<StatusNotification_t> record = statusRecords.take();
            if (!KnownText::isKept(text)) {
                statusRecords.forget();
            }
            const auto decode = [&record](boost::json::value&& value, std::error_code& error) {
                readStatusNotification(value, error, *record);
            };
            return readDocument(text, intake, decode) ? record : nullptr;
        });
}

void PresentationPluginImpl::EnrollmentStatusNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse enrollment status notification: ";
    takeInEvent<EnrollmentStatusNotification_e, EnrollmentStatusNotification_t>(
        json,
        {"PresentationPluginImpl::EnrollmentStatusNotification", words, words,
         "enrollmentstatusnotification"},
        EnrollmentStatusNotificationFromJson);
}

void PresentationPluginImpl::EnrollmentAuthRequest(const char* json) {
    constexpr std::string_view words = "Failed to parse enrollment auth request: ";
    takeInEvent<EnrollmentAuthRequest_e, EnrollmentAuthRequest_t>(
        json, {"PresentationPluginImpl::EnrollmentAuthRequest", words, words, "enrollmentauthrequest"},
        EnrollmentAuthRequestFromJson);
}

void PresentationPluginImpl::UnenrollmentStatusNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse unenrollment status notification: ";
    takeInEvent<UnenrollmentStatusNotification_e, UnenrollmentStatusNotification_t>(
        json,
        {"PresentationPluginImpl::UnenrollmentStatusNotification", words, words,
         "unenrollmentstatusnotification"},
        UnenrollmentStatusNotificationFromJson);
}

void PresentationPluginImpl::DataplaneNotification(const char* json) {
    constexpr std::string_view words = "Failed to parse dataplane notification: ";
    const Intake intake{"PresentationPluginImpl::DataplaneNotification", words, words,
                        "dataplanenotification"};
    takeInCached<DataplaneNotification_e>(
        json, intake, cachedDataplane, knownDataplaneText,
        [&](std::string_view text) -> std::shared_ptr<const DataplaneNotification_t> {
            const auto record = std::make_shared<DataplaneNotification_t>();
            const auto decode = [&record](boost::json::value&& value, std::error_code& error) {
                *record = DataplaneNotificationFromJson(std::move(value), error);
            };
            return readDocument(text, intake, decode) ? record : nullptr;
        });
}
