#include "common/api/QuillApiDefsUtil.h"
#include "common2/util/GlobalError.h"
#include "tests/common/api/DecoderFaults.h"
#include "tests/support/Documents.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/string.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

namespace json = boost::json;
using test::dataplaneDocument;
using test::throwsBadParameter;
using test::throwsInvalidArgument;
using test::throwsNotExact;
using test::throwsNotNumber;
using test::throwsOutOfRange;
using test::with;
using test::without;

DataplaneNotification_t decodedDataplane(const json::value& document) {
    std::error_code error = makeGlobalError(QuillApiResult::Eof); // stale: the decoder must clear it
    DataplaneNotification_t notification = DataplaneNotificationFromJson(document, error);
    EXPECT_FALSE(error) << document;
    return notification;
}

void expectRefusedDataplane(const json::value& document) {
    std::error_code error;
    EXPECT_EQ(DataplaneNotificationFromJson(document, error), DataplaneNotification_t()) << document;
    EXPECT_EQ(error.value(), 1) << document;
    EXPECT_STREQ(error.category().name(), "global_error");
}

auto decodingDataplane(json::value document) {
    return test::decoding(DataplaneNotificationFromJson, std::move(document));
}

json::value alertWith(std::string_view place, json::value content) {
    return with(dataplaneDocument(1), "/dataplane_alerts/0" + std::string(place), std::move(content));
}

json::value alertWithout(std::string_view place) {
    return without(dataplaneDocument(1), "/dataplane_alerts/0" + std::string(place));
}

json::value requestWith(std::string_view place, json::value content) {
    return with(dataplaneDocument(0, 1), "/dataplane_auth_requests/0" + std::string(place),
                std::move(content));
}

json::value requestWithout(std::string_view place) {
    return without(dataplaneDocument(0, 1), "/dataplane_auth_requests/0" + std::string(place));
}

DataplaneAlert_t decodedAlert(std::string_view place, json::value content) {
    return decodedDataplane(alertWith(place, std::move(content))).dataplane_alerts.at(0);
}

// Sound documents

TEST(DataplaneNotificationFromJson, ReadsEveryField) {
    EXPECT_EQ(decodedDataplane(dataplaneDocument(3, 2)), test::dataplane(3, 2));
}

TEST(DataplaneNotificationFromJson, EmptyListsAreTheNormalState) {
    const auto notification = decodedDataplane(
        json::parse(R"({"version":"1","dataplane_alerts":[],"dataplane_auth_requests":[]})"));
    EXPECT_EQ(notification.version, "1");
    EXPECT_TRUE(notification.dataplane_alerts.empty());
    EXPECT_TRUE(notification.dataplane_auth_requests.empty());
}

TEST(DataplaneNotificationFromJson, AnAlertMayHaveNoDestination) {
    EXPECT_TRUE(decodedAlert("/destinations", json::array{}).destinations.empty());
}

TEST(DataplaneNotificationFromJson, ReadsEveryCategory) {
    const auto read = [](const char* literal) { return decodedAlert("/category", literal).category; };
    EXPECT_EQ(read("unknown"), DataplaneAlertCategory::Unknown);
    EXPECT_EQ(read("posture_error"), DataplaneAlertCategory::PostureError);
    EXPECT_EQ(read("policy_error"), DataplaneAlertCategory::PolicyError);
    EXPECT_EQ(read("connectivity_error"), DataplaneAlertCategory::ConnectivityError);
}

TEST(DataplaneNotificationFromJson, ReadsEveryProto) {
    const auto read = [](const char* literal) {
        return decodedAlert("/destinations/0/proto", literal).destinations.at(0).proto;
    };
    EXPECT_EQ(read("unknown"), DataplaneProto::Unknown);
    EXPECT_EQ(read("tcp"), DataplaneProto::Tcp);
    EXPECT_EQ(read("udp"), DataplaneProto::Udp);
    EXPECT_EQ(read("icmp"), DataplaneProto::Icmp);
}

TEST(DataplaneNotificationFromJson, UnlistedCategoryAndProtoAreUnknown) {
    EXPECT_EQ(decodedAlert("/category", "Policy_error").category, DataplaneAlertCategory::Unknown);
    EXPECT_EQ(decodedAlert("/destinations/0/proto", "TCP").destinations.at(0).proto, DataplaneProto::Unknown);
    EXPECT_EQ(decodedDataplane(requestWith("/destination/proto", "sctp"))
                  .dataplane_auth_requests.at(0)
                  .destination.proto,
              DataplaneProto::Unknown);
}

TEST(DataplaneNotificationFromJson, PortsAreCutToSixteenBits) {
    const auto read = [](json::value port) {
        return decodedAlert("/destinations/0/port", std::move(port)).destinations.at(0).port;
    };
    EXPECT_EQ(read(65535), 65535);
    EXPECT_EQ(read(65536), 0);
    EXPECT_EQ(read(65537), 1);
    EXPECT_EQ(read(4294967295u), 65535);
}

