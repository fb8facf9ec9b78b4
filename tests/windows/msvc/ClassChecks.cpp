// The class through its table: every slot, the type information, the exported base class.
#include "tests/windows/msvc/Host.h"

#include <stddef.h>

class type_info { // as `typeid` finds it: the name stands in the record
public:
    const void* table;
    void* spare;
    char name[1];
};

namespace std {
using ::type_info;
}

namespace foreign {
namespace {

constexpr const char* interfaceName = "com.norvane.vantor.presentation";

/// An interface that the plugin does not have.
class Unrelated : public Plugin {
public:
    virtual int Other() = 0;
};

void* slotOf(const void* object, size_t slot) { return (*static_cast<void* const* const*>(object))[slot]; }

} // namespace

void checkTable(const Libraries& libraries) {
    Plugin* const base = BALANCED(libraries.createPlugin(interfaceName));
    CHECK(base != nullptr);
    auto* const plugin = static_cast<IPresentationPluginV3*>(base);
    Callbacks callbacks;
    CHECK(BALANCED(plugin->SupportsInterface(interfaceName, 3)));
    CHECK(!BALANCED(plugin->SupportsInterface(interfaceName, 4)));
    CHECK(!BALANCED(plugin->SupportsInterface(nullptr, 3)));
    CHECK(BALANCED(plugin->Start()) == -10);
    CHECK(BALANCED(plugin->Register(nullptr, hostHandle, &callbacks, &callbacks)) == -4);
    CHECK(BALANCED(plugin->Register("", hostHandle, nullptr, &callbacks)) == -4);
    CHECK(BALANCED(plugin->Register("", hostHandle, &callbacks, nullptr)) == -4);
    CHECK(BALANCED(plugin->Register("", hostHandle, &callbacks, &callbacks)) == 0);
    CHECK(BALANCED(plugin->Stop(0)) == -10);
    CHECK(BALANCED(plugin->IsUIEnabled()));
    CHECK(BALANCED(plugin->IsMultiUserModeEnabled()));

    char text[64] = "";
    uint32_t size = 0;
    CHECK(BALANCED(plugin->GetIdentity(nullptr, &size)) == -3 && size == 38);
    CHECK(BALANCED(plugin->GetIdentity(text, &size)) == 0);
    CHECK(strcmp(text, "com.norvane.vantor.presentation.quill") == 0);
    size = sizeof text;
    CHECK(BALANCED(plugin->GetLabel(text, &size)) == 0 && strcmp(text, "Wren Gate") == 0);
    size = 11;
    CHECK(BALANCED(plugin->GetDisplayVersion(text, &size)) == -3 && size == 12);
    CHECK(BALANCED(plugin->GetDisplayVersion(text, &size)) == 0 && strcmp(text, "5.1.11.2143") == 0);

    CHECK(BALANCED(plugin->Encrypt(1, 2, 3, 4)) == -1);
    CHECK(BALANCED(plugin->Decrypt(1, 2, text, &size)) == -2 && text[0] == '\0' && size == 0);
    CHECK(BALANCED(plugin->EventNotification("no event")) == -10);
    CHECK(BALANCED(plugin->GetPendingApprovalData(1, 2)) == -2);
    CHECK(BALANCED(plugin->ApprovalEventNotification(1)) == -2);
    CHECK(BALANCED(plugin->Unregister()) == 0);
    CHECK(BALANCED(libraries.disposePlugin(base)));
    CHECK(BALANCED(libraries.disposePlugin(nullptr)));
    CHECK(BALANCED(libraries.createPlugin("c_com.norvane.vantor.presentation")) == nullptr);
    const PluginInterfaceList list = libraries.getInterfaces();
    CHECK(list.count == 2 && strcmp(list.entries[0].name, interfaceName) == 0 &&
          list.entries[1].version == 3);
}

void checkTypeInformation(const Libraries& libraries) {
    Plugin* const plugin = libraries.createPlugin(interfaceName);
    CHECK(plugin != nullptr);
    CHECK(dynamic_cast<IPresentationPluginV3*>(plugin) == static_cast<IPresentationPluginV3*>(plugin));
    CHECK(dynamic_cast<IPresentationPluginV2*>(plugin) == static_cast<IPresentationPluginV2*>(plugin));
    CHECK(dynamic_cast<IPresentationPlugin*>(plugin) == static_cast<IPresentationPlugin*>(plugin));
    CHECK(dynamic_cast<void*>(plugin) == plugin);
    CHECK(dynamic_cast<Unrelated*>(plugin) == nullptr);
    CHECK(strcmp(typeid(*plugin).name, ".?AVPresentationPluginImpl@@") == 0);
    libraries.disposePlugin(plugin);
}

void checkExportedClass(const Libraries& libraries) {
    using Construct = void*(__thiscall*)(void*);
    using Copy = void*(__thiscall*)(void*, const void*);
    using Destruct = void(__thiscall*)(void*);
    const auto construct = reinterpret_cast<Construct>(libraries.exported("??0Plugin@@QAE@XZ"));
    const auto copy = reinterpret_cast<Copy>(libraries.exported("??0Plugin@@QAE@ABV0@@Z"));
    const auto assign = reinterpret_cast<Copy>(libraries.exported("??4Plugin@@QAEAAV0@ABV0@@Z"));
    const auto destruct = reinterpret_cast<Destruct>(libraries.exported("??1Plugin@@UAE@XZ"));
    void* const table = libraries.exported("??_7Plugin@@6B@");
    CHECK(construct != nullptr && copy != nullptr && assign != nullptr && destruct != nullptr &&
          table != nullptr);

    void* first[2] = {nullptr, first};
    void* second[2] = {nullptr, second};
    CHECK(BALANCED(construct(first)) == first && first[0] == table && first[1] == first);
    CHECK(BALANCED(copy(second, first)) == second && second[0] == table && second[1] == second);
    second[0] = nullptr;
    CHECK(BALANCED(assign(second, first)) == second && second[0] == nullptr);
    destruct(second);
    CHECK(second[0] == table);
    CHECK(strcmp(typeid(*reinterpret_cast<Plugin*>(first)).name, ".?AVPlugin@@") == 0);
    using Delete = void*(__thiscall*)(void*, unsigned);
    CHECK(BALANCED(reinterpret_cast<Delete>(slotOf(first, 1))(first, 0)) == first);
}

void checkDeletion(const Libraries& libraries) {
    Callbacks callbacks;
    auto* const plugin = static_cast<IPresentationPluginV3*>(libraries.createPlugin(interfaceName));
    CHECK(plugin != nullptr && plugin->Register("", hostHandle, &callbacks, &callbacks) == 0);
    CHECK(plugin->Start() == 0);
    const ServiceCounts before = libraries.counts();
    using Delete = void*(__thiscall*)(void*, unsigned);
    CHECK(BALANCED(reinterpret_cast<Delete>(slotOf(plugin, 1))(plugin, 1)) == plugin);
    CHECK(callbacks.stops == 1);
    const ServiceCounts after = libraries.counts();
    CHECK(after.connections == before.connections - 1 && after.receiversEnded == before.receiversEnded + 1);
    Plugin* const other = libraries.createPlugin(interfaceName);
    delete other; // the same slot, as the compiler calls it
    CHECK(libraries.counts().receiversEnded == before.receiversEnded + 2);
}

} // namespace foreign
