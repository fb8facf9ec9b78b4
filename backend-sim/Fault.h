/// What goes wrong, and when.
#pragma once

#include "backend-sim/Words.h"

#include <boost/json/object.hpp>

#include <array>
#include <cstdint>
#include <vector>

namespace sim {

/// Points in the service's work at which something may go wrong.
namespace moment {
inline constexpr Word start = "start";                          ///< a connection was started
inline constexpr Word enrollmentRequest = "enrollment_request"; ///< before "started": ends in "error"
inline constexpr Word enrollmentStarted = "enrollment_started"; ///< in place of the authentication request
inline constexpr Word enrollmentLogin = "enrollment_login";     ///< while the user logs in
inline constexpr Word enrollmentCookie = "enrollment_cookie";   ///< after the right cookie
inline constexpr Word enrollmentCancel = "enrollment_cancel";   ///< in place of "cancelled"
inline constexpr Word enrolled = "enrolled";                    ///< after the end of a good one
inline constexpr Word unenrollmentStarted = "unenrollment_started"; ///< after "started"
inline constexpr Word unenrolled = "unenrolled";                    ///< after the end of a good one
inline constexpr Word configSync = "config_sync";                   ///< before the attempt
inline constexpr Word postureReport = "posture_report";             ///< before the report
inline constexpr Word dataplaneReply = "dataplane_reply";           ///< before the cookie is looked at
} // namespace moment

namespace words {
inline constexpr std::array<Word, 12> moment{
    sim::moment::start,           sim::moment::enrollmentRequest,   sim::moment::enrollmentStarted,
    sim::moment::enrollmentLogin, sim::moment::enrollmentCookie,    sim::moment::enrollmentCancel,
    sim::moment::enrolled,        sim::moment::unenrollmentStarted, sim::moment::unenrolled,
    sim::moment::configSync,      sim::moment::postureReport,       sim::moment::dataplaneReply,
};
} // namespace words

/// How an operation can fail at that moment; nothing where none can.
Words failuresAt(Word moment);

/// Happens at a moment, after `skip` of its kind have passed, `times` times.
struct Fault {
    Word when;
    std::uint32_t skip = 0;
    std::uint32_t times = 1;
    Word fail;               ///< one of failuresAt(when), or none
    boost::json::object set; ///< knobs of the device that are set, valid
};

/// What happens at a moment.
struct Mishap {
    Word fail; ///< empty if the operation goes on
    std::vector<boost::json::object> changes;
};

/// The moment has come: counts it, and takes what was to happen at it from the list. Where several want the
/// operation to fail, the first has its way.
Mishap takeMishap(std::vector<Fault>& faults, Word moment);

} // namespace sim
