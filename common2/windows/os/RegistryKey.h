/// Settings of the machine as a whole.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A key below HKEY_LOCAL_MACHINE, opened for reading. Where there is no registry, a key is a folder below
/// the program data, named by the key's path behind "SOFTWARE\", and a value is a file in it: "Norvane\Suite"
/// is /var/lib/Norvane/Suite. Not for several threads at once.
class RegistryKey {
public:
    /// `KEY_READ`, and the same for the 64-bit settings of a system that has both.
    static constexpr std::uint32_t readAccess = 0x20019;
    static constexpr std::uint32_t readAccessOf64Bit = 0x20119;

    RegistryKey();
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey();

    /// @return 0, or the system's error code; then the key stays closed
    std::uint32_t Open(const wchar_t* path, std::uint32_t access);

    /// Reads a value of any type as it is stored, asking its size first.
    /// @param bytes takes the value; empty on failure, and for a value of size 0
    /// @return 0, or the system's error code
    std::uint32_t QueryValue(const wchar_t* name, std::vector<unsigned char>& bytes) const;

    /// Reads a value of bytes, asking its size first.
    /// @param bytes takes the value; empty on failure, and for a value of size 0
    /// @return 0, or the system's error code, also for a value of another type
    std::uint32_t QueryBinaryValue(const wchar_t* name, std::vector<unsigned char>& bytes) const;

    /// Reads a text value in UTF-8, asking its size first.
    /// @param text takes the value without what ends it in its storage; empty on failure
    /// @return 0, or the system's error code, also for a value of another type
    std::uint32_t QueryStringValue(const wchar_t* name, std::string& text) const;

private:
    struct Handle;
    std::unique_ptr<Handle> handle; ///< null while closed
};
