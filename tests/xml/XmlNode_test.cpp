#include "xml/XmlNode.h"

#include "xml/XmlDoc.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(XmlNodeHandle, IsNullByDefault) { EXPECT_TRUE(XmlNode().isNull()); }

TEST(XmlNodeHandle, NullToleratesEveryOperation) {
    XmlNode none;
    EXPECT_TRUE(none.addChild("child").isNull());
    EXPECT_TRUE(none.firstChild("child").isNull());
    EXPECT_TRUE(none.firstChild(nullptr).isNull());
    EXPECT_TRUE(none.nextSibling("child").isNull());
    EXPECT_TRUE(none.nextSibling(nullptr).isNull());
    EXPECT_TRUE(none.nextInTree(none).isNull());
    EXPECT_TRUE(none.setAttribute("name", "value").isNull());
    EXPECT_EQ(none.getAttribute("name"), "");
    EXPECT_EQ(none.findAttribute("name"), nullptr);
    EXPECT_FALSE(none.removeAttribute("name"));
    none.setValue("text");
    EXPECT_STREQ(none.getName(), "");
}

TEST(XmlNodeHandle, CopiesReferToOneElement) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    XmlNode copy = node;
    copy.setAttribute("a", "1");
    EXPECT_EQ(node.getAttribute("a"), "1");
}

TEST(XmlNodeChildren, NullNameCreatesANamelessElement) {
    XmlDoc document;
    XmlNode root = document.addNode("root");
    const XmlNode child = root.addChild(nullptr);
    EXPECT_FALSE(child.isNull());
    EXPECT_STREQ(child.getName(), "");
    EXPECT_EQ(document.serialize(), "<root>\n\t</>\n</root>\n");
}

TEST(XmlNodeChildren, AreWalkedByNameOrAll) {
    XmlDoc document;
    ASSERT_TRUE(
        document.parse("<root>text<a n=\"1\"/>text<b n=\"2\"/><!-- --><![CDATA[c]]><a n=\"3\"/></root>"));
    const XmlNode root = document.firstNode("root");
    std::vector<std::string> all;
    for (XmlNode node = root.firstChild(nullptr); !node.isNull(); node = node.nextSibling(nullptr)) {
        all.push_back(node.getName() + node.getAttribute("n"));
    }
    EXPECT_EQ(all, (std::vector<std::string>{"a1", "b2", "a3"}));
    const XmlNode first = root.firstChild("a");
    EXPECT_EQ(first.getAttribute("n"), "1");
    EXPECT_EQ(first.nextSibling("a").getAttribute("n"), "3");
    EXPECT_TRUE(first.nextSibling("A").isNull());
    EXPECT_TRUE(root.firstChild("c").isNull());
}

TEST(XmlNodeChildren, TreeIsWalkedInDocumentOrderAndNotBeyondItsTop) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<top><a><b/>text<c><d/></c></a><e/></top><f/>"));
    const XmlNode top = document.firstNode("top");
    std::string names;
    for (XmlNode node = top; !node.isNull(); node = node.nextInTree(top)) {
        names += node.getName();
        names += ' ';
    }
    EXPECT_EQ(names, "top a b c d e ");
    EXPECT_TRUE(top.firstChild("e").nextInTree(top.firstChild("e")).isNull());
}

TEST(XmlNodeAttributes, SecondAssignmentReplacesInPlace) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    node.setAttribute("a", "1").setAttribute("b", "2").setAttribute("a", "a longer value");
    EXPECT_EQ(document.serialize(), "<root a=\"a longer value\" b=\"2\"/>\n");
}

TEST(XmlNodeAttributes, PrintInTheOrderOfTheirFirstAssignment) {
    XmlDoc document;
    document.addNode("root").setAttribute("z", "1").setAttribute("a", "2").setAttribute("m", "3");
    EXPECT_EQ(document.serialize(), "<root z=\"1\" a=\"2\" m=\"3\"/>\n");
}

TEST(XmlNodeAttributes, EmptyValueIsARealAttribute) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    node.setAttribute("a", "");
    EXPECT_EQ(document.serialize(), "<root a=\"\"/>\n");
    EXPECT_EQ(node.getAttribute("a"), "");
    EXPECT_NE(node.findAttribute("a"), nullptr);
    EXPECT_TRUE(node.removeAttribute("a"));
}

TEST(XmlNodeAttributes, NullNameOrValueDoesNothing) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    node.setAttribute("kept", "1")
        .setAttribute(nullptr, "x")
        .setAttribute("x", nullptr)
        .setAttribute("kept", nullptr);
    EXPECT_EQ(document.serialize(), "<root kept=\"1\"/>\n");
    EXPECT_EQ(node.getAttribute(nullptr), "");
    EXPECT_FALSE(node.removeAttribute(nullptr));
}

TEST(XmlNodeAttributes, NamesAreComparedExactly) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    node.setAttribute("name", "1")
        .setAttribute("Name", "2")
        .setAttribute("nam", "3")
        .setAttribute("names", "4");
    EXPECT_EQ(node.getAttribute("name"), "1");
    EXPECT_EQ(node.getAttribute("Name"), "2");
    EXPECT_EQ(node.getAttribute("nam"), "3");
    EXPECT_EQ(node.getAttribute("names"), "4");
    EXPECT_EQ(node.getAttribute("na"), "");
}

TEST(XmlNodeAttributes, StringsAreCopied) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    {
        std::string name = "name";
        std::string value = "value";
        node.setAttribute(name.c_str(), value.c_str());
        name = "####";
        value = "#####";
    }
    EXPECT_EQ(document.serialize(), "<root name=\"value\"/>\n");
}

TEST(XmlNodeAttributes, ValueMayComeFromTheElementItself) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    node.setAttribute("a", "1");
    node.setAttribute("a", node.findAttribute("a")).setAttribute("b", node.findAttribute("a"));
    EXPECT_EQ(document.serialize(), "<root a=\"1\" b=\"1\"/>\n");
}

TEST(XmlNodeAttributes, RemovalTellsWhetherThereWasOne) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    node.setAttribute("a", "1").setAttribute("b", "2").setAttribute("c", "3");
    EXPECT_TRUE(node.removeAttribute("b"));
    EXPECT_FALSE(node.removeAttribute("b"));
    EXPECT_EQ(document.serialize(), "<root a=\"1\" c=\"3\"/>\n");
    EXPECT_TRUE(node.removeAttribute("a"));
    EXPECT_TRUE(node.removeAttribute("c"));
    node.setAttribute("b", "4");
    EXPECT_EQ(document.serialize(), "<root b=\"4\"/>\n");
}

TEST(XmlNodeValue, IsTheElementsText) {
    XmlDoc document;
    XmlNode node = document.addNode("root");
    node.setValue("one");
    node.setValue(nullptr);
    EXPECT_EQ(document.serialize(), "<root>one</root>\n");
    node.setValue("two");
    EXPECT_EQ(document.serialize(), "<root>two</root>\n");
    node.setValue("");
    EXPECT_EQ(document.serialize(), "<root/>\n");
}

TEST(XmlNodeValue, ReplacesTheTextOfAParsedElement) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<root>old<![CDATA[older]]></root>"));
    document.firstNode("root").setValue("new");
    EXPECT_EQ(document.serialize(), "<root>new</root>\n");
}

} // namespace
