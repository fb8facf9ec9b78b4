/// Where a Linux system keeps what tells its device apart.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace common2 {

/// Reads a detail from the first line of the file that stands for it: "Sid" is the machine id,
/// "DigitalProductId" and "DigitalProductId4" are the product's name and its stock keeping unit by the
/// firmware. All of them can be read by every user, unlike serial numbers, so that the device is the same
/// whoever asks.
/// @param root the folder that the system's paths begin at, such as "/"
/// @param bytes takes the detail; empty on failure
bool readDeviceDetailBelow(const std::filesystem::path& root, const std::wstring& name,
                           std::vector<unsigned char>& bytes);

} // namespace common2
