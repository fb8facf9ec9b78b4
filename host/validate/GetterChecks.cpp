// What an object tells about itself, and the operations that do nothing.
#include "host/validate/Check.h"
#include "host/validate/Trial.h"

#include <array>
#include <cstring>

namespace host::validate {
namespace {

using Getter = std::int32_t (PluginObject::*)(char*, std::uint32_t*);

struct Text {
    std::string_view name;
    Getter getter;
};
constexpr std::array texts{
    Text{"GetIdentity", &PluginObject::GetIdentity},
    Text{"GetLabel", &PluginObject::GetLabel},
    Text{"GetDisplayVersion", &PluginObject::GetDisplayVersion},
};

/// More than any text needs.
constexpr std::uint32_t roomy = 256;

std::string textOf(PluginObject& plugin, Getter getter) {
    std::array<char, roomy> buffer{};
    std::uint32_t size = roomy;
    expectEqual("the getter's result", (plugin.*getter)(buffer.data(), &size), 0);
    return std::string(buffer.data(), ::strnlen(buffer.data(), buffer.size()));
}

void tellsItsIdentity(Trial& trial) {
    expectEqual("the identity", textOf(trial.create(), &PluginObject::GetIdentity),
                "com.norvane.vantor.presentation.quill");
}

void tellsItsLabel(Trial& trial) {
    expectEqual("the label", textOf(trial.create(), &PluginObject::GetLabel), "Wren Gate");
}

void tellsItsVersion(Trial& trial) {
    expectEqual("the display version", textOf(trial.create(), &PluginObject::GetDisplayVersion),
                "5.1.11.2143");
}

std::uint32_t neededBy(PluginObject& plugin, const Text& text) {
    return static_cast<std::uint32_t>(textOf(plugin, text.getter).size() + 1);
}

void tellsTheSizeItNeeds(Trial& trial) {
    PluginObject& plugin = trial.create();
    for (const Text& text : texts) {
        for (const std::uint32_t given : {0U, 1U, roomy}) {
            std::uint32_t size = given;
            expectEqual(text.name, (plugin.*text.getter)(nullptr, &size), -3);
            expectEqual("the size that it asks for", size, neededBy(plugin, text));
        }
    }
}

void refusesASmallBuffer(Trial& trial) {
    PluginObject& plugin = trial.create();
    for (const Text& text : texts) {
        const std::uint32_t needed = neededBy(plugin, text);
        std::string buffer(needed, '#');
        std::uint32_t size = needed - 1;
        expectEqual(text.name, (plugin.*text.getter)(buffer.data(), &size), -3);
        expectEqual("the size that it asks for", size, needed);
        expectEqual("the buffer", buffer, std::string(needed, '#'));
    }
}

void fillsAnExactBuffer(Trial& trial) {
    PluginObject& plugin = trial.create();
    for (const Text& text : texts) {
        const std::uint32_t needed = neededBy(plugin, text);
        std::string buffer(needed + 1, '#');
        std::uint32_t size = needed;
        expectEqual(text.name, (plugin.*text.getter)(buffer.data(), &size), 0);
        expectEqual("the size behind the copy", size, needed);
        expectEqual("the byte behind the text", static_cast<std::int64_t>(buffer[needed - 1]), 0);
        expectEqual("the byte behind the buffer", static_cast<std::int64_t>(buffer[needed]), '#');
    }
}

void refusesANullSize(Trial& trial) {
    PluginObject& plugin = trial.create();
    char buffer[4] = "abc";
    for (const Text& text : texts) {
        expectEqual(text.name, (plugin.*text.getter)(buffer, nullptr), -10);
        expectEqual(text.name, (plugin.*text.getter)(nullptr, nullptr), -10);
    }
    expectEqual("the buffer", std::string_view(buffer), "abc");
}

void tellsTheSameAlways(Trial& trial) {
    PluginObject& plugin = trial.create();
    Lines before;
    for (const Text& text : texts) {
        before.push_back(textOf(plugin, text.getter));
    }
    trial.registerHost();
    trial.start();
    for (std::size_t index = 0; index < texts.size(); ++index) {
        expectEqual("a text of a running plugin", textOf(plugin, texts[index].getter), before[index]);
    }
}

void supportsItsVersions(Trial& trial) {
    PluginObject& plugin = trial.create();
    for (const char* name : {presentationInterfaceName, cBasedPresentationInterfaceName}) {
        for (const int version : {1, 2, 3}) {
            expect(plugin.SupportsInterface(name, version),
                   joined({"version ", std::to_string(version), " of ", name, " is not supported"}));
        }
    }
}

void supportsNoOtherVersion(Trial& trial) {
    PluginObject& plugin = trial.create();
    for (const char* name : {presentationInterfaceName, cBasedPresentationInterfaceName}) {
        for (const int version : {0, 4, -1, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
            expect(!plugin.SupportsInterface(name, version),
                   joined({"version ", std::to_string(version), " of ", name, " is supported"}));
        }
    }
}

void supportsNoOtherName(Trial& trial) {
    PluginObject& plugin = trial.create();
    for (const char* name : {"", "com.norvane.vantor.presentation.quill", "com.norvane.vantor.presentatio",
                             "Com.norvane.vantor.presentation", "C_com.norvane.vantor.presentation"}) {
        expect(!plugin.SupportsInterface(name, 3), joined({"the name \"", name, "\" is supported"}));
    }
    expect(!plugin.SupportsInterface(nullptr, 3), "a null name is supported");
}

void isEnabled(Trial& trial) { expect(trial.create().IsUIEnabled(), "IsUIEnabled says false"); }

void servesManyUsers(Trial& trial) {
    expect(trial.create().IsMultiUserModeEnabled(), "IsMultiUserModeEnabled says false");
}

void doesNotEncrypt(Trial& trial) {
    std::uintptr_t words[4] = {1, 2, 3, 4};
    const auto address = [&](std::size_t index) { return reinterpret_cast<std::uintptr_t>(&words[index]); };
    PluginObject& plugin = trial.create();
    expectEqual("Encrypt", plugin.Encrypt(address(0), address(1), address(2), address(3)), -1);
    expectEqual("Encrypt of nothing", plugin.Encrypt(0, 0, 0, 0), -1);
    expect(words[0] == 1 && words[1] == 2 && words[2] == 3 && words[3] == 4, "an argument was touched");
}

void doesNotDecrypt(Trial& trial) {
    PluginObject& plugin = trial.create();
    char output[4] = "abc";
    std::uint32_t size = sizeof output;
    expectEqual("Decrypt", plugin.Decrypt(1, 2, output, &size), -2);
    expectEqual("the output", std::string_view(output), "");
    expectEqual("the byte behind", static_cast<std::int64_t>(output[1]), 'b');
    expectEqual("the size", size, 0);
    size = 3;
    expectEqual("Decrypt without output", plugin.Decrypt(0, 0, nullptr, &size), -2);
    expectEqual("the size", size, 0);
}

void hasNoApprovals(Trial& trial) {
    PluginObject& plugin = trial.create();
    expectEqual("GetPendingApprovalData", plugin.GetPendingApprovalData(0, 0), -2);
    expectEqual("ApprovalEventNotification", plugin.ApprovalEventNotification(0), -2);
}

constexpr Check getterTable[] = {
    {"texts.identity", "The identity is the one that notices name.", Through::Both, &tellsItsIdentity},
    {"texts.label", "The label is \"Wren Gate\".", Through::Both, &tellsItsLabel},
    {"texts.version", "The display version is \"5.1.11.2143\".", Through::Both, &tellsItsVersion},
    {"texts.null-buffer", "A getter without a buffer answers -3 and tells the size with the NUL.",
     Through::Both, &tellsTheSizeItNeeds},
    {"texts.small-buffer", "A getter leaves a buffer alone that lacks one byte, and tells the size.",
     Through::Both, &refusesASmallBuffer},
    {"texts.exact-buffer", "A getter fills a buffer of just the size, leaving the size as it was.",
     Through::Both, &fillsAnExactBuffer},
    {"texts.null-size", "A getter refuses a null size with -10.", Through::Both, &refusesANullSize},
    {"texts.any-state", "The getters tell the same in every state.", Through::Both, &tellsTheSameAlways},
    {"supports.versions", "Versions 1, 2 and 3 are supported under both names.", Through::Both,
     &supportsItsVersions},
    {"supports.other-versions", "No other version is supported.", Through::Both, &supportsNoOtherVersion},
    {"supports.other-names", "No other name is supported, nor a null one.", Through::Both,
     &supportsNoOtherName},
    {"answers.ui-enabled", "The plugin shows something.", Through::Both, &isEnabled},
    {"answers.multi-user", "The plugin serves several users.", Through::Both, &servesManyUsers},
    {"answers.encrypt", "Encrypt answers -1 and touches nothing.", Through::Both, &doesNotEncrypt},
    {"answers.decrypt", "Decrypt answers -2 and empties its output, where there is one.", Through::Both,
     &doesNotDecrypt},
    {"answers.approvals", "The approval operations answer -2.", Through::Both, &hasNoApprovals},
};

} // namespace

std::span<const Check> getterChecks() { return getterTable; }

} // namespace host::validate
