#include "common2/filesystem/File2.h"

#include "tests/support/QuietLog.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(File2OnWindows, WhatMayNeverEndFailsAtOnce) {
    const test::QuietLog quiet;
    const std::wstring pipe = L"\\\\.\\pipe\\wren-file2-test-" + std::to_wstring(::GetCurrentProcessId());
    const HANDLE server =
        ::CreateNamedPipeW(pipe.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 4096, 4096, 0, nullptr);
    ASSERT_NE(server, INVALID_HANDLE_VALUE);
    for (const std::wstring& path : {pipe, std::wstring(L"NUL"), std::wstring(L"CON")}) {
        std::string text = "untouched";
        EXPECT_EQ(File2::ReadSync(path, text), "ios_base::failbit set")
            << std::string(path.begin(), path.end());
        EXPECT_EQ(text, "untouched");
    }
    ::CloseHandle(server);
}

} // namespace
