#include "host/ExportedSymbols.h"

#include "host/Files.h"
#include "host/HostError.h"

#include <elf.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <string_view>

namespace host {
namespace {

constexpr unsigned char ownByteOrder = std::endian::native == std::endian::little ? ELFDATA2LSB : ELFDATA2MSB;

/// The bytes of a library, from which nothing is read past their end.
class ElfImage {
public:
    explicit ElfImage(std::string_view file)
        : bytes(file) {}

    /// The record at an offset, if all of it is there.
    template <class Record>
    std::optional<Record> record(std::uint64_t offset) const {
        const std::string_view part = slice(offset, sizeof(Record));
        if (part.size() != sizeof(Record)) {
            return std::nullopt;
        }
        Record copy;
        std::memcpy(&copy, part.data(), sizeof copy);
        return copy;
    }

    /// The bytes of a range, or nothing if it does not lie within.
    std::string_view slice(std::uint64_t offset, std::uint64_t size) const {
        if (offset > bytes.size() || size > bytes.size() - offset) {
            return {};
        }
        return bytes.substr(offset, size);
    }

    std::optional<Elf64_Ehdr> header() const {
        const auto found = record<Elf64_Ehdr>(0);
        const bool isOurs = found && std::memcmp(found->e_ident, ELFMAG, SELFMAG) == 0 &&
                            found->e_ident[EI_CLASS] == ELFCLASS64 &&
                            found->e_ident[EI_DATA] == ownByteOrder &&
                            found->e_shentsize == sizeof(Elf64_Shdr);
        return isOurs ? found : std::nullopt;
    }

    std::optional<Elf64_Shdr> section(const Elf64_Ehdr& file, std::uint64_t index) const {
        if (index >= file.e_shnum || file.e_shoff > bytes.size()) {
            return std::nullopt;
        }
        return record<Elf64_Shdr>(file.e_shoff + index * sizeof(Elf64_Shdr));
    }

private:
    std::string_view bytes;
};

bool isExported(const Elf64_Sym& symbol) {
    const auto binding = ELF64_ST_BIND(symbol.st_info);
    const auto visibility = ELF64_ST_VISIBILITY(symbol.st_other);
    const bool isShared = binding == STB_GLOBAL || binding == STB_WEAK || binding == STB_GNU_UNIQUE;
    const bool isVisible = visibility == STV_DEFAULT || visibility == STV_PROTECTED;
    // A symbol of type "none" with an absolute value is the name of a symbol version.
    const bool isVersion = symbol.st_shndx == SHN_ABS && ELF64_ST_TYPE(symbol.st_info) != STT_FUNC;
    return symbol.st_name != 0 && symbol.st_shndx != SHN_UNDEF && isShared && isVisible && !isVersion;
}

std::string nameAt(std::string_view names, std::uint64_t offset) {
    if (offset >= names.size()) {
        return {};
    }
    const std::string_view rest = names.substr(offset);
    return std::string(rest.substr(0, rest.find('\0')));
}

void addSymbols(const ElfImage& image, const Elf64_Shdr& table, std::string_view names,
                std::vector<std::string>& found) {
    const std::string_view symbols = image.slice(table.sh_offset, table.sh_size);
    for (std::uint64_t at = 0; at + sizeof(Elf64_Sym) <= symbols.size(); at += sizeof(Elf64_Sym)) {
        const auto symbol = image.record<Elf64_Sym>(table.sh_offset + at);
        if (symbol && isExported(*symbol)) {
            found.push_back(nameAt(names, symbol->st_name));
        }
    }
}

} // namespace

std::vector<std::string> exportedSymbols(const std::filesystem::path& file) {
    const std::string bytes = readFile(file);
    const ElfImage image(bytes);
    const auto header = image.header();
    if (!header) {
        throw HostError("not a shared library of this machine: " + file.string());
    }
    std::vector<std::string> found;
    for (std::uint64_t index = 0; index < header->e_shnum; ++index) {
        const auto table = image.section(*header, index);
        if (!table || table->sh_type != SHT_DYNSYM) {
            continue;
        }
        if (const auto names = image.section(*header, table->sh_link)) {
            addSymbols(image, *table, image.slice(names->sh_offset, names->sh_size), found);
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace host
