/// What the operating system tells of its device.
#pragma once

#include <string>
#include <vector>

namespace common2 {

/// Reads one of the details "Sid", "DigitalProductId" and "DigitalProductId4" from the system itself: bytes
/// that stay the same as long as the system's installation does, whoever asks. Any thread.
/// @param bytes takes the detail; empty on failure
bool readDeviceDetail(const std::wstring& name, std::vector<unsigned char>& bytes);

} // namespace common2
