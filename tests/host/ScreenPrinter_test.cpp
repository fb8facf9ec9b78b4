#include "host/ScreenPrinter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

std::string label(const std::string& id, const std::string& value, const char* hidden = "false") {
    return "<label id=\"" + id + "\" value=\"" + value + "\" hidden=\"" + hidden + "\"/>";
}
std::string button(const std::string& id, const std::string& text, const char* hidden, const char* disabled) {
    return "<button id=\"" + id + "\" label=\"" + text + "\" hidden=\"" + hidden + "\" disabled=\"" +
           disabled + "\"/>";
}
std::string row(const std::string& id, const std::string& title, const std::string& value) {
    return "<listrow id=\"" + id + "\"><listrowcolumn label=\"" + title + "\"/><listrowcolumn label=\"" +
           value + "\"/></listrow>";
}
std::string group(const std::string& id, const std::string& title, const std::string& rows) {
    return "<listgroup id=\"" + id + "\"><listrowcolumn label=\"" + title + "\"/>" + rows + "</listgroup>";
}
std::string list(const std::string& id, const std::string& groups) {
    return "<outlinelistbox id=\"" + id + "\">" + groups + "</outlinelistbox>";
}

class ScreenPrinter : public ::testing::Test {
protected:
    std::string setup(const std::string& content, const std::string& more = {}) {
        return shown("<vtguiNotice type=\"setup\"" + more + ">" + content + "</vtguiNotice>");
    }
    std::string update(const std::string& content, const std::string& more = {}) {
        return shown("<vtguiNotice type=\"update\"" + more + ">" + content + "</vtguiNotice>");
    }
    std::string popup(const std::string& content) {
        return shown("<vtguiNotice type=\"popup\">" + content + "</vtguiNotice>");
    }
    /// What the notice makes the printer print.
    std::string shown(const std::string& xml) {
        stream.str("");
        printer.print(screen.apply(xml), screen);
        return stream.str();
    }

    std::string tile(const char* type, const std::string& status, const std::string& buttons,
                     const std::string& state) {
        return shown("<vtguiNotice type=\"" + std::string(type) + "\" state=\"" + state + "\">" +
                     label("simple_tile_label", "Wren Gate") + label("simple_status", status) + buttons +
                     "<traystate id=\"tray_state_string\" value=\"Tray text\"/></vtguiNotice>");
    }

    std::ostringstream stream;
    host::ScreenModel screen;
    host::ScreenPrinter printer{stream};
};

TEST_F(ScreenPrinter, TileIsPrintedWholeWithItsVisibleButtonsAndItsTray) {
    EXPECT_EQ(
        tile("setup", "Initializing. Please wait...", button("e", "Enroll", "true", "true"), "Transition"),
        "Wren Gate: Initializing. Please wait...\n"
        "  tray: Transition, Tray text\n");
    EXPECT_EQ(tile("update", "Registration is required.",
                   button("e", "Enroll", "false", "false") + button("d", "Details", "false", "true"),
                   "Attention"),
              "Wren Gate: Registration is required.\n"
              "  [Enroll]  [Details] disabled\n"
              "  tray: Attention, Tray text\n");
}

TEST_F(ScreenPrinter, TileThatLosesItsButtonsIsPrintedWithoutThem) {
    tile("setup", "Same", button("e", "Enroll", "false", "false"), "Good");
    EXPECT_EQ(tile("update", "Same", button("e", "Enroll", "true", "true"), "Good"),
              "Wren Gate: Same\n  tray: Good, Tray text\n");
}

TEST_F(ScreenPrinter, WhatDoesNotChangeIsNotPrinted) {
    tile("setup", "Same", "", "Good");
    EXPECT_EQ(tile("update", "Same", "", "Good"), "");
    EXPECT_EQ(tile("update", "Same", "", "Error"), "Wren Gate: Same\n  tray: Error, Tray text\n");
}

TEST_F(ScreenPrinter, PanelShowsItsChangedLinesUnderItsHeading) {
    EXPECT_EQ(setup(label("g", "Enrollments:") + label("d", "Description") +
                    button("u", "Unenroll", "false", "true") + label("m", "Managed", "true")),
              "Enrollments:\n  Description\n  [Unenroll] disabled\n");
    EXPECT_EQ(update(button("u", "Unenroll", "false", "true") + label("m", "Managed")),
              "Enrollments:\n  Managed\n");
    EXPECT_EQ(update(button("u", "Unenroll", "false", "false") + label("m", "Managed", "true")),
              "Enrollments:\n  [Unenroll]\n  (hidden) Managed\n");
    EXPECT_EQ(update(button("u", "Unenroll", "false", "false")), "");
}

