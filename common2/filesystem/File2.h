/// Reading files.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

class File2 {
public:
    /// The most that is read, in bytes: far beyond any file that a program like this is given.
    static constexpr std::size_t largestFile = 16 * 1024 * 1024;

    /// Reads a whole regular file.
    /// @param text takes the file's bytes; as it was on failure
    /// @return empty on success, otherwise the stream's failure in its words, after one line in the log
    [[nodiscard]] static std::string ReadSync(const std::filesystem::path& path, std::string& text);
};
