/// What a shared library exports.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace host {

/// The names in the dynamic symbol table of the file that other files can link to, sorted. The file is read,
/// not loaded, and whatever stands in it, nothing outside of it is.
/// @throws HostError for a file that cannot be read or that is no 64-bit ELF file of this machine's byte
/// order
std::vector<std::string> exportedSymbols(const std::filesystem::path& file);

} // namespace host
