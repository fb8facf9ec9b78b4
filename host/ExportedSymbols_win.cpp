#include "host/ExportedSymbols.h"

#include "host/Files.h"
#include "host/HostError.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

namespace host {
namespace {

/// The bytes of a library, from which nothing is read past their end.
class PeImage {
public:
    explicit PeImage(std::string_view file)
        : bytes(file) {}

    /// The record at an offset, if all of it is there.
    template <class Record>
    std::optional<Record> record(std::size_t offset) const {
        if (offset > bytes.size() || bytes.size() - offset < sizeof(Record)) {
            return std::nullopt;
        }
        Record record;
        std::memcpy(&record, bytes.data() + offset, sizeof record);
        return record;
    }

    /// The text that begins at an offset and ends with a NUL, if it does.
    std::optional<std::string> text(std::size_t offset) const {
        const std::size_t end = bytes.find('\0', offset);
        return end == std::string_view::npos ? std::nullopt
                                             : std::optional(std::string(bytes.substr(offset, end - offset)));
    }

    /// Where in the file that stands which is mapped to an address, if it is there.
    std::optional<std::size_t> offsetOf(DWORD address) const {
        const auto head = header();
        if (!head) {
            return std::nullopt;
        }
        for (WORD index = 0; index < head->second.FileHeader.NumberOfSections; ++index) {
            const auto section = record<IMAGE_SECTION_HEADER>(head->first + sizeof(IMAGE_NT_HEADERS32) +
                                                              index * sizeof(IMAGE_SECTION_HEADER));
            if (section && address >= section->VirtualAddress &&
                address - section->VirtualAddress < section->SizeOfRawData) {
                return address - section->VirtualAddress + section->PointerToRawData;
            }
        }
        return std::nullopt;
    }

    /// The head of the file and where it stands.
    std::optional<std::pair<std::size_t, IMAGE_NT_HEADERS32>> header() const {
        const auto dos = record<IMAGE_DOS_HEADER>(0);
        if (!dos || dos->e_magic != IMAGE_DOS_SIGNATURE || dos->e_lfanew < 0) {
            return std::nullopt;
        }
        const auto offset = static_cast<std::size_t>(dos->e_lfanew);
        const auto head = record<IMAGE_NT_HEADERS32>(offset);
        if (!head || head->Signature != IMAGE_NT_SIGNATURE ||
            head->OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR32_MAGIC) {
            return std::nullopt;
        }
        return std::pair(offset, *head);
    }

private:
    std::string_view bytes;
};

std::optional<std::vector<std::string>> exportsOf(const PeImage& image, const IMAGE_DATA_DIRECTORY& place) {
    std::vector<std::string> names;
    if (place.Size == 0) {
        return names;
    }
    const auto offset = image.offsetOf(place.VirtualAddress);
    const auto table = offset ? image.record<IMAGE_EXPORT_DIRECTORY>(*offset) : std::nullopt;
    const auto pointers = table ? image.offsetOf(table->AddressOfNames) : std::nullopt;
    if (!pointers) {
        return std::nullopt;
    }
    for (DWORD index = 0; index < table->NumberOfNames; ++index) {
        const auto address = image.record<DWORD>(*pointers + index * sizeof(DWORD));
        const auto at = address ? image.offsetOf(*address) : std::nullopt;
        auto name = at ? image.text(*at) : std::nullopt;
        if (!name) {
            return std::nullopt;
        }
        names.push_back(std::move(*name));
    }
    return names;
}

} // namespace

std::vector<std::string> exportedSymbols(const std::filesystem::path& file) {
    const std::string content = readFile(file);
    const PeImage image(content);
    const auto head = image.header();
    auto names =
        head ? exportsOf(image, head->second.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT])
             : std::nullopt;
    if (!names) {
        throw HostError(file.string() + " is no 32-bit library");
    }
    std::ranges::sort(*names);
    return std::move(*names);
}

} // namespace host
