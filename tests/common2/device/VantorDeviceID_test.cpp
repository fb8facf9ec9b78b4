#include "common2/device/VantorDeviceID.h"

#include "tests/support/LogCapture.h"
#include "tests/support/MachineSettings.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Bytes = VantorDeviceID::Bytes;
using Details = VantorDeviceID::Details;

const std::string cache = "Norvane/Norvane Kestrel Suite/DeviceDetails";

std::string asText(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

bool readAll(const std::wstring& name, Bytes& bytes) {
    const std::string text = name == L"Sid" ? "os-sid" : name == L"DigitalProductId" ? "os-3" : "os-4";
    bytes.assign(text.begin(), text.end());
    return true;
}
bool readOnlySid(const std::wstring& name, Bytes& bytes) { return name == L"Sid" && readAll(name, bytes); }
bool readAllButSid(const std::wstring& name, Bytes& bytes) { return name != L"Sid" && readAll(name, bytes); }
bool readNothing(const std::wstring&, Bytes&) { return false; }

class VantorDeviceIDTest : public testing::Test {
protected:
    void cacheAll() const {
        settings.setBytes(cache, "Sid", "sid");
        settings.setBytes(cache, "DigitalProductId", "three");
        settings.setBytes(cache, "DigitalProductId4", "four");
    }

    static std::string idOf(const VantorDeviceID& device) {
        Bytes id{1};
        const std::error_code error = device.GetDeviceID(id);
        EXPECT_FALSE(error);
        return asText(id);
    }

    test::MachineSettings settings;
    test::LogCapture capture;
};

TEST_F(VantorDeviceIDTest, OrderIsNonceFourThreeSid) {
    cacheAll();
    settings.setBytes(cache, "Nonce", "n0ce");
    EXPECT_EQ(idOf(VantorDeviceID(readNothing)), "n0cefourthreesid");
}

TEST_F(VantorDeviceIDTest, NonceIsTakenAsStored) {
    settings.setBytes(cache, "Sid", "sid");
    settings.setBytes(cache, "Nonce", std::string_view("\x01\x00\xFF\x02", 4));
    EXPECT_EQ(idOf(VantorDeviceID(readNothing)), std::string("\x01\x00\xFF\x02sid", 7));
}

TEST_F(VantorDeviceIDTest, NonceOfAnotherSizeCountsAsMissing) {
    cacheAll();
    for (const char* nonce : {"12345678", "123", ""}) {
        settings.setBytes(cache, "Nonce", nonce);
        EXPECT_EQ(idOf(VantorDeviceID(readNothing)), "fourthreesid") << nonce;
    }
}

TEST_F(VantorDeviceIDTest, CacheIsReadBeforeTheSystem) {
    cacheAll();
    EXPECT_EQ(idOf(VantorDeviceID(readAll)), "fourthreesid");
    EXPECT_EQ(capture.messages(0), std::vector<std::string>{"Retrieving device details from cache"});
}

TEST_F(VantorDeviceIDTest, CachedSidAloneIsEnough) {
    settings.setBytes(cache, "Sid", "sid");
    settings.setBytes(cache, "DigitalProductId4", "four");
    EXPECT_EQ(idOf(VantorDeviceID(readAll)), "foursid");
}

TEST_F(VantorDeviceIDTest, WithoutACachedSidTheSystemIsAsked) {
    settings.setBytes(cache, "DigitalProductId", "three");
    EXPECT_EQ(idOf(VantorDeviceID(readAll)), "os-4os-3os-sid");
    EXPECT_EQ(capture.messages(0), (std::vector<std::string>{"Retrieving device details from cache",
                                                             "Getting device details from OS settings"}));
    EXPECT_EQ(capture.messages(2).at(1), "Failed to retrieve device details from cache");
}

TEST_F(VantorDeviceIDTest, NonceGoesInFrontOfTheSystemsDetailsToo) {
    settings.setBytes(cache, "Nonce", "n0ce");
    EXPECT_EQ(idOf(VantorDeviceID(readOnlySid)), "n0ceos-sid");
}

TEST_F(VantorDeviceIDTest, DetailsThatTheSystemLacksAreSkipped) {
    EXPECT_EQ(idOf(VantorDeviceID(readOnlySid)), "os-sid");
    EXPECT_EQ(idOf(VantorDeviceID(readAllButSid)), "os-4os-3");
    const auto messages = capture.messages(2);
    for (const char* message :
         {"Failed to get DigitalProductId detail from OS", "Failed to get DigitalProductId4 detail from OS",
          "Failed to get Sid detail from OS"}) {
        EXPECT_EQ(std::ranges::count(messages, message), 1) << message;
    }
}

TEST_F(VantorDeviceIDTest, WithNeitherCacheNorSystemThereIsAnErrorAndNoText) {
    const VantorDeviceID device(readNothing);
    Bytes id{1};
    EXPECT_EQ(device.GetDeviceID(id).value(), 7);
    EXPECT_EQ(id, Bytes());

    capture.clear();
    std::string text = "stale";
    const std::error_code error = device.GetDeviceUniqueIDHash(text, "sha1");
    EXPECT_EQ(error.value(), 7);
    EXPECT_STREQ(error.category().name(), "global_error");
    EXPECT_EQ(text, "");
    EXPECT_EQ(capture.messages(3), (std::vector<std::string>{"Failed to retrieve device details from OS",
                                                             "Failed to get device ID information."}));
}

TEST_F(VantorDeviceIDTest, HashIsThatOfTheBytes) {
    settings.setBytes(cache, "Sid", "c");
    settings.setBytes(cache, "DigitalProductId", "b");
    settings.setBytes(cache, "DigitalProductId4", "a");
    std::string text = "stale";
    EXPECT_FALSE(VantorDeviceID(readNothing).GetDeviceUniqueIDHash(text, "sha1"));
    EXPECT_EQ(text, "A9993E364706816ABA3E25717850C26C9CD0D89D");
}

TEST_F(VantorDeviceIDTest, NullDigestNameIsANullPointer) {
    cacheAll();
    std::string text = "stale";
    EXPECT_EQ(VantorDeviceID(readAll).GetDeviceUniqueIDHash(text, nullptr).value(), 3);
    EXPECT_EQ(text, "");
}

TEST_F(VantorDeviceIDTest, UnknownDigestIsLoggedWithItsCode) {
    cacheAll();
    std::string text = "stale";
    EXPECT_EQ(VantorDeviceID(readAll).GetDeviceUniqueIDHash(text, "sha-nothing").value(), 9);
    EXPECT_EQ(text, "");
    EXPECT_EQ(capture.messages(3), std::vector<std::string>{"CCAPIHash returned error 9"});
}

TEST_F(VantorDeviceIDTest, CacheIsReadByName) {
    cacheAll();
    Details details{{L"stale", {}}};
    EXPECT_TRUE(VantorDeviceID().getDeviceDetailsFromCache(details));
    ASSERT_EQ(details.size(), 3u);
    EXPECT_EQ(asText(details[L"Sid"]), "sid");
    EXPECT_EQ(asText(details[L"DigitalProductId"]), "three");
    EXPECT_EQ(asText(details[L"DigitalProductId4"]), "four");
}

TEST_F(VantorDeviceIDTest, KeyThatIsMissingIsLogged) {
    Bytes bytes{1};
    EXPECT_FALSE(VantorDeviceID::getBinaryRegistryKey(L"Software\\Nothing", L"Value", true, bytes));
    EXPECT_EQ(bytes, Bytes());
    EXPECT_EQ(capture.messages(), std::vector<std::string>{"CRegKey::Open returned error 2"});
}

TEST_F(VantorDeviceIDTest, ValueThatIsMissingIsLogged) {
    settings.setBytes("Maker", "Other", "x");
    Bytes bytes{1};
    EXPECT_FALSE(VantorDeviceID::getBinaryRegistryKey(L"Software\\Maker", L"Value", false, bytes));
    EXPECT_EQ(capture.messages(), std::vector<std::string>{"CRegKey::QueryBinaryValue returned error 2"});
}

TEST_F(VantorDeviceIDTest, EmptyValueIsLogged) {
    settings.setBytes("Maker", "Value", "");
    Bytes bytes{1};
    EXPECT_FALSE(VantorDeviceID::getBinaryRegistryKey(L"Software\\Maker", L"Value", true, bytes));
    EXPECT_EQ(capture.messages(),
              std::vector<std::string>{"CRegKey::QueryBinaryValue returned zero value size"});
}

TEST_F(VantorDeviceIDTest, NothingThatIsReadIsLogged) {
    cacheAll();
    settings.setBytes(cache, "Nonce", "n0ce");
    std::string text;
    EXPECT_FALSE(VantorDeviceID(readAll).GetDeviceUniqueIDHash(text, "sha1"));
    EXPECT_TRUE(VantorDeviceID(readNothing).GetDeviceUniqueIDHash(text, "none"));
    for (const std::string& message : capture.messages()) {
        for (const char* secret : {"sid", "three", "four", "n0ce"}) {
            EXPECT_EQ(message.find(secret), std::string::npos) << message;
        }
    }
}

} // namespace
