/// The identity of the device, as a stable hash.
#pragma once

#include "common2/device/DeviceDetail.h"

#include <map>
#include <string>
#include <system_error>
#include <vector>

/// Gathers what tells this device from others and hashes it. Error codes are of "global_error". Nothing of
/// what is gathered is logged. Nothing throws but for want of memory.
class VantorDeviceID {
public:
    using Bytes = std::vector<unsigned char>;
    /// By the detail's name: "Sid", "DigitalProductId", "DigitalProductId4".
    using Details = std::map<std::wstring, Bytes>;
    using DetailReader = bool (*)(const std::wstring& name, Bytes& bytes);

    /// @param readFromOS reads one detail from the system, true on success
    explicit VantorDeviceID(DetailReader readFromOS = common2::readDeviceDetail)
        : readDetailFromOS(readFromOS) {}

    /// The bytes that identify the device, in an order that never changes: the installation's nonce,
    /// "DigitalProductId4", "DigitalProductId", "Sid", each where it is known.
    /// @param id empty on failure
    std::error_code GetDeviceID(Bytes& id) const;

    /// Their hash in upper-case hexadecimal digits.
    /// @param text empty on failure
    /// @param digestName such as "sha1"
    std::error_code GetDeviceUniqueIDHash(std::string& text, const char* digestName) const;

    /// The details that whoever installed the product has stored; at least "Sid", or it is a failure.
    bool getDeviceDetailsFromCache(Details& details) const;
    /// The details that the system itself has; at least one, or it is a failure.
    bool getDeviceDetailsFromOS(Details& details) const;
    /// The installation's nonce: a value of 4 bytes, whatever its type.
    bool getUDIDNonceFromRegistryKey(Bytes& nonce) const;

    /// Reads one value of bytes below HKEY_LOCAL_MACHINE.
    /// @param wow64 whether to read the settings of a 64-bit system where this is one
    /// @param bytes empty on failure, which is logged; an empty value is a failure
    static bool getBinaryRegistryKey(const wchar_t* path, const wchar_t* value, bool wow64, Bytes& bytes);

private:
    DetailReader readDetailFromOS;
};
