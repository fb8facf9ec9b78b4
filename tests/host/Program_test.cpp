// The program as a user runs it, against the module that echoes.
#include "host/Files.h"
#include "tests/host/Paths.h"

#include <gmock/gmock.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;
namespace fs = std::filesystem;

struct ProgramRun {
    int exitCode = -1;
    std::string out;
    std::string error;
};

/// A run of the program with its outputs caught.
class Program {
public:
    explicit Program(std::vector<std::string> arguments) {
        if (::pipe(out.data()) != 0 || ::pipe(error.data()) != 0) {
            return;
        }
        child = ::fork();
        if (child == 0) {
            ::dup2(out[1], STDOUT_FILENO);
            ::dup2(error[1], STDERR_FILENO);
            for (const int end : {out[0], out[1], error[0], error[1]}) {
                ::close(end);
            }
            std::vector<char*> words{const_cast<char*>(test::hostProgram)};
            for (std::string& argument : arguments) {
                words.push_back(argument.data());
            }
            words.push_back(nullptr);
            ::execv(test::hostProgram, words.data());
            ::_exit(127);
        }
        ::close(out[1]);
        ::close(error[1]);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() {
        ::close(out[0]);
        ::close(error[0]);
    }

    /// Waits until the output holds `text`.
    void waitForOutput(const std::string& text) {
        while (caught.find(text) == std::string::npos && readSome(out[0], caught)) {
        }
    }
    void signal(int number) const { ::kill(child, number); }

    ProgramRun finish() {
        std::string errors;
        while (readSome(out[0], caught)) {
        }
        while (readSome(error[0], errors)) {
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, caught, errors};
    }

private:
    static bool readSome(int end, std::string& text) {
        char part[4096];
        const ssize_t count = ::read(end, part, sizeof part);
        text.append(part, count > 0 ? static_cast<std::size_t>(count) : 0);
        return count > 0;
    }

    std::array<int, 2> out{};
    std::array<int, 2> error{};
    pid_t child = -1;
    std::string caught;
};

ProgramRun run(const std::vector<std::string>& arguments) { return Program(arguments).finish(); }

/// A folder of its own for the files of a test, and for the temporary files of the program.
class ProgramTest : public ::testing::Test {
protected:
    ProgramTest() {
        fs::create_directories(folder);
        ::setenv("TMPDIR", folder.c_str(), 1);
    }
    ~ProgramTest() override {
        ::unsetenv("TMPDIR");
        fs::remove_all(folder);
    }

    std::string session(const std::string& content) {
        const fs::path file = folder / "a session.jsonl";
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }
    ProgramRun runSession(const std::string& content) {
        return run({"script", session(content), "--module", test::echoModule});
    }
    bool leftTemporaryFiles() const {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().filename().string().starts_with("wren-host-")) {
                return true;
            }
        }
        return false;
    }

    const fs::path folder = ::testing::TempDir() + "wren host tests " + std::to_string(::getpid());
};

TEST_F(ProgramTest, ScriptPrintsTheSession) {
    const ProgramRun outcome = runSession("# comment\n"
                                          "{\"do\":\"session\",\"format\":1,\"time_zone\":\"UTC\"}\n"
                                          "{\"do\":\"create\",\"name\":\"other\"}\n"
                                          "{\"n\":2,\"out\":\"created\",\"object\":true}\n");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.out,
              R"({"do":"session","format":1,"time_zone":"UTC"}
{"do":"create","name":"other"}
{"n":2,"out":"log","severity":0,"function":"CreatePlugin","file":"EchoModule","line":12,"message":"other"}
{"n":2,"out":"created","object":false}
)");
    EXPECT_FALSE(leftTemporaryFiles());
}

