#include "host/ExportedSymbols.h"
#include "host/Files.h"
#include "host/HostError.h"
#include "tests/host/Paths.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <elf.h>

#include <cstring>
#include <string>

namespace {

using host::exportedSymbols;
using host::HostError;
using ::testing::ElementsAre;

/// Copies of a real library that are not what they were.
class DamagedLibrary : public ::testing::Test {
protected:
    void write(const std::string& content) const { folder.write("damaged", content); }

    std::string bytes = host::readFile(test::backendLibrary);
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "damaged";
};

TEST_F(DamagedLibrary, AnotherKindOfFileIsRefused) {
    for (const std::string& content : {std::string(),
                                       std::string("\x7F"
                                                   "ELF"),
                                       std::string("{}"), std::string(1000, '\0')}) {
        write(content);
        EXPECT_THROW(exportedSymbols(path), HostError);
    }
    std::string narrow = bytes;
    narrow[EI_CLASS] = ELFCLASS32;
    write(narrow);
    EXPECT_THROW(exportedSymbols(path), HostError);
    std::string swapped = bytes;
    swapped[EI_DATA] = ELFDATA2MSB;
    write(swapped);
    EXPECT_THROW(exportedSymbols(path), HostError);
}

TEST_F(DamagedLibrary, IsNeverReadPastItsEnd) {
    for (std::size_t size = sizeof(Elf64_Ehdr); size < bytes.size(); size += bytes.size() / 97 + 1) {
        write(bytes.substr(0, size));
        EXPECT_NO_THROW(exportedSymbols(path)) << size;
    }
}

TEST_F(DamagedLibrary, WildOffsetsAreNotFollowed) {
    Elf64_Ehdr header;
    std::memcpy(&header, bytes.data(), sizeof header);
    for (std::size_t section = 0; section < header.e_shnum; ++section) {
        for (const std::size_t field : {offsetof(Elf64_Shdr, sh_offset), offsetof(Elf64_Shdr, sh_size)}) {
            std::string wild = bytes;
            std::memset(wild.data() + header.e_shoff + section * sizeof(Elf64_Shdr) + field, 0xFF, 8);
            write(wild);
            EXPECT_NO_THROW(exportedSymbols(path));
        }
    }
    std::string wild = bytes;
    std::memset(wild.data() + offsetof(Elf64_Ehdr, e_shoff), 0xFF, 8);
    write(wild);
    EXPECT_THAT(exportedSymbols(path), ElementsAre());
}

} // namespace