TEST(DataplaneNotificationFromJson, CodesSpanThirtyTwoBits) {
    EXPECT_EQ(decodedAlert("/code", 0).code, 0u);
    EXPECT_EQ(decodedAlert("/code", 4294967295u).code, 4294967295u);
    EXPECT_EQ(decodedAlert("/code", 7.0).code, 7u);
}

TEST(DataplaneNotificationFromJson, TextsEndAtTheirFirstNul) {
    const json::string text("ab\0cd", 5);
    for (const char* key :
         {"title", "short_message", "long_message", "tile_message", "toast_message", "url", "url_label"}) {
        DataplaneAlert_t alert = decodedAlert("/" + std::string(key), text);
        const bool found = alert.title == "ab" || alert.short_message == "ab" || alert.long_message == "ab" ||
                           alert.tile_message == "ab" || alert.toast_message == "ab" || alert.url == "ab" ||
                           alert.url_label == "ab";
        EXPECT_TRUE(found) << key;
    }
    for (const char* key : {"context_id", "start_url", "end_url", "cookie_name"}) {
        const auto request =
            decodedDataplane(requestWith("/" + std::string(key), text)).dataplane_auth_requests.at(0);
        const bool found = request.context_id == "ab" || request.start_url == "ab" ||
                           request.end_url == "ab" || request.cookie_name == "ab";
        EXPECT_TRUE(found) << key;
    }
    EXPECT_EQ(decodedAlert("/destinations/0/host", text).destinations.at(0).host, "ab");
    EXPECT_EQ(decodedAlert("/category", json::string("policy_error\0!", 14)).category,
              DataplaneAlertCategory::PolicyError);
    EXPECT_EQ(decodedAlert("/destinations/0/proto", json::string("udp\0!", 5)).destinations.at(0).proto,
              DataplaneProto::Udp);
    EXPECT_EQ(decodedDataplane(with(dataplaneDocument(), "/version", text)).version, "ab");
}

// The top level

TEST(DataplaneNotificationFromJson, AnythingButAnObjectFailsSoftly) {
    for (const char* text : {"{}", "[]", "null", "\"text\"", "12"}) {
        expectRefusedDataplane(json::parse(text));
    }
}

TEST(DataplaneNotificationFromJson, EveryTopLevelKeyIsRequired) {
    for (const char* place : {"/version", "/dataplane_alerts", "/dataplane_auth_requests"}) {
        expectRefusedDataplane(without(dataplaneDocument(2, 2), place));
        expectRefusedDataplane(with(dataplaneDocument(2, 2), place, json::object{}));
    }
}

// List entries

TEST(DataplaneNotificationFromJson, EntriesMustBeObjects) {
    EXPECT_THAT(decodingDataplane(alertWith("", 1)), throwsInvalidArgument("not an object"));
    EXPECT_THAT(decodingDataplane(alertWith("/destinations/0", "host")),
                throwsInvalidArgument("not an object"));
    EXPECT_THAT(decodingDataplane(requestWith("", json::array{})), throwsInvalidArgument("not an object"));
    EXPECT_THAT(decodingDataplane(requestWith("/destination", nullptr)),
                throwsInvalidArgument("not an object"));
}

TEST(DataplaneNotificationFromJson, EveryKeyOfAnAlertIsMandatory) {
    EXPECT_THAT(decodingDataplane(alertWith("", json::object{})), throwsOutOfRange());
    for (const char* place : {"/category", "/code", "/timestamp", "/title", "/short_message", "/long_message",
                              "/tile_message", "/toast_message", "/url", "/url_label", "/destinations/0/host",
                              "/destinations/0/port", "/destinations/0/proto", "/destinations/0/timestamp"}) {
        EXPECT_THAT(decodingDataplane(alertWithout(place)), throwsOutOfRange()) << place;
    }
}

TEST(DataplaneNotificationFromJson, EveryKeyOfAnAuthRequestIsMandatory) {
    EXPECT_THAT(decodingDataplane(requestWith("", json::object{})), throwsOutOfRange());
    for (const char* place :
         {"/timestamp", "/context_id", "/start_url", "/end_url", "/cookie_name", "/destination",
          "/destination/host", "/destination/port", "/destination/proto", "/destination/timestamp"}) {
        EXPECT_THAT(decodingDataplane(requestWithout(place)), throwsOutOfRange()) << place;
    }
}

TEST(DataplaneNotificationFromJson, MissingDestinationsThrowBadParameter) {
    EXPECT_THAT(decodingDataplane(alertWithout("/destinations")), throwsBadParameter());
}

TEST(DataplaneNotificationFromJson, DestinationsMustBeAnArray) {
    EXPECT_THAT(decodingDataplane(alertWith("/destinations", json::object{})),
                throwsInvalidArgument("array required"));
}

