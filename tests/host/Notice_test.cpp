#include "host/Notice.h"

#include "host/HostError.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using host::parseNotice;

TEST(Notice, HoldsElementsAttributesAndText) {
    const auto root =
        parseNotice("<?xml version=\"1.0\"?><!-- c --><vtguiNotice module=\"m\" type=\"setup\">\n"
                    "\t<label id=\"a&amp;b\" value=\"&quot;&lt;\"/>\n\t<log>&lt;text&gt;</log>"
                    "<row><label id=\"inner\"/></row></vtguiNotice>");
    EXPECT_EQ(root.name, "vtguiNotice");
    EXPECT_EQ(root.attribute("module"), "m");
    EXPECT_EQ(root.attribute("missing"), "");
    EXPECT_TRUE(root.has("type"));
    EXPECT_FALSE(root.has("missing"));
    ASSERT_EQ(root.children.size(), 3u);
    EXPECT_EQ(root.children[0].attribute("id"), "a&b");
    EXPECT_EQ(root.children[0].attribute("value"), "\"<");
    EXPECT_EQ(root.child("log")->text, "<text>");
    EXPECT_EQ(root.child("row")->child("label")->attribute("id"), "inner");
    EXPECT_EQ(root.child("button"), nullptr);
}

TEST(Notice, RefusesAnythingElse) {
    for (const char* text :
         {"", " ", "text", "<vtguiNotice>", "<vtguiEvent id=\"x\"/>", "<VtguiNotice/>", "<a"}) {
        EXPECT_THROW(parseNotice(text), host::HostError) << text;
    }
}

} // namespace
