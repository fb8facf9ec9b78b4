#include "host/bundle/PrivateFile.h"

#include "host/Files.h"
#include "host/HostError.h"
#include "host/system/PrivateFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <sys/resource.h>

namespace {

namespace fs = std::filesystem;
using host::bundle::writePrivateFile;

class PrivateFile : public ::testing::Test {
protected:
    std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.path()), {}));
    }
    std::string failure(bool replaces) const {
        try {
            writePrivateFile(file, "new", replaces);
        } catch (const host::HostError& fault) {
            return fault.what();
        }
        return "no failure";
    }

    const host::PrivateFolder folder{"wren-test"};
    const fs::path file = folder.path() / "file";
};

TEST_F(PrivateFile, IsForItsOwnerOnly) {
    writePrivateFile(file, std::string("a\0b", 3), false);
    EXPECT_EQ(host::readFile(file), std::string("a\0b", 3));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(entries(), 1u);
}

TEST_F(PrivateFile, ReplacesOnlyWhatItMay) {
    writePrivateFile(file, "old", false);
    EXPECT_EQ(failure(false), "there is a file " + file.string() + " already");
    EXPECT_EQ(host::readFile(file), "old");
    EXPECT_EQ(entries(), 1u);
    writePrivateFile(file, "new", true);
    EXPECT_EQ(host::readFile(file), "new");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(PrivateFile, ReplacesALinkAndNotWhatItLeadsTo) {
    writePrivateFile(folder.path() / "other", "other", false);
    fs::create_symlink("other", file);
    EXPECT_EQ(failure(false), "there is a file " + file.string() + " already");
    writePrivateFile(file, "new", true);
    EXPECT_EQ(host::readFile(folder.path() / "other"), "other");
    EXPECT_FALSE(fs::is_symlink(file));
}

TEST_F(PrivateFile, LeavesNothingHalfBehind) {
    writePrivateFile(file, "old", false);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit one{1, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &one);
    const std::string fault = failure(true);
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, formerHandler);
    EXPECT_EQ(fault, "cannot write " + file.string() + ": File too large");
    EXPECT_EQ(host::readFile(file), "old");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(PrivateFile, FolderThatIsNotThereIsAnError) {
    EXPECT_THROW(writePrivateFile(file / "below", "x", true), host::HostError);
}

} // namespace