TEST(DataplaneNotificationFromJson, TextsMustBeTexts) {
    for (const char* place :
         {"/category", "/title", "/short_message", "/long_message", "/tile_message", "/toast_message", "/url",
          "/url_label", "/destinations/0/host", "/destinations/0/proto"}) {
        EXPECT_THAT(decodingDataplane(alertWith(place, nullptr)), throwsInvalidArgument("not a string"))
            << place;
    }
    for (const char* place : {"/context_id", "/start_url", "/end_url", "/cookie_name", "/destination/host",
                              "/destination/proto"}) {
        EXPECT_THAT(decodingDataplane(requestWith(place, 1)), throwsInvalidArgument("not a string")) << place;
    }
}

TEST(DataplaneNotificationFromJson, UnfitNumbersThrowTheConversionsCode) {
    for (const char* place : {"/code", "/timestamp", "/destinations/0/port", "/destinations/0/timestamp"}) {
        EXPECT_THAT(decodingDataplane(alertWith(place, -1)), throwsNotExact()) << place;
        EXPECT_THAT(decodingDataplane(alertWith(place, 1.5)), throwsNotExact()) << place;
        EXPECT_THAT(decodingDataplane(alertWith(place, "1")), throwsNotNumber()) << place;
    }
    EXPECT_THAT(decodingDataplane(alertWith("/code", 4294967296)), throwsNotExact());
    EXPECT_THAT(decodingDataplane(alertWith("/destinations/0/port", 4294967296)), throwsNotExact());
    EXPECT_THAT(decodingDataplane(requestWith("/timestamp", -1)), throwsNotExact());
    EXPECT_THAT(decodingDataplane(requestWith("/destination/port", "443")), throwsNotNumber());
}

TEST(DataplaneNotificationFromJson, AlertsAreReadInTheirOwnOrder) {
    // Each fault hides those behind it: code, time, destinations, texts from the last to the first, category.
    const auto at = [](std::string_view key) { return "/dataplane_alerts/0/" + std::string(key); };
    auto document = alertWithout("/category");
    EXPECT_THAT(decodingDataplane(document), throwsOutOfRange());
    document = with(document, at("title"), 1);
    EXPECT_THAT(decodingDataplane(document), throwsInvalidArgument("not a string"));
    document = without(document, at("url_label"));
    EXPECT_THAT(decodingDataplane(document), throwsOutOfRange());
    document = with(document, at("destinations"), 1);
    EXPECT_THAT(decodingDataplane(document), throwsInvalidArgument("array required"));
    document = with(document, at("timestamp"), "now");
    EXPECT_THAT(decodingDataplane(document), throwsNotNumber());
    document = with(document, at("code"), -1);
    EXPECT_THAT(decodingDataplane(document), throwsNotExact());
}

TEST(DataplaneNotificationFromJson, TextsOfAnAlertAreReadFromTheLastToTheFirst) {
    // A missing text reads differently from a text of the wrong kind, which tells who came first.
    const char* order[] = {"url_label",    "url",           "toast_message", "tile_message",
                           "long_message", "short_message", "title",         "category"};
    for (std::size_t earlier = 0; earlier + 1 < std::size(order); ++earlier) {
        auto document = alertWithout("/" + std::string(order[earlier]));
        document = with(document, "/dataplane_alerts/0/" + std::string(order[earlier + 1]), 1);
        EXPECT_THAT(decodingDataplane(document), throwsOutOfRange()) << order[earlier];
    }
}

TEST(DataplaneNotificationFromJson, AuthRequestsAreReadInTheirOwnOrder) {
    const char* order[] = {"timestamp", "destination", "cookie_name", "end_url", "start_url", "context_id"};
    for (std::size_t earlier = 0; earlier + 1 < std::size(order); ++earlier) {
        auto document = requestWithout("/" + std::string(order[earlier]));
        document = with(document, "/dataplane_auth_requests/0/" + std::string(order[earlier + 1]), true);
        EXPECT_THAT(decodingDataplane(document), throwsOutOfRange()) << order[earlier];
    }
}

TEST(DataplaneNotificationFromJson, AFaultInAnAlertComesBeforeMissingRequests) {
    EXPECT_THAT(decodingDataplane(without(alertWith("/code", -1), "/dataplane_auth_requests")),
                throwsNotExact());
}

TEST(DataplaneNotification, EqualityMindsTheOrderOfLists) {
    DataplaneNotification_t notification = test::dataplane(2);
    std::swap(notification.dataplane_alerts[0], notification.dataplane_alerts[1]);
    EXPECT_NE(notification, test::dataplane(2));
    EXPECT_NE(test::dataplane(2), test::dataplane(3));
    EXPECT_NE(test::dataplane(0, 1), test::dataplane(0, 0));
}

} // namespace
