#include "host/ExportedSymbols.h"
#include "host/Files.h"
#include "host/HostError.h"
#include "tests/host/Paths.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

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

    /// The offset of a field in the file's head.
    std::size_t inHead(std::size_t field) const {
        IMAGE_DOS_HEADER dos;
        std::memcpy(&dos, bytes.data(), sizeof dos);
        return static_cast<std::size_t>(dos.e_lfanew) + field;
    }
    std::string with(std::size_t offset, const std::string& fresh) const {
        return std::string(bytes).replace(offset, fresh.size(), fresh);
    }

    std::string bytes = host::readFile(test::backendLibrary);
    const test::TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "damaged";
};

TEST_F(DamagedLibrary, AnotherKindOfFileIsRefused) {
    for (const std::string& content :
         {std::string(), std::string("MZ"), std::string("{}"), std::string(1000, '\0'),
          with(0, "ZM"),                                                             // no program
          with(inHead(0), "NE"),                                                     // of an older kind
          with(inHead(offsetof(IMAGE_NT_HEADERS32, OptionalHeader)), "\x0B\x02")}) { // for 64 bits
        write(content);
        EXPECT_THROW(exportedSymbols(path), HostError);
    }
}

TEST_F(DamagedLibrary, IsNeverReadPastItsEnd) {
    std::size_t refused = 0;
    for (std::size_t size = 0; size < bytes.size(); size += bytes.size() / 97 + 1) {
        write(bytes.substr(0, size));
        try {
            exportedSymbols(path);
        } catch (const HostError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 0u);
}

TEST_F(DamagedLibrary, WildOffsetsAreNotFollowed) {
    const std::size_t directory = inHead(offsetof(IMAGE_NT_HEADERS32, OptionalHeader) +
                                         offsetof(IMAGE_OPTIONAL_HEADER32, DataDirectory));
    write(with(directory, std::string(4, '\xFF')));
    EXPECT_THROW(exportedSymbols(path), HostError);
    write(with(offsetof(IMAGE_DOS_HEADER, e_lfanew), "\xFF\xFF\xFF\x7F"));
    EXPECT_THROW(exportedSymbols(path), HostError);
    write(with(directory, std::string(8, '\0')));
    EXPECT_THAT(exportedSymbols(path), ElementsAre()) << "a library may export nothing";
}

} // namespace
