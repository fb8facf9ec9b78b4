// Links, which on Windows only administrators make, and a limit for files, which Windows does not have.
#include "tests/host/bundle/PrivateFileTest.h"

#include <csignal>
#include <sys/resource.h>

namespace {

namespace fs = std::filesystem;
using host::bundle::writePrivateFile;
using test::PrivateFile;

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

} // namespace
