/// Drives the real module with the real backend library beside it, through session inputs.
#pragma once

#include "host/PluginObject.h"

#include <boost/json/object.hpp>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace test {

using Lines = std::vector<std::string>;

/// A session of its own with the module that stands beside the test program. The module is loaded once for
/// the process, at full trace, in UTC; the stand-in does only what it is told. Objects that a test leaves
/// behind are disposed of.
class ModuleSession {
public:
    /// @param onlyInterface for all objects, whatever the inputs say; none leaves it to them
    explicit ModuleSession(std::optional<host::PluginInterface> onlyInterface = std::nullopt);
    ModuleSession(const ModuleSession&) = delete;
    ModuleSession& operator=(const ModuleSession&) = delete;
    ~ModuleSession();

    /// Runs session inputs, one JSON object a line.
    /// @return what came of them, in short: see `inShort`
    Lines run(std::string_view inputs);

    /// The outputs of the last `run` as they stand in a session file.
    const std::vector<boost::json::object>& outputs() const;

    /// The rules that were broken so far, a line each.
    Lines brokenRules() const;

    /// Creates the plugin, registers with callbacks "host" and handle 7, and starts it.
    void start();
    /// Delivers a document; the text is quoted as needed.
    Lines deliver(std::string_view document, std::string_view json);
    /// Sends an event document.
    Lines event(std::string_view xml);
    /// Presses a control: the event of its "OnPress".
    Lines press(std::string_view control);

private:
    struct State;
    std::unique_ptr<State> state;
};

/// One output line in short:
///     created true · result -10 · result -3 size 12 text null · interfaces ...
///     log 2 PresentationPluginImpl::Stop: Unexpected state transition
///     notice <vtguiNotice ... timestamp="*">... · stop_done · api Start · api CancelEnrollment {...}
std::string inShort(const boost::json::object& output);

/// The lines without the machine's trace and the actions' names.
Lines withoutTrace(const Lines& lines);
/// The lines that begin with a word.
Lines only(std::string_view word, const Lines& lines);
/// The notices among the lines in a word or two each:
///     tile update Good "Wren Gate is active." "Active" [] · tile setup ... [Enroll] (buttons that are
///     offered) adv-enrollment update disabled managed · adv-sync update enabled "None" · stats-overview
///     update stats-details setup · toast "title" "text" button-id · popup id · dispose id · apilog element ·
///     history
Lines screens(const Lines& lines);

} // namespace test
