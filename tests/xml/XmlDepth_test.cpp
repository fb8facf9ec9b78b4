#include "xml/XmlDepth.h"

#include "tests/support/Sanitizer.h"
#include "xml/RapidXml.h"
#include "xml/XmlDoc.h"
#include "xml/XmlUIEvent.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// In bytes: what a thread of a host has at the least. A sanitizer's frames are several times as large.
constexpr std::size_t smallStack = test::isSanitized ? 8 << 20 : 1 << 20;

std::string repeated(std::string_view piece, std::size_t times) {
    std::string text;
    for (std::size_t time = 0; time < times; ++time) {
        text += piece;
    }
    return text;
}

std::string nested(std::size_t depth) { return repeated("<a>", depth) + repeated("</a>", depth); }

/// The depth that the scan tells: the least limit that the text keeps to.
std::size_t depthOf(const std::string& text) {
    std::size_t depth = 0;
    while (nestsDeeperThan(text.c_str(), depth)) {
        ++depth;
    }
    return depth;
}

void onAStackOf(std::size_t bytes, std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
    pthread_t thread;
    const auto run = [](void* function) -> void* {
        (*static_cast<std::function<void()>*>(function))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(XmlDepth, TextWithoutElementsHasNone) {
    for (const char* text :
         {"", " ", "text", "<!-- <a> -->", "<?a <b> ?>", "<!DOCTYPE a [<!ELEMENT a ANY>]>"}) {
        EXPECT_EQ(depthOf(text), 0u) << text;
    }
}

TEST(XmlDepth, EachElementWithinAnElementCounts) {
    EXPECT_EQ(depthOf("<a/>"), 1u);
    EXPECT_EQ(depthOf("<a></a>"), 1u);
    EXPECT_EQ(depthOf("<a><b/></a>"), 2u);
    EXPECT_EQ(depthOf("<a><b><c/></b><d/></a>"), 3u);
    EXPECT_EQ(depthOf(nested(77)), 77u);
}

TEST(XmlDepth, ElementsBesideEachOtherDoNotNest) {
    EXPECT_EQ(depthOf("<a>" + repeated("<b></b>", 5000) + "</a>"), 2u);
    EXPECT_EQ(depthOf("<a>" + repeated("<b/>", 5000) + "</a>"), 2u);
    EXPECT_EQ(depthOf(repeated("<a/>", 5000)), 1u);
    EXPECT_EQ(depthOf(repeated("<a></a>", 5000)), 1u);
}

TEST(XmlDepth, WhatOnlyLooksLikeAnElementDoesNotCount) {
    for (const char* inner : {"<!-- <b><c> -->", "<!--><b>-->", "<![CDATA[<b><c>]]>", "<![CDATA[]]<b>]]>",
                              "<?pi <b> ?>", "<?pi > <b>?>", "<!other <b <c>", "<!DOCTYPE b <c ]>",
                              "<!DOCTYPE b [<!ENTITY c \"<d>\"> [<e>] > ] >", "&lt;b&gt;"}) {
        EXPECT_EQ(depthOf(std::string("<a>") + inner + "</a>"), 1u) << inner;
    }
}

TEST(XmlDepth, WhatFollowsADisguiseCountsAgain) {
    for (const char* inner : {"<!-- -- > -->", "<!-->-->", "<![CDATA[ ]] > ]]>", "<?xml version='1.0'?>",
                              "<?b?>", "<!b>", "<!DOCTYPE b [ ]]>", "<!-b>", "<![CDAT[>", "<!DOCTYPEb [>"}) {
        EXPECT_EQ(depthOf(std::string("<a>") + inner + "<b/></a>"), 2u) << inner;
    }
}

TEST(XmlDepth, AttributesMayHoldMarkup) {
    EXPECT_EQ(depthOf(R"(<a b="<c><d>" e='/>'><f/></a>)"), 2u);
    EXPECT_EQ(depthOf(R"(<a b="'>" c='">'/>)"), 1u);
    EXPECT_EQ(depthOf("<a \r\n\tb \n=\t '/>' \n/>"), 1u);
    EXPECT_EQ(depthOf("<a b='1'c='2'><d/></a>"), 2u);
}

TEST(XmlDepth, NamesMayHoldWhatTheLibraryAllows) {
    EXPECT_EQ(depthOf(R"(<a"'><b/></a>)"), 2u);
    EXPECT_EQ(depthOf(R"(<a b"'="<c>"><d/></a>)"), 2u);
    EXPECT_EQ(depthOf("<a=b!c<d/>"), 1u);
}

TEST(XmlDepth, AnEndTagMayHoldMarkupInItsName) {
    EXPECT_EQ(depthOf("<a></=<b></c><d/>"), 1u);
    EXPECT_EQ(depthOf("<a><b></<c ><d/></a>"), 2u);
}

TEST(XmlDepth, NothingBehindABrokenTagCounts) {
    for (const char* broken : {"</a>", "<>", "< a>", "<a b>", "<a b=>", "<a b=c>", "<a b='", "<!--", "<?a"}) {
        EXPECT_LE(depthOf(broken + nested(9)), 1u) << broken;
    }
}

TEST(XmlDepth, EveryBeginningOfATextIsSafeToScan) {
    const std::string whole =
        "<?xml version=\"1.0\"?><!DOCTYPE a [<!ELEMENT a ANY>]><!-- c --><a b='c' d=\"e\">"
        "<![CDATA[x]]><f/></a>";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        // Of a size of its own each, for a sanitizer to see where the scan ends.
        const std::vector<char> text = [&] {
            std::vector<char> copy(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            copy.push_back('\0');
            return copy;
        }();
        EXPECT_FALSE(nestsDeeperThan(text.data(), 2)) << length;
    }
}

/// The depth of what the library made of a text. Parsed without validation, as events are.
std::size_t depthInLibrary(std::string text, bool& isTaken) {
    rapidxml::xml_document<char> document;
    isTaken = true;
    try {
        document.parse<rapidxml::parse_default>(text.data());
    } catch (const rapidxml::parse_error&) {
        isTaken = false;
        return 0;
    }
    std::size_t deepest = 0;
    std::vector<std::pair<const rapidxml::xml_node<char>*, std::size_t>> waiting{{&document, 0}};
    while (!waiting.empty()) {
        const auto [node, depth] = waiting.back();
        waiting.pop_back();
        deepest = std::max(deepest, depth);
        for (const auto* child = node->first_node(); child; child = child->next_sibling()) {
            if (child->type() == rapidxml::node_element) {
                waiting.emplace_back(child, depth + 1);
            }
        }
    }
    return deepest;
}

TEST(XmlDepth, ScanAndLibraryAgreeOnRandomMarkup) {
    const std::vector<std::string> pieces{
        "<a>",  "<b c='d'>", "<a",    "</a>",         "</",          ">",         "/>",         "/",
        "<",    "<e/>",      "<!--",  "-->",          "--",          "<![CDATA[", "]]>",        "]",
        "[",    "<?",        "?>",    "<?xml ",       "?",           "!",         "<!",         "<!DOCTYPE ",
        "text", " ",         "\n",    "\"",           "'",           "=",         " f=\"<g>\"", " h='\"/>'",
        "&lt;", "&amp",      "&#65;", "\xEF\xBB\xBF", "<i j=\"k\">", "</i>"};
    std::mt19937 random(20);
    std::size_t taken = 0;
    for (int round = 0; round < 60'000; ++round) {
        const std::size_t length = 1 + random() % 9;
        std::string text = round % 2 ? "<r>" : "";
        for (std::size_t piece = 0; piece < length; ++piece) {
            text += pieces[random() % pieces.size()];
        }
        text += round % 2 ? "</r>" : "";
        bool isTaken = false;
        const std::size_t depth = depthInLibrary(text, isTaken);
        if (isTaken) {
            ++taken;
            ASSERT_EQ(depthOf(text), depth) << text;
        }
    }
    EXPECT_GT(taken, 5'000u); // of what the library refuses, this test tells nothing
}

TEST(XmlDepth, ADocumentOfTheDeepestNestingIsTakenOnASmallStack) {
    onAStackOf(smallStack, [] {
        XmlDoc document;
        EXPECT_TRUE(document.parse(nested(deepestXmlNesting).c_str()));
        EXPECT_EQ(std::ranges::count(document.serialize(), '<'), 2 * deepestXmlNesting - 1);
    });
}

TEST(XmlDepth, ADocumentOneElementDeeperIsInvalid) {
    XmlDoc document;
    EXPECT_FALSE(document.parse(nested(deepestXmlNesting + 1).c_str()));
    EXPECT_FALSE(document.parse(
        (repeated("<a>", deepestXmlNesting) + "<b/>" + repeated("</a>", deepestXmlNesting)).c_str()));
    EXPECT_TRUE(document.firstNode("a").isNull());
}

TEST(XmlDepth, ADocumentThatIsRefusedForItsDepthLeavesNothingOfTheFormerOne) {
    XmlDoc document;
    ASSERT_TRUE(document.parse("<a/>"));
    EXPECT_FALSE(document.parse(nested(deepestXmlNesting + 1).c_str()));
    EXPECT_EQ(document.serialize(), "");
    EXPECT_TRUE(document.parse("<b/>"));
    EXPECT_EQ(document.serialize(), "<b/>\n");
}

TEST(XmlDepth, AnEventThatWouldUseUpTheStackIsInvalid) {
    onAStackOf(smallStack, [] {
        const std::string startTags = "<vtguiEvent id='x'>" + repeated("<a>", 1'000'000);
        EXPECT_EQ(XmlUIEvent(startTags.c_str()).getId(), "");
        const std::string whole = "<vtguiEvent id='x'>" + nested(100'000) + "</vtguiEvent>";
        EXPECT_EQ(XmlUIEvent(whole.c_str()).getId(), "");
    });
}

TEST(XmlDepth, ControlsOfTheDeepestEventAreFound) {
    const std::size_t inner = deepestXmlNesting - 2;
    const std::string text = "<vtguiEvent id='x'>" + repeated("<a>", inner) + "<b id='c' d='e'/>" +
                             repeated("</a>", inner) + "</vtguiEvent>";
    EXPECT_EQ(XmlUIEvent(text.c_str()).getControl("c").getAttribute("d"), "e");
}

} // namespace
