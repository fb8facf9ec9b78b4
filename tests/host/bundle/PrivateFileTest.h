/// A private file in a folder of its own.
#pragma once

#include "host/Files.h"
#include "host/HostError.h"
#include "host/bundle/PrivateFile.h"
#include "host/system/PrivateFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace test {

class PrivateFile : public ::testing::Test {
protected:
    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder.path()), {}));
    }
    std::string failure(bool replaces) const {
        try {
            host::bundle::writePrivateFile(file, "new", replaces);
        } catch (const host::HostError& fault) {
            return fault.what();
        }
        return "no failure";
    }

    const host::PrivateFolder folder{"wren-test"};
    const std::filesystem::path file = folder.path() / "file";
};

} // namespace test
