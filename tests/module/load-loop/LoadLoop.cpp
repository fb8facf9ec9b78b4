// Loads the module, uses it from many threads and unloads it, again and again, in a process that keeps
// nothing of it in between: LoadLoop ROUNDS. Some of the threads live on through all rounds, and some end
// just after the module has gone, so that whatever the module left behind on a thread would run into freed
// code.
//
// GLIBC_TUNABLES=glibc.malloc.tcache_count=0 has the heap counted to the byte: without it the C library's
// store for each thread, which counts as in use, hides small leaks or looks like one.
//
// Says what is wrong and exits with 1; what goes wrong at the process's own end shows in its exit code.

#include "host/BackendControls.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/PluginModule.h"
#include "tests/module/load-loop/LoopSystem.h"
#include "tests/support/Holdings.h"
#include "tests/support/QuietHost.h"

#include <atomic>
#include <charconv>
#include <condition_variable>
#include <cstring>
#include <functional>
#include <iostream>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr unsigned workerCount = 8;
constexpr unsigned passingThreadCount = 4;
/// Until all that is made once for the process has been made.
constexpr unsigned warmUpRounds = 50;

/// What may be left of a round on average, in bytes: less than the smallest thing that one could forget.
constexpr double allowedGrowthOfARound = 8;
/// The heap's own ups and downs, over all rounds.
constexpr std::size_t allowedMappings = 8;

constexpr const char* statusDocument =
    R"({"version":"1.0","service_status":"started","enrollment_status":{"status":"not_enrolled"}})";

/// Calls that reach into every corner that could leave something on a thread: parsing, logging, notices.
void use(IPresentationPluginV3& plugin) {
    char text[128];
    std::uint32_t size = sizeof text;
    plugin.GetIdentity(text, &size);
    plugin.EventNotification("<vtguiEvent id=\"quill_tile_enroll_action_btn_OnPress\"/>");
    plugin.EventNotification("<vtguiEvent");
    plugin.EventNotification("<vtguiEvent id=\"quill_tile_cancel_action_btn_OnPress\"/>");
}

/// Where threads wait for each other, again and again. The standard library's barrier loses a wake-up now and
/// then where the system has no wait for a value, as on Windows.
class Meeting {
public:
    explicit Meeting(unsigned ofThreads)
        : count(ofThreads) {}

    /// Returns when all have come.
    void arriveAndWait() {
        std::unique_lock lock(mutex);
        const unsigned meeting = meetings;
        if (++arrived < count) {
            complete.wait(lock, [&] { return meetings != meeting; });
            return;
        }
        arrived = 0;
        ++meetings;
        complete.notify_all();
    }

private:
    const unsigned count;
    unsigned arrived = 0;
    unsigned meetings = 0;
    std::mutex mutex;
    std::condition_variable complete;
};

/// Threads that work on a plugin whenever there is one, and live as long as this object.
class Workers {
public:
    Workers() {
        for (unsigned i = 0; i < workerCount; ++i) {
            threads.emplace_back([this] { run(); });
        }
    }
    ~Workers() {
        work(nullptr);
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    /// Every thread uses the plugin once; returns when all have.
    void work(IPresentationPluginV3* on) {
        plugin = on;
        gate.arriveAndWait();
        if (on != nullptr) {
            gate.arriveAndWait();
        }
    }

private:
    void run() {
        for (;;) {
            gate.arriveAndWait();
            if (plugin == nullptr) {
                return;
            }
            use(*plugin);
            gate.arriveAndWait();
        }
    }

    Meeting gate{workerCount + 1};
    IPresentationPluginV3* plugin = nullptr; ///< changes only while all threads wait
    std::vector<std::thread> threads;
};

/// Threads that use the plugin once and end when they are told to, after the module has gone.
class PassingThreads {
public:
    explicit PassingThreads(IPresentationPluginV3& plugin) {
        for (unsigned i = 0; i < passingThreadCount; ++i) {
            threads.emplace_back([this, &plugin] {
                use(plugin);
                used.arriveAndWait();
                end.arriveAndWait();
            });
        }
        used.arriveAndWait();
    }
    ~PassingThreads() {
        end.arriveAndWait();
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

private:
    Meeting used{passingThreadCount + 1};
    Meeting end{passingThreadCount + 1};
    std::vector<std::thread> threads;
};

/// One life of the module.
/// @return what is wrong; empty if nothing is
std::string runRound(Workers& workers) {
    test::QuietHost counting;
    std::optional<PassingThreads> passing;
    {
        const host::PluginModule module(host::defaultModulePath());
        const host::BackendControls backend;
        backend.setQuiet(true);
        {
            const host::OwnedPlugin plugin(module.create("com.norvane.vantor.presentation"),
                                           host::PluginOwner(module));
            if (plugin == nullptr || plugin->Register("", 1, &counting, &counting) != 0 ||
                plugin->Start() != 0) {
                return "the plugin does not start";
            }
            backend.deliverAndWait(0, wrensim_status_notification, statusDocument);
            workers.work(plugin.get());
            passing.emplace(*plugin);
            if (plugin->Stop(0) != 0 || plugin->Unregister() != 0) {
                return "the plugin does not stop";
            }
        }
        backend.forgetReceivers();
    }
    if (test::moduleIsLoaded()) {
        return "the module is still there";
    }
    passing.reset();
    return counting.notices > 0 ? "" : "no notice came";
}

std::string compare(const test::Holdings& before, const test::Holdings& after, unsigned rounds) {
    const double growth = (static_cast<double>(after.bytes) - static_cast<double>(before.bytes)) / rounds;
    std::cout << "heap " << before.bytes << " -> " << after.bytes << " bytes, " << growth
              << " a round; files " << before.files << " -> " << after.files << "; threads " << before.threads
              << " -> " << after.threads << "; mappings " << before.regions << " -> " << after.regions
              << "; slots " << before.slots << " -> " << after.slots << '\n';
    if (after.files > before.files + test::allowedFiles || after.threads > before.threads ||
        after.slots > before.slots) {
        return "files, threads or slots of threads are left behind";
    }
    if (before.bytes == 0) {
        return ""; // a sanitizer's own heap, which maps as it likes and finds leaks by itself
    }
    if (growth > allowedGrowthOfARound) {
        return "the heap grows";
    }
    return after.regions > before.regions + allowedMappings ? "mappings are left behind" : "";
}

std::string loop(unsigned rounds) {
    const host::LogLevelFolder folder("DBG_TRACE");
    Workers workers;
    std::optional<test::Holdings> before;
    for (unsigned round = 0; round < rounds; ++round) {
        if (round == warmUpRounds) {
            before = test::holdings();
        }
        if (const std::string fault = runRound(workers); !fault.empty()) {
            return fault + " in round " + std::to_string(round);
        }
    }
    return before ? compare(*before, test::holdings(), rounds - warmUpRounds) : "";
}

} // namespace

int main(int argc, char** argv) {
    unsigned rounds = 0;
    if (argc != 2 || std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), rounds).ec != std::errc()) {
        std::cerr << "usage: LoadLoop ROUNDS\n";
        return 2;
    }
    std::atomic<unsigned long> lines = 0;
    const host::LogTap log([&lines](const host::LogRecord&) { ++lines; });
    const std::string fault = loop(rounds);
    if (!fault.empty() || lines == 0) {
        std::cerr << (fault.empty() ? "nothing was logged" : fault) << '\n';
        return 1;
    }
    std::cout << rounds << " rounds, " << lines << " lines logged\n";
    return 0;
}
