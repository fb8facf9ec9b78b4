#include "host/serve/EventDocument.h"

#include <gtest/gtest.h>

namespace {

using host::serve::browserReport;
using host::serve::eventDocument;

TEST(EventDocument, NamesItsEvent) {
    EXPECT_EQ(eventDocument("a_OnPress"), R"(<vtguiEvent id="a_OnPress"></vtguiEvent>)");
    EXPECT_EQ(eventDocument("<\"&>"), R"(<vtguiEvent id="&lt;&quot;&amp;&gt;"></vtguiEvent>)");
}

TEST(EventDocument, BrowserReportsTheControlThatIsAskedFor) {
    host::ScreenControl browser;
    browser.attributes = {
        {"id", "web"}, {"OnPress", "web_OnPress"}, {"OnPressID", "asked"}, {"OnError", "e"}};
    EXPECT_EQ(browserReport(browser, "OnPress", {{"value", "a\"b"}}),
              R"(<vtguiEvent id="web_OnPress"><webbrowser id="asked" value="a&quot;b"/></vtguiEvent>)");
    EXPECT_EQ(browserReport(browser, "OnError", {{"type", "t"}, {"value", ""}}),
              R"(<vtguiEvent id="e"><webbrowser id="web" type="t" value=""/></vtguiEvent>)");
}

} // namespace
