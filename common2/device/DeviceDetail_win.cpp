#include "common2/device/DeviceDetail.h"

#include "common2/device/VantorDeviceID.h"
#include "common2/logging/Common2Loggers.h"

#include <windows.h>

namespace common2 {
namespace {

constexpr const wchar_t* windowsKey = L"Software\\Microsoft\\Windows NT\\CurrentVersion";

/// Logs what failed and why. The error is asked for by the caller, since logging has calls to the system of
/// its own.
void logFailure(const char* what, DWORD error) {
    COMMON2_LOG(DBG_ERROR, "VantorDeviceID::getDeviceDetailsFromOS") << what << error;
}

/// The security identifier of the machine's own account.
bool readMachineSid(std::vector<unsigned char>& sid) {
    wchar_t computer[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD computerSize = MAX_COMPUTERNAME_LENGTH + 1;
    if (!::GetComputerNameW(computer, &computerSize)) {
        logFailure("::GetComputerName failed with err ", ::GetLastError());
        return false;
    }
    DWORD sidSize = 0;
    DWORD domainSize = 0;
    SID_NAME_USE use{};
    if (!::LookupAccountNameW(nullptr, computer, nullptr, &sidSize, nullptr, &domainSize, &use) &&
        ::GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        logFailure("::LookupAccountName first failed with err ", ::GetLastError());
        return false;
    }
    sid.resize(sidSize);
    std::wstring domain(domainSize, L'\0');
    if (!::LookupAccountNameW(nullptr, computer, sid.data(), &sidSize, domain.data(), &domainSize, &use)) {
        logFailure("::LookupAccountName second failed with err ", ::GetLastError());
        return false;
    }
    if (!::IsValidSid(sid.data())) {
        COMMON2_LOG(DBG_ERROR, "VantorDeviceID::getDeviceDetailsFromOS")
            << "GetDeviceID->IsValidSid() sid is NOT valid ";
        return false;
    }
    return true;
}

} // namespace

bool readDeviceDetail(const std::wstring& name, std::vector<unsigned char>& bytes) {
    bytes.clear();
    if (name != L"Sid") {
        return VantorDeviceID::getBinaryRegistryKey(windowsKey, name.c_str(), true, bytes);
    }
    if (!readMachineSid(bytes)) {
        bytes.clear();
    }
    return !bytes.empty();
}

} // namespace common2
