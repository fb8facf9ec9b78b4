#include "host/bundle/ModuleRun.h"

#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/ModuleInfo.h"
#include "host/OutputLines.h"
#include "host/PluginModule.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <exception>
#include <functional>
#include <iostream>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace host::bundle {
namespace {

namespace json = boost::json;

constexpr const char* callbacksName = "host";
constexpr std::uintptr_t hostHandle = 1;

/// Prints what happens as it happens. Any thread.
class Teller {
public:
    void tell(const char* what, json::value value) {
        using namespace std::chrono;
        const auto now = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
        const std::string line = json::serialize(json::object{{what, std::move(value)}, {"time", now}});
        const std::lock_guard lock(mutex);
        std::cout << line << std::endl;
    }

    /// Whether an operation was done; tells of it where not.
    bool isDone(std::int32_t result, const char* operation) {
        if (result != presentationDone) {
            std::string problem = operation;
            tell(told::problem, json::string(problem.append(" answered ").append(std::to_string(result))));
        }
        return result == presentationDone;
    }

private:
    std::mutex mutex;
};

/// The life of a plugin.
void run(const std::filesystem::path& file, PluginInterface way, std::chrono::seconds length,
         Teller& teller) {
    const LogTap log([&teller](const LogRecord& record) { teller.tell(told::output, logLine(record)); });
    const PluginModule module = loadModule(file, logLevels[0]);
    HostTranslator translator;
    HostCallbacks callbacks(
        [&teller](std::uintptr_t handle, const char* xml) {
            teller.tell(told::output, noticeLine(callbacksName, handle, xml));
        },
        [&teller](std::uintptr_t handle) { teller.tell(told::output, stopDoneLine(callbacksName, handle)); });
    const auto plugin = makePlugin(module, way);
    if (!plugin) {
        throw HostError("the module makes no plugin object");
    }
    if (teller.isDone(plugin->Register("", hostHandle, &callbacks, &translator), "Register") &&
        teller.isDone(plugin->Start(), "Start")) {
        std::this_thread::sleep_for(length);
    }
    teller.tell(told::atEnd, true);
    plugin->dispose(); // stops and unregisters it
}

/// Runs something, and tells under that word what keeps it from its end.
void tellOf(Teller& teller, const char* what, const std::function<void()>& something) {
    try {
        something();
    } catch (const std::exception& fault) {
        teller.tell(what, json::string(fault.what()));
    }
}

} // namespace

void printModuleRun(const std::filesystem::path& module, PluginInterface way,
                    std::optional<std::chrono::seconds> length) {
    Teller teller;
    if (length) {
        tellOf(teller, told::problem, [&] { run(module, way, *length, teller); });
    }
    tellOf(teller, told::module, [&] { teller.tell(told::module, jsonOf(examineModule(module, way))); });
}

} // namespace host::bundle
