// The table that Microsoft's compiler would give the plugin: its type information, 16 slots, and what
// module.def exports of the class `Plugin` under that compiler's names.
//
// An object made here by GCC gets this table in place of GCC's own right after its construction. The
// destructor puts GCC's back first, so the inside of the plugin never meets the other table.
#include "presentation-plugin/ClassTable.h"

#include "common2/logging/Common2Loggers.h"
#include "presentation-plugin/PresentationPluginImpl.h"
#include "presentation-plugin/msvc/TypeInformation.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>
#include <new>

namespace {

using Object = PresentationPluginImpl;

// Type information: the plugin and its chain of bases, all of which begin where the object does.

/// Descriptors are static: there is nothing to delete.
void* __thiscall keepDescriptor(void* descriptor, unsigned) noexcept { return descriptor; }
void*(__thiscall* const descriptorTable[])(void*, unsigned) = {&keepDescriptor};

constinit msvc::TypeDescriptor classTypes[] = {{descriptorTable, ".?AVPresentationPluginImpl@@"},
                                               {descriptorTable, ".?AVIPresentationPluginV3@@"},
                                               {descriptorTable, ".?AVIPresentationPluginV2@@"},
                                               {descriptorTable, ".?AVIPresentationPlugin@@"},
                                               {descriptorTable, ".?AVPlugin@@"}};

extern const msvc::ClassHierarchy classHierarchies[5];
constinit const msvc::BaseClass classBases[] = {
    {.type = &classTypes[0], .containedBases = 4, .hierarchy = &classHierarchies[0]},
    {.type = &classTypes[1], .containedBases = 3, .hierarchy = &classHierarchies[1]},
    {.type = &classTypes[2], .containedBases = 2, .hierarchy = &classHierarchies[2]},
    {.type = &classTypes[3], .containedBases = 1, .hierarchy = &classHierarchies[3]},
    {.type = &classTypes[4], .containedBases = 0, .hierarchy = &classHierarchies[4]}};
constinit const msvc::BaseClass* const classChain[] = {&classBases[0], &classBases[1], &classBases[2],
                                                       &classBases[3], &classBases[4]};
constinit const msvc::ClassHierarchy classHierarchies[] = {{.count = 5, .classes = &classChain[0]},
                                                           {.count = 4, .classes = &classChain[1]},
                                                           {.count = 3, .classes = &classChain[2]},
                                                           {.count = 2, .classes = &classChain[3]},
                                                           {.count = 1, .classes = &classChain[4]}};
constinit const msvc::ObjectLocator objectLocator{.type = &classTypes[0], .hierarchy = &classHierarchies[0]};
constinit const msvc::ObjectLocator pluginLocator{.type = &classTypes[4], .hierarchy = &classHierarchies[4]};

// Slots. No exception leaves one: the caller's compiler could not catch it.

/// A text as an argument of a template.
template <std::size_t size>
struct Name {
    char text[size];
    consteval Name(const char (&given)[size]) { std::copy_n(given, size, text); }
};

template <Name function, class Operation, auto call>
struct Slot;

template <Name function, class Result, class... Arguments, auto call>
struct Slot<function, Result (Object::*)(Arguments...), call> {
    static Result __thiscall enter(Object* plugin, Arguments... arguments) noexcept {
        try {
            return call(*plugin, arguments...);
        } catch (const std::exception& failure) {
            COMMON2_LOG(DBG_ERROR, function.text) << failure.what();
        } catch (...) {
            COMMON2_LOG(DBG_ERROR, function.text) << "unknown exception";
        }
        if constexpr (std::is_same_v<Result, bool>) {
            return false;
        } else {
            return presentationFailed;
        }
    }
};

void* __thiscall deleteObject(Object* plugin, unsigned flags) noexcept {
    constexpr unsigned freesMemory = 1;
    plugin->~Object();
    if ((flags & freesMemory) != 0) {
        ::operator delete(plugin, sizeof(Object));
    }
    return plugin;
}

/// What an object's first word points behind.
template <std::size_t slotCount>
struct ClassTable {
    std::ptrdiff_t offsetToTop = 0; ///< for `dynamic_cast<void*>` of GCC
    const msvc::ObjectLocator* locator;
    const void* slots[slotCount];
};
static_assert(offsetof(ClassTable<1>, slots) == 2 * sizeof(void*));

// The call names the class: by the table alone it would come back here.
#define WREN_SLOT(operation)                                                                                 \
    reinterpret_cast<const void*>(&Slot<"PresentationPluginImpl::" #operation, decltype(&Object::operation), \
                                        [](Object& plugin, auto... arguments) {                              \
                                            return plugin.PresentationPluginImpl::operation(arguments...);   \
                                        }>::enter)

const ClassTable<16> objectTable{
    .locator = &objectLocator,
    .slots = {WREN_SLOT(SupportsInterface), reinterpret_cast<const void*>(&deleteObject), WREN_SLOT(Register),
              WREN_SLOT(Start), WREN_SLOT(Stop), WREN_SLOT(Unregister), WREN_SLOT(IsUIEnabled),
              WREN_SLOT(GetIdentity), WREN_SLOT(GetLabel), WREN_SLOT(GetDisplayVersion), WREN_SLOT(Encrypt),
              WREN_SLOT(Decrypt), WREN_SLOT(EventNotification), WREN_SLOT(IsMultiUserModeEnabled),
              WREN_SLOT(GetPendingApprovalData), WREN_SLOT(ApprovalEventNotification)}};
#undef WREN_SLOT

void setTable(void* object, const void* const* slots) { std::memcpy(object, &slots, sizeof slots); }

} // namespace

Plugin* asPlugin(PresentationPluginImpl* plugin) {
    setTable(plugin, objectTable.slots);
    return plugin;
}

void destroyPlugin(Plugin* plugin) {
    if (plugin != nullptr) {
        plugin->DeletingDestructor(1);
    }
}

// The class `Plugin` under the other compiler's names. Its constructors return the object.

namespace {

bool __thiscall supportNothing(void*, const char*, int) noexcept { return false; }

} // namespace

extern "C" {

void* __thiscall wrenPluginDelete(void* plugin, unsigned flags) noexcept {
    if ((flags & 1) != 0) {
        ::operator delete(plugin);
    }
    return plugin;
}

/// `??_7Plugin@@6B@` is the address of its slots.
extern const ClassTable<2> wrenPluginTable;
const ClassTable<2> wrenPluginTable{.locator = &pluginLocator,
                                    .slots = {reinterpret_cast<const void*>(&supportNothing),
                                              reinterpret_cast<const void*>(&wrenPluginDelete)}};
asm(".globl _wrenPluginSlots\n.set _wrenPluginSlots, _wrenPluginTable + 8");

void* __thiscall wrenPluginConstruct(void* plugin) noexcept {
    setTable(plugin, wrenPluginTable.slots);
    return plugin;
}

void* __thiscall wrenPluginCopyConstruct(void* plugin, const void*) noexcept {
    return wrenPluginConstruct(plugin);
}

void* __thiscall wrenPluginAssign(void* plugin, const void*) noexcept { return plugin; }

void __thiscall wrenPluginDestruct(void* plugin) noexcept { setTable(plugin, wrenPluginTable.slots); }
}
