/// Base64 text of bytes.
#pragma once

#include <string>
#include <string_view>

/// The bytes in the standard alphabet ("+" and "/"), padded with "=", without line breaks.
std::string base64Encode(std::string_view bytes);
