#include "common2/filesystem/File2.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

void expectFailure(const std::filesystem::path& path, const char* words) {
    const test::LogCapture capture;
    std::string text = "untouched";
    EXPECT_EQ(File2::ReadSync(path, text), words);
    EXPECT_EQ(text, "untouched");
    EXPECT_EQ(capture.messages(), std::vector<std::string>{"failed to read file " + path.string()});
}

TEST(File2OnLinux, WhatMayNeverEndFailsAtOnce) {
    const test::TemporaryFolder folder;
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectFailure(pipe, "ios_base::failbit set");
    expectFailure("/dev/zero", "ios_base::failbit set");
}

TEST(File2OnLinux, FileThatBreaksOffInReadingFails) {
    // Opens, but cannot be read from its beginning: nothing is mapped there.
    expectFailure("/proc/self/mem", "ios_base::badbit set");
}

TEST(File2OnLinux, FollowsALink) {
    const test::TemporaryFolder folder;
    const auto file = folder.write("n\xC3\xA4me with blanks", "content");
    std::filesystem::create_symlink(file, folder.path() / "link");
    std::string text;
    EXPECT_EQ(File2::ReadSync(folder.path() / "link", text), "");
    EXPECT_EQ(text, "content");
}

TEST(File2OnLinux, FileFarBeyondTheLimitFails) {
    const test::TemporaryFolder folder;
    const auto file = folder.write("huge", "");
    std::filesystem::resize_file(file, std::uintmax_t{1} << 40);
    expectFailure(file, "ios_base::badbit set");
}

} // namespace
