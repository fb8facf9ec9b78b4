#include "host/bundle/ZipArchive.h"

#include "host/HostError.h"

#include <boost/crc.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace host::bundle {
namespace {

namespace chrono = std::chrono;

constexpr std::uint32_t localSignature = 0x04034b50;
constexpr std::uint32_t centralSignature = 0x02014b50;
constexpr std::uint32_t endSignature = 0x06054b50;
constexpr std::uint16_t neededVersion = 20;
constexpr std::uint16_t utf8Names = 1 << 11;
constexpr std::uint16_t notCompressed = 0;
constexpr std::uint16_t madeByUnix = 3 << 8;
constexpr std::uint32_t ownersFile = 0100600u << 16;

/// Numbers with the least significant byte first.
template <class Number>
void put(std::string& bytes, Number number) {
    for (std::size_t i = 0; i < sizeof number; ++i) {
        bytes += static_cast<char>((static_cast<std::uint64_t>(number) >> (8 * i)) & 0xFF);
    }
}

std::uint32_t checksum(const std::string& content) {
    boost::crc_32_type crc;
    crc.process_bytes(content.data(), content.size());
    return crc.checksum();
}

/// Time and date in the format's way, from the low half to the high one.
std::uint32_t stampOf(chrono::system_clock::time_point time) {
    const auto day = chrono::floor<chrono::days>(time);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss clock(chrono::floor<chrono::seconds>(time - day));
    const int year = std::clamp(static_cast<int>(date.year()), 1980, 2107) - 1980;
    const auto dateWord = static_cast<std::uint32_t>(year) << 9 | static_cast<unsigned>(date.month()) << 5 |
                          static_cast<unsigned>(date.day());
    const auto clockWord = static_cast<std::uint32_t>(
        clock.hours().count() << 11 | clock.minutes().count() << 5 | clock.seconds().count() / 2);
    return dateWord << 16 | clockWord;
}

/// What the local header and the entry of the directory have in common.
std::string commonFields(const ArchiveFile& file, std::uint32_t stamp) {
    const auto size = static_cast<std::uint32_t>(file.content.size());
    std::string fields;
    put(fields, neededVersion);
    put(fields, utf8Names);
    put(fields, notCompressed);
    put(fields, stamp);
    put(fields, checksum(file.content));
    put(fields, size);
    put(fields, size);
    put(fields, static_cast<std::uint16_t>(file.name.size()));
    put(fields, std::uint16_t{0}); // no further fields
    return fields;
}

void putDirectoryEntry(std::string& directory, const std::string& fields, const std::string& name,
                       std::size_t place) {
    put(directory, centralSignature);
    put(directory, static_cast<std::uint16_t>(madeByUnix | neededVersion));
    directory += fields;
    put(directory, std::uint16_t{0}); // no comment
    put(directory, std::uint16_t{0}); // of the first disk
    put(directory, std::uint16_t{0}); // not known as text
    put(directory, ownersFile);
    put(directory, static_cast<std::uint32_t>(place));
    directory += name;
}

void checkSize(std::size_t size, std::size_t most) {
    if (size > most) {
        throw HostError("the archive gets too large");
    }
}

} // namespace

std::string zipArchive(const std::vector<ArchiveFile>& files, chrono::system_clock::time_point time) {
    constexpr std::size_t mostFiles = std::numeric_limits<std::uint16_t>::max() - 1;
    constexpr std::size_t mostBytes = std::numeric_limits<std::uint32_t>::max() - 1;
    checkSize(files.size(), mostFiles);
    const std::uint32_t stamp = stampOf(time);
    std::string archive;
    std::string directory;
    for (const ArchiveFile& file : files) {
        checkSize(file.name.size(), std::numeric_limits<std::uint16_t>::max());
        checkSize(file.content.size(), mostBytes - std::min(mostBytes, archive.size()));
        const std::string fields = commonFields(file, stamp);
        putDirectoryEntry(directory, fields, file.name, archive.size());
        put(archive, localSignature);
        archive.append(fields).append(file.name).append(file.content);
    }
    const std::size_t place = archive.size();
    checkSize(directory.size(), mostBytes - std::min(mostBytes, place));
    archive += directory;
    put(archive, endSignature);
    put(archive, std::uint32_t{0}); // one disk
    put(archive, static_cast<std::uint16_t>(files.size()));
    put(archive, static_cast<std::uint16_t>(files.size()));
    put(archive, static_cast<std::uint32_t>(directory.size()));
    put(archive, static_cast<std::uint32_t>(place));
    put(archive, std::uint16_t{0}); // no comment
    return archive;
}

} // namespace host::bundle
