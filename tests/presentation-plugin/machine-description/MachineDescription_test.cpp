#include "presentation-plugin/machine-description/MachineDescription.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

namespace json = boost::json;

json::array machines() { return json::parse(machineDescription()).at("machines").as_array(); }

std::vector<std::string> textsOf(const json::value& texts) {
    std::vector<std::string> list;
    for (const json::value& text : texts.as_array()) {
        list.emplace_back(text.as_string());
    }
    return list;
}

TEST(MachineDescription, StartsWithTheRoot) {
    const json::value root = machines().at(0);
    EXPECT_EQ(root.at("name").as_string(), "PresentationPlugin_s");
    const json::array& regions = root.at("regions").as_array();
    ASSERT_EQ(regions.size(), 1u);
    EXPECT_EQ(regions[0].at("name").as_string(), "presentation_plugin");
    EXPECT_EQ(regions[0].at("initial").as_string(), "Unregistered_s");
    EXPECT_EQ(textsOf(regions[0].at("states")),
              (std::vector<std::string>{"Unregistered_s", "Registered_s", "Starting_s", "Started_s"}));
}

TEST(MachineDescription, RunningMachineHasItsFiveRegionsInOrder) {
    const json::array all = machines();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[1].at("name").as_string(), "Started_s");
    const struct {
        const char* name;
        const char* initial;
        std::size_t states;
        std::size_t rows;
    } expected[] = {{"main", "MainActive_s", 3, 15},
                    {"enroll", "EnrollIdle_s", 6, 18},
                    {"dataplane_auth", "DataplaneAuthIdle_s", 2, 4},
                    {"unenroll", "UnenrollIdle_s", 3, 5},
                    {"alert", "AlertIdle_s", 2, 6}};
    const json::array& regions = all[1].at("regions").as_array();
    ASSERT_EQ(regions.size(), std::size(expected));
    for (std::size_t i = 0; i < regions.size(); ++i) {
        EXPECT_EQ(regions[i].at("name").as_string(), expected[i].name);
        EXPECT_EQ(regions[i].at("initial").as_string(), expected[i].initial);
        EXPECT_EQ(regions[i].at("states").as_array().size(), expected[i].states) << expected[i].name;
        EXPECT_EQ(regions[i].at("rows").as_array().size(), expected[i].rows) << expected[i].name;
    }
}

/// A row in the order of its table: from, event, guard, action, to.
std::vector<std::string> rowOf(std::size_t machine, std::size_t region, std::size_t row) {
    const json::value found = machines().at(machine).at("regions").at(region).at("rows").at(row);
    std::vector<std::string> cells;
    for (const char* key : {"from", "event", "guard", "action", "to"}) {
        cells.emplace_back(found.at(key).as_string());
    }
    return cells;
}

TEST(MachineDescription, RowsReadAsInTheTable) {
    using Cells = std::vector<std::string>;
    EXPECT_EQ(rowOf(0, 0, 3), (Cells{"Starting_s", "", "", "", "Started_s"}));
    EXPECT_EQ(rowOf(0, 0, 4), (Cells{"Starting_s", "exception<ApiError_ex>", "", "DisplayApiErrorInternal_a",
                                     "Registered_s"}));
    EXPECT_EQ(rowOf(1, 0, 7),
              (Cells{"MainEnrolling_s", "StatusNotification_e", "statusIsError",
                     "CacheStatusNotificationAndUpdateUI_a, process(AbortEnrollment_e)", "MainActive_s"}));
    EXPECT_EQ(rowOf(1, 0, 8), (Cells{"MainEnrolling_s", "StatusNotification_e", "!statusIsError",
                                     "OnlyCacheStatusNotification_a", ""}));
    EXPECT_EQ(rowOf(1, 1, 2), (Cells{"EnrollRequestPending_s", "EnrollmentStatusNotification_e",
                                     "enrollmentStatusIs<EnrollmentStatus::Started>",
                                     "DisplayEnrollmentStatus_a", "EnrollStarted_s"}));
    EXPECT_EQ(rowOf(1, 4, 1), (Cells{"AlertIdle_s", "AlertListChanged_e", "", "", ""}));
}

TEST(MachineDescription, IsWhatTheHostShows) {
    std::ifstream file(WREN_SOURCE_DIR "/host/app/machine.json", std::ios::binary);
    std::ostringstream shown;
    shown << file.rdbuf();
    EXPECT_EQ(shown.str(), machineDescription())
        << "the tables have changed: build/PRESET/bin/wren-machine > host/app/machine.json";
}

} // namespace
