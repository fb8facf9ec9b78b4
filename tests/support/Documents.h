/// Documents as the backend sends them, and the records that they decode to. Each builder makes a sound one
/// with every field filled; a test changes what it is about:
///
///     auto document = test::with(test::enrolledStatusDocument(), "/enrollments/0/state", "paused");
///     auto record = test::enrolledStatus();
///     record.enrollments[0].state = "paused";
#pragma once

#include "common/api/DataplaneNotification.h"
#include "common/api/EnrollmentNotifications.h"
#include "common/api/StatusNotification.h"

#include <boost/json/value.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace test {

/// Changes of a document. `place` is a JSON pointer to a member or an element, which need not exist for
/// `with`, but whose parent must.
boost::json::value with(boost::json::value document, std::string_view place, boost::json::value content);
boost::json::value without(boost::json::value document, std::string_view place);
/// The document as compact JSON text.
std::string textOf(const boost::json::value& document);

/// State "init": no enrollment, no choice, nothing known yet.
boost::json::value initStatusDocument();
StatusNotification_t initStatus();

/// State "error", neither lists nor connectivities.
boost::json::value errorStatusDocument(std::string_view substate = "ipc_failure");
StatusNotification_t errorStatus(std::string_view substate = "ipc_failure");

/// State "active" with one choice "choice-1", which the user may enrol with; every component is "ok".
boost::json::value notEnrolledStatusDocument();
StatusNotification_t notEnrolledStatus();

/// State "active" with one enrollment "enrollment-1", which may be renewed and ended; everything is "ok".
boost::json::value enrolledStatusDocument();
StatusNotification_t enrolledStatus();

/// Alerts of category "policy_error" with all texts, numbered from 1: alert 2 has code 2, the time 1700000002
/// seconds, the title "Alert 2" and so on. Requests likewise: request 2 has context id "context-2".
boost::json::value dataplaneDocument(std::size_t alerts = 0, std::size_t authRequests = 0);
DataplaneNotification_t dataplane(std::size_t alerts = 0, std::size_t authRequests = 0);

/// The enrollment "enrollment-1" in the context "context-1".
boost::json::value enrollmentStatusDocument(std::string_view status = "started",
                                            std::string_view substatus = "");
EnrollmentStatusNotification_t enrollmentStatus(EnrollmentStatus status = EnrollmentStatus::Started,
                                                EnrollmentSubstatus substatus = EnrollmentSubstatus::None);
boost::json::value enrollmentAuthRequestDocument();
EnrollmentAuthRequest_t enrollmentAuthRequest();
boost::json::value unenrollmentStatusDocument(std::string_view status = "started",
                                              std::string_view substatus = "");
UnenrollmentStatusNotification_t
unenrollmentStatus(UnenrollmentStatus status = UnenrollmentStatus::Started,
                   UnenrollmentSubstatus substatus = UnenrollmentSubstatus::None);

} // namespace test
