// SPDX-License-Identifier: MIT

#include "host/transfer/Sending.h"

#include "host/backup/Backup.h"
#include "host/base/HostError.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/PlanReport.h"
#include "host/formats/DataFile.h"
#include "host/formats/EventLines.h"
#include "host/formats/GpxReader.h"
#include "host/transfer/DeviceRecords.h"
#include "host/transfer/MissingRecords.h"
#include "host/transfer/SendCheck.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include <unistd.h>

namespace host {
namespace {

using Action = gps::PlannedFile::Action;

// Whether a file's present content cannot be merged: the send goes on, but does not count as
// success.
bool isLost(const gps::PlannedFile& file)
{
    return file.action == Action::kMerge && file.error.has_value();
}

} // namespace

Sending::Sending(const SendOptions& options, const Console& console)
    : options_(options), console_(console), progress_(wantsProgress(options, false)),
      standardOutput_(STDOUT_FILENO, "the standard output")
{}

std::optional<gps::Error> Sending::open()
{
    if (options_.data)
        return readDataFile(*options_.data, data_);
    data_.emplace();
    for (const auto& file : options_.files) {
        std::error_code ignored;
        if (std::filesystem::is_directory(file, ignored))
            return hostError("This is a folder", "Name the GPX files in it", file);
        if (auto failure = readGpx(file, *data_))
            return failure;
    }
    return std::nullopt;
}

ExitStatus Sending::run(gps::GPSPlugInProtocol& driver)
{
    canSend_ = canSend(driver);
    device_ = canSend_ ? dynamic_cast<const gps::GPSFileDevice*>(&driver) : nullptr;
    place_ = selectedLocation(driver);
    if (data_)
        plan(driver);
    if (options_.dryRun) {
        report("Dry run: nothing was sent.\n");
    } else if (const auto failure = options_.backup && writesAnything() ? backUp() : std::nullopt) {
        fail(*failure);
        console_.error("There is no backup, so nothing was sent. Choose another place with "
                       "--backup, or send with --no-backup.");
    } else {
        judge(send(driver), driver);
        conclude();
    }
    if (const auto failure = standardOutput_.flush())
        fail(*failure);
    return hasFailed_ || losesAnything() ? ExitStatus::kFailed : ExitStatus::kSuccess;
}

void Sending::plan(gps::GPSPlugInProtocol& driver)
{
    if (!canSend_)
        return console_.note("The driver " + driverName(driver) +
                             " cannot send: nothing will be written to the device.");
    if (device_ == nullptr) {
        console_.note("This driver tells nothing before a send: there is no plan, no backup, and "
                      "no look at what has arrived.");
        return report("to send: " + recordCounts(*data_) + '\n');
    }
    std::vector<TextChange> changes;
    progress_.begin("reading the device");
    snapshot_ = device_->takeSnapshot();
    if (snapshot_ != nullptr) {
        if (!options_.data)
            changes = fit();
        plan_ = snapshot_->planSend(*data_);
    }
    progress_.clear();
    report(planReport(plan_, changes, place_));
    for (const auto& file : plan_.files)
        warnOf(file);
}

std::vector<TextChange> Sending::fit()
{
    const auto onDevice = snapshot_->records();
    std::vector<TextChange> changes;
    if (!options_.exactNames)
        changes =
            fitNames(*data_, onDevice,
                     {gps::CharacterSet{device_->deviceCharacters()}, device_->longestName()});
    useRecordsOfDevice(*data_, onDevice, *device_);
    return changes;
}

void Sending::warnOf(const gps::PlannedFile& file)
{
    if (file.action == Action::kSkip && file.error)
        fail(*file.error);
    if (!isLost(file))
        return;
    console_.error(*file.error);
    console_.error(
        "The present content of this file cannot be merged: a send replaces it. " +
        std::string{options_.backup ? "The backup keeps a copy." : "No backup keeps a copy."} +
        " Path: " + file.path);
}

bool Sending::losesAnything() const
{
    return std::any_of(plan_.files.begin(), plan_.files.end(), isLost);
}

bool Sending::writesAnything() const
{
    return std::any_of(plan_.files.begin(), plan_.files.end(),
                       [](const gps::PlannedFile& file) { return file.action != Action::kSkip; });
}

std::optional<gps::Error> Sending::backUp()
{
    const auto folder = options_.backupFolder ? options_.backupFolder : defaultBackupFolder();
    if (!folder)
        return hostError("There is no home to keep a backup in", "Name a folder with --backup");
    Backup made;
    std::vector<std::string> skipped;
    progress_.begin("keeping a backup");
    auto failure =
        makeBackup({.folder = *folder, .count = options_.mostBackups},
                   {place_, device_->deviceIdentifier().value_or(""), snapshot_->dataFolders()},
                   made, skipped);
    progress_.clear();
    if (failure)
        return failure;
    for (const auto& path : skipped)
        console_.note("This is no file and so not in the backup: " + path);
    console_.note("The device's files are kept in the backup " + made.path);
    return std::nullopt;
}

Outcome Sending::send(gps::GPSPlugInProtocol& driver)
{
    EventLines lines{standardOutput_};
    const gps::Dictionary options =
        options_.debug ? gps::Dictionary{{"debug", *options_.debug}} : gps::Dictionary{};
    progress_.begin("sending");
    auto outcome = runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) {
            return driver.gpsRunSend(data_ ? &*data_ : nullptr, status, options);
        },
        [&](const EventBatch& batch) {
            progress_.show(batch);
            if (!options_.events)
                return;
            for (const auto& event : batch)
                lines.event(event);
            standardOutput_.flush(); // whoever reads the lines sees them as they come
        });
    progress_.clear();
    if (options_.events)
        lines.result(outcome.error);
    return outcome;
}

