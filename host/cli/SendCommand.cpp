// SPDX-License-Identifier: MIT
// `send`. The standard output shows the plan and the result; with --events it belongs to the event
// lines alone, and the plan and the result go to standard error. With --json it belongs to the
// document, which has everything that is shown otherwise.

#include "host/base/Sentences.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/DiskRelease.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/EarlyStop.h"
#include "host/cli/ProgressLine.h"
#include "host/cli/SendJson.h"
#include "host/desktop/DeviceDisk.h"
#include "host/desktop/UDisks.h"
#include "host/files/Output.h"
#include "host/formats/DataFile.h"
#include "host/formats/EventLines.h"
#include "host/formats/GpxReader.h"
#include "host/operations/StopSignals.h"
#include "host/transfer/InputFiles.h"
#include "host/transfer/ProgressTracker.h"
#include "host/transfer/RepeatedSend.h"
#include "host/words/PlanReport.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace host {
namespace {

// The extensions of the receivers' own files.
std::vector<std::string> fileTypesOf(const std::vector<Driver>& drivers)
{
    std::vector<std::string> types;
    for (const auto& driver : drivers) {
        for (auto& type : driver->fileTypes().value_or(std::vector<std::string>{}))
            types.push_back(std::move(type));
    }
    return types;
}

std::optional<gps::Error> readMapFile(const std::string& file, gps::Dictionary& data,
                                      UnreadParts& unread, ProgressTracker& progress)
{
    progress.begin(TransferPhase::kReadingFile, file.substr(file.find_last_of('/') + 1));
    return readGpx(file, data, &unread, [&progress](std::size_t done, std::size_t total) {
        progress.read(done, total);
    });
}

std::optional<gps::Error> readFiles(const SendOptions& options, const std::vector<Driver>& drivers,
                                    std::optional<gps::Dictionary>& data, UnreadParts& unread)
{
    if (auto failure = options.data ? checkInput(*options.data)
                                    : checkSend(options.files, fileTypesOf(drivers)))
        return failure;
    if (options.data)
        return readDataFile(*options.data, data, unread.values);
    data.emplace();
    const ProgressLine line{canShowProgress(options, options.events)};
    ProgressTracker progress{line.callback()};
    std::optional<gps::Error> failure;
    for (const auto& file : options.files) {
        failure = readMapFile(file, *data, unread, progress);
        if (failure)
            break;
    }
    progress.finish();
    return failure;
}

std::vector<std::string> sentencesFor(const UnreadParts& unread)
{
    std::vector<std::string> sentences;
    for (const auto& error : unread.firstWaypoints)
        sentences.push_back(sentencesOf(error));
    if (const auto more = unread.waypoints - unread.firstWaypoints.size(); more > 0)
        sentences.push_back(
            fmt::format("And {} more waypoint{} skipped.", more, more == 1 ? " was" : "s were"));
    return sentences;
}

// A data file is sent exactly as it is.
SendFitting fittingFor(const SendOptions& options)
{
    if (options.data)
        return SendFitting::kNone;
    return options.exactNames ? SendFitting::kRoutePoints : SendFitting::kAll;
}

// The default folder is in the home folder. If there is no home folder, a send that needs a backup
// reports that.
std::optional<BackupPolicy> backupFor(const SendOptions& options)
{
    if (!options.backup)
        return std::nullopt;
    const auto folder = options.backupFolder ? options.backupFolder : defaultBackupFolder();
    return BackupPolicy{.folder = folder.value_or(""), .count = options.mostBackups};
}

using DataReader = decltype(RepeatedSendCalls::readData);

class SendCommand {
public:
    SendCommand(const SendOptions& options, const Console& console, StopSignals& stop,
                DeviceDisk& disk, DataReader readData)
        : options_(options), console_(console), stop_(stop), disk_(disk),
          readData_(std::move(readData)), progress_(canShowProgress(options, options.events))
    {}

    [[nodiscard]] ExitStatus run(ChosenDevice device, SendRequest request,
                                 const UnreadParts& unread);

private:
    void showPlan(const PreparedSend& send);
    [[nodiscard]] SendReport perform(PreparedSend& send);
    void showOutdated(const SendReport& report);
    void showBackup(const SendReport& report);
    void showReport(const PreparedSend& send, const SendReport& report);
    [[nodiscard]] ExitStatus finish(const PreparedSend& send, const SendReport& report);
    [[nodiscard]] ExitStatus status() const;
    void showErrors(const std::vector<std::string>& sentences);
    void note(std::string text) { show({false, std::move(text)}); }
    void show(Message message);
    void print(const std::string& text);

