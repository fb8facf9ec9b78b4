/// Between the backend's JSON and the plugin's records: five decoders and six requests. No state; any thread.
#pragma once

#include "common/api/DataplaneNotification.h"
#include "common/api/EnrollmentNotifications.h"
#include "common/api/StatusNotification.h"

#include <boost/json/fwd.hpp>

#include <string>
#include <string_view>
#include <system_error>

/// Decoders. On success `error` is cleared. A soft failure leaves `BadParameter` of "global_error" in `error`
/// and returns an empty record whose enumerations mean nothing.

/// Whatever is wrong at the document's top level is a soft failure, but for an enumeration field that holds
/// no string. That and whatever is wrong further down is an exception:
/// @throws std::invalid_argument "not an object", "not a string", "bool required": a value of another kind
/// @throws std::out_of_range "out of range": a nested object lacks a key
/// @throws std::system_error a number that does not fit its field, with the conversion's code; a network
///         status or a proxy configuration of the wrong shape, with `BadParameter`
/// @throws std::bad_optional_access a fingerprint's status that is none of the three
StatusNotification_t StatusNotificationFromJson(boost::json::value value, std::error_code& error);
/// The same into a record of whatever content, whose texts and lists keep their storage. After a failure of
/// either kind its content means nothing.
void readStatusNotification(const boost::json::value& value, std::error_code& error,
                            StatusNotification_t& status);

/// These three throw nothing for a bad document: every fault is a soft failure.
EnrollmentStatusNotification_t EnrollmentStatusNotificationFromJson(boost::json::value value,
                                                                    std::error_code& error);
EnrollmentAuthRequest_t EnrollmentAuthRequestFromJson(boost::json::value value, std::error_code& error);
UnenrollmentStatusNotification_t UnenrollmentStatusNotificationFromJson(boost::json::value value,
                                                                        std::error_code& error);

/// Whatever is wrong at the document's top level is a soft failure; whatever is wrong inside a list element
/// is an exception:
/// @throws std::invalid_argument "not an object", "not a string", "array required": a value of another kind
/// @throws std::out_of_range "out of range": a missing key
/// @throws std::system_error a number that does not fit its field, with the conversion's code; an alert
///         without "destinations", with `BadParameter`
DataplaneNotification_t DataplaneNotificationFromJson(boost::json::value value, std::error_code& error);

/// Requests, as the JSON text of one flat object whose values are all strings, keys in argument order.

std::string initiateEnrollmentRequest(std::string_view version, std::string_view enrollment_choice_id,
                                      std::string_view enrollment_context);
/// Serves re-enrollment and unenrollment.
std::string enrollmentRequest(std::string_view version, std::string_view enrollment_id,
                              std::string_view enrollment_context);
std::string enrollmentAuthReplyRequest(std::string_view version, std::string_view enrollment_id,
                                       std::string_view enrollment_cookie);
/// Serves cancelling an enrollment and synchronising the configuration.
std::string enrollmentIdRequest(std::string_view version, std::string_view enrollment_id);
/// Serves posture reports.
std::string versionRequest(std::string_view version);
std::string dataplaneAuthReplyRequest(std::string_view version, std::string_view context_id,
                                      std::string_view authorization_cookie);
