#include "host/serve/Assets.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

class Assets : public ::testing::Test {
protected:
    Assets() {
        for (const char* file : {"app/index.html", "app/deep/down/page.js", "app/style.css", "app/data.json",
                                 "app/icon.svg", "app/photo.png", "app/notes.txt", "app/.secret.js",
                                 "app/.git/config.json", "pages/a/b.html", "other/file.html", "file.html"}) {
            fs::create_directories((folder / file).parent_path());
            std::ofstream(folder / file) << file;
        }
    }

    const test::TemporaryFolder parent;
    const fs::path folder = parent.path() / "wren assets";
};

TEST_F(Assets, AreTheFilesBelowAppAndPages) {
    const host::serve::Assets assets(folder);
    for (const auto& [name, type] : {
             std::pair("app/index.html", "text/html; charset=utf-8"),
             std::pair("app/deep/down/page.js", "text/javascript; charset=utf-8"),
             std::pair("app/style.css", "text/css; charset=utf-8"),
             std::pair("app/data.json", "application/json"),
             std::pair("app/icon.svg", "image/svg+xml"),
             std::pair("app/photo.png", "image/png"),
             std::pair("pages/a/b.html", "text/html; charset=utf-8"),
         }) {
        const host::serve::Asset* asset = assets.find(name);
        ASSERT_NE(asset, nullptr) << name;
        EXPECT_EQ(asset->file, folder / name);
        EXPECT_EQ(asset->type, type) << name;
    }
}

TEST_F(Assets, NothingElseIsFound) {
    const host::serve::Assets assets(folder);
    for (const char* name :
         {"", "app", "app/", "file.html", "other/file.html", "app/notes.txt", "app/.secret.js",
          "app/.git/config.json", "app/../file.html", "app/deep/../index.html", "/etc/passwd",
          "app//index.html", "./app/index.html", "app/%69ndex.html"}) {
        EXPECT_EQ(assets.find(name), nullptr) << name;
    }
}

TEST_F(Assets, FolderThatIsNotThereHasNone) {
    EXPECT_EQ(host::serve::Assets(folder / "nowhere").find("app/index.html"), nullptr);
}

} // namespace
