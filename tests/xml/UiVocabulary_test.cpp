#include "xml/UiVocabulary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(UiVocabulary, NoticeTypesHaveTheirLiterals) {
    const std::vector<std::pair<int, const char*>> rows{{0, "setup"},
                                                        {1, "popup"},
                                                        {2, "update"},
                                                        {3, "quit"},
                                                        {4, "apilog"},
                                                        {5, "refresh_ui"},
                                                        {7, "refresh_approval_wizard_ui"}};
    for (const auto& [value, literal] : rows) {
        EXPECT_STREQ(uiLiteral(static_cast<UiNoticeType>(value)), literal);
        EXPECT_EQ(static_cast<int>(uiNoticeTypeOf(literal)), value);
    }
}

TEST(UiVocabulary, UnknownNoticeTypeHasNoLiteral) {
    for (const int value : {6, 8, -1}) {
        EXPECT_EQ(uiLiteral(static_cast<UiNoticeType>(value)), nullptr);
    }
    for (const char* literal : {"", "Setup", "setup ", "setu", "unknown"}) {
        EXPECT_EQ(static_cast<int>(uiNoticeTypeOf(literal)), 6) << literal;
    }
}

TEST(UiVocabulary, ControlTypesHaveTheirLiterals) {
    const std::vector<std::pair<int, const char*>> rows{
        {0, "label"},          {1, "button"},       {2, "autosizebutton"},  {3, "checkbox"},
        {4, "combobox"},       {5, "popup"},        {6, "textbox"},         {7, "passwordbox"},
        {8, "textarea"},       {9, "radiogroup"},   {10, "menuitem"},       {11, "traystate"},
        {12, "progressmeter"}, {13, "closebutton"}, {14, "outlinelistbox"}, {15, "listbox"},
        {16, "timer"},         {17, "webbrowser"}};
    for (const auto& [value, literal] : rows) {
        EXPECT_STREQ(uiLiteral(static_cast<UiCtrlType>(value)), literal);
        EXPECT_EQ(static_cast<int>(uiCtrlTypeOf(literal)), value);
    }
}

TEST(UiVocabulary, WebBrowserIsAlwaysLookedUpAsType17) {
    EXPECT_STREQ(uiLiteral(static_cast<UiCtrlType>(17)), "webbrowser");
    EXPECT_STREQ(uiLiteral(static_cast<UiCtrlType>(18)), "webbrowser");
    EXPECT_EQ(static_cast<int>(uiCtrlTypeOf("webbrowser")), 17);
}

TEST(UiVocabulary, WhatIsNoControlIsType19) {
    for (const char* literal : {"", "Label", "labels", "vtguiNotice", "row"}) {
        EXPECT_EQ(static_cast<int>(uiCtrlTypeOf(literal)), 19) << literal;
    }
    for (const int value : {19, 20, -1}) {
        EXPECT_EQ(uiLiteral(static_cast<UiCtrlType>(value)), nullptr);
    }
}

TEST(UiVocabulary, TrayStatesHaveTheirLiterals) {
    const std::vector<std::pair<int, const char*>> rows{
        {0, "Error"},   {1, "Attention"}, {2, "NonCompliant"}, {3, "Transition"},
        {4, "Neutral"}, {5, "Trusted"},   {6, "Good"},         {7, "Paused"}};
    for (const auto& [value, literal] : rows) {
        EXPECT_STREQ(uiLiteral(static_cast<UiTrayState>(value)), literal);
    }
    EXPECT_EQ(uiLiteral(static_cast<UiTrayState>(8)), nullptr);
    EXPECT_EQ(uiLiteral(static_cast<UiTrayState>(-1)), nullptr);
}

TEST(UiVocabulary, GoodIs6AndPausedIs7AlthoughPausedSortsBeforeNeutral) {
    std::vector<std::pair<int, std::string>> order;
    for (const auto& row : uiTrayStates) {
        order.emplace_back(static_cast<int>(row.value), row.literal);
    }
    const std::vector<std::pair<int, std::string>> expected{
        {0, "Error"},  {1, "Attention"}, {2, "NonCompliant"}, {3, "Transition"},
        {7, "Paused"}, {4, "Neutral"},   {5, "Trusted"},      {6, "Good"}};
    EXPECT_EQ(order, expected);
}

TEST(UiVocabulary, EventsHaveTheirAttributes) {
    const std::vector<std::pair<const char*, const char*>> rows{
        {"OnPress", "OnPressID"},           {"OnSelect", "OnSelectID"}, {"OnDoubleClick", "OnDoubleClickID"},
        {"OnPressEnter", "OnPressEnterID"}, {"OnOK", "OnOKID"},         {"OnCancel", "OnCancelID"},
        {"OnClose", "OnCloseID"},           {"OnError", "OnErrorID"},   {"OnBrowseEvent", "OnBrowseEventID"}};
    for (std::size_t value = 0; value < rows.size(); ++value) {
        const auto attributes = uiEventAttributes(static_cast<UiCtrlEvent>(value));
        EXPECT_STREQ(attributes.event, rows[value].first);
        EXPECT_STREQ(attributes.parameter, rows[value].second);
    }
}

TEST(UiVocabulary, WhatIsNoEventHasNoAttributes) {
    for (const int value : {9, -1}) {
        EXPECT_EQ(uiEventAttributes(static_cast<UiCtrlEvent>(value)).event, nullptr);
        EXPECT_EQ(uiEventAttributes(static_cast<UiCtrlEvent>(value)).parameter, nullptr);
    }
}

} // namespace
