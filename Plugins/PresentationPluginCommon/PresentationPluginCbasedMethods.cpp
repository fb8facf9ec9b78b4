#include "Plugins/PresentationPluginCommon/PresentationPluginCbasedMethods.h"

#include "Plugins/PresentationPluginCommon/PresentationPluginLog.h"
#include "Plugins/PresentationPluginCommon/PresentationPluginShim.h"
#include "common2/util/Mutex.h"

#include <cstddef>
#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace {

common2::Mutex cBasedPluginsMutex;
/// The names of the interfaces that the living records were made for, by address: what this module gave out.
std::map<const PresentationPluginCbasedMethods*, std::string>
    cBasedPlugins COMMON2_GUARDED_BY(cBasedPluginsMutex);

// C hosts are built apart from the module and find the fields by their places.
using Record = PresentationPluginCbasedMethods;
constexpr std::size_t word = sizeof(std::uintptr_t);
static_assert(offsetof(Record, size) == 0 * word);
static_assert(offsetof(Record, handle) == 1 * word);
static_assert(offsetof(Record, SupportsInterface) == 2 * word);
static_assert(offsetof(Record, Register) == 3 * word);
static_assert(offsetof(Record, Start) == 4 * word);
static_assert(offsetof(Record, Stop) == 5 * word);
static_assert(offsetof(Record, Unregister) == 6 * word);
static_assert(offsetof(Record, IsUIEnabled) == 7 * word);
static_assert(offsetof(Record, GetIdentity) == 8 * word);
static_assert(offsetof(Record, GetLabel) == 9 * word);
static_assert(offsetof(Record, GetDisplayVersion) == 10 * word);
static_assert(offsetof(Record, Encrypt) == 11 * word);
static_assert(offsetof(Record, Decrypt) == 12 * word);
static_assert(offsetof(Record, EventNotification) == 13 * word);
static_assert(offsetof(Record, IsMultiUserModeEnabled) == 14 * word);
static_assert(offsetof(Record, GetPendingApprovalData) == 15 * word);
static_assert(offsetof(Record, ApprovalEventNotification) == 16 * word);
static_assert(sizeof(Record) == 17 * word); // 68 bytes where pointers have 32 bits

Record recordOf(CPresentationPluginShim& shim) {
    using Shim = CPresentationPluginShim;
    return {
        .size = sizeof(Record),
        .handle = &shim,
        .SupportsInterface = &Shim::SupportsInterface,
        .Register = &Shim::Register,
        .Start = &Shim::Start,
        .Stop = &Shim::Stop,
        .Unregister = &Shim::Unregister,
        .IsUIEnabled = &Shim::IsUIEnabled,
        .GetIdentity = &Shim::GetIdentity,
        .GetLabel = &Shim::GetLabel,
        .GetDisplayVersion = &Shim::GetDisplayVersion,
        .Encrypt = &Shim::Encrypt,
        .Decrypt = &Shim::Decrypt,
        .EventNotification = &Shim::EventNotification,
        .IsMultiUserModeEnabled = &Shim::IsMultiUserModeEnabled,
        .GetPendingApprovalData = &Shim::GetPendingApprovalData,
        .ApprovalEventNotification = &Shim::ApprovalEventNotification,
    };
}

void remember(const Record& record) {
    const common2::MutexLock lock(cBasedPluginsMutex);
    cBasedPlugins.try_emplace(&record, cBasedPresentationInterfaceName);
}

/// Takes a record off the list.
/// @return the name of its interface, if it was there
std::optional<std::string> takeName(const Record* record) {
    const common2::MutexLock lock(cBasedPluginsMutex);
    auto entry = cBasedPlugins.extract(record);
    return entry ? std::optional(std::move(entry.mapped())) : std::nullopt;
}

} // namespace

PresentationPluginCbasedMethods* CreateCbasedPresentationPlugin() noexcept {
    constexpr const char* function = "CreateCbasedPresentationPlugin";
    try {
        bool isCreated = false;
        auto shim = std::make_unique<CPresentationPluginShim>(isCreated);
        if (isCreated) {
            auto record = std::make_unique<Record>(recordOf(*shim));
            PRESENTATION_PLUGIN_LOG(presentationPluginLogInformation, function,
                                    "Created C Plugin interface '%s'", cBasedPresentationInterfaceName);
            remember(*record);
            static_cast<void>(shim.release()); // belongs to the record now
            return record.release();
        }
    } catch (const std::exception& failure) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "%s", failure.what());
    } catch (...) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "unknown exception");
    }
    PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "Creation of Presentation C Plugin failed");
    return nullptr;
}

bool DisposeCbasedPresentationPlugin(PresentationPluginCbasedMethods* methods) noexcept {
    constexpr const char* function = "DisposeCbasedPresentationPlugin";
    const void* const address = methods;
    const std::optional<std::string> name = takeName(methods);
    if (!name) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "Unrecognized C Plugin: %p", address);
        return false;
    }
    if (*name != cBasedPresentationInterfaceName) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function,
                                "Unrecognized interface '%s' for C Plugin: %p", name->c_str(), address);
        return false;
    }
    auto* const shim = static_cast<CPresentationPluginShim*>(methods->handle);
    delete methods;
    delete shim;
    PRESENTATION_PLUGIN_LOG(presentationPluginLogInformation, function,
                            "Disposed C Plugin for interface '%s'", name->c_str());
    return true;
}