TEST_F(ScreenPrinter, StatisticsShowChangedRowsUnderTheirGroup) {
    const std::string overview = "overview_stat_outlinelistbox";
    EXPECT_EQ(
        setup(list(overview, group("g", "Wren Gate", row("a", "Cert:", "Unknown") + row("b", "Sync:", "")))),
        "Statistics overview\n  Wren Gate\n    Cert: Unknown\n");
    EXPECT_EQ(update(list(overview,
                          group("g", "Wren Gate", row("a", "Cert:", "Unknown") + row("b", "Sync:", "Ok")))),
              "Statistics overview\n  Wren Gate\n    Sync: Ok\n");
    EXPECT_EQ(update(list(overview, group("g", "Wren Gate (Active)",
                                          row("a", "Cert:", "Unknown") + row("b", "Sync:", "Ok")))),
              "Statistics overview\n  Wren Gate (Active)\n");
    EXPECT_EQ(update(list(overview, group("g", "Wren Gate (Active)",
                                          row("a", "Cert:", "Unknown") + row("b", "Sync:", "Ok")))),
              "");
}

TEST_F(ScreenPrinter, StatisticsWithoutValuesSayNothing) {
    const std::string empty = list("stat_outlinelistbox", group("g", "General:", row("a", "A:", "")));
    const std::string full = list("stat_outlinelistbox", group("g", "General:", row("a", "A:", "1")));
    EXPECT_EQ(setup(empty), "");
    EXPECT_EQ(update(full), "Statistics details\n  General:\n    A: 1\n");
    EXPECT_EQ(setup(empty), "") << "laid out anew, the values come with the next update";
    EXPECT_EQ(update(full), "");
}

TEST_F(ScreenPrinter, StatisticsTellOfGroupsThatGo) {
    setup(list("stat_outlinelistbox",
               group("g", "General:", row("a", "A:", "1")) +
                   group("p", "Proxies:", row("x", "One", "Active") + row("x", "One", "Off"))));
    EXPECT_EQ(update(list("stat_outlinelistbox", group("g", "General:", row("a", "A:", "2")))),
              "Statistics details\n  General:\n    A: 2\n  (hidden) Proxies:\n  (hidden) One Active\n"
              "  (hidden) One Off\n");
}

TEST_F(ScreenPrinter, RowsThatShareAnIdAreKeptApart) {
    const std::string twice = list(
        "stat_outlinelistbox", group("p", "Proxies:", row("x", "One", "Active") + row("x", "One", "Off")));
    EXPECT_EQ(setup(twice), "Statistics details\n  Proxies:\n    One Active\n    One Off\n");
    EXPECT_EQ(update(twice), "");
}

TEST_F(ScreenPrinter, PopupsAreTold) {
    EXPECT_EQ(popup("<popup id=\"t\" type=\"notification\"><title value=\"Suite\"/><text value=\"Text\"/>" +
                    button("b", "Enroll", "false", "false") + "</popup>"),
              "Toast: Suite\n  Text\n  [Enroll]\n");
    EXPECT_EQ(
        popup("<popup id=\"d\" type=\"custom\"><title value=\"Suite\"/><closebutton id=\"x\"/><layout><row>" +
              label("l", "Header") + "</row><row>" + label("m", "Details") + "</row><row>" +
              "<button id=\"c\" label=\"Close\"/></row></layout></popup>"),
        "Dialog: Suite\n  Header\n  Details\n  [Close]\n");
    EXPECT_EQ(popup("<popup id=\"w\" type=\"browser\"><title value=\"Login\"/><webbrowser id=\"c\" "
                    "operation=\"browse_for_cookie\" start_url=\"https://a.test/\"/></popup>"),
              "Browser: Login\n  browse_for_cookie https://a.test/\n");
    EXPECT_EQ(popup("<popup id=\"w\" type=\"browser\" show=\"true\"/>"), "Browser in front: Login\n");
    EXPECT_EQ(popup("<popup id=\"d\" dispose=\"true\"/>"), "Dialog closed: Suite\n");
    EXPECT_EQ(popup("<popup id=\"w\" dispose=\"true\"/>"), "Browser closed: Login\n");
}

TEST_F(ScreenPrinter, WindowAndUnreadableNoticesAreTold) {
    EXPECT_EQ(update("<application show=\"false\"/>"), "The main window hides.\n");
    EXPECT_EQ(update("<application show=\"true\"/>"), "The main window shows.\n");
    EXPECT_EQ(shown("<other/>"), "Unreadable notice: the root element is not \"vtguiNotice\"\n");
    EXPECT_EQ(update("<log messagehistory=\"said already\"/>"), "");
}

TEST_F(ScreenPrinter, ControlCharactersDoNotReachTheTerminal) {
    EXPECT_EQ(popup("<popup id=\"t\" type=\"notification\"><title value=\"a&#27;[2Jb\n\x7F\"/></popup>"),
              "Toast: a\\u001B[2Jb\\n\\u007F\n");
}

} // namespace
