#include "common/QuillInstallPaths.h"

#include "tests/support/LogCapture.h"
#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

namespace {

TEST(QuillInstallPaths, ContextChoosesTheFolder) {
    const test::ScopedEnvironment data("WREN_PROGRAM_DATA", "/machine");
    const test::ScopedEnvironment home("XDG_DATA_HOME", "/user");
    EXPECT_EQ(QuillInstallPaths::GetProgramDataPath(0), "/machine/Norvane/Norvane Kestrel Suite/WREN");
    EXPECT_EQ(QuillInstallPaths::GetProgramDataPath(1), "/user/Norvane/Norvane Kestrel Suite/WREN");
}

TEST(QuillInstallPaths, OtherContextIsLoggedAndYieldsAnEmptyPath) {
    const test::LogCapture capture;
    EXPECT_EQ(QuillInstallPaths::GetProgramDataPath(2), "");
    EXPECT_EQ(QuillInstallPaths::GetProgramDataPath(-1), "");
    EXPECT_EQ(capture.messages(), (std::vector<std::string>{"Invalid context: 2", "Invalid context: -1"}));
    EXPECT_EQ(capture.records()[0].function, "QuillInstallPaths::GetProgramDataPath");
}

} // namespace
