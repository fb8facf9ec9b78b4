#include "presentation-plugin/msvc/ExportNames.h"

#include <windows.h>

#include <algorithm>

namespace msvc {

ExportNames::ExportNames(const void* library) {
    const auto* const base = static_cast<const char*>(library);
    const auto* const head = reinterpret_cast<const IMAGE_NT_HEADERS*>(
        base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& place = head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    if (place.Size == 0) {
        return;
    }
    const auto* const table = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + place.VirtualAddress);
    const auto* const places = reinterpret_cast<const DWORD*>(base + table->AddressOfNames);
    for (DWORD index = 0; index < table->NumberOfNames; ++index) {
        names.emplace_back(base + places[index]);
    }
}

std::string ExportNames::find(std::string_view beginning, std::string_view end) const {
    const auto found = std::ranges::find_if(
        names, [&](std::string_view name) { return name.starts_with(beginning) && name.ends_with(end); });
    return found == names.end() ? std::string() : std::string(*found);
}

} // namespace msvc
