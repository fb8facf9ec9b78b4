#include "common/tessel/TesselClientRetriever.h"

#include "common/PluginIdentity.h"
#include "common2/device/VantorDeviceID.h"
#include "common2/logging/Common2Loggers.h"
#include "common2/tessel/TesselSandpiperId.h"
#include "common2/util/OsVerApi.h"

TesselClientRetriever::TesselClientRetriever()
    : product(pluginIdentity::label)
    , version(pluginIdentity::version)
    , os(MYOSVER_OS::ToString(OsVerApi().GetType())) {
    constexpr const char* function = "TesselClientRetriever::TesselClientRetriever";
    if (const auto error = VantorDeviceID().GetDeviceUniqueIDHash(device_hash, "sha1")) {
        COMMON2_LOG(DBG_ERROR, function)
            << "VantorDeviceID::GetDeviceUniqueIDHash returned error: " << error.value();
    }
    if (const auto error = TesselSandpiperId::IdentifySpMachineId(sandpiper_id)) {
        COMMON2_LOG(DBG_WARN, function)
            << "TesselSandpiperId::IdentifySpMachineId returned error: " << error.value();
    }
}
