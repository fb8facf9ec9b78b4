// What the module exports, and how its objects are made and disposed of.
#include "host/ExportedSymbols.h"
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <algorithm>
#include <array>

namespace host::validate {
namespace {

constexpr std::array functionNames{"GetAvailableInterfaces", "CreatePlugin", "DisposePlugin",
                                   "CreateCbasedPlugin", "DisposeCbasedPlugin"};

void exportsItsFunctions(Trial& trial) {
    const std::vector<std::string> symbols = exportedSymbols(trial.moduleFile());
    for (const char* name : functionNames) {
        expectContains("exports", symbols, name);
    }
}

Lines entriesOf(const PluginInterfaceList& list) {
    Lines entries;
    for (std::int32_t i = 0; i < list.count; ++i) {
        entries.push_back(joined({list.entries[i].name, " ", std::to_string(list.entries[i].version)}));
    }
    return entries;
}

void offersTwoInterfaces(Trial& trial) {
    expectEqual("interfaces", entriesOf(trial.module().interfaces()),
                {"com.norvane.vantor.presentation 3", "c_com.norvane.vantor.presentation 3"});
}

void keepsTheListInPlace(Trial& trial) {
    const PluginInterfaceList before = trial.module().interfaces();
    const Lines entries = entriesOf(before);
    trial.begin();
    trial.dispose();
    const PluginInterfaceList after = trial.module().interfaces();
    expect(before.entries == after.entries, "the list stands elsewhere after a plugin's life");
    expectEqual("interfaces after a plugin's life", entriesOf(after), entries);
}

std::string_view ownName(const Trial& trial) {
    return trial.way() == PluginInterface::C ? cBasedPresentationInterfaceName : presentationInterfaceName;
}

void expectRefused(Trial& trial, const char* name) {
    expect(makePlugin(trial.module(), trial.way(), name) == nullptr,
           joined({"an object is made for ", name != nullptr ? name : "a null name"}));
}

void refusesNoName(Trial& trial) { expectRefused(trial, nullptr); }

void refusesTheOtherName(Trial& trial) {
    expectRefused(trial, trial.way() == PluginInterface::C ? presentationInterfaceName
                                                           : cBasedPresentationInterfaceName);
}

void refusesAnotherCase(Trial& trial) {
    std::string name(ownName(trial));
    name.back() = 'N';
    expectRefused(trial, name.c_str());
    name = ownName(trial);
    name.front() = 'C';
    expectRefused(trial, name.c_str());
}

void refusesLongerAndShorterNames(Trial& trial) {
    const std::string name(ownName(trial));
    for (const std::string& wrong :
         {name + " ", name + "x", name.substr(0, name.size() - 1), name.substr(1), std::string()}) {
        expectRefused(trial, wrong.c_str());
    }
}

void makesNothingWithoutFactory(Trial& trial) {
    for (const std::uint32_t result : {1U, 8U, 29U}) {
        trial.backend().setResult("GetQuillApiFactory", result, 1);
        expectRefused(trial, std::string(ownName(trial)).c_str());
    }
    trial.create();
}

void standsAnUnknownFactoryResult(Trial& trial) {
    for (const std::uint32_t result : {9U, 4711U, 0xFFFFFFFFU}) {
        trial.backend().setResult("GetQuillApiFactory", result, 1);
        expectRefused(trial, std::string(ownName(trial)).c_str());
    }
    trial.create();
}

void contactsNobodyUntilStart(Trial& trial) {
    const Step made = trial.step([&] {
        trial.create();
        return trial.plugin().Register("", Trial::usualHandle, &trial.callbacks(), &trial.translator());
    });
    expectEqual("what reaches backend and host", made.order(), {"request GetQuillApiFactory"});
}

void makesSeveralObjects(Trial& trial) {
    trial.begin();
    const std::unique_ptr<PluginObject> other = makePlugin(trial.module(), trial.way());
    expect(other != nullptr, "no second object is made");
    const Step early = trial.step([&] { return other->Start(); });
    expectEqual("Start of an object that was not registered", early.result, presentationFailed);
    std::size_t notices = 0;
    HostCallbacks own([&](std::uintptr_t, const char*) { ++notices; }, [](std::uintptr_t) {});
    expectEqual("Register of the second object", other->Register("", 9, &own, &trial.translator()), 0);
    const Step started = trial.step([&] { return other->Start(); });
    expectEqual("Start of the second object", started.result, 0);
    expectEqual("notices of the second object at the first one's host", started.screens(), {});
    expect(notices > 0, "the second object's host hears nothing");
    expectEqual("Stop of the second object", other->Stop(0), 0);
    expectEqual("Stop of the first object", trial.stop().result, 0);
}

void disposesOfNothing(Trial& trial) {
    expect(disposeOfNull(trial.module(), PluginInterface::Cpp), "DisposePlugin of null is not true");
}

void saysThatItDisposes(Trial& trial) {
    trial.create();
    expectEqual("the answer of the dispose function", trial.dispose().result, 1);
}

void disposesOfAnUnregisteredObject(Trial& trial) {
    trial.create();
    expectEqual("what the end causes", trial.dispose().order(), {});
}

void disposesOfARegisteredObject(Trial& trial) {
    trial.create();
    trial.registerHost();
    expectEqual("what the end causes", trial.dispose().order(), {});
}

void disposesOfARunningObject(Trial& trial) {
    trial.begin();
    expectEqual("what the end causes", trial.dispose().order(), {"request Stop", "stop done"});
}

void disposesInMidFlow(Trial& trial) {
    for (int round = 0; round < 3; ++round) {
        trial.begin();
        trial.status(notEnrolledDocument());
        trial.press("quill_tile_enroll_action_btn");
        trial.enrollment("started");
        trial.login();
        expectEqual("what the end causes", trial.dispose().order(), {"request Stop", "stop done"});
    }
}

void loadsAgain(Trial& trial) {
    for (int round = 0; round < 3; ++round) {
        trial.begin();
        trial.status(enrolledDocument());
        trial.stop();
        trial.reload("{}");
    }
    trial.begin();
    trial.expectUsable();
}

void unloadsWhileItRuns(Trial& trial) {
    for (int round = 0; round < 3; ++round) {
        trial.begin();
        trial.status(enrolledDocument());
        trial.reload("{}"); // disposes of the running plugin, then unloads
    }
}

constexpr Check exportTable[] = {
    {"exports.functions", "The module exports its five functions by name.", Through::Both,
     &exportsItsFunctions},
    {"interfaces.entries", "The list holds the plain interface and the C interface, each in version 3.",
     Through::Both, &offersTwoInterfaces},
    {"interfaces.stable", "The list is the same static one before and after a plugin's life.", Through::Both,
     &keepsTheListInPlace},
    {"create.null-name", "A null name makes no object.", Through::Both, &refusesNoName},
    {"create.other-interface", "The name of the other interface makes no object.", Through::Both,
     &refusesTheOtherName},
    {"create.case", "A name in another case makes no object.", Through::Both, &refusesAnotherCase},
    {"create.length", "A name with a byte more or less makes no object, nor does an empty one.",
     Through::Both, &refusesLongerAndShorterNames},
    {"create.factory-fails", "Without the backend's factory no object is made, and with it one is again.",
     Through::Both, &makesNothingWithoutFactory},
    {"create.unknown-result", "A factory result without a name is a failure like any other.", Through::Both,
     &standsAnUnknownFactoryResult},
    {"create.no-contact", "Until Start the backend is asked for its factory and for nothing else.",
     Through::Both, &contactsNobodyUntilStart},
    {"create.several", "Two objects have a life and a host each.", Through::Both, &makesSeveralObjects},
    {"dispose.null", "DisposePlugin takes null and says true.", Through::Cpp, &disposesOfNothing},
    {"dispose.answer", "The dispose function says true of an object of its own.", Through::Both,
     &saysThatItDisposes},
    {"dispose.unregistered", "The end of an unregistered object causes nothing.", Through::Both,
     &disposesOfAnUnregisteredObject},
    {"dispose.registered", "The end of a registered object tells of no stop.", Through::Both,
     &disposesOfARegisteredObject},
    {"dispose.running", "The end of a running object stops the backend and then tells the host.",
     Through::Both, &disposesOfARunningObject},
    {"dispose.mid-flow", "An object may end in the middle of an enrollment.", Through::Both,
     &disposesInMidFlow},
    {"module.reload", "The module can be unloaded and loaded again.", Through::Both, &loadsAgain},
    {"module.unload-running", "The module can be unloaded right after its running object's end.",
     Through::Both, &unloadsWhileItRuns},
};

} // namespace

std::span<const Check> exportChecks() { return exportTable; }

} // namespace host::validate