TEST_F(ProgramTest, StrictScriptNamesTheRulesThatAreBrokenAndExitsWith1) {
    const std::string file = session(
        "{\"do\":\"create\",\"name\":\"com.norvane.vantor.presentation\"}\n"
        "{\"do\":\"register\",\"arguments\":\"\",\"callbacks\":\"h\",\"translator\":true,\"handle\":1}\n"
        "{\"do\":\"event\",\"xml\":\"notice <vtguiNotice/>\"}\n");
    const ProgramRun outcome = run({"script", file, "--strict", "--module", test::echoModule});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.error,
              "wren-host: rule broken: foreign-module: \"module\" = \"\" (A notice names the "
              "module that it comes from.)\n"
              "wren-host: rule broken: missing-attribute: \"type\" of <vtguiNotice> (An element "
              "has the attributes that it cannot do without.)\n");
    EXPECT_EQ(outcome.out, run({"script", file, "--module", test::echoModule}).out);
}

TEST_F(ProgramTest, StrictScriptOfTheModuleBreaksNoRule) {
    const ProgramRun outcome = run(
        {"script",
         session(
             "{\"do\":\"create\",\"name\":\"com.norvane.vantor.presentation\"}\n"
             "{\"do\":\"register\",\"arguments\":\"\",\"callbacks\":\"h\",\"translator\":true,\"handle\":1}\n"
             "{\"do\":\"start\"}\n{\"do\":\"stop\"}\n{\"do\":\"unregister\"}\n{\"do\":\"dispose\"}\n"),
         "--strict"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.error, "");
}

TEST_F(ProgramTest, ScriptThatFailsOnItsWayHasPrintedWhatItDid) {
    const ProgramRun outcome = runSession("{\"do\":\"interfaces\"}\n{\"do\":\"start\"}\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.error,
                MatchesRegex("wren-host: .*a session.jsonl:2: object \"p\" was never created\n"));
    EXPECT_THAT(outcome.out, StartsWith("{\"do\":\"interfaces\"}\n{\"n\":1,\"out\":\"interfaces\""));
    EXPECT_FALSE(leftTemporaryFiles());
}

TEST_F(ProgramTest, ScriptWithAFaultRunsNothing) {
    const ProgramRun outcome = runSession("{\"do\":\"interfaces\"}\n{\"do\":\"nothing\"}\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.error, MatchesRegex("wren-host: .*a session.jsonl:2: unknown \"do\": \"nothing\"\n"));
}

TEST_F(ProgramTest, ScriptEndsObjectsThatTheSessionLeavesBehind) {
    const ProgramRun outcome = runSession(
        "{\"do\":\"create\",\"name\":\"com.norvane.vantor.presentation\"}\n"
        "{\"do\":\"register\",\"arguments\":\"\",\"callbacks\":\"h\",\"translator\":true,\"handle\":1}\n"
        "{\"do\":\"start\"}\n");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.out.ends_with("{\"n\":3,\"out\":\"result\",\"value\":0}\n")) << outcome.out;
}

TEST_F(ProgramTest, ReplayOfItsOwnRecordingIsAsExpected) {
    const std::string inputs =
        "{\"do\":\"create\",\"name\":\"com.norvane.vantor.presentation\"}\n"
        "{\"do\":\"register\",\"arguments\":\"\",\"callbacks\":\"h\",\"translator\":true,\"handle\":1}\n"
        "{\"do\":\"start\"}\n{\"do\":\"stop\"}\n";
    const std::string recording = runSession(inputs).out;
    const ProgramRun outcome = run({"replay", session(recording), "--module", test::echoModule});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    EXPECT_EQ(outcome.error, "");
    EXPECT_THAT(outcome.out, MatchesRegex(".*a session.jsonl: [0-9]+ outputs as expected\n"));
}

TEST_F(ProgramTest, ReplayThatDiffersSaysWhereAndExitsWith1) {
    const ProgramRun outcome = run(
        {"replay",
         session("{\"do\":\"create\",\"name\":\"other\"}\n{\"n\":1,\"out\":\"created\",\"object\":true}\n"),
         "--log", "DBG_ERROR", "--module", test::echoModule});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.error, "");
    EXPECT_THAT(outcome.out, HasSubstr("a session.jsonl:2: not met\n"));
    EXPECT_THAT(outcome.out, HasSubstr("expected {\"n\":1,\"out\":\"created\""));
    EXPECT_FALSE(leftTemporaryFiles());
}

