/// The backend's documents that checks deliver: sound ones with every key, of which a check changes what it
/// is about.
#pragma once

#include <boost/json/value.hpp>

#include <cstddef>
#include <string_view>

namespace host::validate {

/// The document with another value at a place.
/// @param place a JSON pointer whose parent exists
boost::json::value with(boost::json::value document, std::string_view place, boost::json::value content);
/// The document without the member at a place.
boost::json::value without(boost::json::value document, std::string_view place);

/// State "init".
boost::json::value initDocument();
/// State "error".
boost::json::value errorDocument(std::string_view substate);
/// State "active", one choice "choice-1" that the user may enroll with; all components are well.
boost::json::value notEnrolledDocument();
/// State "active", one enrollment "enrollment-1" that may be renewed and ended; all is well.
boost::json::value enrolledDocument();
/// Alerts of category "policy_error" and requests, numbered from 1: alert 2 has the title "Alert 2" and the
/// time 1700000002, request 2 the context "context-2" and the cookie "cookie-2".
boost::json::value dataplaneDocument(std::size_t alerts, std::size_t requests);
/// Of the enrollment "enrollment-1": how an enrollment or an unenrollment goes on.
boost::json::value progressDocument(std::string_view status, std::string_view substatus);
/// Of the enrollment "enrollment-1": asks for the user's login.
boost::json::value loginDocument();

/// The control of the login's browser, as events name it.
inline constexpr std::string_view loginControl = "quill_enrollment_browser_web_control";

} // namespace host::validate
