#include "host/bundle/PrivateFile.h"

#include "host/HostError.h"

#include <windows.h>

#include <sddl.h>

#include <algorithm>
#include <array>
#include <string>

namespace host::bundle {
namespace {

HostError cannotWrite(const std::filesystem::path& file) {
    const DWORD error = ::GetLastError();
    return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS
               ? HostError("there is a file " + file.string() + " already")
               : HostError("cannot write " + file.string() + ": error " + std::to_string(error));
}

/// Who runs this program, as a text of the form "S-1-5-..."; the owner's rights where that cannot be told.
std::wstring currentUser() {
    std::wstring text = L"OW";
    std::array<unsigned char, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
    HANDLE token = nullptr;
    DWORD size = 0;
    LPWSTR name = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token)) {
        if (::GetTokenInformation(token, TokenUser, user.data(), static_cast<DWORD>(user.size()), &size) &&
            ::ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &name)) {
            text = name;
            ::LocalFree(name);
        }
        ::CloseHandle(token);
    }
    return text;
}

/// All rights for the user, none for anybody else, nothing inherited.
class UserOnly {
public:
    UserOnly() {
        const std::wstring list = L"D:P(A;;FA;;;" + currentUser() + L")";
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(list.c_str(), SDDL_REVISION_1, &descriptor,
                                                               nullptr);
        attributes.lpSecurityDescriptor = descriptor;
    }
    UserOnly(const UserOnly&) = delete;
    UserOnly& operator=(const UserOnly&) = delete;
    ~UserOnly() { ::LocalFree(descriptor); }

    SECURITY_ATTRIBUTES* get() { return descriptor != nullptr ? &attributes : nullptr; }

private:
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

/// A file beside the one that is to be written. It goes with the object, unless it got its name.
class Draft {
public:
    explicit Draft(const std::filesystem::path& file)
        : target(file)
        , name(target.wstring() + L"." + std::to_wstring(::GetCurrentProcessId())) {
        UserOnly user;
        if (user.get() != nullptr) {
            handle = ::CreateFileW(name.c_str(), GENERIC_WRITE, 0, user.get(), CREATE_NEW,
                                   FILE_ATTRIBUTE_NORMAL, nullptr);
        }
        if (handle == INVALID_HANDLE_VALUE) {
            throw cannotWrite(target);
        }
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;
    ~Draft() {
        close();
        if (!isNamed) {
            ::DeleteFileW(name.c_str());
        }
    }

    void write(std::string_view content) {
        while (!content.empty()) {
            constexpr std::size_t most = 1 << 20;
            DWORD count = 0;
            if (!::WriteFile(handle, content.data(), static_cast<DWORD>(std::min(content.size(), most)),
                             &count, nullptr)) {
                throw cannotWrite(target);
            }
            content.remove_prefix(count);
        }
        if (!::FlushFileBuffers(handle)) {
            throw cannotWrite(target);
        }
        close();
    }

    void takeName(bool replaces) {
        if (!::MoveFileExW(name.c_str(), target.c_str(), replaces ? MOVEFILE_REPLACE_EXISTING : 0)) {
            throw cannotWrite(target);
        }
        isNamed = true;
    }

private:
    void close() {
        if (handle != INVALID_HANDLE_VALUE) {
            ::CloseHandle(handle);
            handle = INVALID_HANDLE_VALUE;
        }
    }

    const std::filesystem::path target;
    const std::wstring name;
    HANDLE handle = INVALID_HANDLE_VALUE;
    bool isNamed = false;
};

} // namespace

void writePrivateFile(const std::filesystem::path& file, std::string_view content, bool replaces) {
    Draft draft(file);
    draft.write(content);
    draft.takeName(replaces);
}

} // namespace host::bundle
