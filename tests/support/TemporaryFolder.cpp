#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <random>
#include <stdexcept>
#include <string>

namespace test {

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    do {
        folder = std::filesystem::temp_directory_path() / ("wren-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(folder)); // false: somebody else has it
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::filesystem::path TemporaryFolder::write(const std::filesystem::path& name,
                                             std::string_view content) const {
    const std::filesystem::path file = folder / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios_base::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
    return file;
}

} // namespace test
