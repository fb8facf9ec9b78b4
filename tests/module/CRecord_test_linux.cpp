#include "tests/module/ModuleSession.h"

#include "wren/Plugin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

unsigned decoyCalls = 0;

} // namespace

/// A function of the host's own by the module's name, which this system would bind the module's calls to if
/// the module didn't insist on its own; another module's would be one as well.
Plugin* CreatePlugin(const char*) {
    ++decoyCalls;
    return nullptr;
}

namespace {

TEST(CRecordAmongOthers, ComesFromTheModulesOwnCreatePlugin) {
    test::ModuleSession session;
    EXPECT_THAT(session.run(R"({"do":"create","name":"c_com.norvane.vantor.presentation","kind":"c"})"),
                testing::Contains("created true"));
    EXPECT_EQ(decoyCalls, 0u);
}

} // namespace
