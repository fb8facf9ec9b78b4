#include "common2/device/DeviceDetail.h"

#include "common2/device/DeviceDetailFiles.h"
#include "common2/filesystem/RegularFile.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <system_error>

namespace common2 {
namespace {

struct DetailFile {
    std::wstring_view detail;
    const char* path;
};

/// Far more than any of them needs, in bytes.
constexpr std::size_t largestDetail = 64 * 1024;

constexpr std::array<DetailFile, 3> detailFiles{{
    {L"Sid", "etc/machine-id"},
    {L"DigitalProductId", "sys/class/dmi/id/product_name"},
    {L"DigitalProductId4", "sys/class/dmi/id/product_sku"},
}};

} // namespace

bool readDeviceDetailBelow(const std::filesystem::path& root, const std::wstring& name,
                           std::vector<unsigned char>& bytes) {
    bytes.clear();
    const auto found = std::ranges::find(detailFiles, name, &DetailFile::detail);
    if (found == detailFiles.end()) {
        return false;
    }
    std::error_code error;
    RegularFile file(root / found->path, error);
    std::string line = error ? std::string() : file.read(largestDetail, error);
    line.erase(std::min(line.find('\n'), line.size()));
    line.erase(line.find_last_not_of(" \t\r") + 1);
    bytes.assign(line.begin(), line.end());
    return !bytes.empty();
}

bool readDeviceDetail(const std::wstring& name, std::vector<unsigned char>& bytes) {
    return readDeviceDetailBelow("/", name, bytes);
}

} // namespace common2
