#include "host/LogLevel.h"

#include "host/Files.h"
#include "host/HostError.h"
#include "tests/host/Paths.h"
#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

TEST(LogLevelFolder, HoldsTheConfigurationAndGoesWithIt) {
    fs::path folder;
    {
        const host::LogLevelFolder level("DBG_WARN");
        folder = level.path();
        EXPECT_EQ(host::readFile(folder / "Norvane" / "Norvane Kestrel Suite" / "WREN" / "logconfig.json"),
                  "{\"global\":\"DBG_WARN\"}\n");
    }
    EXPECT_FALSE(fs::exists(folder));
}

TEST(LogLevelFolder, EachIsItsOwn) {
    const host::LogLevelFolder first("DBG_TRACE");
    const host::LogLevelFolder second("DBG_ERROR");
    EXPECT_NE(first.path(), second.path());
}

TEST(LogLevelFolder, WithoutATemporaryFolderThereIsOneClearError) {
    const test::ScopedEnvironment variable(test::temporaryFolderVariable, "/nonexistent");
    EXPECT_THROW(host::LogLevelFolder("DBG_TRACE"), host::HostError);
}

} // namespace
