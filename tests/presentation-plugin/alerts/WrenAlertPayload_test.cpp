#include "presentation-plugin/alerts/WrenAlertPayload.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

/// The text behind standard Base64; fails the test for anything else.
std::string decodedBase64(const std::string& encoded) {
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    EXPECT_EQ(encoded.size() % 4, 0u);
    const std::size_t length = encoded.find_last_not_of('=') + 1;
    EXPECT_LE(encoded.size() - length, 2u);
    std::string text;
    std::uint32_t bits = 0;
    int count = 0;
    for (const char character : encoded.substr(0, length)) {
        const std::size_t digit = alphabet.find(character);
        EXPECT_NE(digit, std::string::npos) << character;
        bits = bits << 6 | static_cast<std::uint32_t>(digit & 63);
        count += 6;
        if (count >= 8) {
            count -= 8;
            text += static_cast<char>(bits >> count & 255);
        }
    }
    return text;
}

WrenAlert_t alert(const std::string& number) {
    WrenAlert_t record;
    record.type = 8;
    record.tile_message = "not on the page";
    record.title = "Title " + number;
    record.short_message = "Short " + number;
    record.long_message = "Long " + number;
    return record;
}

WrenAlertList_t listOf(std::vector<WrenAlert_t> alerts) {
    WrenAlertList_t list;
    list.alerts = std::move(alerts);
    return list;
}

TEST(BuildAlertPayload, OfNoAlert) {
    EXPECT_EQ(decodedBase64(buildAlertPayload({})), R"({"flow":"alert","value":{"alerts":[]}})");
}

TEST(BuildAlertPayload, IsBase64OfTheJson) {
    EXPECT_EQ(buildAlertPayload({}), "eyJmbG93IjoiYWxlcnQiLCJ2YWx1ZSI6eyJhbGVydHMiOltdfX0=");
}

TEST(BuildAlertPayload, OneAlertHasNoPageStringsEvenIfTheyAreSet) {
    WrenAlertList_t list = listOf({alert("1")});
    list.section_title = "section";
    list.list_description = "list";
    EXPECT_EQ(decodedBase64(buildAlertPayload(list)),
              R"({"flow":"alert","value":{"alerts":[)"
              R"({"title":"Title 1","shortDescription":"Short 1","longDescription":"Long 1"}]}})");
}

TEST(BuildAlertPayload, SeveralAlertsInOrderWithActionsAndPageStrings) {
    WrenAlertList_t list = listOf({alert("1"), alert("2"), alert("3")});
    list.alerts[0].action =
        std::make_shared<WrenAlertLocalAction>("Verify", "Detail", "Description", "dataplane-auth", "c-1");
    list.alerts[2].action = std::make_shared<WrenAlertRemoteAction>("Help", "https://help.example/?a=1&b=2");
    list.section_title = "section title";
    list.section_description = "section description";
    list.section_action_label = "section action";
    list.list_title = "list title";
    list.list_description = "list description";
    EXPECT_EQ(
        decodedBase64(buildAlertPayload(list)),
        R"({"flow":"alert","value":{"alerts":[)"
        R"({"title":"Title 1","shortDescription":"Short 1","longDescription":"Long 1","actions":[)"
        R"({"type":"local","label":"Verify","detailPage":{"title":"Detail","description":"Description"},)"
        R"("kestrelSuiteEvent":{"type":"dataplane-auth","value":"c-1"}}]},)"
        R"({"title":"Title 2","shortDescription":"Short 2","longDescription":"Long 2"},)"
        R"({"title":"Title 3","shortDescription":"Short 3","longDescription":"Long 3","actions":[)"
        R"({"type":"remote","label":"Help","url":"https://help.example/?a=1&b=2"}]}],)"
        R"("multiAlertPageStrings":{"alertSectionTitle":"section title",)"
        R"("alertSectionDescription":"section description","alertSectionActionLabel":"section action",)"
        R"("alertListTitle":"list title","alertListDescription":"list description"}}})");
}

TEST(BuildAlertPayload, TwoAlertsWithoutTextsCarryFiveEmptyPageStrings) {
    EXPECT_EQ(decodedBase64(buildAlertPayload(listOf({WrenAlert_t(), WrenAlert_t()}))),
              R"({"flow":"alert","value":{"alerts":[)"
              R"({"title":"","shortDescription":"","longDescription":""},)"
              R"({"title":"","shortDescription":"","longDescription":""}],)"
              R"("multiAlertPageStrings":{"alertSectionTitle":"","alertSectionDescription":"",)"
              R"("alertSectionActionLabel":"","alertListTitle":"","alertListDescription":""}}})");
}

TEST(BuildAlertPayload, TextsAreEscapedAsJsonAndKeptAsUtf8) {
    WrenAlertList_t list = listOf({alert("1")});
    list.alerts[0].title = "say \"é\"\n";
    EXPECT_EQ(decodedBase64(buildAlertPayload(list)),
              "{\"flow\":\"alert\",\"value\":{\"alerts\":[{\"title\":\"say \\\"é\\\"\\n\","
              "\"shortDescription\":\"Short 1\",\"longDescription\":\"Long 1\"}]}}");
}

TEST(BuildProgressPayload, HoldsTitleAndPercentage) {
    EXPECT_EQ(
        decodedBase64(buildProgressPayload("Enrolling...", 50)),
        R"({"flow":"enrollment","value":{"state":"progress","title":"Enrolling...","percent_complete":50}})");
}

TEST(BuildProgressPayload, TakesAnyTitleAndAnyUnsignedNumber) {
    EXPECT_EQ(
        decodedBase64(buildProgressPayload("", 4294967295u)),
        R"({"flow":"enrollment","value":{"state":"progress","title":"","percent_complete":4294967295}})");
    EXPECT_EQ(decodedBase64(buildProgressPayload("\"", 0)),
              R"({"flow":"enrollment","value":{"state":"progress","title":"\"","percent_complete":0}})");
}

} // namespace
