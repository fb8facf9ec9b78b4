// What Register takes and refuses, and whom the plugin then calls.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <limits>

namespace host::validate {
namespace {

std::int32_t registering(Trial& trial, const char* arguments, HostCallbacks* callbacks,
                         HostTranslator* translator) {
    return trial.plugin().Register(arguments, Trial::usualHandle, callbacks, translator);
}

void refusesNullArguments(Trial& trial) {
    trial.create();
    expectEqual("Register", registering(trial, nullptr, &trial.callbacks(), &trial.translator()), -4);
    expectEqual("Start afterwards", trial.start().result, -10);
}

void refusesNullCallbacks(Trial& trial) {
    trial.create();
    expectEqual("Register", registering(trial, "", nullptr, &trial.translator()), -4);
    expectEqual("Start afterwards", trial.start().result, -10);
}

void refusesANullTranslator(Trial& trial) {
    trial.create();
    expectEqual("Register", registering(trial, "", &trial.callbacks(), nullptr), -4);
    expectEqual("Start afterwards", trial.start().result, -10);
}

void takesAnyArguments(Trial& trial) {
    const std::string long_(100'000, 'x');
    for (const char* arguments : {"", "a=b", "<xml/>", "%s%n", "\xff\xfe", long_.c_str()}) {
        trial.create();
        expectEqual("Register", registering(trial, arguments, &trial.callbacks(), &trial.translator()), 0);
    }
}

void drawsNothingYet(Trial& trial) {
    trial.create();
    expectEqual("what Register causes", trial.registerHost().order(), {});
}

void refusesASecondTime(Trial& trial) {
    trial.create();
    trial.registerHost();
    std::size_t heard = 0;
    HostCallbacks second([&](std::uintptr_t, const char*) { ++heard; }, [&](std::uintptr_t) { ++heard; });
    expectEqual("the second Register", registering(trial, "", &second, &trial.translator()), -10);
    expect(!trial.start().screens().empty(), "the first callbacks hear nothing");
    trial.stop();
    expectEqual("calls of the second callbacks", static_cast<std::int64_t>(heard), 0);
}

void refusesASecondTimeWhileItRuns(Trial& trial) {
    trial.begin();
    const Step again = trial.registerHost(99);
    expectEqual("Register while started", again.result, -10);
    expectEqual("what it causes", again.order(), {});
    for (const Arrival& arrival : trial.status(enrolledDocument()).arrivals) {
        if (arrival.kind == Arrival::Kind::Notice) {
            expectEqual("the handle", static_cast<std::int64_t>(arrival.handle), 7);
        }
    }
}

void passesTheHandleBack(Trial& trial) {
    constexpr std::uintptr_t greatest = std::numeric_limits<std::uintptr_t>::max();
    for (const std::uintptr_t handle : {std::uintptr_t{0}, std::uintptr_t{1}, greatest, greatest / 2 + 1}) {
        trial.create();
        expectEqual("Register", trial.registerHost(handle).result, 0);
        Step life = trial.start();
        const Step end = trial.stop();
        life.arrivals.insert(life.arrivals.end(), end.arrivals.begin(), end.arrivals.end());
        for (const Arrival& arrival : life.arrivals) {
            const bool isCallback =
                arrival.kind == Arrival::Kind::Notice || arrival.kind == Arrival::Kind::StopDone;
            expect(!isCallback || arrival.handle == handle, "a callback passes another handle");
        }
    }
}

void forgetsTheHost(Trial& trial) {
    trial.begin();
    trial.stop();
    expectEqual("Unregister", trial.unregister().result, 0);
    expectEqual("what a document causes", trial.status(enrolledDocument()).order(), {});
    expectEqual("what an event causes", trial.press("quill_tile_details_action_btn").order(), {});
}

void takesAnotherHost(Trial& trial) {
    trial.begin();
    trial.stop();
    trial.unregister();
    std::size_t notices = 0;
    HostCallbacks second([&](std::uintptr_t handle, const char*) { notices += handle == 9 ? 1 : 0; },
                         [](std::uintptr_t) {});
    expectEqual("Register again", trial.plugin().Register("", 9, &second, &trial.translator()), 0);
    expectEqual("notices at the first host", trial.start().screens(), {});
    expect(notices > 0, "the second host hears nothing");
    expectEqual("Stop", trial.stop().result, 0);
}

constexpr Check registrationTable[] = {
    {"register.null-arguments", "Register refuses null arguments with -4.", Through::Both,
     &refusesNullArguments},
    {"register.null-callbacks", "Register refuses null callbacks with -4.", Through::Cpp,
     &refusesNullCallbacks},
    {"register.null-translator", "Register refuses a null translator with -4.", Through::Cpp,
     &refusesANullTranslator},
    {"register.any-arguments", "Register takes any text, the empty one included.", Through::Both,
     &takesAnyArguments},
    {"register.silent", "Register draws nothing.", Through::Both, &drawsNothingYet},
    {"register.twice", "A second Register is refused and the first callbacks stay.", Through::Cpp,
     &refusesASecondTime},
    {"register.while-started", "Register of a running plugin is refused and its handle stays.", Through::Both,
     &refusesASecondTimeWhileItRuns},
    {"register.handle", "Every callback passes the handle of Register, whatever it is.", Through::Both,
     &passesTheHandleBack},
    {"register.forgotten", "After Unregister nobody is called.", Through::Both, &forgetsTheHost},
    {"register.again", "After Unregister another host may register, and it alone is called.", Through::Both,
     &takesAnotherHost},
};

} // namespace

std::span<const Check> registrationChecks() { return registrationTable; }

} // namespace host::validate