TEST_F(ProgramTest, ReplayOfABrokenFileExitsWith2) {
    const ProgramRun outcome = run({"replay", session("{\"do\":\"interfaces\"}\n{\"out\":\"thing\"}\n")});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.error, MatchesRegex("wren-host: .*a session.jsonl:2: unknown \"out\": \"thing\"\n"));
}

TEST_F(ProgramTest, BadArgumentsAreOneLineAndExitCode2) {
    const std::vector<std::string> commandLines[] = {
        {},
        {"dance"},
        {"script"},
        {"script", "/nonexistent/session"},
        {"script", "/nonexistent/session", "more"},
        {"script", session("{\"do\":\"interfaces\"}"), "--log", "DBG_ALL", "--module", test::echoModule},
        {"script", session("{\"do\":\"interfaces\"}"), "--module", "/nonexistent/module.so"},
        {"script", session("{\"do\":\"interfaces\"}"), "--module", test::backendLibrary},
        {"script", session("{\"do\":\"interfaces\"}"), "--module", session("{\"do\":\"interfaces\"}")},
        {"watch", "--log", "loud"},
        {"watch", "--module", "/nonexistent/module.so"},
        {"info", "/nonexistent/module.so"},
        {"info", test::backendLibrary},
        {"info", session("")},
        {"info", "--yaml"},
        {"info", "--interface", "d"},
        {"info", test::echoModule, "--interface", "c"},
        {"watch", "--module", test::echoModule, "--interface", "c"},
        {"watch", "--interface"},
        {"script", session("{\"do\":\"interfaces\"}"), "--interface", "C"},
        {"machine"},
        {"machine", "--dot", "--table"},
        {"machine", "--region", "main"},
        {"machine", "--table", "--region", "Main"},
    };
    for (const auto& commandLine : commandLines) {
        const ProgramRun outcome = run(commandLine);
        EXPECT_EQ(outcome.exitCode, 2) << ::testing::PrintToString(commandLine);
        EXPECT_EQ(outcome.out, "") << ::testing::PrintToString(commandLine);
        EXPECT_THAT(outcome.error, MatchesRegex("wren-host: [^\n]+\n"))
            << ::testing::PrintToString(commandLine);
    }
    EXPECT_FALSE(leftTemporaryFiles());
}

TEST_F(ProgramTest, ScriptMakesAllObjectsThroughTheInterfaceThatIsAskedFor) {
    for (const std::string kind : {"", R"(,"kind":"cpp")"}) {
        const std::string file =
            session("{\"do\":\"create\",\"name\":\"com.norvane.vantor.presentation\"" + kind + "}");
        const ProgramRun record = run({"script", file, "--interface", "c"});
        EXPECT_EQ(record.exitCode, 0);
        EXPECT_THAT(record.out, HasSubstr("\"function\":\"CreateCbasedPlugin\""));
        EXPECT_THAT(record.out, HasSubstr("\"out\":\"created\",\"object\":true"));
        const ProgramRun object = run({"script", file, "--interface", "cpp"});
        EXPECT_THAT(object.out, testing::Not(HasSubstr("CreateCbasedPlugin")));
        EXPECT_THAT(object.out, HasSubstr("\"out\":\"created\",\"object\":true"));
    }
}

TEST_F(ProgramTest, InfoIsTheSameThroughTheRecord) {
    const ProgramRun record = run({"info", "--interface", "c"});
    EXPECT_EQ(record.exitCode, 0);
    EXPECT_THAT(record.out, HasSubstr("label            Wren Gate\n"));
    EXPECT_EQ(record.out, run({"info"}).out);
}

TEST_F(ProgramTest, WatchShowsTheScreenThroughTheRecordToo) {
    Program program({"watch", "--log", "DBG_INFO", "--interface", "c"});
    program.waitForOutput("Wren Gate: Initializing. Please wait...\n");
    program.signal(SIGINT);
    const ProgramRun outcome = program.finish();
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, HasSubstr("log I CreateCbasedPresentationPlugin: Created C Plugin interface"));
    EXPECT_THAT(outcome.out, HasSubstr("log I DisposeCbasedPresentationPlugin: Disposed C Plugin"));
}

