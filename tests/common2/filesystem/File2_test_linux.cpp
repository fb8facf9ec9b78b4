#include "common2/filesystem/File2.h"

#include "tests/support/LogCapture.h"
#include "tests/support/QuietLog.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

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

/// Takes turns at putting a pipe and a file in the same place, and writes into the pipe for whoever has
/// opened it for reading.
class ChangingPlace {
public:
    ChangingPlace() {
        EXPECT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        ::signal(SIGPIPE, SIG_IGN); // the reader may have gone
        worker = std::thread([this] { change(); });
    }
    ChangingPlace(const ChangingPlace&) = delete;
    ChangingPlace& operator=(const ChangingPlace&) = delete;
    ~ChangingPlace() {
        isOver = true;
        worker.join();
        ::signal(SIGPIPE, SIG_DFL);
    }

    const std::filesystem::path& path() const { return place; }

private:
    void change() {
        while (!isOver) {
            replaceBy(file);
            replaceBy(pipe);
            const int end = ::open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC); // fails without a reader
            if (end >= 0) {
                EXPECT_LE(::write(end, "pipe", 4), 4);
                ::close(end);
            }
        }
    }
    void replaceBy(const std::filesystem::path& source) const {
        std::filesystem::create_hard_link(source, next);
        std::filesystem::rename(next, place);
    }

    test::TemporaryFolder folder;
    const std::filesystem::path pipe = folder.path() / "pipe";
    const std::filesystem::path file = folder.write("file", "file");
    const std::filesystem::path next = folder.path() / "next";
    const std::filesystem::path place = folder.write("place", "file");
    std::atomic<bool> isOver = false;
    std::thread worker;
};

TEST(File2OnLinux, APipeThatTakesTheFilesPlaceMeanwhileIsNeverRead) {
    const test::QuietLog quiet;
    const ChangingPlace changing;
    int filesRead = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string text;
        if (File2::ReadSync(changing.path(), text).empty()) {
            ASSERT_EQ(text, "file") << round;
            ++filesRead;
        }
    }
    EXPECT_GT(filesRead, 0);
}

} // namespace
