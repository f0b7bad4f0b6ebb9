// SPDX-License-Identifier: MIT
// The command line, its help, and its completion by the hidden command `__complete`.

#include "Options.h"

#include <host/commandline/Arguments.h>
#include <host/commandline/Completion.h>
#include <host/commandline/HelpFormatter.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace simulator {
namespace {

constexpr int kUsageError = 2;
constexpr std::array<std::string_view, 8> kSpeeds{"1200",  "2400",  "4800",  "9600",
                                                  "19200", "38400", "57600", "115200"};

constexpr char kHelp[] =
    R"(The first line on stdout is the path of a pseudo-terminal that behaves like a
serial receiver: it answers only at its own line speed, and waits for
acknowledgements while handshaking is on. It holds the waypoint, track and route
sentences of the files, and of all files below the folders. Without any it has
no data. It runs until it is interrupted.

Faults: --fault STEP:KIND or --fault STEP:KIND:NUMBER, any number of times.

  Steps of a command: version, handon, ton, baud, waypoint, track, route, toff,
  handoff, baud-back (a BAUD after TOFF or HANDOFF). The fault changes the
  answer, each time the command arrives or the first NUMBER times.

  Steps of the data that follows: waypoint-data, track-data, route-data. The
  fault happens once, at sentence NUMBER (default: the first; END counts as the
  last), or with NUMBER 0 at every sentence, repeats included.

  silence    ignores the command; sends no data at all
  lost-ack   acts, but the first sentence of the answer is lost; in a data step,
             the acknowledgements from the other side are lost
  wrong-ack  acknowledges with another checksum (not in data steps)
  garble     changes one bit of the sentence
  truncate   sends half of the sentence, without a line end
  noise      sends a line of random bytes before the sentence
  nul        sends NUL bytes before and in the sentence
  long       sends 100,000 bytes in place of the sentence
  delay      waits NUMBER milliseconds (default: 500) before the answer, or
             before the first data sentence
  stop       sends nothing, not even END, after NUMBER data sentences
             (default: 1; only in data steps)
  endless    sends bytes without a line end until the line is closed
  flood      sends valid sentences without a pause until the line is closed
  hang-up    removes the port and ends the program

Session log: one JSON object per line,
{"time":SECONDS,"event":EVENT,"speed":BITS_PER_SECOND,"text":TEXT}. Events:

  opened, closed  the other side has opened or closed the line
  speed           the other side has changed its speed
  own-speed       the receiver has changed its speed
  received        a valid sentence; TEXT is its body, without "$" and checksum
  unreadable      an invalid sentence or one of another speed; TEXT is the line
  sent            a sentence; TEXT is its body, or the whole line if it is faulty
  fault           a fault happens; TEXT is STEP:KIND or STEP:KIND:NUMBER
  gave-up         a data sentence was sent five times without acknowledgement
  hung-up         the port has been removed

Examples:
  magellangps-simulator samples/receiver --link /tmp/receiver
  magellangps-simulator --speed 57600 --handshake on --log session.jsonl trip.log
  magellangps-simulator --fault waypoint-data:garble:3 --fault toff:silence samples/receiver
)";

// The options are bound to members, so this object stays where it is.
class Table {
public:
    Table();
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    CLI::App app{"Simulates a GPS receiver on a serial line.", "magellangps-simulator"};
    host::ValueSources sources;
    Options options;

private:
    void addLineOptions();
    void addFaultOption();
};

// All that --fault accepts without a number, for the completion of a word.
std::vector<std::string> faultNames()
{
    std::vector<std::string> names;
    for (const auto& step : kSteps) {
        for (const auto& kind : kFaultKinds) {
            if (applies(kind.value, step.value))
                names.push_back(fmt::format("{}:{}", step.name, kind.name));
        }
    }
    return names;
}

Table::Table()
{
    app.formatter(std::make_shared<host::HelpFormatter>());
    app.set_help_flag("-h,--help", "Print this help");
    app.set_version_flag("--version", "magellangps-simulator " SIMULATOR_VERSION,
                         "Print the version");
    app.footer(kHelp);
    const auto* const files =
        app.add_option("sources", options.sources, "Files with its data, and folders of such files")
            ->type_name("FILE|DIR");
    sources[files] = host::wordSource({":files"});
    addLineOptions();
    addFaultOption();
    app.add_option("--log", options.log, "Write the session log to this file")->type_name("FILE");
    app.add_option("--link", options.link,
                   "Create a symbolic link to the pseudo-terminal, and remove it at the end")
        ->type_name("FILE");
}

void Table::addLineOptions()
{
    const auto* const speed =
        app.add_option_function<std::string>(
               "--speed",
               [this](const std::string& text) {
                   if (std::find(kSpeeds.begin(), kSpeeds.end(), text) == kSpeeds.end())
                       throw CLI::ValidationError{
                           "--speed",
                           fmt::format("\"{}\" is not one of {}", text, fmt::join(kSpeeds, ", "))};
                   options.speed = host::wholeNumber("--speed", text, 1200, 115200);
               },
               "Its line speed at the start, in bits per second; the default is 4800")
            ->type_name("SPEED");
    sources[speed] = host::wordSource({kSpeeds.begin(), kSpeeds.end()});
    const auto* const handshake =
        app.add_option_function<std::string>(
               "--handshake",
               [this](const std::string& text) {
                   if (text != "on" && text != "off")
                       throw CLI::ValidationError{
                           "--handshake", fmt::format("\"{}\" is neither on nor off", text)};
                   options.handshake = text == "on";
               },
               "Whether handshaking is on at the start; the default is off")
            ->type_name("on|off");
    sources[handshake] = host::wordSource({"on", "off"});
    app.add_flag("--unpaced", options.unpaced,
                 "Run as fast as the machine instead of the line speed");
    app.add_flag("--chatter", options.chatter,
                 "Send one more sentence after the answers to TON, BAUD, TOFF and HANDOFF");
    app.add_flag("--once", options.once,
                 "End when the other side has closed the line after a session");
}

void Table::addFaultOption()
{
    const auto* const fault =
        app.add_option_function<std::vector<std::string>>(
               "--fault",
               [this](const std::vector<std::string>& texts) {
                   for (const auto& text : texts) {
                       const auto read = parseFault(text);
                       if (!read)
                           throw CLI::ValidationError{
                               "--fault",
                               fmt::format("\"{}\" is not a fault; --help lists the steps and "
                                           "kinds",
                                           text)};
                       options.faults.push_back(*read);
                   }
               },
               "Make this mistake, see below; may be repeated")
            ->type_name("FAULT")
            ->allow_extra_args(false);
    sources[fault] = host::wordSource(faultNames());
}

} // namespace

ParsedCommandLine parseCommandLine(int argc, const char* const* argv)
{
    Table table;
    if (argc > 1 && std::string_view{argv[1]} == host::kCompleteCommand)
        return {std::nullopt,
                host::completionsOf(table.app, table.sources, host::wordsToComplete(argc, argv))};
    const auto result = host::parseArguments(table.app, {}, argc, argv);
    if (result.kind == host::ParseResult::Kind::kAnswer)
        return {std::nullopt, result.text};
    if (result.kind == host::ParseResult::Kind::kMistake)
        return {std::nullopt, fmt::format("magellangps-simulator: {}\n", result.text), kUsageError};
    return {std::move(table.options), {}};
}

} // namespace simulator
