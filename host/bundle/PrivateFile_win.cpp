#include "host/bundle/PrivateFile.h"

#include "host/HostError.h"

#include <windows.h>

#include <sddl.h>

#include <algorithm>
#include <string>

namespace host::bundle {
namespace {

HostError cannotWrite(const std::filesystem::path& file) {
    const DWORD error = ::GetLastError();
    return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS
               ? HostError("there is a file " + file.string() + " already")
               : HostError("cannot write " + file.string() + ": error " + std::to_string(error));
}

/// All rights for the owner, none for anybody else, nothing inherited.
class OwnerOnly {
public:
    OwnerOnly() {
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;OW)", SDDL_REVISION_1,
                                                               &descriptor, nullptr);
        attributes.lpSecurityDescriptor = descriptor;
    }
    OwnerOnly(const OwnerOnly&) = delete;
    OwnerOnly& operator=(const OwnerOnly&) = delete;
    ~OwnerOnly() { ::LocalFree(descriptor); }

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
        OwnerOnly owner;
        if (owner.get() != nullptr) {
            handle = ::CreateFileW(name.c_str(), GENERIC_WRITE, 0, owner.get(), CREATE_NEW,
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
