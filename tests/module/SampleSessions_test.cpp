#include "tests/module/ModuleSession.h"

#include "host/SessionComparison.h"

#include <boost/json/parse.hpp>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

// Recorded sessions with the outputs that they must have, from the folder that all developers share.

namespace {

class SampleSession : public testing::TestWithParam<std::string> {};

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<boost::json::object> expectedOutputs(const std::string& content) {
    std::vector<boost::json::object> outputs;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        boost::json::object object = boost::json::parse(line).as_object();
        if (object.contains("out")) {
            outputs.push_back(std::move(object));
        }
    }
    return outputs;
}

TEST_P(SampleSession, IsMetExactly) {
    const std::string content =
        contentOf(std::filesystem::path(WREN_SHARED_FOLDER) / "sessions" / GetParam());
    test::ModuleSession session;
    session.run(content);
    const auto difference = host::firstDifference(expectedOutputs(content), session.outputs());
    EXPECT_FALSE(difference) << difference->what;
}

INSTANTIATE_TEST_SUITE_P(Shared, SampleSession,
                         testing::Values("01-lifecycle.jsonl", "02-first-status.jsonl",
                                         "03-bad-documents.jsonl", "04-enroll.jsonl",
                                         "05-enroll-cancel.jsonl", "06-enroll-error.jsonl",
                                         "07-alert-dialog.jsonl", "08-dataplane-auth.jsonl",
                                         "09-unenroll.jsonl", "10-request-refused.jsonl",
                                         "11-re-enroll.jsonl"),
                         [](const auto& sample) {
                             std::string name = sample.param.substr(0, sample.param.find('.'));
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

} // namespace
