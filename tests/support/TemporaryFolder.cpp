#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <stdexcept>

namespace test {

std::filesystem::path TemporaryFolder::write(const std::filesystem::path& name,
                                             std::string_view content) const {
    const std::filesystem::path file = path() / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios_base::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
    return file;
}

} // namespace test
