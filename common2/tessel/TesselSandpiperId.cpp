#include "common2/tessel/TesselSandpiperId.h"

#include "common2/logging/Common2Loggers.h"
#include "common2/util/GlobalError.h"
#include "common2/windows/os/RegistryKey.h"

#include <boost/uuid/string_generator.hpp>

#include <array>
#include <stdexcept>

namespace {

/// Where the agent keeps its id: as a part of the suite, and on its own.
constexpr std::array<const wchar_t*, 2> agentKeys{
    L"SOFTWARE\\Norvane\\Norvane Kestrel Suite\\Sandpiper Endpoint Agent",
    L"SOFTWARE\\Sandpiper\\Endpoint Agent",
};
constexpr const wchar_t* machineIdValue = L"MachineId";

constexpr std::size_t uuidLength = 36;

bool openAgentKey(RegistryKey& key) {
    for (const wchar_t* path : agentKeys) {
        if (key.Open(path, RegistryKey::readAccessOf64Bit) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace

std::error_code TesselSandpiperId::IdentifySpMachineId(std::string& id) {
    id.clear();
    RegistryKey key;
    std::string text;
    if (!openAgentKey(key) || key.QueryStringValue(machineIdValue, text) != 0) {
        return makeGlobalError(QuillApiResult::NotFound);
    }
    if (!isValidUuid(text)) {
        COMMON2_LOG(DBG_ERROR, "TesselSandpiperId::IdentifySpMachineId")
            << "Invalid Sandpiper UUID string: " << text;
        return makeGlobalError(QuillApiResult::BadFormat);
    }
    id = std::move(text);
    return {};
}

bool TesselSandpiperId::isValidUuid(std::string_view text) {
    if (text.size() != uuidLength) {
        return false; // the library's parser also takes braces, and digits without dashes
    }
    try {
        boost::uuids::string_generator()(text.begin(), text.end());
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}
