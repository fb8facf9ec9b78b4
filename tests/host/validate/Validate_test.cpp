// The command as a user runs it: on the real module, and on modules that break one rule each.
#include "tests/host/Paths.h"
#include "tests/host/Process.h"
#include "tests/support/MatchesPattern.h"
#include "tests/support/ScopedEnvironment.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using test::MatchesPattern;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using Lines = std::vector<std::string>;

using Validation = test::ProcessEnd;

/// Runs `wren-host validate`.
Validation validate(const Lines& arguments, const std::string& defects = "", bool joinsErrors = false) {
    const test::ScopedEnvironment variable("WREN_DEFECTS", defects.c_str());
    test::ProcessPlan plan{.program = test::hostProgram, .arguments = arguments, .joinsErrors = joinsErrors};
    plan.arguments.insert(plan.arguments.begin(), "validate");
    return test::runProcess(plan);
}

Lines linesOf(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The checks that did not pass, with their outcomes, from the output in JSON.
std::map<std::string, std::string> trouble(const Validation& outcome) {
    std::map<std::string, std::string> found;
    for (const std::string& line : linesOf(outcome.out)) {
        const boost::json::object object = boost::json::parse(line).as_object();
        if (object.contains("check") && object.at("outcome") != "passed") {
            found.emplace(object.at("check").as_string(), object.at("outcome").as_string());
        }
    }
    return found;
}

boost::json::object summaryOf(const Validation& outcome) {
    return boost::json::parse(linesOf(outcome.out).back()).at("summary").as_object();
}

// The real module.

TEST(Validate, TheModulePassesThroughTheClass) {
    const Validation outcome = validate({"--seed", "1", "--json"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(trouble(outcome), (std::map<std::string, std::string>{}));
    EXPECT_GE(summaryOf(outcome).at("passed").to_number<int>(), 250);
    EXPECT_EQ(summaryOf(outcome).at("interface"), "cpp");
}

TEST(Validate, TheModulePassesThroughTheRecord) {
    const Validation outcome = validate({"--seed", "1", "--json", "--interface", "c"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(trouble(outcome), (std::map<std::string, std::string>{}));
    EXPECT_GE(summaryOf(outcome).at("passed").to_number<int>(), 250);
    EXPECT_EQ(summaryOf(outcome).at("interface"), "c");
}

// Modules with a defect.

struct Defect {
    std::string name;
    std::string check; ///< the one that finds it
    std::string outcome = "failed";
    std::string interface = "cpp";
};

void PrintTo(const Defect& defect, std::ostream* out) { *out << defect.name; }

const std::vector<Defect> defects{
    {"interface-version", "interfaces.entries"},
    {"any-case", "create.case"},
    {"dispose-says-false", "dispose.answer"},
    {"label", "texts.label"},
    {"size-kept", "texts.null-buffer"},
    {"crash-on-null-size", "texts.null-size", "crashed"},
    {"version-4", "supports.other-versions"},
    {"encrypt", "answers.encrypt"},
    {"decrypt", "answers.decrypt"},
    {"early-exit", "answers.approvals", "crashed"},
    {"null-arguments", "register.null-arguments"},
    {"handle-cut", "register.handle"},
    {"late-callback", "register.forgotten"},
    {"stop-done-missing", "stop.reasons"},
    {"no-late-copies", "lifecycle.late-documents"},
    {"tires", "lifecycle.random-orders"},
    {"unreadable-login", "notices.readable"},
    {"foreign-module", "notices.module"},
    {"unknown-attribute", "notices.attributes"},
    {"disposal-without-time", "notices.time"},
    {"log-notice-order", "notices.order"},
    {"bound-in-updates", "notices.bound-once"},
    {"tooltip", "tile.layout"},
    {"managed-words", "panels.enrollment-setup"},
    {"proxy-words", "statistics.proxies"},
    {"crash-on-null-event", "events.null", "crashed"},
    {"short-events", "events.great-value"},
    {"congratulation", "enrollment.success"},
    {"details-toast", "details.open"},
    {"free-log-text", "log.form"},
    {"crash-on-odd-bytes", "robustness.random-bytes", "crashed"},
    {"record-size", "record.size", "failed", "c"},
    {"record-reasons", "record.stop-reason", "failed", "c"},
    {"record-disposed-twice", "record.dispose-twice", "failed", "c"},
};

class ValidateDefect : public testing::TestWithParam<Defect> {};

TEST_P(ValidateDefect, BreaksItsOneCheckOfTheSubject) {
    const Defect& defect = GetParam();
    const std::string subject = defect.check.substr(0, defect.check.find('.') + 1);
    const Validation outcome = validate({test::defectiveModule, "--seed", "1", "--json", "--include", subject,
                                         "--interface", defect.interface},
                                        defect.name);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(trouble(outcome), (std::map<std::string, std::string>{{defect.check, defect.outcome}}));
}

INSTANTIATE_TEST_SUITE_P(Each, ValidateDefect, testing::ValuesIn(defects), [](const auto& defect) {
    std::string name = defect.param.name;
    for (char& letter : name) {
        letter = letter == '-' ? '_' : letter;
    }
    return name;
});

/// All defects of an interface at once break each its own check and none besides.
void expectNothingElseBroken(const std::string& interface) {
    std::string names;
    std::map<std::string, std::string> expected;
    for (const Defect& defect : defects) {
        if (defect.interface == interface) {
            names.append(names.empty() ? "" : ",").append(defect.name);
            expected.emplace(defect.check, defect.outcome);
        }
    }
    const Validation outcome =
        validate({test::defectiveModule, "--seed", "1", "--json", "--interface", interface}, names);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(trouble(outcome), expected);
}

TEST(Validate, DefectsOfTheClassBreakNoOtherCheck) { expectNothingElseBroken("cpp"); }
TEST(Validate, DefectsOfTheRecordBreakNoOtherCheck) { expectNothingElseBroken("c"); }

TEST(Validate, ACheckThatHangsIsTimedOut) {
    const Validation outcome =
        validate({test::defectiveModule, "--include", "stop.reasons", "--limit", "5"}, "hang-on-stop");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, StartsWith("timed out  stop.reasons: after 5000 ms\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\n1 checks: 0 passed, 0 failed, 0 crashed, 1 timed out "));
}

// How it is told.

TEST(Validate, EachCheckIsOneLineAndTheLastIsTheSummary) {
    const Validation outcome =
        validate({test::defectiveModule, "--seed", "7", "--include", "texts."}, "label,crash-on-null-size");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(linesOf(outcome.out),
                ElementsAre("passed     texts.identity",
                            "failed     texts.label: the label: \"wren Gate\", not \"Wren Gate\"",
                            "passed     texts.version", "passed     texts.null-buffer",
                            "passed     texts.small-buffer", "passed     texts.exact-buffer",
                            "crashed    texts.null-size: " + std::string(test::crashText),
                            "passed     texts.any-state",
                            "8 checks: 6 passed, 1 failed, 1 crashed, 0 timed out (interface cpp, seed 7)"));
}

TEST(Validate, AnEarlyExitIsTheChecksCrash) {
    EXPECT_THAT(validate({test::defectiveModule, "--include", "answers.approvals"}, "early-exit").out,
                StartsWith("crashed    answers.approvals: ended early with code 3\n"));
}

TEST(Validate, JsonIsOneObjectALine) {
    const Validation outcome =
        validate({test::defectiveModule, "--json", "--seed", "4294967295", "--include", "texts.l"}, "label");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(linesOf(outcome.out),
              (Lines{R"({"check":"texts.label","outcome":"failed","reason":)"
                     R"("the label: \"wren Gate\", not \"Wren Gate\""})",
                     R"({"summary":{"module":)" +
                         boost::json::serialize(boost::json::string(test::defectiveModule)) +
                         R"(,"interface":"cpp","seed":4294967295,"checks":1,"passed":0,"failed":1,)"
                         R"("crashed":0,"timed_out":0}})"}));
}

TEST(Validate, IncludeChoosesByAPartOfTheName) {
    const Validation outcome = validate({"--include", "null-n", "--seed", "1"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(linesOf(outcome.out),
                ElementsAre("passed     create.null-name",
                            "1 checks: 1 passed, 0 failed, 0 crashed, 0 timed out (interface cpp, seed 1)"));
}

TEST(Validate, TheSeedIsToldAndRepeatsAFailure) {
    const Lines random{test::defectiveModule, "--include", "random-orders", "--json"};
    const auto withSeed = [&](const std::string& seed) {
        Lines arguments = random;
        arguments.insert(arguments.end(), {"--seed", seed});
        return validate(arguments, "tires").out;
    };
    const Validation first = validate(random, "tires");
    const std::string seed = boost::json::serialize(summaryOf(first).at("seed"));
    EXPECT_EQ(withSeed(seed), first.out);
    // In 400 calls, the sixtieth Start comes at another place with nearly every seed.
    std::map<std::string, int> reasons;
    for (const char* other : {"1", "2", "3", "4"}) {
        ++reasons[linesOf(withSeed(other)).front()];
    }
    EXPECT_GT(reasons.size(), 1u);
}

TEST(Validate, ListTellsNamesAndDescriptionsOfTheInterface) {
    const Validation plain = validate({"--list", "--include", "record.s"});
    EXPECT_EQ(plain.exitCode, 2); // through the class there is no record
    const Validation record = validate({"--list", "--include", "record.s", "--interface", "c"});
    EXPECT_EQ(record.exitCode, 0);
    EXPECT_EQ(record.out,
              "record.size                            The record tells its size.\n"
              "record.stop-reason                     Stop refuses a reason above 1 and the plugin "
              "runs on.\n");
    EXPECT_EQ(validate({"--list", "--json", "--include", "texts.label"}).out,
              "{\"check\":\"texts.label\",\"description\":\"The label is \\\"Wren Gate\\\".\"}\n");
}

TEST(Validate, NamesAreUniqueAndDescribed) {
    std::map<std::string, int> names;
    for (const std::string& line : linesOf(validate({"--list", "--json", "--interface", "c"}).out)) {
        const boost::json::object check = boost::json::parse(line).as_object();
        const std::string name(check.at("check").as_string());
        EXPECT_EQ(++names[name], 1) << name;
        EXPECT_THAT(name, MatchesPattern("[a-z]+[.][a-z0-9-]+"));
        EXPECT_THAT(std::string(check.at("description").as_string()), EndsWith(".")) << name;
    }
}

TEST(Validate, WhatCannotBeCheckedIsOneLineAndExitCode2) {
    const std::vector<Lines> commandLines{
        {"/nonexistent/module.so"},
        {test::backendLibrary},
        {test::hostProgram},
        {"/"},
        {test::echoModule, "--interface", "c"},
        {"--include", "no-such-check"},
        {"--seed", "x"},
        {"--seed", "-1"},
        {"--seed", "4294967296"},
        {"--limit", "0"},
        {"--interface", "d"},
        {"--yaml"},
        {"one", "two"},
    };
    for (const Lines& commandLine : commandLines) {
        const Validation outcome = validate(commandLine, "", true);
        EXPECT_EQ(outcome.exitCode, 2) << testing::PrintToString(commandLine);
        EXPECT_THAT(outcome.out, MatchesPattern("wren-host: [^\n]+\n"))
            << testing::PrintToString(commandLine);
    }
}

TEST(Validate, AModuleThatCrashesWhenItIsLoadedCannotBeChecked) {
    const Validation outcome = validate({test::defectiveModule}, "crash-when-loaded", true);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.out, EndsWith(test::crashWhenLoadedText));
}

} // namespace
