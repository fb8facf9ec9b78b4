// Links among the files, which on Windows only administrators make.
#include "host/serve/Assets.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class AssetLinks : public ::testing::Test {
protected:
    AssetLinks() {
        folder.write("app/index.html", "page");
        folder.write("other/file.html", "file");
    }

    const test::TemporaryFolder folder;
};

TEST_F(AssetLinks, AreNotFollowed) {
    fs::create_symlink(folder.path() / "other", folder.path() / "app/linked");
    fs::create_symlink(folder.path() / "other/file.html", folder.path() / "app/link.html");
    const host::serve::Assets assets(folder.path());
    EXPECT_NE(assets.find("app/index.html"), nullptr);
    EXPECT_EQ(assets.find("app/link.html"), nullptr);
    EXPECT_EQ(assets.find("app/linked/file.html"), nullptr);
}

TEST_F(AssetLinks, FolderItselfMayBeOne) {
    fs::create_directory(folder.path() / "share");
    fs::create_symlink(folder.path() / "app", folder.path() / "share/app");
    EXPECT_NE(host::serve::Assets(folder.path() / "share").find("app/index.html"), nullptr);
}

} // namespace
