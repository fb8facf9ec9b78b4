// Loads a module into a process that holds nothing of it yet: wren-bench-load MODULE
// Prints the microseconds from before the loading to the first notice, and the kilobytes of resident memory
// by which the process has grown when the module is at rest after its first status.

#include "bench/SilentBackend.h"
#include "host/LogLevel.h"
#include "host/PluginModule.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* statusDocument =
    R"({"version":"1","state":"init","enrollment_choices":[],"enrollments":[]})";

class WaitingHost final : public IPresentationCB, public ITranslator {
public:
    std::int32_t Notify(std::uintptr_t, const char*) override {
        if (firstNotice == Clock::time_point()) {
            firstNotice = Clock::now();
        }
        return 0;
    }
    std::int32_t StopDone(std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }

    Clock::time_point firstNotice;
};

long residentKilobytes() {
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

void run(const char* file) {
    const host::LogLevelFolder folder("DBG_INFO");
    WaitingHost host;
    const long before = residentKilobytes();
    const Clock::time_point begin = Clock::now();
    const host::PluginModule module{file};
    const host::OwnedPlugin plugin(module.create(presentationInterfaceName), host::PluginOwner(module));
    if (plugin == nullptr || plugin->Register("", 1, &host, &host) != presentationDone ||
        plugin->Start() != presentationDone) {
        throw std::runtime_error("the plugin does not start");
    }
    bench::takeReceiver()->StatusNotification(statusDocument);
    const long after = residentKilobytes();
    std::printf("%.1f\n%ld\n", std::chrono::duration<double, std::micro>(host.firstNotice - begin).count(),
                after - before);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: wren-bench-load MODULE\n", stderr);
        return 2;
    }
    try {
        run(argv[1]);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "wren-bench-load: %s\n", failure.what());
        return 1;
    }
    return 0;
}
