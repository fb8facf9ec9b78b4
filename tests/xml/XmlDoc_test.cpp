#include "xml/XmlDoc.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(XmlDocParse, NullTextYieldsFalseAndChangesNothing) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<a/>"));
    EXPECT_FALSE(document.parse(nullptr));
    EXPECT_EQ(document.serialize(), "<a/>\n");
}

TEST(XmlDocParse, EmptyTextYieldsADocumentWithoutElement) {
    XmlDoc document;
    EXPECT_TRUE(document.parse(""));
    EXPECT_TRUE(document.firstNode("vtguiEvent").isNull());
    EXPECT_TRUE(document.firstNode("").isNull());
    EXPECT_EQ(document.serialize(), "");
}

TEST(XmlDocParse, ByteOrderMarkBeforeTheRootIsSkipped) {
    XmlDoc document;
    EXPECT_TRUE(document.parse("\xEF\xBB\xBF<root id=\"1\"/>"));
    EXPECT_EQ(document.firstNode("root").getAttribute("id"), "1");
    EXPECT_EQ(document.serialize(), "<root id=\"1\"/>\n");
}

TEST(XmlDocParse, UnterminatedTagYieldsFalseAndNoElement) {
    XmlDoc document;
    EXPECT_FALSE(document.parse("<root><child"));
    EXPECT_TRUE(document.firstNode("root").isNull());
    EXPECT_EQ(document.serialize(), "");
}

TEST(XmlDocParse, GoodTextAfterABadOneSucceeds) {
    XmlDoc document;
    EXPECT_FALSE(document.parse("<root><child"));
    EXPECT_TRUE(document.parse("<root><child/></root>"));
    EXPECT_EQ(document.serialize(), "<root>\n\t<child/>\n</root>\n");
}

TEST(XmlDocParse, BadTextAfterAGoodOneLeavesNoElement) {
    XmlDoc document;
    EXPECT_TRUE(document.parse("<root/>"));
    EXPECT_FALSE(document.parse("no markup"));
    EXPECT_TRUE(document.firstNode("root").isNull());
}

TEST(XmlDocParse, EveryBrokenTextYieldsFalse) {
    for (const char* text :
         {"<",           "<>",      "< a/>",       "</a>",      "<a",    "<a ",    "<a b",
          "<a b=",       "<a b=c>", "<a b=\"",     "<a/",       "<a>",   "<a></a", "<a>&#x110000;</a>",
          "<a>&#65</a>", "<!--",    "<!DOCTYPE [", "<![CDATA[", "<?xml", "<?pi",   "text",
          "<a/><b",      "<a/>text"}) {
        XmlDoc document;
        EXPECT_FALSE(document.parse(text)) << text;
        EXPECT_EQ(document.serialize(), "") << text;
    }
}

TEST(XmlDocParse, SkipsCommentsDeclarationsAndInstructions) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<?xml version=\"1.0\"?><!DOCTYPE a [<!ELEMENT a ANY>]><!-- one --><?do it?>"
                               "<a><!-- two --><b/></a>"));
    EXPECT_EQ(document.serialize(), "<a>\n\t<b/>\n</a>\n");
}

TEST(XmlDocParse, ExpandsCharacterAndEntityReferences) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<a b=\"&lt;&gt;&amp;&quot;&apos;&#65;&#x20AC;&unknown;\"/>"));
    EXPECT_EQ(document.firstNode("a").getAttribute("b"), "<>&\"'A\xE2\x82\xAC&unknown;");
}

TEST(XmlDocParse, AttributeValueEndsAtAnEncodedNul) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<a b=\"x&#0;y\"/>"));
    EXPECT_EQ(document.firstNode("a").getAttribute("b"), "x");
}

TEST(XmlDocParse, DoesNotKeepTheCallersText) {
    XmlDoc document;
    {
        std::string text = "<root name=\"value\">text</root>";
        ASSERT_TRUE(document.parse(text.c_str()));
        text.assign(text.size(), '#');
    }
    EXPECT_EQ(document.serialize(), "<root name=\"value\">text</root>\n");
}

TEST(XmlDocParse, TakesATextThatIsPartOfTheDocument) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<outer text=\"&lt;inner/&gt;\"/>"));
    ASSERT_TRUE(document.parse(document.firstNode("outer").findAttribute("text")));
    EXPECT_EQ(document.serialize(), "<inner/>\n");
}

TEST(XmlDocParse, TakesATextBeyondThePools) {
    std::string text = "<root>";
    for (int count = 0; count < 5000; ++count) {
        text += "<child id=\"a\"/>";
    }
    text += "</root>";
    XmlDoc document;
    ASSERT_TRUE(document.parse(text.c_str()));
    int children = 0;
    for (XmlNode child = document.firstNode("root").firstChild("child"); !child.isNull();
         child = child.nextSibling("child")) {
        ++children;
    }
    EXPECT_EQ(children, 5000);
}

TEST(XmlDocAddNode, NullNameGivesANullHandle) {
    XmlDoc document;
    EXPECT_TRUE(document.addNode(nullptr).isNull());
    EXPECT_EQ(document.serialize(), "");
}

TEST(XmlDocAddNode, CopiesTheName) {
    XmlDoc document;
    {
        std::string name = "root";
        document.addNode(name.c_str());
        name = "####";
    }
    EXPECT_EQ(document.serialize(), "<root/>\n");
}

TEST(XmlDocFirstNode, ComparesNamesExactly) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<roo/><Root/><roots/><root id=\"1\"/><root id=\"2\"/>"));
    EXPECT_EQ(document.firstNode("root").getAttribute("id"), "1");
    EXPECT_TRUE(document.firstNode("ROOT").isNull());
    EXPECT_TRUE(document.firstNode(nullptr).isNull());
}

TEST(XmlDocSerialize, PrintsOnlyTheFirstElement) {
    XmlDoc document;
    document.addNode("first");
    document.addNode("second");
    EXPECT_EQ(document.serialize(), "<first/>\n");
}

TEST(XmlDocSerialize, PassesOverWhatIsNoElement) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<![CDATA[loose]]><root/>"));
    EXPECT_EQ(document.serialize(), "<root/>\n");
}

TEST(XmlDocSerialize, IndentsByTabsWithOneElementALine) {
    XmlDoc document;
    XmlNode root = document.addNode("root");
    root.addChild("a").addChild("b").setAttribute("n", "1");
    root.addChild("c").setValue("text");
    EXPECT_EQ(document.serialize(), "<root>\n\t<a>\n\t\t<b n=\"1\"/>\n\t</a>\n\t<c>text</c>\n</root>\n");
}

TEST(XmlDocSerialize, EscapesTextAndValues) {
    XmlDoc document;
    XmlNode root = document.addNode("root");
    root.setAttribute("plain", "<'&>").setAttribute("quoted", "\"<'&>");
    root.setValue("<>&\"'");
    EXPECT_EQ(document.serialize(), "<root plain=\"&lt;'&amp;&gt;\" quoted='\"&lt;&apos;&amp;&gt;'>"
                                    "&lt;&gt;&amp;&quot;&apos;</root>\n");
}

TEST(XmlDocSerialize, AttributeValueSurvivesTheRoundTrip) {
    const std::string value = "a \"b\" & <c> 'd' \xC3\xA9\t\n";
    XmlDoc written;
    written.addNode("root").setAttribute("value", value.c_str());
    XmlDoc read;
    ASSERT_TRUE(read.parse(written.serialize().c_str()));
    EXPECT_EQ(read.firstNode("root").getAttribute("value"), value);
}

} // namespace
