// A long life in one process: wren_soak ENROLLMENTS DOCUMENTS DISPOSALS.
//
// Enrols and ends the enrollment again and again; delivers status documents from four threads of a backend to
// a slow host; disposes of plugins while eight threads deliver. Says what was lost, doubled, out of order or
// left behind, and exits with 1.

#include "tests/boundary/Scene.h"
#include "tests/support/Documents.h"
#include "tests/support/Holdings.h"
#include "tests/support/Latch.h"
#include "tests/support/QuietLog.h"

#include <boost/json/value.hpp>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstring>
#include <iostream>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

constexpr unsigned deliveringThreads = 4;
constexpr unsigned disposingThreads = 8;

/// What may be left over after all rounds, in bytes: the ups and downs of the buffers that are kept for use
/// again. A single object forgotten in each round would be far more.
constexpr std::size_t allowedGrowth = 64 * 1024;

/// The slow host reads one in so many notices so many times, while all others wait.
constexpr unsigned slowEvery = 64;
constexpr unsigned readings = 500;

void require(bool holds, const std::string& what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

/// Compares what is held after the work with what was held when it was warm.
class Ledger {
public:
    explicit Ledger(std::string_view ofWhat)
        : name(ofWhat)
        , warm(test::holdings()) {}

    void settle() const {
        const test::Holdings now = test::holdings();
        const std::size_t growth = now.bytes > warm.bytes ? now.bytes - warm.bytes : 0;
        std::cout << name << ": " << growth << " bytes more than when warm\n";
        require(growth <= allowedGrowth,
                name + ": the heap has grown by " + std::to_string(growth) + " bytes");
        require(now.files <= warm.files + WREN_ALLOWED_DESCRIPTORS,
                name + ": descriptors stay behind, " + std::to_string(now.files - warm.files));
        require(now.threads == warm.threads, name + ": threads stay behind");
    }

private:
    std::string name;
    test::Holdings warm;
};

// Enrollments.

void enrolAndEnd(test::Scene& scene, unsigned round) {
    require(scene.enrols(), "enrollment " + std::to_string(round) + " did not end as active");
    scene.play({"unenroll", "unenrollStarted", "notEnrolled", "unenrolled"});
}

void enrollments(unsigned rounds) {
    test::Scene scene;
    require(scene.step("start") == 0, "the plugin does not start");
    const unsigned warmUp = 10 + rounds / 10;
    for (unsigned round = 0; round < warmUp; ++round) {
        enrolAndEnd(scene, round);
    }
    const Ledger ledger("enrollments");
    for (unsigned round = 0; round < rounds; ++round) {
        enrolAndEnd(scene, round);
    }
    ledger.settle();
    require(scene.step("stop") == 0, "the plugin does not stop");
    require(scene.backend.count(test::BackendCall::InitiateEnrollment) == warmUp + rounds,
            "requests were lost");
}

// Documents.

/// Hears the copies that go to the host's log and the screens in between, and knows what must come.
class Auditor {
public:
    /// Called within each notice; the plugin tells one document after the other.
    void hear(std::string_view xml) {
        if (xml.find("<statusnotification>") != std::string_view::npos) {
            close();
            open(xml);
        } else if (xml.find("\"simple_status\"") != std::string_view::npos) {
            require(isChange && !isDrawn, "a screen without a change, or twice");
            isDrawn = true;
        }
    }

    /// The last document has to be complete, and all must have come.
    void settle(unsigned documentsOfEach) {
        close();
        for (const unsigned count : heard) {
            require(count == documentsOfEach, "documents were lost");
        }
        require(changes > 0 && changes < documentsOfEach * deliveringThreads, "all documents alike, or none");
    }

private:
    /// Text after a key of the raw document, quotes spelled as XML has them.
    static std::string_view valueOf(std::string_view xml, std::string_view key) {
        const std::size_t at = xml.find(key);
        require(at != std::string_view::npos, "the copy of a document lacks " + std::string(key));
        const std::string_view rest = xml.substr(at + key.size());
        return rest.substr(0, rest.find("&quot;"));
    }

    void open(std::string_view xml) {
        const std::string_view number = valueOf(xml, "soak&quot;:&quot;");
        const unsigned thread = static_cast<unsigned>(number[0] - '0');
        unsigned order = 0;
        std::from_chars(number.data() + 2, number.data() + number.size(), order);
        require(order == heard.at(thread)++, "documents of one thread are out of order");
        const std::string_view version = valueOf(xml, "version&quot;:&quot;");
        isChange = version != lastVersion;
        changes += isChange ? 1 : 0;
        isDrawn = false;
        lastVersion = version;
    }

    void close() const { require(isChange == isDrawn, "a change was not drawn"); }

    std::array<unsigned, deliveringThreads> heard{};
    std::string lastVersion;
    unsigned changes = 0;
    bool isChange = false;
    bool isDrawn = false;
};

/// A status that tells which it is; the decoders pass over what they don't know. One in three is no news to
/// the next.
std::string documentOf(unsigned thread, unsigned number) {
    const std::string version = std::to_string(number / 3 % 2);
    std::string name = std::to_string(thread);
    name.append("-").append(std::to_string(number));
    const auto document =
        test::with(test::enrolledStatusDocument(), "/version", boost::json::string(version));
    return test::textOf(test::with(document, "/soak", boost::json::string(name)));
}

/// Delivers from all threads at once.
void deliverAll(IQuillApiCallbacks& receiver, unsigned documentsOfEach) {
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < deliveringThreads; ++thread) {
        threads.emplace_back([&receiver, thread, documentsOfEach] {
            for (unsigned number = 0; number < documentsOfEach; ++number) {
                receiver.StatusNotification(documentOf(thread, number).c_str());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void documents(unsigned count) {
    test::Scene scene;
    std::optional<Auditor> auditor;
    std::string fault;
    unsigned notices = 0;
    unsigned long checksum = 0; ///< of what a slow host reads again and again
    scene.host.onNotice = [&](const char* xml) {
        const bool isSlow = ++notices % slowEvery == 0;
        for (unsigned reading = 0; isSlow && reading < readings; ++reading) {
            checksum = std::accumulate(xml, xml + std::strlen(xml), checksum);
        }
        try {
            if (auditor) {
                auditor->hear(xml);
            }
        } catch (const std::exception& failure) {
            fault = fault.empty() ? failure.what() : fault; // the plugin would take it for itself
        }
    };
    require(scene.step("start") == 0, "the plugin does not start");
    const auto round = [&](unsigned documentsOfEach) {
        scene.step("init");
        auditor.emplace();
        deliverAll(*scene.backend.receiver(), documentsOfEach);
        auditor->settle(documentsOfEach);
        require(fault.empty(), fault);
        auditor.reset();
    };
    round(std::max(30u, count / deliveringThreads / 10));
    const Ledger ledger("documents");
    round(std::max(30u, count / deliveringThreads));
    ledger.settle();
    require(scene.step("stop") == 0, "the plugin does not stop");
    std::cout << "checksum " << checksum << '\n'; // so that the reading is not left out
}

// Disposals.

/// The backend's threads end with the stop that the disposal brings, each after one more document that comes
/// too late.
void disposeWhileDelivering() {
    const std::string text = test::textOf(test::notEnrolledStatusDocument());
    test::Scene scene;
    require(scene.step("start") == 0, "the plugin does not start");
    const std::weak_ptr<IQuillApiCallbacks> receiver = scene.backend.receiver();
    std::atomic<bool> isStopped = false;
    std::atomic<bool> isGone = false;
    std::atomic<bool> isLate = false;
    scene.backend.hook = [&](test::BackendCall call, const char*) {
        isStopped = isStopped || call == test::BackendCall::Stop;
    };
    scene.host.onNotice = [&](const char*) { isLate = isLate || isGone; };
    test::Latch isUnderWay(disposingThreads);
    const auto deliver = [&] {
        if (const auto held = receiver.lock()) {
            held->StatusNotification(text.c_str());
        }
    };
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < disposingThreads; ++thread) {
        threads.emplace_back([&] {
            deliver();
            isUnderWay.count_down();
            while (!isStopped) {
                deliver();
            }
            deliver();
        });
    }
    isUnderWay.wait();
    scene.plugin.reset();
    isGone = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    require(!isLate, "the host was called after the plugin had gone");
    require(scene.host.stops == 1, "a running plugin tells of its end once");
    require(scene.backend.connectionCount() == 0, "a connection stays behind");
}

void disposals(unsigned rounds) {
    for (unsigned round = 0; round < 10 + rounds / 10; ++round) {
        disposeWhileDelivering();
    }
    const Ledger ledger("disposals");
    for (unsigned round = 0; round < rounds; ++round) {
        disposeWhileDelivering();
    }
    ledger.settle();
}

unsigned numberOf(const char* text) {
    unsigned number = 0;
    const char* const end = text + std::strlen(text);
    require(std::from_chars(text, end, number).ptr == end && number > 0,
            std::string("not a number: ") + text);
    return number;
}

} // namespace

int main(int count, char** arguments) {
    try {
        require(count == 4, "usage: wren_soak ENROLLMENTS DOCUMENTS DISPOSALS");
        const test::QuietLog quiet;
        enrollments(numberOf(arguments[1]));
        documents(numberOf(arguments[2]));
        disposals(numberOf(arguments[3]));
        std::cout << "nothing lost\n";
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << "wren_soak: " << failure.what() << '\n';
        return 1;
    }
}
