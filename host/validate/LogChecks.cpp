// What the module logs, and how its settings file says how much.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <algorithm>
#include <array>

namespace host::validate {
namespace {

/// What a life logs that has lines of every severity.
std::vector<LogRecord> chattyLife(Trial& trial) {
    trial.create();
    trial.registerHost();
    const Step life = trial.step([&] {
        trial.plugin().Start();
        trial.plugin().Start();                       // a warning
        trial.plugin().EventNotification("no event"); // an error
        return trial.plugin().Stop(0);
    });
    std::vector<LogRecord> records;
    for (const Arrival& arrival : life.arrivals) {
        if (arrival.kind == Arrival::Kind::Log) {
            records.push_back(arrival.record);
        }
    }
    return records;
}

bool holds(const std::vector<LogRecord>& records, int severity) {
    return std::any_of(records.begin(), records.end(),
                       [&](const LogRecord& record) { return record.severity == severity; });
}

void writesLinesOfOneForm(Trial& trial) {
    for (const LogRecord& record : chattyLife(trial)) {
        expect(record.severity != unknownSeverity, joined({"a line of another form: ", record.message}));
        expect(!record.function.empty() && !record.file.empty() && record.line > 0,
               joined({"a line that does not tell where it comes from: ", record.message}));
    }
}

void logsEverySeverity(Trial& trial) {
    const std::vector<LogRecord> records = chattyLife(trial);
    for (const int severity : {0, 1, 2, 3}) {
        expect(holds(records, severity), joined({"nothing of severity ", std::to_string(severity)}));
    }
}

/// What a settings file says, and the lowest severity that is logged then.
struct Setting {
    std::string_view text;
    int lowest;
};
constexpr std::array logSettings{
    Setting{R"({"global":"DBG_INFO"})", 1},
    Setting{R"({"global":"DBG_WARN"})", 2},
    Setting{R"({"global":"DBG_ERROR"})", 3},
    Setting{R"({"global":"DBG_TRACE","sources":{"kes_wren_presentation_plugin":"DBG_ERROR"}})", 3},
    Setting{R"({"global":"DBG_ERROR","sources":{"kes_wren_presentation_plugin":"DBG_WARN"}})", 2},
    Setting{R"({"global":"DBG_WARN","sources":{"other":"DBG_TRACE"}})", 2},
    Setting{R"({"global":"dbg_error"})", 0},
    Setting{R"({"global":7})", 0},
    Setting{R"({"global":"DBG_WARN","sources":{"kes_wren_presentation_plugin":"loud"}})", 2},
    Setting{"{}", 0},
};

/// One setting a check: settings are read when the module is loaded, and on some systems a module that has
/// made a plugin stays loaded until the process ends.
template <std::size_t index>
void obeys(Trial& trial) {
    const Setting& setting = logSettings.at(index);
    trial.reload(std::string(setting.text));
    const std::vector<LogRecord> records = chattyLife(trial);
    for (const int severity : {0, 1, 2, 3}) {
        expectEqual(joined({"lines of severity ", std::to_string(severity), " with ", setting.text}),
                    holds(records, severity), severity >= setting.lowest);
    }
}

void standsBrokenSettings(Trial& trial) {
    for (const char* settings : {"", "{", "[]", "no json", "\xff\xfe", "{\"global\":\"DBG_ERROR\"} x",
                                 "{\"channels\":7,\"sources\":[]}", "{\"channels\":{\"\":\"DBG_ERROR\"}}"}) {
        trial.reload(settings);
        trial.begin();
        trial.expectUsable();
    }
}

/// "severity function: message" of a step, which has to hold a line.
void expectLine(const Step& step, std::string_view line) { expectContains("the log", step.logged(0), line); }

void logsItsLife(Trial& trial) {
    const auto line = [](std::string_view severity, std::string_view function, std::string_view verb) {
        return joined({severity, " PresentationPluginImpl::", function, ": ", verb,
                       " WREN Presentation Plugin Version '5.1.11.2143'"});
    };
    const Step made = trial.step([&] {
        trial.create();
        return 0;
    });
    expectLine(made, line("0", "PresentationPluginImpl", "Created"));
    expectLine(trial.registerHost(), line("0", "Register", "Registering"));
    expectLine(trial.start(), line("1", "Start", "Starting"));
    expectLine(trial.stop(), line("1", "Stop", "Stopping"));
    expectLine(trial.unregister(), line("0", "Unregister", "Unregistering"));
    const Step end = trial.dispose();
    expectLine(end, line("0", "~PresentationPluginImpl", "Destroying"));
    expectLine(end, line("0", "~PresentationPluginImpl", "Destroyed"));
}

void logsRefusals(Trial& trial) {
    trial.create();
    expectEqual("the log of a refused Start", trial.start().logged(2),
                {"2 PresentationPluginImpl::Start: Unexpected state transition"});
    trial.begin();
    expectEqual("the log of a text that is no event", trial.event("no event").logged(2),
                {"3 PresentationPluginImpl::EventNotification: Could not validate an incoming event "
                 "notification: no event"});
    expectEqual("the log of an unknown event", trial.event("<vtguiEvent id=\"nobody\"/>").logged(2),
                {"3 PresentationPluginImpl::EventNotification: Received an unknown event: EVENT_INVALID from "
                 "id= nobody"});
    expectEqual("the log of a broken status", trial.deliver(wrensim_status_notification, "{").logged(2),
                {"3 PresentationPluginImpl::StatusNotification: Failed to parse status notification: "
                 "incomplete JSON"});
    expectEqual("the log of a status that is none",
                trial.deliver(wrensim_status_notification, "{}").logged(2),
                {"3 PresentationPluginImpl::StatusNotification: Failed to parse JSON status notification: "
                 "BadParameter"});
}

void logsBackendFaults(Trial& trial) {
    trial.create();
    trial.registerHost();
    trial.backend().setResult("Start", 6, 1);
    expectEqual("the log of a start that fails", trial.start().logged(2),
                {"3 PresentationPluginImpl::actionStartApi: Couldn't start QUILL API: NotInitialized"});
    trial.backend().setResult("Start", 9, 1);
    expectEqual("the log of a result without a name", trial.start().logged(2),
                {"3 PresentationPluginImpl::actionStartApi: Couldn't start QUILL API: "});
}

void tracesItsMachine(Trial& trial) {
    const Step started = trial.begin();
    expectLine(started, "0 InitUI_a::operator (): state machine action InitUI_a");
    expectLine(started, "0 StartApi_a::operator (): state machine action StartApi_a");
    expectLine(started,
               "0 QuillSmlLogger_t::log_state_change: [struct PresentationPlugin_s][transition] class "
               "Registered_s -> class Starting_s");
}

constexpr Check logTable[] = {
    {"log.form", "Every line tells its severity, its function and where that stands.", Through::Both,
     &writesLinesOfOneForm},
    {"log.severities", "With everything let through, lines of every severity come.", Through::Both,
     &logsEverySeverity},
    {"log.global-info", "The settings file's level keeps traces out.", Through::Both, &obeys<0>},
    {"log.global-warning", "It keeps information out as well.", Through::Both, &obeys<1>},
    {"log.global-error", "It keeps everything but errors out.", Through::Both, &obeys<2>},
    {"log.source-lower", "The level of the module's source beats the global one to log less.", Through::Both,
     &obeys<3>},
    {"log.source-higher", "The level of the module's source beats the global one to log more.", Through::Both,
     &obeys<4>},
    {"log.source-other", "The level of another source does not count.", Through::Both, &obeys<5>},
    {"log.level-case", "A level in another case is passed over.", Through::Both, &obeys<6>},
    {"log.level-kind", "A level of another kind is passed over.", Through::Both, &obeys<7>},
    {"log.source-unknown", "A source's level that is none leaves the global one.", Through::Both, &obeys<8>},
    {"log.no-settings", "Settings that say nothing let everything through.", Through::Both, &obeys<9>},
    {"log.broken-settings", "A settings file that is broken does no harm.", Through::Both,
     &standsBrokenSettings},
    {"log.life", "Every step of a plugin's life is logged with its version.", Through::Both, &logsItsLife},
    {"log.refusals", "What is refused is logged with its reason.", Through::Both, &logsRefusals},
    {"log.backend", "A failure of the backend is logged with its result's name, if that has one.",
     Through::Both, &logsBackendFaults},
    {"log.machine", "The machine's actions and transitions are traced.", Through::Both, &tracesItsMachine},
};

} // namespace

std::span<const Check> logChecks() { return logTable; }

} // namespace host::validate
