#include "host/Commands.h"
#include "host/HostCallbacks.h"
#include "host/HostError.h"
#include "host/Interrupt.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/PluginModule.h"
#include "host/ScreenModel.h"
#include "host/ScreenPrinter.h"
#include "host/Text.h"

#include <iostream>
#include <mutex>

namespace host {
namespace {

constexpr std::uintptr_t hostHandle = 1;

/// The terminal, as the threads of the plugin share it.
class Watcher {
public:
    void onNotice(const char* xml) {
        const std::lock_guard lock(mutex);
        printer.print(screen.apply(xml), screen);
    }

    void onLog(const LogRecord& record) {
        const std::lock_guard lock(mutex);
        std::cout << "log "
                  << "TIWE?"[record.severity] << ' ' << record.function << ": " << record.message
                  << std::endl;
    }

private:
    std::mutex mutex;
    ScreenModel screen;
    ScreenPrinter printer{std::cout};
};

void require(bool isDone, const char* what) {
    if (!isDone) {
        throw HostError(std::string("the plugin could not be ") + what);
    }
}

} // namespace

void watchScreen(const WatchOptions& options) {
    Interrupt interrupt;
    const bool showsLog = !options.logLevel.empty();
    Watcher watcher;
    const LogTap log([&](const LogRecord& record) {
        if (showsLog) {
            watcher.onLog(record);
        }
    });
    const PluginModule module =
        showsLog ? loadModule(options.module, options.logLevel) : PluginModule(options.module);
    HostTranslator translator;
    HostCallbacks callbacks([&](std::uintptr_t, const char* xml) { watcher.onNotice(xml); },
                            [](std::uintptr_t) {});
    const OwnedPlugin plugin(module.create(presentationInterfaceName), PluginOwner(module));
    require(plugin != nullptr, "created");
    require(plugin->Register("", hostHandle, &callbacks, &translator) == presentationDone, "registered");
    require(plugin->Start() == presentationDone, "started");
    interrupt.wait();
    require(plugin->Stop(0) == presentationDone, "stopped");
    require(plugin->Unregister() == presentationDone, "unregistered");
}

} // namespace host
