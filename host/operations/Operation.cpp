// SPDX-License-Identifier: MIT

#include "host/operations/Operation.h"

#include "host/base/HostError.h"

#include <platform/System/Log.h>

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace host {
namespace {

struct KindWord {
    gps::TransferKind kind;
    std::string_view word; // in a driver's capabilities, as an option, and for people
};

constexpr std::array kKindWords{
    KindWord{gps::TransferKind::kWaypoints, "waypoints"},
    KindWord{gps::TransferKind::kRoutes, "routes"},
    KindWord{gps::TransferKind::kTracks, "tracks"},
};

// Whether one of the words, joined by commas, is meant.
template <typename Meant> bool anyWord(std::string_view words, Meant isMeant)
{
    while (!words.empty()) {
        const auto comma = std::min(words.find(','), words.size());
        if (isMeant(words.substr(0, comma)))
            return true;
        words.remove_prefix(std::min(comma + 1, words.size()));
    }
    return false;
}

// Listens to the log while an operation runs. A receiver can make the plug-in write a line for
// every sentence, so only the first ones are kept.
class LogDigest {
public:
    explicit LogDigest(const EventStream& stream)
        : stream_(stream),
          listening_([this](std::string_view line, const gps::Error* error) { hear(line, error); })
    {}

    void moveTo(Outcome& outcome)
    {
        const std::lock_guard lock{mutex_};
        outcome.loggedErrors = std::move(heard_.loggedErrors);
        outcome.moreErrors = heard_.moreErrors;
        outcome.logLines = std::move(heard_.logLines);
        outcome.moreLines = heard_.moreLines;
    }

private:
    void hear(std::string_view line, const gps::Error* error)
    {
        const std::lock_guard lock{mutex_};
        const auto path = error != nullptr ? error->path() : std::nullopt;
        if (!path)
            keepLine(line);
        else if (heard_.loggedErrors.size() < Outcome::kMostErrors)
            heard_.loggedErrors.push_back({*error, isFolder(*path), stream_.transfersBegun()});
        else
            ++heard_.moreErrors;
    }

    void keepLine(std::string_view line)
    {
        if (heard_.logLines.size() == Outcome::kMostLines) {
            ++heard_.moreLines;
            return;
        }
        auto& kept = heard_.logLines.emplace_back(line);
        std::replace(kept.begin(), kept.end(), '\n', ' ');
    }

    static bool isFolder(const std::string& path)
    {
        std::error_code ignored;
        return std::filesystem::is_directory(path, ignored);
    }

    const EventStream& stream_;
    std::mutex mutex_;
    Outcome heard_;
    gps::LogSubscription
        listening_; // the last member: nothing is heard before the others are there
};

void note(Outcome& outcome, const EventBatch& batch)
{
    for (const auto& event : batch) {
        if (event.kind == EventKind::kStartTransfer)
            outcome.transfers.push_back(event.transfer);
        else if (event.kind == EventKind::kEndSending)
            outcome.sendings.push_back(event.transfer);
        else if (event.kind == EventKind::kError)
            outcome.reported.push_back(*event.error);
    }
}

std::optional<gps::Error> answerOf(const Start& start, const gps::GPSPlugInProtocol::Status& status)
{
    try {
        return start(status);
    } catch (const gps::RangeError& error) {
        return gps::Error{gps::kRangeErrorDomain, 0, {{gps::kErrorDescriptionKey, error.what()}}};
    } catch (const std::exception& failure) {
        return hostError(std::string{"The plug-in failed unexpectedly: "} + failure.what(),
                         "Please try again");
    }
}

} // namespace

Outcome runOperation(const Start& start, const Consume& consume)
{
    // Shared: the worker may still be inside its last call when the host goes on.
    const auto stream = std::make_shared<EventStream>();
    LogDigest log{*stream};
    Outcome outcome;
    std::thread consumer{[&] {
        EventBatch batch;
        while (stream->next(batch)) {
            note(outcome, batch);
            consume(batch);
        }
    }};
    auto answer = answerOf(start, stream);
    if (answer)
        stream->close();
    consumer.join();
    outcome.error = std::move(answer);
    log.moveTo(outcome);
    return outcome;
}

std::vector<gps::TransferKind> requestedKinds(const gps::Dictionary& options,
                                              const gps::GPSPlugInProtocol& driver)
{
    std::vector<gps::TransferKind> kinds;
    if (options.contains(kSourcePathKey))
        return kinds;
    const auto capabilities = driver.gpsCapabilities();
    for (const auto& [kind, word] : kKindWords) {
        const auto* option = options.find(word);
        const bool isWanted = option != nullptr && option->hasReading()
                                  ? option->boolReading()
                                  : !driver.needsSerialRefresh();
        if (isWanted &&
            anyWord(capabilities, [word = word](std::string_view able) { return able == word; }))
            kinds.push_back(kind);
    }
    return kinds;
}

bool canSend(const gps::GPSPlugInProtocol& driver)
{
    return anyWord(driver.gpsCapabilities(),
                   [](std::string_view able) { return able.starts_with("send"); });
}

std::string_view kindName(gps::TransferKind kind)
{
    const auto* const found = std::find_if(kKindWords.begin(), kKindWords.end(),
                                           [&](const auto& row) { return row.kind == kind; });
    return found != kKindWords.end() ? found->word : "unknown";
}

} // namespace host
