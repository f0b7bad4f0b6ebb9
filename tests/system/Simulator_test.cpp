// SPDX-License-Identifier: MIT
// The simulator as a program: what it prints, how it ends, and what it leaves behind.

#include "simulator/LineClient.h"
#include "support/Signals.h"
#include "support/TemporaryFolder.h"
#include "system/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>

namespace {

using support::LineClient;
using support::Ran;
using support::sentence;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

Ran simulator(std::vector<std::string> words)
{
    words.insert(words.begin(), MAGELLAN_BIN_DIR "/magellangps-simulator");
    return support::run(words);
}

// The program in the background. Its standard output is a pipe, so that its first line can be
// waited for.
class Running {
public:
    explicit Running(std::vector<std::string> words)
    {
        std::array<int, 2> pipe{};
        if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
            throw std::runtime_error{"no pipe"};
        words.insert(words.begin(), MAGELLAN_BIN_DIR "/magellangps-simulator");
        std::vector<char*> arguments;
        for (auto& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t files;
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_adddup2(&files, pipe[1], 1);
        const int failure =
            ::posix_spawn(&child_, arguments.front(), &files, support::SpawnAttributes{}.get(),
                          arguments.data(), environ);
        ::posix_spawn_file_actions_destroy(&files);
        ::close(pipe[1]);
        char byte = 0;
        while (failure == 0 && ::read(pipe[0], &byte, 1) == 1 && byte != '\n')
            port_ += byte;
        ::close(pipe[0]);
        if (failure != 0)
            throw std::runtime_error{"cannot run the simulator"};
    }
    ~Running()
    {
        if (child_ != 0)
            (void)end(SIGKILL);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    [[nodiscard]] const std::string& port() const { return port_; }

    /// Waits until it ends, after a signal if there is one. @return  its exit status
    int end(int signal = 0)
    {
        if (signal != 0)
            ::kill(child_, signal);
        int status = 0;
        while (::waitpid(child_, &status, 0) < 0 && errno == EINTR) {
        }
        child_ = 0;
        return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    pid_t child_ = 0;
    std::string port_;
};

std::vector<nlohmann::json> linesOf(const std::string& path)
{
    std::vector<nlohmann::json> lines;
    std::ifstream file{path};
    for (std::string line; std::getline(file, line);)
        lines.push_back(nlohmann::json::parse(line));
    return lines;
}

TEST(Simulator, ServesAFilesSentences)
{
    Running program{{"--handshake", "on", "--speed", "115200",
                     MAGELLAN_SOURCE_DIR "/samples/files/points.upt"}};
    LineClient client{program.port(), B115200};
    client.say("PMGNCMD,WAYPOINT");
    EXPECT_EQ(client.line(), support::acknowledgement("PMGNCMD,WAYPOINT"));
    EXPECT_EQ(client.line(), "$PMGNWPL,4627.40043,N,00755.60399,E,0001283,M,Lautersee,Cold!,ab*75");
}

TEST(Simulator, EndsCleanlyWhenInterrupted)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        Running program{{}};
        EXPECT_THAT(program.port(), StartsWith("/dev/"));
        EXPECT_EQ(program.end(signal), 0);
    }
}

TEST(Simulator, EndsAfterOneSessionWithOnce)
{
    Running program{{"--once", "--unpaced"}};
    {
        LineClient client{program.port(), B4800};
        client.say("PMGNCMD,VERSION");
        EXPECT_THAT(client.line(), StartsWith("$PMGNVER,"));
    }
    EXPECT_EQ(program.end(), 0);
}

TEST(Simulator, EndsWhenItHasHungUp)
{
    Running program{{"--fault", "version:hang-up", "--unpaced"}};
    LineClient client{program.port(), B4800};
    client.say("PMGNCMD,VERSION");
    EXPECT_EQ(client.line(), "gone");
    EXPECT_EQ(program.end(), 0);
}

TEST(Simulator, WritesASessionLog)
{
    const support::TemporaryFolder folder;
    Running program{{"--once", "--unpaced", "--chatter", "--fault", "ton:delay:1", "--log",
                     folder.path("log")}};
    {
        LineClient client{program.port(), B4800};
        client.say("PMGNCMD,HANDON");
        client.say("PMGNCMD,TON");
        EXPECT_EQ(client.line(), sentence("PMGNCSM,27"));
        EXPECT_EQ(client.line(), sentence("PMGNMSG,TON"));
    }
    EXPECT_EQ(program.end(), 0);
    std::vector<std::string> events;
    for (const auto& line : linesOf(folder.path("log"))) {
        EXPECT_GE(line.at("time"), 0);
        EXPECT_EQ(line.at("speed"),
                  line.at("event") == "opened" ? line.at("speed") : nlohmann::json(4800));
        events.push_back(line.at("event").get<std::string>() + ' ' +
                         line.at("text").get<std::string>());
    }
    EXPECT_THAT(events, testing::ElementsAre("opened ", "speed ", "received PMGNCMD,HANDON",
                                             "received PMGNCMD,TON", "fault ton:delay:1",
                                             "sent PMGNCSM,27", "sent PMGNMSG,TON", "closed "));
}

TEST(Simulator, CreatesALinkAndRemovesIt)
{
    const support::TemporaryFolder folder;
    const auto link = folder.path("receiver");
    std::filesystem::create_symlink("left/over", link);
    Running program{{"--link", link, "--unpaced"}};
    EXPECT_EQ(std::filesystem::read_symlink(link), program.port());
    EXPECT_EQ(program.end(SIGTERM), 0);
    EXPECT_FALSE(std::filesystem::is_symlink(link));
}

TEST(Simulator, DoesNotReplaceAFileByItsLink)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("file", "precious");
    const auto ran = simulator({"--link", file});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.out, IsEmpty());
    EXPECT_THAT(ran.err, AllOf(HasSubstr(file), HasSubstr("another path")));
    EXPECT_EQ(folder.read("file"), "precious");
}

