#include "common/QuillInstallPaths.h"

#include "common2/windows/os/KnownFolder.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

namespace {

TEST(QuillInstallPaths, ContextChoosesTheFolder) {
    const auto below = [](int folder) {
        return KnownFolder::GetPath(folder) / "Norvane" / "Norvane Kestrel Suite" / "WREN";
    };
    EXPECT_EQ(QuillInstallPaths::GetProgramDataPath(0), below(4));
    EXPECT_EQ(QuillInstallPaths::GetProgramDataPath(1), below(5));
}

TEST(QuillInstallPaths, OtherContextIsLoggedAndYieldsAnEmptyPath) {
    const test::LogCapture capture;
    EXPECT_EQ(QuillInstallPaths::GetProgramDataPath(2), "");
    EXPECT_EQ(QuillInstallPaths::GetProgramDataPath(-1), "");
    EXPECT_EQ(capture.messages(), (std::vector<std::string>{"Invalid context: 2", "Invalid context: -1"}));
    EXPECT_EQ(capture.records()[0].function, "QuillInstallPaths::GetProgramDataPath");
}

} // namespace
