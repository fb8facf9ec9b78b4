// The command as a user runs it.
#include "host/Files.h"
#include "host/system/PrivateFolder.h"
#include "tests/host/Paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

struct BundleRun {
    int exitCode = -1;
    std::string out; ///< with what went to standard error
};

std::string readAll(int end) {
    std::string text;
    char part[4096];
    for (ssize_t count = 0; (count = ::read(end, part, sizeof part)) > 0;) {
        text.append(part, static_cast<std::size_t>(count));
    }
    return text;
}

class BundleProgram : public ::testing::Test {
protected:
    std::string command(const std::string& arguments) const {
        return "cd '" + folder.path().string() + "' && exec '" + test::hostProgram + "' bundle " + arguments;
    }

    /// Runs the program without a terminal.
    BundleRun run(const std::string& arguments) const {
        FILE* const pipe = ::popen((command(arguments) + " 2>&1 </dev/null").c_str(), "r");
        std::string out = readAll(::fileno(pipe));
        const int status = ::pclose(pipe);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, std::move(out)};
    }

    /// Runs the program in a terminal into which somebody types.
    BundleRun runTyping(const std::string& arguments, const std::string& typed) const {
        int terminal = -1;
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            ::execl("/bin/sh", "sh", "-c", command(arguments).c_str(), nullptr);
            ::_exit(127);
        }
        EXPECT_EQ(::write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
        std::string out = readAll(terminal);
        int status = 0;
        ::waitpid(child, &status, 0);
        ::close(terminal);
        std::erase(out, '\r');
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, std::move(out)};
    }

    void write(const std::string& name, const std::string& content) const {
        std::ofstream(folder.path() / name, std::ios::binary) << content;
    }
    /// The archive's bytes: its files lie in it as they are.
    std::string archive() const { return host::readFile(folder.path() / "b.zip"); }
    bool hasArchive() const { return fs::exists(folder.path() / "b.zip"); }

    const host::PrivateFolder folder{"wren-test"};
};

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
    EXPECT_EQ(fs::status(folder.path() / "b.zip").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(BundleProgram, RunsTheRecordOfFunctionsToo) {
    EXPECT_EQ(run("b.zip --yes --seconds 0 --interface c").exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("CreateCbasedPresentationPlugin"));
    EXPECT_THAT(archive(), HasSubstr("\"root\": \"Started_s\""));
}

TEST_F(BundleProgram, AsksFirst) {
    const BundleRun no = runTyping("b.zip --seconds 0", "what\nn\n");
    EXPECT_EQ(no.exitCode, 1);
    EXPECT_THAT(no.out, HasSubstr("Write b.zip? [y]es, [s]how all of it, [N]o: "));
    EXPECT_THAT(no.out, HasSubstr("Nothing was written.\n"));
    EXPECT_FALSE(hasArchive());
    EXPECT_EQ(runTyping("b.zip --seconds 0", "\n").exitCode, 1);
    EXPECT_EQ(runTyping("b.zip --seconds 0", "\x04").exitCode, 1) << "the end of what is typed";
    EXPECT_FALSE(hasArchive());
    const BundleRun yes = runTyping("b.zip --seconds 0", "s\nyes\n");
    EXPECT_EQ(yes.exitCode, 0);
    EXPECT_THAT(yes.out, HasSubstr("== log.txt\n"));
    EXPECT_THAT(yes.out, HasSubstr("\"display_version\": \"5.1.11.2143\""));
    EXPECT_TRUE(hasArchive());
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
        EXPECT_THAT(outcome.out, ::testing::MatchesRegex("wren-host: [^\n]+\n")) << arguments;
        EXPECT_FALSE(hasArchive());
    }
}

TEST_F(BundleProgram, TellsOfAModuleThatCannotBeLoaded) {
    write("broken.so", "no library");
    for (const std::string module : {"nothing.so", "broken.so"}) {
        EXPECT_EQ(run("b.zip --yes --force --module " + module).exitCode, 0);
        EXPECT_THAT(archive(), HasSubstr("\"problem\": \""));
        EXPECT_THAT(archive(), HasSubstr("There was a problem: cannot load the module: "));
        EXPECT_THAT(archive(), HasSubstr(module));
    }
    EXPECT_EQ(
        run("b.zip --yes --force --seconds 0 --interface c --module '" + std::string(test::echoModule) + "'")
            .exitCode,
        0);
    EXPECT_THAT(archive(), HasSubstr("the module exports no CreateCbasedPlugin"));
}

TEST_F(BundleProgram, OutlivesAModuleThatCrashes) {
    const BundleRun outcome = run(std::string("b.zip --yes --module '") + WREN_CRASHING_MODULE + "'");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    EXPECT_THAT(archive(), HasSubstr("There was a problem: the module crashed: signal 6 (SIGABRT).\n"));
    EXPECT_THAT(archive(), HasSubstr("\"problem\": \"the module crashed: signal 6 (SIGABRT)\""));
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
    const fs::path data = folder.path() / "Norvane" / "Norvane Kestrel Suite" / "WREN";
    fs::create_directories(data);
    std::ofstream(data / "logconfig.json") << R"({"global":"DBG_INFO","token":"planted-in-configuration"})";
    write("kept.log", "agent: password=planted-in-log for robin.planted@corp.example\n");
    ::setenv("WREN_PROGRAM_DATA", folder.path().c_str(), 1);
    ::setenv("SERVICE_PASSWORD", "planted-in-environment", 1);
    ::setenv("USER", "plantedperson", 1);
    ::setenv("LD_LIBRARY_PATH", "/home/plantedperson/planted-in-environment", 1);
    const BundleRun outcome = run("b.zip --yes --seconds 0 --system-log kept.log");
    for (const char* const variable : {"WREN_PROGRAM_DATA", "SERVICE_PASSWORD", "USER", "LD_LIBRARY_PATH"}) {
        ::unsetenv(variable);
    }
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("\\\"global\\\":\\\"DBG_INFO\\\",\\\"token\\\":\\\"[secret-"));
    EXPECT_THAT(archive(), HasSubstr("agent: password=[secret-"));
    EXPECT_THAT(archive(), HasSubstr("\"LD_LIBRARY_PATH\": \"/home/[person-"));
    EXPECT_THAT(archive(), Not(HasSubstr("planted")));
}

} // namespace
