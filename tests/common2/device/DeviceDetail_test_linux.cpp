#include "common2/device/DeviceDetail.h"

#include "common2/device/DeviceDetailFiles.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using Bytes = std::vector<unsigned char>;

struct DetailFile {
    const wchar_t* detail;
    const char* file;
};

constexpr DetailFile detailFiles[] = {
    {L"Sid", "etc/machine-id"},
    {L"DigitalProductId", "sys/class/dmi/id/product_name"},
    {L"DigitalProductId4", "sys/class/dmi/id/product_sku"},
};

TEST(DeviceDetail, EachIsTheLineOfItsFile) {
    for (const DetailFile& row : detailFiles) {
        const test::TemporaryFolder root;
        root.write(row.file, "Book 14 \r\n");
        for (const DetailFile& other : detailFiles) {
            Bytes bytes{1};
            const bool isThere = &other == &row;
            EXPECT_EQ(common2::readDeviceDetailBelow(root.path(), other.detail, bytes), isThere);
            EXPECT_EQ(std::string(bytes.begin(), bytes.end()), isThere ? "Book 14" : "");
        }
    }
}

TEST(DeviceDetail, EmptyFileIsNoDetail) {
    const test::TemporaryFolder root;
    root.write("etc/machine-id", " \n");
    Bytes bytes{1};
    EXPECT_FALSE(common2::readDeviceDetailBelow(root.path(), L"Sid", bytes));
    EXPECT_EQ(bytes, Bytes());
}

TEST(DeviceDetail, FolderIsNoDetail) {
    const test::TemporaryFolder root;
    root.write("etc/machine-id/x", "y");
    Bytes bytes{1};
    EXPECT_FALSE(common2::readDeviceDetailBelow(root.path(), L"Sid", bytes));
    EXPECT_EQ(bytes, Bytes());
}

TEST(DeviceDetail, OtherNamesAreNone) {
    const test::TemporaryFolder root;
    root.write("etc/machine-id", "x");
    for (const wchar_t* name : {L"", L"sid", L"Nonce"}) {
        Bytes bytes{1};
        EXPECT_FALSE(common2::readDeviceDetailBelow(root.path(), name, bytes));
        EXPECT_EQ(bytes, Bytes());
    }
}

TEST(DeviceDetail, TheSystemsOwnStayTheSame) {
    for (const DetailFile& row : detailFiles) {
        Bytes first;
        Bytes second;
        EXPECT_EQ(common2::readDeviceDetail(row.detail, first),
                  common2::readDeviceDetail(row.detail, second));
        EXPECT_EQ(first, second);
    }
}

} // namespace
