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

/// Logs the exception that is being handled: the backend's thread must not see a failure of ours.
void logCaught(std::string_view function, std::string_view words) {
    try {
        throw;
    } catch (const std::exception& failure) {
        logFailure(function, words, failure.what());
    } catch (...) {
        logFailure(function, words, "unknown exception");
    }
}

/// A missing text is an empty one.
std::string_view textOf(const char* json) { return json ? json : ""; }

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

template <class Event, class Record>
void PresentationPluginImpl::takeInEvent(const char* json, const Intake& intake, Decoder<Record> decode) {
    const common2::MutexLock lock(smMutex);
    try {
        const std::string_view text = textOf(json);
        Record record;
        const auto decodeValue = [&](boost::json::value&& value, std::error_code& error) {
            record = decode(std::move(value), error);
        };
        if (readDocument(text, intake, decodeValue)) {
            const Event event{std::move(record)};
            sendApiLogNotice(intake.apiLogElement, text);
            raise(event, intake.function);
        }
    } catch (...) {
        logCaught(intake.function, intake.notDecoded);
    }
}

template <class Event, class Record>
void PresentationPluginImpl::takeInCached(
    const char* json, const Intake& intake, std::shared_ptr<const Record> PresentationPluginImpl::*cached,
    KnownText PresentationPluginImpl::*knownText,
    std::shared_ptr<const Record> (PresentationPluginImpl::*read)(std::string_view, const Intake&)) {
    const common2::MutexLock lock(smMutex);
    try {
        const std::string_view text = textOf(json);
        KnownText& known = this->*knownText;
        const bool isKnown = known.isOf(this->*cached, text);
        const Event event{isKnown ? this->*cached : (this->*read)(text, intake)};
        if (!event.notification) {
            return;
        }
        sendApiLogNotice(intake.apiLogElement, text);
        raise(event, intake.function);
        if (!isKnown && this->*cached == event.notification) {
            known.keep(this->*cached, text);
        }
    } catch (...) {
        logCaught(intake.function, intake.notDecoded);
    }
}

std::shared_ptr<const StatusNotification_t> PresentationPluginImpl::readStatus(std::string_view json,
                                                                               const Intake& intake) {
    const std::shared_ptr<StatusNotification_t> record = statusRecords.take();
    if (!KnownText::isKept(json)) {
        statusRecords.forget();
    }
    const auto decode = [&record](boost::json::value&& value, std::error_code& error) {
        readStatusNotification(value, error, *record);
    };
    return readDocument(json, intake, decode) ? record : nullptr;
}

std::shared_ptr<const DataplaneNotification_t> PresentationPluginImpl::readDataplane(std::string_view json,
                                                                                     const Intake& intake) {
    const auto record = std::make_shared<DataplaneNotification_t>();
    const auto decode = [&record](boost::json::value&& value, std::error_code& error) {
        *record = DataplaneNotificationFromJson(std::move(value), error);
    };
    return readDocument(json, intake, decode) ? record : nullptr;
}

void PresentationPluginImpl::StatusNotification(const char* json) {
    const Intake intake{"PresentationPluginImpl::StatusNotification", "Failed to parse status notification: ",
                        "Failed to parse JSON status notification: ", "statusnotification"};
    takeInCached<StatusNotification_e>(json, intake, &PresentationPluginImpl::cachedStatus,
                                       &PresentationPluginImpl::knownStatusText,
                                       &PresentationPluginImpl::readStatus);
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
    takeInCached<DataplaneNotification_e>(json, intake, &PresentationPluginImpl::cachedDataplane,
                                          &PresentationPluginImpl::knownDataplaneText,
                                          &PresentationPluginImpl::readDataplane);
}