TEST(Simulator, RejectsAWrongCommandLine)
{
    struct Case {
        std::vector<std::string> words;
        std::string expected;
    };
    const std::vector<Case> cases{{{"--speed", "300"}, "115200"},
                                  {{"--speed", "fast"}, "--speed"},
                                  {{"--handshake", "maybe"}, "\"maybe\" is neither on nor off"},
                                  {{"--fault", "ton:quiet"}, "\"ton:quiet\" is not a fault"},
                                  {{"--fault"}, "--fault"},
                                  {{"--sped", "4800"}, "unknown option \"--sped\""}};
    for (const auto& [words, expected] : cases) {
        const auto ran = simulator(words);
        EXPECT_EQ(ran.status, 2) << expected;
        EXPECT_THAT(ran.out, IsEmpty());
        EXPECT_THAT(ran.err, AllOf(StartsWith("magellangps-simulator: "), HasSubstr(expected)));
    }
}

TEST(Simulator, ReportsAFileThatCannotBeRead)
{
    const support::TemporaryFolder folder;
    const auto ran = simulator({folder.path("none")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.out, IsEmpty());
    EXPECT_THAT(ran.err, HasSubstr(folder.path("none")));
}

TEST(Simulator, ReportsALogThatCannotBeWritten)
{
    const support::TemporaryFolder folder;
    const auto ran = simulator({"--log", folder.path("no/folder")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, AllOf(HasSubstr("No such file"), HasSubstr("--log")));
}

TEST(Simulator, ReportsAnIncompleteLog)
{
    Running program{{"--once", "--unpaced", "--log", "/dev/full"}};
    {
        LineClient client{program.port(), B4800};
        client.say("PMGNCMD,VERSION");
        EXPECT_THAT(client.line(), StartsWith("$PMGNVER,")); // it still runs
    }
    EXPECT_EQ(program.end(), 1);
}

TEST(Simulator, HelpNamesOptionsFaultsAndEvents)
{
    const auto help = simulator({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.err, IsEmpty());
    for (const auto* expected : {"--speed", "--handshake", "--unpaced", "--chatter", "--once",
                                 "--fault", "--log", "--link", "baud-back", "hang-up", "gave-up"})
        EXPECT_THAT(help.out, HasSubstr(expected));
    EXPECT_THAT(simulator({"--version"}).out, StartsWith("magellangps-simulator 1."));
}

} // namespace
