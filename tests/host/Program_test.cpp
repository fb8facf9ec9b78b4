// The program as a user runs it, against the module that echoes.
#include "host/Files.h"
#include "tests/host/Paths.h"
#include "tests/host/Process.h"
#include "tests/support/MatchesPattern.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryFolder.h"

#include <boost/json/serialize.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using test::MatchesPattern;
using ::testing::HasSubstr;
using ::testing::StartsWith;
namespace fs = std::filesystem;

using ProgramRun = test::ProcessEnd;

/// A run of the program with its outputs caught.
class Program : public test::Process {
public:
    explicit Program(const std::vector<std::string>& arguments)
        : Process({.program = test::hostProgram, .arguments = arguments}) {}
};

ProgramRun run(const std::vector<std::string>& arguments) { return Program(arguments).finish(); }

/// A folder of its own for the files of a test, and for the temporary files of the program.
class ProgramTest : public ::testing::Test {
protected:
    ProgramTest() { fs::create_directories(folder); }

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

private:
    const test::TemporaryFolder parent;

protected:
    const fs::path folder = parent.path() / "wren host tests";

private:
    const test::ScopedEnvironment temporary{test::temporaryFolderVariable, folder.string().c_str()};
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
                MatchesPattern("wren-host: .*a session.jsonl:2: object \"p\" was never created\n"));
    EXPECT_THAT(outcome.out, StartsWith("{\"do\":\"interfaces\"}\n{\"n\":1,\"out\":\"interfaces\""));
    EXPECT_FALSE(leftTemporaryFiles());
}

TEST_F(ProgramTest, ScriptWithAFaultRunsNothing) {
    const ProgramRun outcome = runSession("{\"do\":\"interfaces\"}\n{\"do\":\"nothing\"}\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.error,
                MatchesPattern("wren-host: .*a session.jsonl:2: unknown \"do\": \"nothing\"\n"));
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
    EXPECT_THAT(outcome.out, MatchesPattern(".*a session.jsonl: [0-9]+ outputs as expected\n"));
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
    EXPECT_THAT(outcome.error,
                MatchesPattern("wren-host: .*a session.jsonl:2: unknown \"out\": \"thing\"\n"));
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
        EXPECT_THAT(outcome.error, MatchesPattern("wren-host: [^\n]+\n"))
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
    program.interrupt();
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
                StartsWith("{\"module\":" + boost::json::serialize(boost::json::string(test::echoModule)) +
                           R"(,"interfaces":[{"name":"com.norvane.vantor.presentation","version":3},)"
                           R"({"name":"echo","version":1}],"identity":"echo.identity","label":"Echo",)"
                           R"("display_version":"1.2","exports":["CreatePlugin","DisposePlugin",)"));
}

TEST_F(ProgramTest, WatchPrintsUntilItIsInterrupted) {
    for (const auto ask : {&test::Process::interrupt, &test::Process::terminate}) {
        Program program({"watch", "--module", test::echoModule});
        program.waitForOutput("Unreadable notice"); // the echo of the first status is no XML
        (program.*ask)();
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
        program.interrupt();
        EXPECT_EQ(program.finish().exitCode, 0);
        const ProgramRun outcome = run({"replay", file});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.out << outcome.error;
        EXPECT_THAT(outcome.out, testing::EndsWith(" outputs as expected\n"));
    }
}

TEST_F(ProgramTest, WatchTellsOfBrokenRules) {
    Program program({"watch", "--module", test::echoModule});
    program.waitForOutput("rule broken: readable-notice: not XML");
    program.interrupt();
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
    program.interrupt();
    const ProgramRun outcome = program.finish();
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, HasSubstr("log T CreatePlugin: com.norvane.vantor.presentation\n"));
    EXPECT_THAT(outcome.out, HasSubstr("log T EchoPlugin::Stop: 0\n"));
    EXPECT_FALSE(leftTemporaryFiles());
}

} // namespace