    const SendOptions& options_;
    const Console& console_;
    StopSignals& stop_; // ends the program until anything may be written
    DeviceDisk& disk_;
    DataReader readData_;
    ProgressLine progress_;
    Output standardOutput_{STDOUT_FILENO, "the standard output"};
    EventLines eventLines_{standardOutput_};
    std::vector<Message> shown_;
    bool hasFailed_ = false;
    int signal_ = 0; // that stopped the send
};

ExitStatus SendCommand::run(ChosenDevice device, SendRequest request, const UnreadParts& unread)
{
    request.skippedWaypoints = unread.waypoints;
    request.unstoredTexts = unread.unstored;
    request.progress = progress_.callback();
    if (options_.events)
        request.onEvents = [this](const EventBatch& batch) {
            for (const auto& event : batch)
                eventLines_.event(event);
            standardOutput_.flush(); // a reader sees each line when it happens
        };
    auto send = prepareSend(std::move(device), std::move(request));
    // What is printed from here on is whole, and files may be written: perform() sees a request.
    stop_.requestOnly();
    showErrors(sentencesFor(unread));
    for (const auto* const sentences : {&unread.values, &unread.unsent}) {
        for (const auto& sentence : *sentences)
            note(sentence);
    }
    showErrors(emptyRecordErrors(send));
    if (send.request.data)
        showPlan(send);
    SendReport report;
    if (options_.dryRun)
        print("Dry run: nothing was sent.\n");
    else
        report = perform(send);
    send.lock.reset(); // it keeps the device's folder open, so that it could not be unmounted
    return finish(send, report);
}

void SendCommand::showPlan(const PreparedSend& send)
{
    if (!send.canSend)
        return note("The driver " + driverName(*send.device.driver) +
                    " cannot send: nothing will be written to the device.");
    if (send.files == nullptr) {
        note("This driver cannot plan a send: there is no backup, and the result is not checked.");
        return print("to send: " + dataSummary(*send.request.data) + '\n');
    }
    print(planReport(send));
    standardOutput_.flush(); // before the send, which may take long
    showErrors(planErrors(send));
}

SendReport SendCommand::perform(PreparedSend& send)
{
    send.request.stopRequested = [this] { return stop_.stopRequested(); };
    auto report = performRepeatedly(
        send, {.readData = readData_,
               .onOutdated = [this](const auto& outdated) { showOutdated(outdated); },
               .onPlan = [this](const auto& plan) { showPlan(plan); }});
    if (report.wasStopped)
        signal_ = stop_.signal();
    if (options_.events && report.wasRun())
        eventLines_.result(report.answer);
    showReport(send, report);
    return report;
}

void SendCommand::showOutdated(const SendReport& report)
{
    showBackup(report);
    note("Another program has changed the device since it was read. The send is planned again:");
}

void SendCommand::showBackup(const SendReport& report)
{
    for (const auto& path : report.notBackedUp)
        note("Not in the backup, because it is neither a file nor a folder: " + path);
    if (report.backup)
        note("The device's files are kept in the backup " + report.backup->path);
    for (const auto& name : report.deletedBackups)
        note("An older backup was deleted, because enough newer ones are kept: " + name);
}

void SendCommand::showReport(const PreparedSend& send, const SendReport& report)
{
    showBackup(report);
    for (const auto& sentence : writingNotes(report, send))
        note(sentence);
    showErrors(sendErrors(report, send));
    const bool isComplete = report.isComplete();
    if (!options_.verbose) { // otherwise each line was printed when it was logged
        for (const auto& line : report.logLines)
            show({!isComplete, isComplete ? line : "log: " + line});
        if (report.moreLogLines > 0)
            note("and " + std::to_string(report.moreLogLines) + " more lines");
    }
    if (isComplete)
        print(send.request.data ? sentSummary(send) + '\n'
                                : "Nothing was sent: the data file is null.\n");
    hasFailed_ = hasFailed_ || !isComplete;
}

ExitStatus SendCommand::finish(const PreparedSend& send, const SendReport& report)
{
    stop_.requestOnly(); // the result is known, and would be printed twice
    standardOutput_.flush();
    for (auto& message : releaseDisk(disk_, status() == ExitStatus::kSuccess)) {
        hasFailed_ = hasFailed_ || message.isError;
        show(std::move(message));
    }
    if (options_.json)
        standardOutput_.write(sendJson(send, report, shown_, status()));
    if (const auto failure = standardOutput_.flush())
        showErrors({sentencesOf(*failure)});
    return status();
}

ExitStatus SendCommand::status() const
{
    if (signal_ != 0)
        return statusAfterSignal(signal_);
    return hasFailed_ ? ExitStatus::kFailed : ExitStatus::kSuccess;
}

// Every error makes the status 1, those of a plan that is not carried out included.
void SendCommand::showErrors(const std::vector<std::string>& sentences)
{
    for (const auto& sentence : sentences)
        show({true, sentence});
    hasFailed_ = hasFailed_ || !sentences.empty();
}

void SendCommand::show(Message message)
{
    console_.messages({message});
    shown_.push_back(std::move(message));
}

// A JSON document holds what these lines say.
void SendCommand::print(const std::string& text)
{
    if (options_.events)
        console_.lines(text);
    else if (!options_.json)
        standardOutput_.write(text);
}

} // namespace

ExitStatus runSend(const PlugInBundle& plugIn, const SendOptions& options, const Console& console)
{
    SendRequest request{.data = {},
                        .fitting = fittingFor(options),
                        .segmentRule =
                            options.joinSegments ? SegmentRule::kJoin : SegmentRule::kSplit,
                        .sendsPresent = options.again,
                        .isDryRun = options.dryRun,
                        .backup = backupFor(options)};
    if (options.debug)
        request.driverOptions = {{"debug", *options.debug}};
    StopSignals stop{[&options](int signal) { endEarly(signal, options); }};
    // The files first, so that a mistake in one of them is found before a driver does anything.
    UnreadParts unread;
    auto failure = readFiles(options, plugIn.drivers, request.data, unread);
    if (failure)
        return refuse(options, *failure, ExitStatus::kFailed, stop, console);
    UDisks disks;
    DeviceDisk disk{options.disk, disks};
    ChosenDevice device;
    failure = disk.choose(plugIn.drivers,
                          {options.driver, options.device, options.testFolders, true}, device);
    if (failure)
        return refuse(options, *failure, ExitStatus::kNothingToWorkOn, stop, console);
    if (disk.hasMounted())
        stop.requestOnly(); // it must be unmounted at every end
    const DataReader readAgain = [&](std::optional<gps::Dictionary>& data) {
        UnreadParts known;
        return readFiles(options, plugIn.drivers, data, known);
    };
    return SendCommand{options, console, stop, disk, readAgain}.run(std::move(device),
                                                                    std::move(request), unread);
}

} // namespace host