TEST_F(ProgramTest, HelpIsNoError) {
    const ProgramRun outcome = run({"--help"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, HasSubstr("script"));
}

TEST_F(ProgramTest, MachineIsDrawnInTheNotationThatIsAskedFor) {
    const ProgramRun dot = run({"machine", "--dot"});
    EXPECT_EQ(dot.exitCode, 0);
    EXPECT_THAT(dot.out, StartsWith("digraph PresentationPlugin {\n"));
    EXPECT_THAT(run({"machine", "--mermaid"}).out, StartsWith("stateDiagram-v2\n"));
    const ProgramRun table = run({"machine", "--table", "--region", "alert"});
    EXPECT_THAT(table.out, StartsWith("### Started_s, region alert\n"));
    EXPECT_THAT(table.out, testing::Not(HasSubstr("Unregistered_s")));
}

TEST_F(ProgramTest, InfoTellsWhatTheModuleIs) {
    const ProgramRun text = run({"info", test::echoModule});
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_THAT(text.out, StartsWith("module           " + std::string(test::echoModule) +
                                     "\n"
                                     "identity         echo.identity\n"
                                     "label            Echo\n"
                                     "display version  1.2\n"
                                     "interfaces       com.norvane.vantor.presentation (version 3)\n"
                                     "                 echo (version 1)\n"
                                     "exports          CreatePlugin\n"
                                     "                 DisposePlugin\n"
                                     "                 GetAvailableInterfaces\n"));
    const ProgramRun json = run({"info", "--json", test::echoModule});
    EXPECT_EQ(json.exitCode, 0);
    EXPECT_THAT(json.out,
                StartsWith("{\"module\":\"" + std::string(test::echoModule) +
                           R"(","interfaces":[{"name":"com.norvane.vantor.presentation","version":3},)"
                           R"({"name":"echo","version":1}],"identity":"echo.identity","label":"Echo",)"
                           R"("display_version":"1.2","exports":["CreatePlugin","DisposePlugin",)"));
}

TEST_F(ProgramTest, WatchPrintsUntilItIsInterrupted) {
    for (const int number : {SIGINT, SIGTERM}) {
        Program program({"watch", "--module", test::echoModule});
        program.waitForOutput("Unreadable notice"); // the echo of the first status is no XML
        program.signal(number);
        const ProgramRun outcome = program.finish();
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.error, "");
        EXPECT_THAT(outcome.out, testing::Not(HasSubstr("log ")));
    }
}

TEST_F(ProgramTest, WatchRecordsWhatReplaysAlike) {
    for (const std::string interface : {"cpp", "c"}) {
        const std::string file = session("");
        Program program({"watch", "--record", file, "--interface", interface});
        program.waitForOutput("Registration is required to access secure resources.\n");
        program.signal(SIGINT);
        EXPECT_EQ(program.finish().exitCode, 0);
        const ProgramRun outcome = run({"replay", file});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.out << outcome.error;
        EXPECT_THAT(outcome.out, testing::EndsWith(" outputs as expected\n"));
    }
}

TEST_F(ProgramTest, WatchTellsOfBrokenRules) {
    Program program({"watch", "--module", test::echoModule});
    program.waitForOutput("rule broken: readable-notice: not XML");
    program.signal(SIGINT);
    EXPECT_EQ(program.finish().exitCode, 0);
}

TEST_F(ProgramTest, WatchThatCannotRecordSaysSoBeforeItRuns) {
    const ProgramRun outcome = run({"watch", "--record", "/nonexistent/file"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.error, "wren-host: cannot write the recording /nonexistent/file\n");
}

TEST_F(ProgramTest, WatchPrintsTheLogWhereItIsAskedTo) {
    Program program({"watch", "--log", "DBG_TRACE", "--module", test::echoModule});
    program.waitForOutput("Unreadable notice");
    program.signal(SIGINT);
    const ProgramRun outcome = program.finish();
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, HasSubstr("log T CreatePlugin: com.norvane.vantor.presentation\n"));
    EXPECT_THAT(outcome.out, HasSubstr("log T EchoPlugin::Stop: 0\n"));
    EXPECT_FALSE(leftTemporaryFiles());
}

} // namespace
