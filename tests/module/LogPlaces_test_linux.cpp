#include "tests/module/ModuleSession.h"
#include "tests/support/Documents.h"

#include <boost/json/object.hpp>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>

namespace {

/// What a line of a source has in it that writes a record.
constexpr std::array<std::string_view, 4> waysToLog{"COMMON2_LOG", "raise(", "logLife(", "logAction("};

/// The lines of the module's sources by file, such as "PresentationPluginImpl".
class Sources {
public:
    Sources() {
        for (const char* room : {"common", "common2", "xml", "presentation-plugin", "Plugins"}) {
            const std::filesystem::path folder = std::filesystem::path(WREN_SOURCE_DIR) / room;
            for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
                read(entry.path());
            }
        }
    }

    bool hasLoggingLine(const std::string& file, std::int64_t line) const {
        const auto [first, last] = lines.equal_range(file);
        for (auto source = first; source != last; ++source) {
            const auto found = source->second.find(line);
            for (const std::string_view way : waysToLog) {
                if (found != source->second.end() && found->second.find(way) != std::string::npos) {
                    return true;
                }
            }
        }
        return false;
    }

private:
    void read(const std::filesystem::path& path) {
        if (path.extension() != ".cpp" && path.extension() != ".h") {
            return;
        }
        std::map<std::int64_t, std::string> numbered;
        std::ifstream stream(path);
        std::string text;
        for (std::int64_t line = 1; std::getline(stream, text); ++line) {
            numbered[line] = text;
        }
        lines.emplace(path.stem().string(), std::move(numbered));
    }

    std::multimap<std::string, std::map<std::int64_t, std::string>> lines;
};

TEST(LogPlaces, EveryRecordNamesTheLineThatWroteIt) {
    const Sources sources;
    test::ModuleSession session;
    std::map<std::string, unsigned> refusals; // by the file that they name
    const auto look = [&] {
        for (const auto& output : session.outputs()) {
            const auto* file = output.if_contains("file");
            const auto* line = output.if_contains("line");
            if (output.at("out") != "log" || file == nullptr || line == nullptr ||
                file->as_string().starts_with("state_machine/")) { // the machine's own trace names no source
                continue;
            }
            const std::string name(file->as_string());
            EXPECT_TRUE(sources.hasLoggingLine(name, line->to_number<std::int64_t>())) << output;
            refusals[name] += output.at("message") == "Unexpected state transition" ? 1 : 0;
        }
    };
    const auto run = [&](std::string_view inputs) {
        session.run(inputs);
        look();
    };
    session.start();
    look();
    run(R"({"do":"start"})"); // is started
    session.press("quill_tile_cancel_action_btn");
    look();
    session.deliver("EnrollmentStatusNotification", test::textOf(test::enrollmentStatusDocument()));
    look();
    session.deliver("StatusNotification", test::textOf(test::notEnrolledStatusDocument()));
    look();
    for (int presses = 0; presses < 2; ++presses) {
        session.press("quill_tile_enroll_action_btn");
        look();
    }
    run(R"({"do":"stop","reason":0})");
    session.deliver("StatusNotification", test::textOf(test::notEnrolledStatusDocument()));
    look();
    run(R"({"do":"dispose"})");
    EXPECT_GT(refusals["PresentationPluginImpl"], 0u);
    EXPECT_GT(refusals["PresentationPluginImplBackendIntake"], 0u);
    EXPECT_GT(refusals["PresentationPluginImplHostEvents"], 0u);
}

} // namespace
