#include "common2/device/VantorDeviceID.h"

#include "common2/crypto/Hash.h"
#include "common2/logging/Common2Loggers.h"
#include "common2/util/GlobalError.h"
#include "common2/util/OsVerApi.h"
#include "common2/util/WideText.h"
#include "common2/windows/os/RegistryKey.h"

#include <array>

namespace {

constexpr const wchar_t* deviceDetailsKey = L"Software\\Norvane\\Norvane Kestrel Suite\\DeviceDetails";
constexpr const wchar_t* nonceValue = L"Nonce";
constexpr std::size_t nonceSize = 4;

constexpr const wchar_t* sid = L"Sid";
constexpr std::array<const wchar_t*, 3> detailNames{sid, L"DigitalProductId", L"DigitalProductId4"};

void insertAtFront(VantorDeviceID::Bytes& bytes, const VantorDeviceID::Bytes& piece) {
    bytes.insert(bytes.begin(), piece.begin(), piece.end());
}

using Query = std::uint32_t (RegistryKey::*)(const wchar_t*, VantorDeviceID::Bytes&) const;

/// Reads one value below HKEY_LOCAL_MACHINE. A failure is logged; an empty value is one.
bool readValue(const wchar_t* path, const wchar_t* value, std::uint32_t access, Query query,
               VantorDeviceID::Bytes& bytes) {
    constexpr const char* function = "VantorDeviceID::getBinaryRegistryKey";
    bytes.clear();
    RegistryKey key;
    if (const auto error = key.Open(path, access)) {
        COMMON2_LOG(DBG_WARN, function) << "CRegKey::Open returned error " << error;
        return false;
    }
    if (const auto error = (key.*query)(value, bytes)) {
        COMMON2_LOG(DBG_WARN, function) << "CRegKey::QueryBinaryValue returned error " << error;
        return false;
    }
    if (bytes.empty()) {
        COMMON2_LOG(DBG_WARN, function) << "CRegKey::QueryBinaryValue returned zero value size";
        return false;
    }
    return true;
}

} // namespace

std::error_code VantorDeviceID::GetDeviceID(Bytes& id) const {
    constexpr const char* function = "VantorDeviceID::GetDeviceID";
    id.clear();
    Details details;
    if (!getDeviceDetailsFromCache(details)) {
        COMMON2_LOG(DBG_WARN, function) << "Failed to retrieve device details from cache";
        if (!getDeviceDetailsFromOS(details)) {
            COMMON2_LOG(DBG_ERROR, function) << "Failed to retrieve device details from OS";
            return makeGlobalError(QuillApiResult::NotFound);
        }
    }
    for (const wchar_t* name : detailNames) {
        if (const auto detail = details.find(name); detail != details.end()) {
            insertAtFront(id, detail->second);
        }
    }
    if (Bytes nonce; getUDIDNonceFromRegistryKey(nonce)) {
        insertAtFront(id, nonce);
    }
    return {};
}

std::error_code VantorDeviceID::GetDeviceUniqueIDHash(std::string& text, const char* digestName) const {
    constexpr const char* function = "VantorDeviceID::GetDeviceUniqueIDHash";
    text.clear();
    if (!digestName) {
        return makeGlobalError(QuillApiResult::NullPointer);
    }
    Bytes id;
    std::error_code error = GetDeviceID(id);
    if (error) {
        COMMON2_LOG(DBG_ERROR, function) << "Failed to get device ID information.";
        return error;
    }
    CHash hash(error, digestName);
    if (error) {
        COMMON2_LOG(DBG_ERROR, function) << "CCAPIHash returned error " << error.value();
        return error;
    }
    error = hash.Update(id.data(), id.size());
    if (error) {
        COMMON2_LOG(DBG_ERROR, function) << "CCAPIHash::Update returned error " << error.value();
        return error;
    }
    error = hash.GetHash(text);
    if (error) {
        COMMON2_LOG(DBG_ERROR, function) << "CCAPIHash::GetHash returned error " << error.value();
    }
    return error;
}

bool VantorDeviceID::getDeviceDetailsFromCache(Details& details) const {
    COMMON2_LOG(DBG_TRACE, "VantorDeviceID::getDeviceDetailsFromCache")
        << "Retrieving device details from cache";
    details.clear();
    for (const wchar_t* name : detailNames) {
        if (Bytes bytes; getBinaryRegistryKey(deviceDetailsKey, name, false, bytes)) {
            details.emplace(name, std::move(bytes));
        } else if (name == sid) {
            return false;
        }
    }
    return true;
}

bool VantorDeviceID::getDeviceDetailsFromOS(Details& details) const {
    constexpr const char* function = "VantorDeviceID::getDeviceDetailsFromOS";
    COMMON2_LOG(DBG_TRACE, function) << "Getting device details from OS settings";
    details.clear();
    for (const wchar_t* name : detailNames) {
        if (Bytes bytes; readDetailFromOS(name, bytes)) {
            details.emplace(name, std::move(bytes));
        } else {
            COMMON2_LOG(DBG_WARN, function) << "Failed to get " << common2::toUtf8(name) << " detail from OS";
        }
    }
    return !details.empty();
}

bool VantorDeviceID::getUDIDNonceFromRegistryKey(Bytes& nonce) const {
    return readValue(deviceDetailsKey, nonceValue, RegistryKey::readAccess, &RegistryKey::QueryValue,
                     nonce) &&
           nonce.size() == nonceSize;
}

bool VantorDeviceID::getBinaryRegistryKey(const wchar_t* path, const wchar_t* value, bool wow64,
                                          Bytes& bytes) {
    const bool wants64Bit = wow64 && OsVerApi::Is64BitSystem();
    return readValue(path, value, wants64Bit ? RegistryKey::readAccessOf64Bit : RegistryKey::readAccess,
                     &RegistryKey::QueryBinaryValue, bytes);
}
