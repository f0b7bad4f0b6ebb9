// SPDX-License-Identifier: MIT

#include "Options.h"

#include "tools/simulator/Receiver.h"

#include <CLI/CLI.hpp>

#include <utility>

namespace simulator {
namespace {

constexpr int kUsage = 2;

constexpr char kHelp[] = R"(
The first line on the standard output is the path of a pseudo-terminal that behaves as a serial receiver: it answers only at its
own line speed, and waits for acknowledgements while handshaking is on. It holds the waypoint, track and route sentences of the
files, and of all files below the folders; without any it has no data. It runs until it is interrupted.

Faults: --fault STEP:KIND or STEP:KIND:NUMBER, any number of times.
  Steps:  version, handon, ton, baud, waypoint, track, route, toff, handoff, baud-back (a BAUD after TOFF or HANDOFF): the answer
          to the command. waypoint-data, track-data, route-data: the sentences that follow. A fault in a command's step happens
          each time that the command comes, or the first NUMBER times. A fault in a data step happens once, at sentence NUMBER
          (by default the first; END counts as the last), or with 0 at every sentence, repeats included.
  Kinds:  silence    no reaction to the command; no data at all
          lost-ack   acts, but the first sentence of its answer is lost; in a data step, the acknowledgements to it are
          wrong-ack  acknowledges with another checksum (not in data steps)
          garble     one bit of the sentence is wrong
          truncate   half of the sentence, and no line end
          noise      a line of rubbish before the sentence
          nul        NUL bytes before and in the sentence
          long       a sentence of 100,000 bytes in its place
          delay      waits NUMBER ms (500) before the answer, or before the first data sentence
          stop       after NUMBER data sentences (1) nothing more, no END (only in data steps)
          endless    bytes without a line end, until the line is closed
          flood      good sentences without pause, until the line is closed
          hang-up    the port disappears, and the program ends

Session log: one JSON object a line, {"time":SECONDS,"event":EVENT,"speed":BITS_PER_SECOND,"text":TEXT}. Events:
  opened, closed  the other side has opened, or closed, the line
  speed           the other side has another speed
  own-speed       the receiver has another speed
  received        a good sentence; TEXT is its body, without "$" and checksum
  unreadable      a line of another speed, or no sentence; TEXT is the line
  sent            a sentence; TEXT is its body, or the whole line where a fault has damaged it
  fault           a fault happens; TEXT is STEP:KIND or STEP:KIND:NUMBER
  gave-up         a data sentence was never acknowledged, 1.5 seconds after each of 5 sendings
  hung-up         the port has disappeared

Examples:
  magellangps-simulator samples/receiver --link /tmp/receiver
  magellangps-simulator --speed 57600 --handshake on --log session.jsonl trip.log
  magellangps-simulator --fault waypoint-data:garble:3 --fault toff:silence samples/receiver
)";

ParsedCommandLine mistake(std::string_view text)
{
    return {std::nullopt,
            "magellangps-simulator: " + std::string{text.substr(0, text.find('\n'))} + '\n',
            kUsage};
}

ParsedCommandLine unexpected(const CLI::App& app, const CLI::ParseError& error)
{
    const auto extras = app.remaining();
    if (extras.empty())
        return mistake(error.what());
    return mistake("unknown option \"" + extras.front() + "\"; --help lists those that there are");
}

// What is wrong with the words; empty: nothing.
std::string check(const std::string& handshake, const std::vector<std::string>& faults,
                  Options& options)
{
    if (!isLineSpeed(options.speed))
        return "--speed wants 1200, 2400, 4800, 9600, 19200, 38400, 57600 or 115200";
    if (handshake != "on" && handshake != "off")
        return R"(--handshake wants "on" or "off")";
    options.handshake = handshake == "on";
    for (const auto& text : faults) {
        const auto fault = parseFault(text);
        if (!fault)
            return "there is no fault \"" + text + "\"; --help lists their steps and kinds";
        options.faults.push_back(*fault);
    }
    return {};
}

} // namespace

ParsedCommandLine parseCommandLine(int argc, const char* const* argv)
{
    Options options;
    std::string handshake = "off";
    std::vector<std::string> faults;
    CLI::App app{"Simulates a receiver on a serial line.", "magellangps-simulator"};
    app.set_version_flag("--version", "magellangps-simulator " SIMULATOR_VERSION);
    app.footer(kHelp);
    app.add_option("sources", options.sources, "Files, and folders of files, with its data")
        ->type_name("FILE|FOLDER");
    app.add_option("--speed", options.speed,
                   "Its line speed at the start, in bits per second (4800)")
        ->type_name("SPEED");
    app.add_option("--handshake", handshake, "Whether handshaking is on at the start (off)")
        ->type_name("on|off");
    app.add_flag("--unpaced", options.unpaced, "Be as fast as the machine, not as the line");
    app.add_flag("--chatter", options.chatter,
                 "Say one more sentence after the answers to TON, BAUD, TOFF and HANDOFF");
    app.add_flag("--once", options.once,
                 "End when the other side has closed the line after a session");
    app.add_option("--fault", faults, "Do this wrong; may be repeated")
        ->type_name("FAULT")
        ->allow_extra_args(false);
    app.add_option("--log", options.log, "Write the session log to this file")->type_name("FILE");
    app.add_option("--link", options.link,
                   "Make a symbolic link to the pseudo-terminal, and remove it at the end")
        ->type_name("PATH");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
        return {std::nullopt, std::string{version.what()} + '\n'};
    } catch (const CLI::Success&) {
        return {std::nullopt, app.help()};
    } catch (const CLI::ParseError& error) {
        return unexpected(app, error);
    }
    if (const auto wrong = check(handshake, faults, options); !wrong.empty())
        return mistake(wrong);
    return {std::move(options), {}};
}

} // namespace simulator
