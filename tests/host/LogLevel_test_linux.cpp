// On Windows the folder for temporary files is each user's own.
#include "host/LogLevel.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(LogLevelFolder, IsPrivate) {
    const host::LogLevelFolder level("DBG_WARN");
    EXPECT_EQ(std::filesystem::status(level.path()).permissions(), std::filesystem::perms::owner_all);
}

} // namespace
