#include "tests/host/PrivateFiles.h"

#include <windows.h>

#include <aclapi.h>

namespace test {
namespace {

/// Whether an entry of the list grants something to a user other than the owner. The system itself may always
/// read.
bool isForOthers(const ACCESS_ALLOWED_ACE& entry, PSID owner) {
    const PSID user = const_cast<DWORD*>(&entry.SidStart);
    return entry.Header.AceType == ACCESS_ALLOWED_ACE_TYPE && entry.Mask != 0 && !::EqualSid(user, owner) &&
           !::IsWellKnownSid(user, WinLocalSystemSid);
}

} // namespace

bool isForItsOwnerOnly(const std::filesystem::path& file) {
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = ::GetNamedSecurityInfoW(file.c_str(), SE_FILE_OBJECT,
                                                OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION,
                                                &owner, nullptr, &list, nullptr, &descriptor);
    bool isPrivate = error == ERROR_SUCCESS && list != nullptr && list->AceCount > 0;
    for (DWORD index = 0; isPrivate && index < list->AceCount; ++index) {
        void* entry = nullptr;
        isPrivate = ::GetAce(list, index, &entry) &&
                    !isForOthers(*static_cast<const ACCESS_ALLOWED_ACE*>(entry), owner);
    }
    ::LocalFree(descriptor);
    return isPrivate;
}

} // namespace test