void Sending::judge(const Outcome& outcome, gps::GPSPlugInProtocol& driver)
{
    for (const auto& error : outcome.reported)
        fail(error);
    if (outcome.error)
        return fail(*outcome.error);
    judgeBrackets(outcome, driver);
    judgeFiles(outcome);
    if (!hasFailed_ && data_ && device_ != nullptr)
        judgeRecords(driver);
    if (options_.verbose)
        return; // there already, line by line
    for (const auto& line : outcome.logLines)
        hasFailed_ ? console_.error("log: " + line) : console_.note(line);
    if (outcome.moreLines > 0)
        console_.note("and " + std::to_string(outcome.moreLines) + " more");
}

void Sending::judgeBrackets(const Outcome& outcome, const gps::GPSPlugInProtocol& driver)
{
    std::string missing;
    for (const auto kind : data_ ? kindsIn(*data_) : std::vector<gps::TransferKind>{}) {
        if (std::find(outcome.sendings.begin(), outcome.sendings.end(), kind) ==
            outcome.sendings.end())
            missing += (missing.empty() ? "" : ", ") + std::string{kindName(kind)};
    }
    if (missing.empty())
        return;
    if (canSend_)
        console_.error("The send broke off. Missing: " + missing + '.');
    else
        console_.error("The driver " + driverName(driver) +
                       " cannot send. Connect a receiver that mounts as a disk, or name its place "
                       "with --device. Missing: " +
                       missing + '.');
    hasFailed_ = true;
}

void Sending::judgeFiles(const Outcome& outcome)
{
    std::set<std::string> told; // a file whose failure the plug-in has logged needs no second one
    for (const auto& logged : outcome.loggedErrors) {
        if (isForeseen(logged.error, plan_))
            continue;
        fail(logged.error);
        told.insert(*logged.error.path());
    }
    if (outcome.moreErrors > 0)
        fail(hostError("The plug-in met " + std::to_string(outcome.moreErrors) + " more failures",
                       "Try again with -v"));
    for (const auto& error : missingFiles(plan_)) {
        hasFailed_ = true;
        if (!told.contains(*error.path()))
            console_.error(error);
    }
}

void Sending::judgeRecords(gps::GPSPlugInProtocol& driver)
{
    progress_.begin("reading back");
    const auto missing = missingRecords(driver, *data_, plan_);
    progress_.clear();
    for (const auto& sentence : missing) {
        console_.error(sentence);
        hasFailed_ = true;
    }
}

void Sending::conclude()
{
    if (hasFailed_ || !data_)
        return;
    const auto written =
        std::count_if(plan_.files.begin(), plan_.files.end(),
                      [](const gps::PlannedFile& file) { return file.action != Action::kSkip; });
    std::string text = "sent: " + recordCounts(*data_);
    if (device_ != nullptr)
        text += "; " + std::to_string(written) + (written == 1 ? " file" : " files") +
                " written and read back";
    report(text + '\n');
}

void Sending::report(const std::string& text)
{
    if (options_.events)
        console_.lines(text);
    else
        standardOutput_.write(text);
}

void Sending::fail(const gps::Error& error)
{
    console_.error(error);
    hasFailed_ = true;
}

} // namespace host
