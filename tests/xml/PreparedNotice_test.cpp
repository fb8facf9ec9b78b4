#include "xml/PreparedNotice.h"

#include "xml/UiNoticeHelpers.h"
#include "xml/XmlUINotice.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// The same tree, once with marks and once with what belongs in their place.
std::string composed(XmlUINotice& notice, const char* timestamp, const char* name, const char* logText) {
    notice.setTimestamp(timestamp);
    addLabel(notice, "label", name, "", false, false, "black");
    notice.addNode("log").setValue(logText);
    return notice.serialize();
}

PreparedNotice prepared() {
    XmlUINotice notice(UiNoticeType::Update, nullptr, "module");
    composed(notice, PreparedNotice::value, PreparedNotice::value, PreparedNotice::text);
    return PreparedNotice(notice);
}

std::string plain(const char* timestamp, const char* name, const char* logText) {
    XmlUINotice notice(UiNoticeType::Update, nullptr, "module");
    return composed(notice, timestamp, name, logText);
}

std::string filled(const char* timestamp, std::string_view name, const char* logText) {
    const PreparedNotice notice = prepared();
    common2::TextBuffer text;
    NoticeFiller filler(notice, text);
    filler.putPlain(timestamp);
    filler.putValue(name);
    filler.putText(logText);
    filler.finish();
    return std::string(text.view());
}

TEST(PreparedNotice, ReadsAsTheTreeDoes) {
    EXPECT_EQ(filled("now", "name", "text"), plain("now", "name", "text"));
}

TEST(PreparedNotice, SpecialCharactersReadAsInTheTree) {
    EXPECT_EQ(filled("now", "\"a\" & 'b'", "{\"a\":\"<b>'\"}"),
              plain("now", "\"a\" & 'b'", "{\"a\":\"<b>'\"}"));
    EXPECT_EQ(filled("now", "'", "'"), plain("now", "'", "'"));
}

TEST(PreparedNotice, ValueEndsAtItsFirstNul) {
    EXPECT_EQ(filled("now", std::string_view("a\0b", 3), "text"), plain("now", "a", "text"));
}

TEST(PreparedNotice, NameOfAnElementReadsAsInTheTree) {
    XmlUINotice marked(UiNoticeType::Update, nullptr, "module");
    marked.setTimestamp("then");
    marked.addNode(PreparedNotice::name).setValue(PreparedNotice::text);
    const PreparedNotice notice(marked);
    common2::TextBuffer text;
    NoticeFiller filler(notice, text);
    filler.putName("event");
    filler.putText("<a/>");
    filler.putName("event");
    filler.finish();

    XmlUINotice tree(UiNoticeType::Update, nullptr, "module");
    tree.setTimestamp("then");
    tree.addNode("event").setValue("<a/>");
    EXPECT_EQ(text.view(), tree.serialize());
}

TEST(PreparedNotice, NoticeWithoutMarksIsOnePiece) {
    XmlUINotice notice(UiNoticeType::Update, nullptr, "module");
    notice.setTimestamp("then");
    const PreparedNotice whole(notice);
    ASSERT_EQ(whole.pieceCount(), 1u);
    EXPECT_EQ(whole.piece(0), notice.serialize());
}

TEST(PreparedNotice, CutsGoWithTheirLines) {
    XmlUINotice notice(UiNoticeType::Update, nullptr, "module");
    notice.setTimestamp("then");
    notice.addNode("first");
    notice.addNode(PreparedNotice::cut);
    notice.addNode("second").setAttribute("a", PreparedNotice::value);
    notice.addNode(PreparedNotice::cut);
    notice.addNode("third");
    const PreparedNotice cut(notice);
    ASSERT_EQ(cut.pieceCount(), 4u);
    EXPECT_TRUE(cut.piece(0).ends_with(">\n\t<first/>\n"));
    EXPECT_EQ(cut.piece(1), "\t<second a=");
    EXPECT_EQ(cut.piece(2), "/>\n");
    EXPECT_EQ(cut.piece(3), "\t<third/>\n</vtguiNotice>\n");
}

TEST(NoticeFiller, LeavesOutAndRepeatsWhatStandsBetweenMarks) {
    XmlUINotice notice(UiNoticeType::Update, nullptr, "module");
    notice.setTimestamp("then");
    notice.addNode(PreparedNotice::cut);
    notice.addNode("row").setAttribute("a", PreparedNotice::value);
    notice.addNode(PreparedNotice::cut);
    const PreparedNotice row(notice);

    common2::TextBuffer text;
    NoticeFiller twice(row, text);
    twice.pass();
    twice.putValue("1");
    twice.pass();
    twice.back(2);
    twice.putValue("2");
    twice.pass();
    twice.finish();
    EXPECT_TRUE(text.view().ends_with("\"then\">\n\t<row a=\"1\"/>\n\t<row a=\"2\"/>\n</vtguiNotice>\n"));

    text.clear();
    NoticeFiller never(row, text);
    never.pass();
    never.skip(2);
    never.finish();
    EXPECT_TRUE(text.view().ends_with("\"then\">\n</vtguiNotice>\n"));
}

} // namespace
