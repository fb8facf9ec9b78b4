// The command in a terminal into which a test types, and beside a configuration of its own: on Windows a test
// has neither.
#include "tests/host/bundle/BundleProgram.h"
#include "tests/support/ScopedEnvironment.h"

#include <gmock/gmock.h>

#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using test::BundleProgram;
using test::BundleRun;
using ::testing::HasSubstr;
using ::testing::Not;

std::string readAll(int end) {
    std::string text;
    char part[4096];
    for (ssize_t count = 0; (count = ::read(end, part, sizeof part)) > 0;) {
        text.append(part, static_cast<std::size_t>(count));
    }
    return text;
}

class BundleTerminal : public BundleProgram {
protected:
    BundleRun runTyping(const std::string& arguments, const std::string& typed) const {
        const std::string command =
            "cd '" + folder.path().string() + "' && exec '" + test::hostProgram + "' bundle " + arguments;
        int terminal = -1;
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            ::_exit(127);
        }
        EXPECT_EQ(::write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
        std::string out = readAll(terminal);
        int status = 0;
        ::waitpid(child, &status, 0);
        ::close(terminal);
        std::erase(out, '\r');
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, std::move(out), ""};
    }
};

TEST_F(BundleTerminal, AsksFirst) {
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

TEST_F(BundleProgram, HoldsNothingOfWhatIsPlantedInTheConfiguration) {
    const std::filesystem::path data = folder.path() / "Norvane" / "Norvane Kestrel Suite" / "WREN";
    std::filesystem::create_directories(data);
    std::ofstream(data / "logconfig.json") << R"({"global":"DBG_INFO","token":"planted-in-configuration"})";
    const test::ScopedEnvironment variable("WREN_PROGRAM_DATA", folder.path().c_str());
    EXPECT_EQ(run("b.zip --yes --seconds 0").exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("\\\"global\\\":\\\"DBG_INFO\\\",\\\"token\\\":\\\"[secret-"));
    EXPECT_THAT(archive(), Not(HasSubstr("planted")));
}

TEST_F(BundleProgram, DoesNotReadAConfigurationThatIsNoFile) {
    const std::filesystem::path data = folder.path() / "Norvane" / "Norvane Kestrel Suite" / "WREN";
    std::filesystem::create_directories(data);
    const test::ScopedEnvironment variable("WREN_PROGRAM_DATA", folder.path().c_str());
    std::filesystem::create_symlink("/dev/null", data / "logconfig.json");
    EXPECT_EQ(run("b.zip --yes --seconds 0").exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("\"problem\": \"cannot read "));
    std::filesystem::remove(data / "logconfig.json");
    ASSERT_EQ(::mkfifo((data / "logconfig.json").c_str(), 0600), 0);
    EXPECT_EQ(run("b.zip --force --yes --seconds 0").exitCode, 0);
    EXPECT_THAT(archive(), HasSubstr("\"problem\": \"cannot read "));
}

} // namespace
