#include "common2/filesystem/File2.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class File2Test : public testing::Test {
protected:
    void expectFailure(const std::filesystem::path& path, const char* words) {
        const test::LogCapture capture;
        std::string text = "untouched";
        EXPECT_EQ(File2::ReadSync(path, text), words);
        EXPECT_EQ(text, "untouched");
        const auto records = capture.records();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].severity, 3);
        EXPECT_EQ(records[0].function, "File2::ReadSync");
        EXPECT_EQ(records[0].message, "failed to read file " + path.string());
    }

    test::TemporaryFolder folder;
};

TEST_F(File2Test, ReadsAllBytesOfAFile) {
    for (const std::size_t size : {0u, 1u, 16383u, 16384u, 16385u, 100000u}) {
        std::string content(size, 'x');
        for (std::size_t index = 0; index < size; ++index) {
            content[index] = static_cast<char>(index * 7);
        }
        const test::LogCapture capture;
        std::string text = "replaced";
        EXPECT_EQ(File2::ReadSync(folder.write("file", content), text), "");
        EXPECT_EQ(text, content);
        EXPECT_TRUE(capture.records().empty());
    }
}

TEST_F(File2Test, TakesAnyName) {
    std::string text;
    EXPECT_EQ(File2::ReadSync(folder.write(u8"n\u00E4me with blanks", "content"), text), "");
    EXPECT_EQ(text, "content");
}

TEST_F(File2Test, MissingFileFails) { expectFailure(folder.path() / "missing", "ios_base::failbit set"); }

TEST_F(File2Test, EmptyPathFails) { expectFailure({}, "ios_base::failbit set"); }

TEST_F(File2Test, DirectoryFails) { expectFailure(folder.path(), "ios_base::failbit set"); }

TEST_F(File2Test, FileBeyondTheLimitFails) {
    const auto file = folder.write("huge", "");
    std::filesystem::resize_file(file, std::uintmax_t{File2::largestFile} + 1);
    expectFailure(file, "ios_base::badbit set");
}

TEST_F(File2Test, FileAtTheLimitIsRead) {
    const auto file = folder.write("large", "");
    std::filesystem::resize_file(file, File2::largestFile);
    std::string text;
    EXPECT_EQ(File2::ReadSync(file, text), "");
    EXPECT_EQ(text.size(), File2::largestFile);
}

} // namespace
