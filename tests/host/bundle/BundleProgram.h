/// `wren-host bundle` as a user runs it, in a folder of its own.
#pragma once

#include "host/Files.h"
#include "host/system/PrivateFolder.h"
#include "tests/host/Paths.h"
#include "tests/host/Process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace test {

using BundleRun = ProcessEnd; // the output holds what goes to standard error, too

class BundleProgram : public ::testing::Test {
protected:
    /// Runs the program without a terminal.
    /// @param arguments words between spaces
    /// @param module the value of --module, if any
    BundleRun run(const std::string& arguments, const std::string& module = "") const {
        ProcessPlan plan{
            .program = hostProgram, .arguments = {"bundle"}, .folder = folder.path(), .joinsErrors = true};
        std::istringstream words(arguments);
        for (std::string word; words >> word;) {
            plan.arguments.push_back(word);
        }
        if (!module.empty()) {
            plan.arguments.insert(plan.arguments.end(), {"--module", module});
        }
        return runProcess(plan);
    }

    void write(const std::string& name, const std::string& content) const {
        std::ofstream(folder.path() / name, std::ios::binary) << content;
    }
    /// The archive's bytes: its files lie in it as they are.
    std::string archive() const { return host::readFile(folder.path() / "b.zip"); }
    bool hasArchive() const { return std::filesystem::exists(folder.path() / "b.zip"); }

    const host::PrivateFolder folder{"wren-test"};
};

} // namespace test
