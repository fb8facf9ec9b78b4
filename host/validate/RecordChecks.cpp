// The record of C functions.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <cstring>

namespace host::validate {
namespace {

PresentationPluginCbasedMethods& recordOf(Trial& trial) { return *trial.create().record(); }

void tellsItsSize(Trial& trial) {
    expectEqual("the record's size", static_cast<std::int64_t>(recordOf(trial).size),
                sizeof(PresentationPluginCbasedMethods));
}

void holdsEveryFunction(Trial& trial) {
    const PresentationPluginCbasedMethods& record = recordOf(trial);
    constexpr std::size_t words = sizeof record / sizeof(std::uintptr_t);
    std::uintptr_t fields[words];
    std::memcpy(fields, &record, sizeof record);
    for (std::size_t index = 0; index < words; ++index) {
        expect(fields[index] != 0, joined({"field ", std::to_string(index + 1), " is null"}));
    }
}

void refusesANullHandle(Trial& trial) {
    const auto nobody = behindNullHandle(recordOf(trial));
    std::uint32_t size = 3;
    char buffer[3] = "xy";
    expectEqual("SupportsInterface", nobody->SupportsInterface(presentationInterfaceName, 3), false);
    expectEqual("IsUIEnabled", nobody->IsUIEnabled(), false);
    expectEqual("IsMultiUserModeEnabled", nobody->IsMultiUserModeEnabled(), false);
    expectEqual("Register", nobody->Register("", 1, &trial.callbacks(), &trial.translator()), -10);
    expectEqual("Start", nobody->Start(), -10);
    expectEqual("Stop", nobody->Stop(0), -10);
    expectEqual("Unregister", nobody->Unregister(), -10);
    expectEqual("GetIdentity", nobody->GetIdentity(buffer, &size), -10);
    expectEqual("GetLabel", nobody->GetLabel(buffer, &size), -10);
    expectEqual("GetDisplayVersion", nobody->GetDisplayVersion(buffer, &size), -10);
    expectEqual("Encrypt", nobody->Encrypt(0, 0, 0, 0), -10);
    expectEqual("Decrypt", nobody->Decrypt(0, 0, buffer, &size), -10);
    expectEqual("EventNotification", nobody->EventNotification("<vtguiEvent id=\"x\"/>"), -10);
    expectEqual("GetPendingApprovalData", nobody->GetPendingApprovalData(0, 0), -10);
    expectEqual("ApprovalEventNotification", nobody->ApprovalEventNotification(0), -10);
    expectEqual("the size that was passed", size, 3);
    expectEqual("the buffer that was passed", std::string_view(buffer), "xy");
}

void servesNobody(Trial& trial) {
    PluginObject& plugin = trial.create();
    const Step registered = trial.step([&] { return plugin.Register("", 7, nullptr, nullptr); });
    expectEqual("Register with null records", registered.result, 0);
    expectEqual("Start", trial.start().result, 0);
    trial.status(notEnrolledDocument());
    expectEqual("requests", trial.press("quill_tile_enroll_action_btn").requests(),
                {R"(InitiateEnrollment {"version":"1","enrollment_choice_id":"choice-1",)"
                 R"("enrollment_context":""})"});
    expectEqual("Stop", trial.stop().result, 0);
}

void refusesUnknownReasons(Trial& trial) {
    trial.begin();
    for (const std::uint32_t reason : {2U, 3U, 0x80000000U, 0xFFFFFFFFU}) {
        const Step stopped = trial.stop(reason);
        expectEqual("Stop with an unknown reason", stopped.result, -10);
        expectEqual("what it causes", stopped.order(), {});
    }
    expectEqual("Stop afterwards", trial.stop(1).result, 0);
}

void disposesOnce(Trial& trial) {
    PresentationPluginCbasedMethods* record = trial.module().createCbased(cBasedPresentationInterfaceName);
    expect(trial.module().disposeCbased(record), "the first disposal is refused");
    expect(!trial.module().disposeCbased(record), "the second disposal is not refused");
}

void leavesForeignRecordsAlone(Trial& trial) {
    PresentationPluginCbasedMethods copy = recordOf(trial);
    expect(!trial.module().disposeCbased(&copy), "a copy of a record is disposed of");
    expect(!trial.module().disposeCbased(nullptr), "a null record is disposed of");
    expectEqual("Register afterwards", trial.registerHost().result, 0);
}

void keepsTheRecordsOfARefusedUnregister(Trial& trial) {
    trial.begin();
    expectEqual("Unregister while started", trial.unregister().result, -10);
    expect(!trial.status(notEnrolledDocument()).screens().empty(), "no notice comes any more");
}

void usesTheLatestRecords(Trial& trial) {
    trial.begin();
    std::size_t notices = 0;
    std::uintptr_t handle = 0;
    HostCallbacks second(
        [&](std::uintptr_t given, const char*) {
            ++notices;
            handle = given;
        },
        [](std::uintptr_t) {});
    const Step again = trial.step([&] { return trial.plugin().Register("", 9, &second, nullptr); });
    expectEqual("the second Register", again.result, -10);
    expectEqual("notices at the first records", trial.status(notEnrolledDocument()).screens(), {});
    expect(notices > 0, "the second records hear nothing");
    expectEqual("the handle", static_cast<std::int64_t>(handle), 7);
    expectEqual("Stop", trial.stop().result, 0);
}

constexpr Check recordTable[] = {
    {"record.size", "The record tells its size.", Through::C, &tellsItsSize},
    {"record.functions", "Every field of the record is filled.", Through::C, &holdsEveryFunction},
    {"record.null-handle", "Every function refuses a null handle and touches nothing.", Through::C,
     &refusesANullHandle},
    {"record.null-records", "A host that registers null records is served and hears nothing.", Through::C,
     &servesNobody},
    {"record.stop-reason", "Stop refuses a reason above 1 and the plugin runs on.", Through::C,
     &refusesUnknownReasons},
    {"record.dispose-twice", "A record is disposed of once.", Through::C, &disposesOnce},
    {"record.foreign", "A record that the module did not give out is left alone.", Through::C,
     &leavesForeignRecordsAlone},
    {"record.refused-unregister", "A refused Unregister keeps the host's records in use.", Through::C,
     &keepsTheRecordsOfARefusedUnregister},
    {"record.latest-register", "The records of the latest Register are called, also of a refused one.",
     Through::C, &usesTheLatestRecords},
};

} // namespace

std::span<const Check> recordChecks() { return recordTable; }

} // namespace host::validate
