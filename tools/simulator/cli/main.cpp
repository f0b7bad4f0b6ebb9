// SPDX-License-Identifier: MIT
// The simulator as a program: runs one receiver until it ends or is interrupted.

#include "Options.h"
#include "tools/simulator/Receiver.h"

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace {

constexpr int kFailed = 1;

volatile std::sig_atomic_t interrupted = 0;

void interrupt(int)
{
    interrupted = 1;
}

int fail(const std::string& sentence)
{
    std::cerr << fmt::format("magellangps-simulator: {}\n", sentence);
    return kFailed;
}

// A symbolic link that is removed at the end of its scope. Replaces a link that was left over from
// a run that was killed.
class Link {
public:
    Link(const std::string& target, std::filesystem::path path) : path_(std::move(path))
    {
        std::error_code ignored;
        if (std::filesystem::is_symlink(path_, ignored))
            std::filesystem::remove(path_, ignored);
        std::filesystem::create_symlink(target, path_, failure_);
    }
    ~Link()
    {
        std::error_code ignored;
        if (!failure_)
            std::filesystem::remove(path_, ignored);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    [[nodiscard]] const std::error_code& failure() const { return failure_; }

private:
    std::filesystem::path path_;
    std::error_code failure_;
};

int serve(const simulator::Options& options, simulator::Settings settings)
{
    const simulator::Receiver receiver{std::move(settings)};
    std::optional<Link> link;
    if (options.link && link.emplace(receiver.path(), *options.link).failure())
        return fail(fmt::format("The link {} cannot be created: {}. Give --link another path.",
                                *options.link, link->failure().message()));
    std::cout << receiver.path() << std::endl;
    while (interrupted == 0 && !receiver.waitUntilEnded(std::chrono::milliseconds{50})) {
    }
    return 0;
}

int run(const simulator::Options& options)
{
    simulator::Settings settings{options.speed,    options.handshake,
                                 !options.unpaced, options.chatter,
                                 options.once,     {},
                                 options.faults,   nullptr};
    for (const auto& source : options.sources) {
        if (const auto failure = simulator::loadSentences(source, settings.sentences))
            return fail(fmt::format("{} Name a file or folder other than {}.",
                                    failure->description().value_or("It cannot be read."), source));
    }
    std::ofstream log;
    if (options.log) {
        errno = 0;
        log.open(*options.log, std::ios::trunc);
        if (!log)
            return fail(fmt::format("The log {} cannot be written: {}. Give --log another path.",
                                    *options.log, std::generic_category().message(errno)));
        settings.log = &log;
    }
    const int status = serve(options, std::move(settings));
    if (options.log && !log)
        return fail(fmt::format("The log {} is incomplete because it could not be written. Give "
                                "--log a path with room for it.",
                                *options.log));
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    const auto parsed = simulator::parseCommandLine(argc, argv);
    if (!parsed.options) {
        (parsed.status == 0 ? std::cout : std::cerr) << parsed.text;
        return parsed.status;
    }
    std::signal(SIGINT, interrupt);
    std::signal(SIGTERM, interrupt);
    try {
        return run(*parsed.options);
    } catch (const std::exception& failure) {
        return fail(fmt::format("Something unexpected happened: {}", failure.what()));
    }
}
