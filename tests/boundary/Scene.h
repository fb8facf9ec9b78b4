/// A plugin on its stage: registered with a host, in front of the backend in memory, and moved by short
/// steps.
#pragma once

#include "tests/boundary/BoundaryPlugin.h"
#include "tests/boundary/MemoryBackend.h"

#include <string>
#include <string_view>
#include <vector>

namespace test {

class Scene {
public:
    /// Resets the backend, makes the plugin and registers it.
    explicit Scene(Interface interface = Interface::Cpp);

    MemoryBackend& backend = MemoryBackend::instance();
    BoundaryHost host;
    std::unique_ptr<BoundaryPlugin> plugin; ///< disposed of before the host goes

    /// One step of a story:
    ///     init, error, notEnrolled, enrolled: a status document
    ///     alert, authRequest, noAlert: a dataplane document
    ///     started, failed, complete: an enrollment status; login: its authentication request
    ///     unenrollStarted, unenrolled: an unenrollment status
    ///     enroll, cancel, unenroll, sync, details, verify: a click
    ///     loggedIn, loginFailed, authorized, closeAlert, posture, reEnroll: what a popup reports
    ///     start, stop: the host's calls
    /// @return what the plugin answered; 0 for documents
    std::int32_t step(std::string_view name);
    void play(const std::vector<std::string_view>& steps);

    /// Brings a plugin that runs back to where nothing is under way, whatever it was at.
    void settle();
    /// Enrols from there to the end.
    /// @return whether the tile told so
    bool enrols();
};

/// The names of all steps but `start` and `stop`.
const std::vector<std::string_view>& allSteps();

/// The stages that a running plugin can be at, each by the steps that lead there from `start`.
struct Stage {
    std::string_view name;
    std::vector<std::string_view> steps;
};
const std::vector<Stage>& allStages();

} // namespace test
