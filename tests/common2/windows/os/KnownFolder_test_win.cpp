#include "common2/windows/os/KnownFolder.h"

#include "host/system/Detour_win.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <initguid.h> // the folders' ids become data of this file

#include <windows.h>

#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>

namespace {

/// The system's answer to a program that asks it for a folder itself.
std::filesystem::path folderOf(REFKNOWNFOLDERID id) {
    PWSTR text = nullptr;
    EXPECT_EQ(::SHGetKnownFolderPath(id, 0, nullptr, &text), S_OK);
    const std::filesystem::path path = text;
    ::CoTaskMemFree(text);
    return path;
}

TEST(KnownFolderTest, EveryIdHasItsFolder) {
    EXPECT_EQ(KnownFolder::GetPath(0), folderOf(FOLDERID_ProgramFiles));
    EXPECT_EQ(KnownFolder::GetPath(1), folderOf(FOLDERID_ProgramFilesX86));
    EXPECT_EQ(KnownFolder::GetPath(2), folderOf(FOLDERID_System));
    EXPECT_EQ(KnownFolder::GetPath(3), folderOf(FOLDERID_SystemX86));
    EXPECT_EQ(KnownFolder::GetPath(4), folderOf(FOLDERID_ProgramData));
    EXPECT_EQ(KnownFolder::GetPath(5), folderOf(FOLDERID_LocalAppData));
    EXPECT_EQ(KnownFolder::GetPath(6), folderOf(FOLDERID_Profile));
}

TEST(KnownFolderTest, OtherIdIsLoggedAndYieldsAnEmptyPath) {
    for (const int id : {7, -1}) {
        const test::LogCapture capture;
        EXPECT_EQ(KnownFolder::GetPath(id), "");
        const auto records = capture.records();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].severity, 3);
        EXPECT_EQ(records[0].function, "KnownFolder::GetPath");
        EXPECT_EQ(records[0].message, "SHGetKnownFolderPath failed: " + std::to_string(E_INVALIDARG));
    }
}

GUID asked{};
DWORD askedFlags = 1;
HANDLE askedToken = INVALID_HANDLE_VALUE;

HRESULT WINAPI keepQuestion(REFKNOWNFOLDERID id, DWORD flags, HANDLE token, PWSTR* path) {
    asked = id;
    askedFlags = flags;
    askedToken = token;
    *path = nullptr;
    return E_ACCESSDENIED;
}

TEST(KnownFolderTest, FailureIsLoggedWithItsCodeAndYieldsAnEmptyPath) {
    const host::Detour detour(L"shell32.dll", "SHGetKnownFolderPath", reinterpret_cast<void*>(&keepQuestion));
    const test::LogCapture capture;
    EXPECT_EQ(KnownFolder::GetPath(4), "");
    EXPECT_TRUE(asked == FOLDERID_ProgramData);
    EXPECT_EQ(askedFlags, 0u);
    EXPECT_EQ(askedToken, nullptr);
    EXPECT_EQ(capture.messages(),
              std::vector<std::string>{"SHGetKnownFolderPath failed: " + std::to_string(E_ACCESSDENIED)});
}

} // namespace
