// The command as a user runs it.
#include "tests/host/bundle/BundleProgram.h"

#include "tests/host/PrivateFiles.h"
#include "tests/support/MatchesPattern.h"
#include "tests/support/ScopedEnvironment.h"

#include <gmock/gmock.h>

namespace {

using test::BundleProgram;
using test::BundleRun;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST_F(BundleProgram, WritesWithoutAskingWhereToldTo) {
    const BundleRun outcome = run("b.zip --yes --seconds 0");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, StartsWith("The bundle holds:\n  README.txt "));
    EXPECT_THAT(outcome.out, HasSubstr("\nReplaced: "));
    EXPECT_THAT(outcome.out, ::testing::EndsWith("\nWritten to b.zip\n"));
    EXPECT_THAT(archive(), StartsWith("PK\x03\x04"));
    EXPECT_THAT(archive(), HasSubstr("\"display_version\": \"5.1.11.2143\""));
    EXPECT_THAT(archive(), HasSubstr("\"root\": \"Started_s\""));
    EXPECT_THAT(archive(), HasSubstr("Initializing. Please wait..."));
    EXPECT_THAT(archive(), HasSubstr("Starting WREN Presentation Plugin"));
    EXPECT_TRUE(test::isForItsOwnerOnly(folder.path() / "b.zip"));
}

TEST_F(BundleProgram, RunsTheRecordOfFunctionsToo) {
    EXPECT_EQ(run("b.zip --yes --seconds 0 --interface c").exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("CreateCbasedPresentationPlugin"));
    EXPECT_THAT(archive(), HasSubstr("\"root\": \"Started_s\""));
}

TEST_F(BundleProgram, WritesNothingWhereNobodyCanBeAsked) {
    const BundleRun outcome = run("b.zip");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out,
              "wren-host: nobody can be asked: standard input is no terminal; --yes writes without asking\n");
    EXPECT_FALSE(hasArchive());
}

TEST_F(BundleProgram, ReplacesAFileOnlyWhereToldTo) {
    write("b.zip", "mine");
    const BundleRun outcome = run("b.zip --yes");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "wren-host: there is a file b.zip already; --force replaces it\n");
    EXPECT_EQ(archive(), "mine");
    EXPECT_EQ(run("b.zip --yes --force --seconds 0").exitCode, 0);
    EXPECT_THAT(archive(), StartsWith("PK\x03\x04"));
}

TEST_F(BundleProgram, WhatCannotBeDoneIsOneLineAndExitCode2) {
    for (const std::string arguments :
         {"", "nowhere/b.zip --yes", ". --yes --force", "b.zip --yes --from nothing.jsonl",
          "b.zip --yes --seconds 61", "b.zip --yes --seconds 1 --from s.jsonl",
          "b.zip --yes --system-log nothing"}) {
        const BundleRun outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 2) << arguments;
        EXPECT_THAT(outcome.out, test::MatchesPattern("wren-host: [^\n]+\n")) << arguments;
        EXPECT_FALSE(hasArchive());
    }
}

TEST_F(BundleProgram, TellsOfAModuleThatCannotBeLoaded) {
    write("broken.so", "no library");
    for (const std::string module : {"nothing.so", "broken.so"}) {
        EXPECT_EQ(run("b.zip --yes --force", module).exitCode, 0);
        EXPECT_THAT(archive(), HasSubstr("\"problem\": \""));
        EXPECT_THAT(archive(), HasSubstr("There was a problem: cannot load the module: "));
        EXPECT_THAT(archive(), HasSubstr(module));
    }
    EXPECT_EQ(run("b.zip --yes --force --seconds 0 --interface c", test::echoModule).exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("the module exports no CreateCbasedPlugin"));
}

TEST_F(BundleProgram, OutlivesAModuleThatCrashes) {
    const BundleRun outcome = run("b.zip --yes", test::crashingModule);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    EXPECT_THAT(archive(), HasSubstr("There was a problem: the module crashed: " +
                                     std::string(test::crashText) + ".\n"));
    EXPECT_THAT(archive(),
                HasSubstr("\"problem\": \"the module crashed: " + std::string(test::crashText) + "\""));
    EXPECT_THAT(archive(), HasSubstr("the last words\n"));
    EXPECT_THAT(archive(), HasSubstr("\"GetAvailableInterfaces\""));
}

TEST_F(BundleProgram, NeedNotLoadTheModule) {
    EXPECT_EQ(run("b.zip --yes --no-load").exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("\"problem\": \"it was not to be loaded\""));
    EXPECT_THAT(archive(), HasSubstr("\"CreateCbasedPlugin\""));
    EXPECT_THAT(archive(), HasSubstr("come from nothing: the module was not to be loaded."));
}

TEST_F(BundleProgram, TakesWhatHappenedFromASessionFile) {
    write("s.jsonl", "{\"do\":\"create\",\"name\":\"n\"}\n"
                     "{\"n\":1,\"out\":\"log\",\"severity\":2,\"message\":\"out of the session\"}\n");
    EXPECT_EQ(run("b.zip --yes --from s.jsonl").exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("come from the session file s.jsonl."));
    EXPECT_THAT(archive(), HasSubstr("W  :0 out of the session\n"));
    EXPECT_THAT(archive(), HasSubstr("\"display_version\": \"5.1.11.2143\""));
    EXPECT_THAT(archive(), Not(HasSubstr("Creating Plugin")));
}

TEST_F(BundleProgram, HoldsNothingOfWhatIsPlantedAroundIt) {
    write("kept.log", "agent: password=planted-in-log for robin.planted@corp.example\n");
    const test::ScopedEnvironment password("SERVICE_PASSWORD", "planted-in-environment");
    const test::ScopedEnvironment user("USER", "plantedperson");
    const test::ScopedEnvironment windowsUser("USERNAME", "plantedperson");
    const test::ScopedEnvironment path("LD_LIBRARY_PATH", "/home/plantedperson/planted-in-environment");
    EXPECT_EQ(run("b.zip --yes --seconds 0 --system-log kept.log").exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("agent: password=[secret-"));
    EXPECT_THAT(archive(), HasSubstr("\"LD_LIBRARY_PATH\": \"/home/[person-"));
    EXPECT_THAT(archive(), Not(HasSubstr("planted")));
}

} // namespace
