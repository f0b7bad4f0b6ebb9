// SPDX-License-Identifier: MIT
// The driver reports from a thread that nobody joins, so the end of an operation is its idle
// report; the status object is shared with that thread, which may still be inside its last call
// afterwards.

#include "host/operations/Operation.h"

#include "host/base/HostError.h"
#include "host/base/TranslatedFormat.h"

#include <platform/System/Log.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <new>
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

std::atomic<bool> isAnyAbandoned{false};

// Whether any word in a list with commas satisfies a condition.
template <typename Condition> bool anyWord(std::string_view words, Condition condition)
{
    while (!words.empty()) {
        const auto comma = std::min(words.find(','), words.size());
        if (condition(words.substr(0, comma)))
            return true;
        words.remove_prefix(std::min(comma + 1, words.size()));
    }
    return false;
}

// Listens to the log while an operation runs. The plug-in may log a line for every sentence, so
// only the first lines are kept.
class LogDigest {
public:
    explicit LogDigest(const EventStream& stream)
        : stream_(stream), subscription_([this](std::string_view line, const gps::Error* error) {
              addLine(line, error);
          })
    {}

    void moveTo(Outcome& outcome)
    {
        const std::lock_guard lock{mutex_};
        outcome.loggedErrors = std::move(digest_.loggedErrors);
        outcome.moreErrors = digest_.moreErrors;
        outcome.logLines = std::move(digest_.logLines);
        outcome.moreLines = digest_.moreLines;
    }

private:
    // Called by whoever logs, who must not get an exception.
    void addLine(std::string_view line, const gps::Error* error) noexcept
    {
        const std::lock_guard lock{mutex_};
        try {
            keep(line, error);
        } catch (const std::bad_alloc&) {
            ++(error != nullptr ? digest_.moreErrors : digest_.moreLines);
        }
    }

    void keep(std::string_view line, const gps::Error* error)
    {
        const auto path = error != nullptr ? error->path() : std::nullopt;
        if (!path)
            keepLine(line);
        else if (digest_.loggedErrors.size() < Outcome::kMostErrors)
            digest_.loggedErrors.push_back({*error, isFolder(*path), stream_.transfersBegun()});
        else
            ++digest_.moreErrors;
    }

    void keepLine(std::string_view line)
    {
        if (digest_.logLines.size() == Outcome::kMostLines) {
            ++digest_.moreLines;
            return;
        }
        auto& kept = digest_.logLines.emplace_back(line);
        std::replace(kept.begin(), kept.end(), '\n', ' ');
    }

    static bool isFolder(const std::string& path)
    {
        std::error_code ignored;
        return std::filesystem::is_directory(path, ignored);
    }

    const EventStream& stream_;
    std::mutex mutex_;
    Outcome digest_;
    gps::LogSubscription subscription_; // the last member: it may call addLine() at once
};

void addEvents(Outcome& outcome, const EventBatch& batch)
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

// Nothing follows the idle report, so it can only be a batch's last event.
bool endsOperation(const EventBatch& batch)
{
    return !batch.empty() && batch.back().kind == EventKind::kStateChange &&
           batch.back().state == 0;
}

// An exception that left this function would end the program: the consumer thread is running.
std::optional<gps::Error> resultOf(const OperationStart& start,
                                   const std::shared_ptr<EventStream>& status)
{
    try {
        return start(status);
    } catch (const gps::RangeError& error) {
        return gps::Error{gps::kRangeErrorDomain, 0, {{gps::kErrorDescriptionKey, error.what()}}};
    } catch (const std::bad_alloc&) {
        return lackOfMemory();
    } catch (const std::exception& failure) {
        return hostError(trFormat("The plug-in failed unexpectedly: {}", failure.what()),
                         tr("Please try again"));
    } catch (...) {
        return hostError(tr("The plug-in failed unexpectedly"), tr("Please try again"));
    }
}

} // namespace

Outcome runOperation(const OperationStart& start, const BatchConsumer& consume,
                     const WaitQuery& waits)
{
    const auto stream = std::make_shared<EventStream>();
    LogDigest log{*stream};
    Outcome outcome;
    std::exception_ptr failure;
    // Started before the operation: an import reports on the calling thread until it has ended, and
    // would wait for ever once the queue is full.
    std::thread consumer{[&] {
        while (const auto batch = stream->next()) {
            if (failure)
                continue; // the driver must not wait for room in the queue
            try {
                addEvents(outcome, *batch);
                consume(*batch);
            } catch (...) {
                failure = std::current_exception();
            }
            if (waits && !endsOperation(*batch) && !waits()) {
                outcome.isAbandoned = true;
                stream->close(); // nobody makes room in the queue any more
                break;
            }
        }
    }};
    auto error = resultOf(start, stream);
    if (error)
        stream->close();
    consumer.join();
    isAnyAbandoned = isAnyAbandoned || outcome.isAbandoned;
    if (failure)
        std::rethrow_exception(failure);
    if (stream->isIncomplete())
        throw std::bad_alloc{};
    outcome.error = std::move(error);
    log.moveTo(outcome);
    return outcome;
}

bool hasAbandonedOperation() noexcept
{
    return isAnyAbandoned;
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
        // A mounted device reads every kind that is not switched off, a serial session only those
        // that are switched on.
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
