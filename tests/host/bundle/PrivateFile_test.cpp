#include "tests/host/bundle/PrivateFileTest.h"

#include "tests/host/PrivateFiles.h"

namespace {

using host::bundle::writePrivateFile;
using test::PrivateFile;

TEST_F(PrivateFile, IsForItsOwnerOnly) {
    writePrivateFile(file, std::string("a\0b", 3), false);
    EXPECT_EQ(host::readFile(file), std::string("a\0b", 3));
    EXPECT_TRUE(test::isForItsOwnerOnly(file));
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

TEST_F(PrivateFile, FolderThatIsNotThereIsAnError) {
    EXPECT_THROW(writePrivateFile(file / "below", "x", true), host::HostError);
}

} // namespace
