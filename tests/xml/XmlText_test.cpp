#include "xml/XmlText.h"

#include "xml/RapidXml.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::string escaped(std::string_view text, char kept = '\0') {
    common2::TextBuffer out;
    appendEscaped(out, text, kept);
    return std::string(out.view());
}

std::string asValue(std::string_view value) {
    common2::TextBuffer out;
    appendQuoted(out, value);
    return std::string(out.view());
}

/// What the library itself makes of it, character by character.
std::string plainlyEscaped(const std::string& text, char kept) {
    std::string out;
    rapidxml::internal::copy_and_expand_chars(text.data(), text.data() + text.size(), kept,
                                              std::back_inserter(out));
    return out;
}

/// Texts of many lengths in which special characters stand at all places and in all densities.
std::vector<std::string> manyTexts() {
    std::mt19937 random(7);
    std::vector<std::string> texts;
    for (std::size_t length = 0; length < 200; ++length) {
        std::string text;
        for (std::size_t index = 0; index < length; ++index) {
            text += random() % 200 < length ? "<>&\"'"[random() % 5] : static_cast<char>(random() % 255 + 1);
        }
        texts.push_back(text);
    }
    texts.push_back(std::string(10'000, '"'));
    texts.push_back(std::string(10'000, 'x'));
    return texts;
}

TEST(XmlText, SpecialCharactersBecomeReferences) {
    EXPECT_EQ(escaped("<a>&\"'"), "&lt;a&gt;&amp;&quot;&apos;");
    EXPECT_EQ(escaped("nothing to do"), "nothing to do");
    EXPECT_EQ(escaped(""), "");
}

TEST(XmlText, OneCharacterMayBeKept) {
    EXPECT_EQ(escaped("\"'", '"'), "\"&apos;");
    EXPECT_EQ(escaped("\"'", '\''), "&quot;'");
}

TEST(XmlText, EveryCharacterButFiveStandsForItself) {
    for (int code = 1; code < 256; ++code) {
        const std::string text(17, static_cast<char>(code)); // a block and one more
        const bool special =
            std::string_view("<>&\"'").find(static_cast<char>(code)) != std::string_view::npos;
        EXPECT_EQ(escaped(text) == text, !special) << code;
    }
}

TEST(XmlText, IsEscapedAsTheLibraryDoesIt) {
    for (const std::string& text : manyTexts()) {
        for (const char kept : {'\0', '"', '\''}) {
            EXPECT_EQ(escaped(text, kept), plainlyEscaped(text, kept));
        }
    }
}

TEST(XmlText, AppendsToWhatIsThere) {
    common2::TextBuffer out;
    out.append("x=");
    appendQuoted(out, "1 < 2");
    appendEscaped(out, "&");
    EXPECT_EQ(out.view(), "x=\"1 &lt; 2\"&amp;");
}

TEST(XmlText, ValueStandsInDoubleQuotesUnlessItHoldsThem) {
    EXPECT_EQ(asValue(""), "\"\"");
    EXPECT_EQ(asValue("it's"), "\"it's\"");
    EXPECT_EQ(asValue("say \"it's\""), "'say \"it&apos;s\"'");
}

TEST(XmlText, ValueEndsAtItsFirstNul) {
    EXPECT_EQ(asValue(std::string_view("a\0b", 3)), "\"a\"");
    EXPECT_EQ(asValue(std::string_view("a\0\"", 3)), "\"a\"");
    EXPECT_EQ(asValue(std::string_view("\0", 1)), "\"\"");
    EXPECT_EQ(asValue(std::string(100, 'x') + '\0' + "y"), '"' + std::string(100, 'x') + '"');
}

TEST(XmlText, ValueIsQuotedAsTheLibraryDoesIt) {
    for (const std::string& text : manyTexts()) {
        std::string source = "<e a=''/>";
        rapidxml::xml_document<char> document;
        document.parse<rapidxml::parse_default>(source.data());
        rapidxml::xml_node<char>* element = document.first_node();
        element->first_attribute()->value(text.data(), text.size());
        std::string printed;
        rapidxml::print(std::back_inserter(printed), *element);
        EXPECT_EQ("<e a=" + asValue(text) + "/>\n", printed);
    }
}

} // namespace
