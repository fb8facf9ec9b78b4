#include "host/Text.h"
#include "tests/module/ModuleSession.h"
#include "tests/support/Documents.h"
#include "tests/support/ScopedLocale_linux.h"

#include <boost/json/serialize.hpp>
#include <gtest/gtest.h>

#include <string>

namespace {

class ModuleInHostLocale : public testing::TestWithParam<const char*> {};

TEST_P(ModuleInHostLocale, EverythingItSaysIsUtf8) {
    const test::ScopedLocale locale(GetParam());
    test::ModuleSession session;
    std::string said;
    const auto note = [&] {
        for (const auto& output : session.outputs()) {
            said += boost::json::serialize(output);
        }
    };
    session.start();
    note();
    for (const char* state : {"init", "\u30C8"}) {
        const auto document =
            test::with(test::enrolledStatusDocument(), "/state", boost::json::string(state));
        session.deliver("StatusNotification", test::textOf(document));
        note();
    }
    EXPECT_TRUE(host::isUtf8(said));
    EXPECT_NE(said.find("Wren Gate (Init)"), std::string::npos);
    EXPECT_NE(said.find("Wren Gate (\u30C8)"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Foreign, ModuleInHostLocale, testing::ValuesIn(test::foreignLocales),
                         [](const auto& locale) { return std::string(locale.param, 2); });

} // namespace
