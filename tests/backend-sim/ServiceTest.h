/// The service of a device, driven through the library's exports: a service without delays whose time stands
/// still, so that everything has happened when a call of this fixture returns.
#pragma once

#include "tests/backend-sim/BackendTest.h"

#include <boost/json/value.hpp>

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace test {

using Lines = std::vector<std::string>;

/// Where the service's clock stands to begin with.
inline constexpr std::int64_t startOfTime = 1'700'000'000;

/// The status of a device that is enrolled as usual, and of one that is not, as written-out JSON.
std::string enrolledStatusText(const std::string& id, std::int64_t since);
std::string notEnrolledStatusText();

/// A document in short, such as "enrollment enr-1 complete/success". Fails the test where the plugin's
/// decoder refuses the document.
std::string shortened(const Received& document);

class ServiceTest : public BackendTest {
protected:
    /// Starts the service with an empty scenario without delays and lets `api` listen to it.
    ServiceTest();
    ~ServiceTest() override;

    /// Loads a scenario, whose delays are 0 where it does not tell them, and forgets what was sent so far.
    /// @param scenario members of the scenario, such as `"device":{...}`
    void load(const std::string& scenario);
    void set(const std::string& knobs);
    /// Moves time on.
    static void pass(std::uint32_t milliseconds);

    /// What was sent since the last call, in short; and as it was received.
    Lines sent();
    std::vector<Received> documents();

    // Requests.

    void enroll(const std::string& choice = "choice-1");
    void reEnroll(const std::string& id);
    void reply(const std::string& id, const std::string& cookie);
    void cancel(const std::string& id);
    void unenroll(const std::string& id);
    void syncConfig(const std::string& id);
    void reportPosture();
    void replyDataplane(const std::string& context, const std::string& cookie);

    /// Goes through an enrollment. @return its id
    std::string enrolled();
    /// Begins an enrollment and leaves it at its login, with nothing sent to be asked for. @return its id
    std::string atLogin();
    /// The id of the enrollment that runs; empty if none does.
    static std::string runningId();
    /// The stage of the enrollment that runs.
    static std::string stage();
    /// The next operation that comes to that moment fails.
    void setFault(const std::string& when, const std::string& fail);
    /// The cookie of a login; empty if it is not open.
    static std::string cookie(WrenSimLogin login, const char* id);
    static std::string enrollmentCookie(const std::string& id) {
        return cookie(wrensim_enrollment_login, id.c_str());
    }

    static boost::json::value state();
    /// The enrollment in the status document that was sent last.
    boost::json::object lastEnrollment();

    std::shared_ptr<IQuillApi> api;

private:
    std::size_t seen = 0;
};

} // namespace test
