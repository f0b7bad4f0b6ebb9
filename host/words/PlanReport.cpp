// SPDX-License-Identifier: MIT
// Texts of records come from files of any origin, so every line that shows one goes through
// displayText(), which removes what could confuse a terminal.

#include "host/words/PlanReport.h"

#include "host/base/FrontEnd.h"
#include "host/base/Sentences.h"
#include "host/base/TermText.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/bundle/DeviceChoice.h"
#include "host/fitting/Altitudes.h"
#include "host/fitting/RecordList.h"
#include "host/transfer/RecordCounts.h"
#include "host/words/AccountText.h"
#include "host/words/KindsText.h"
#include "host/words/RecordCountText.h"
#include "host/words/StopText.h"

#include <platform/System/FileError.h>
#include <platform/System/Paths.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace host {
namespace {

using Action = gps::PlannedFile::Action;

constexpr std::size_t kMostRecords = 10; // records or files named one by one

std::string actionText(Action action, std::string_view path)
{
    switch (action) {
    case Action::kCreate:
        return trFormat("create: {}", path);
    case Action::kMerge:
        return trFormat("merge into: {}", path);
    case Action::kSkip:
        break;
    }
    return trFormat("skip: {}", path);
}

std::string_view relativeTo(std::string_view device, std::string_view path)
{
    if (!path.starts_with(device))
        return path;
    path.remove_prefix(device.size());
    return path.substr(path.starts_with('/') ? 1 : 0);
}

bool isUnwritable(const gps::PlannedFile& file)
{
    using gps::FileErrorCode;
    return file.action == Action::kSkip && file.error &&
           (file.error->code() == FileErrorCode::kWriteNoPermission ||
            file.error->code() == FileErrorCode::kWriteReadOnlyVolume);
}

// Whether nothing can be written to the device, which is reported once instead of for each file.
bool isWholeDeviceUnwritable(const PreparedSend& send)
{
    const auto& files = send.plan.files;
    return !send.obstacle && !files.empty() &&
           std::all_of(files.begin(), files.end(), isUnwritable);
}

std::string unwritableDeviceText(const PreparedSend& send)
{
    const bool isReadOnly =
        send.plan.files.front().error->code() == gps::FileErrorCode::kWriteReadOnlyVolume;
    return isReadOnly
               ? trFormat("The device cannot be written, because its volume is read-only: nothing "
                          "can be sent. Mount it so that it can be written, and send again. Path: "
                          "{}",
                          send.device.location)
               : trFormat("The device cannot be written, because permission was refused: nothing "
                          "can be sent. Let your user write to its folders, and send again. Path: "
                          "{}",
                          send.device.location);
}

std::string lineFor(const gps::PlannedFile& file, std::string_view device, bool isReasonShown)
{
    auto line = actionText(file.action, relativeTo(device, file.path));
    if (file.action == Action::kSkip && isReasonShown)
        line +=
            fmt::format(" ({})", file.error ? sentencesOf(*file.error) : tr("nothing to write"));
    return line;
}

std::string droppedLinesOf(const gps::PlannedFile& file, const PreparedSend& send)
{
    return trCounted(
        file.droppedLines,
        "{} line of {} will not be kept: damaged, incomplete, of another kind or with a name that "
        "comes again. {}",
        "{} lines of {} will not be kept: damaged, incomplete, of another kind or with a name that "
        "comes again. {}",
        file.droppedLines, gps::lastComponent(file.path),
        send.request.backup ? tr("The backup keeps the whole file.")
                            : tr("No backup keeps the file."));
}

std::string lineFor(const TextChange& change)
{
    auto line = trFormat(R"({} {}: "{}" becomes "{}")", termText(change.kind), termText(change.key),
                         change.before, change.after);
    return change.dropped.empty() ? line : trFormat("{}, without \"{}\"", line, change.dropped);
}

// "A", "B" and 3 more
std::string listOf(const std::vector<std::string>& names, std::size_t count)
{
    const auto shown = std::min(names.size(), kMostRecords);
    auto text = joined({names.begin(), names.begin() + static_cast<std::ptrdiff_t>(shown)}, ", ");
    if (count > shown)
        text = shown > 0 ? trFormat("{} and {} more", text, groupedText(count - shown))
                         : trFormat("{} more", groupedText(count - shown));
    return text;
}

std::string quotedName(const std::string& name)
{
    return name.empty() ? tr("without a name") : fmt::format("\"{}\"", name);
}

std::vector<std::string> trackNamesIn(const gps::Dictionary& data)
{
    std::vector<std::string> names;
    forEachRecord(data, "track", [&](const gps::Dictionary& track) {
        const auto* const name = track.findString("name");
        if (name != nullptr && !name->empty() && names.size() < kMostRecords)
            names.push_back(quotedName(*name));
    });
    return names;
}

std::string pointCount(std::string_view kind, std::size_t count)
{
    const auto number = groupedText(count);
    if (kind == "tracks")
        return countText("track point", count, number);
    if (kind == "routes")
        return countText("route point", count, number);
    return countText(kind == "geocaches" ? "geocache" : "waypoint", count, number);
}

// @param records  "2 waypoints"
std::string timesOutOfRangeText(std::size_t count, std::string_view records)
{
    return trCounted(count, "The device does not store the time of {}: not from 1980 to 2079.",
                     "The device does not store the times of {}: not from 1980 to 2079.", records);
}

std::string lineFor(const gps::LostField& lost, const PreparedSend& send)
{
    if (lost.field == "name")
        return trCounted(lost.records, "The device does not store the name of {} track: {}.",
                         "The device does not store the names of {} tracks: {}.",
                         groupedText(lost.records),
                         listOf(trackNamesIn(*send.request.data), lost.records));
    const auto points = pointCount(lost.kind, lost.records);
    if (lost.field == "time" && lost.kind == "tracks")
        return timesOutOfRangeText(lost.records, points);
    if (lost.field == "altitude")
        return trFormat("The elevation of {} is unknown and will be stored as 0.", points);
    return trCounted(lost.records, "The device does not store the time of {}.",
                     "The device does not store the times of {}.", points);
}

std::string lineFor(const UnstoredText& text)
{
    const auto records = countText(text.noun, text.records, groupedText(text.records));
    if (text.field == "found")
        return trCounted(text.records,
                         "{} was found without a date that the device stores, and will not count "
                         "as found.",
                         "{} were found without a date that the device stores, and will not count "
                         "as found.",
                         records);
    if (text.field == "time")
        return timesOutOfRangeText(text.records, records);
    return trFormat("The device does not store the {} of {}.", fieldText(text.field, text.records),
                    records);
}

std::string impossibleAltitudesText(std::size_t count)
{
    return trCounted(
        count,
        "{} elevation is not from {:.0f} m to {:.0f} m, which a device has room for, and counts as "
        "unknown.",
        "{} elevations are not from {:.0f} m to {:.0f} m, which a device has room for, and count "
        "as "
        "unknown.",
        groupedText(count), kLowestAltitude, kHighestAltitude);
}

std::string lineFor(const SegmentedTrack& track, SegmentRule rule)
{
    if (rule == SegmentRule::kJoin)
        return trFormat("The {} segments of the track {} are joined into one track.",
                        track.segments, quotedName(track.name));
    return trFormat("The track {} has {} segments, which become {} tracks.", quotedName(track.name),
                    track.segments, track.segments);
}

std::string lineFor(const std::vector<ReplacedRecord>& replaced)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(replaced.size(), kMostRecords); ++i)
        names.push_back(
            fmt::format("{} {}", termText(replaced[i].kind), quotedName(replaced[i].name)));
    return trFormat("Replaced on the device by what has the same name: {}.",
                    listOf(names, replaced.size()));
}

// Whether a file's error is what stops the send, which is reported once.
bool isObstacle(const PreparedSend& send, const gps::PlannedFile& file)
{
    return send.obstacle && send.obstacle->path() == file.path;
}

// Empty for a file that is as it should be, or whose problem the plan has reported.
std::string_view problemOf(SentFile::Result result)
{
    switch (result) {
    case SentFile::Result::kMissing:
        return tr("A file that was sent is not on the device");
    case SentFile::Result::kUnreadable:
        return tr("A file that was sent cannot be read back from the device");
    case SentFile::Result::kDifferent:
        return tr("A file on the device does not hold what was sent");
    case SentFile::Result::kPutBack:
    case SentFile::Result::kLost: // these two have messages of their own
    case SentFile::Result::kWritten:
    case SentFile::Result::kRenamed:
    case SentFile::Result::kAlsoChanged:
    case SentFile::Result::kBlocked:
    case SentFile::Result::kNothingToWrite:
        break;
    }
    return {};
}

// A file whose error was logged needs no second message, nor does one of a device that is gone.
void addFiles(const SendReport& report, std::vector<std::string>& sentences)
{
    if (report.isDeviceGone)
        return;
    for (const auto& file : report.files) {
        const auto problem = problemOf(file.result);
        const bool isKnown =
            std::any_of(report.errors.begin(), report.errors.end(),
                        [&](const gps::Error& error) { return error.path() == file.path; });
        if (!problem.empty() && !isKnown)
            sentences.push_back(trFormat("{}. Check the free space of the device, and send "
                                         "again. Path: {}",
                                         problem, file.path));
    }
}

std::string lossOf(const SentFile& file, const SendReport& report)
{
    const auto what =
        trCounted(file.lostRecords,
                  "{} of the receiver's records in this file was lost, because the file could not "
                  "be read during the send.",
                  "{} of the receiver's records in this file were lost, because the file could not "
                  "be read during the send.",
                  file.lostRecords);
    if (file.result == SentFile::Result::kPutBack)
        return trFormat("{} The file was put back as it was before the send: nothing is lost, "
                        "and nothing was added. Send again. Path: {}",
                        what, file.path);
    const auto nextStep =
        report.backup
            ? advice(fmt::format("Put the backup back with \"magellangps restore "
                                 "{}\".",
                                 report.backup->name),
                     tr("Put the backup back that was made before the send: see \"Backups\"."))
            : std::string{tr("There is no backup.")};
    return trFormat("{} It could not be put back: {} {}", what, sentencesOf(*file.writeError),
                    nextStep);
}

void addLosses(const SendReport& report, std::vector<std::string>& sentences)
{
    for (const auto& file : report.files) {
        if (file.result == SentFile::Result::kPutBack || file.result == SentFile::Result::kLost)
            sentences.push_back(lossOf(file, report));
    }
}

bool isWritten(const SentFile& file)
{
    return file.result == SentFile::Result::kWritten || file.result == SentFile::Result::kRenamed ||
           file.result == SentFile::Result::kAlsoChanged;
}

bool isOld(const SentFile& file)
{
    return file.isAsBefore;
}

// Nobody knows what a driver without a plan has written.
void addStop(const SendReport& report, const PreparedSend& send,
             std::vector<std::string>& sentences)
{
    const auto& files = report.files;
    if (report.wasStoppedEarly ||
        (send.isPlanned() && std::all_of(files.begin(), files.end(), isOld)))
        sentences.push_back(stoppedSendText());
    else
        sentences.emplace_back(tr("The send was stopped. Send again to write the rest."));
}

// After anything that went wrong: what the planned files hold now.
void addFileStates(const SendReport& report, const PreparedSend& send,
                   std::vector<std::string>& sentences)
{
    const auto isUnknown = [](const SentFile& file) {
        return file.result == SentFile::Result::kUnreadable;
    };
    const auto isNeither = [&](const SentFile& file) {
        return !isWritten(file) && !file.isAsBefore && !isUnknown(file);
    };
    const auto& files = report.files;
    if (std::all_of(files.begin(), files.end(), isOld)) {
        // After a stop addStop() has said so, and planErrors() if nothing could be written.
        if (!report.wasStopped && !isWholeDeviceUnwritable(send))
            sentences.emplace_back(
                tr("Nothing was written: every file of the device is as it was."));
        return;
    }
    const auto add = [&](std::string_view what, const auto& belongs) {
        std::vector<std::string> paths;
        for (const auto& file : files) {
            if (belongs(file))
                paths.emplace_back(relativeTo(
                    send.device.location, file.writtenPath.empty() ? file.path : file.writtenPath));
        }
        if (!paths.empty())
            sentences.push_back(fmt::format("{}: {}.", what, listOf(paths, paths.size())));
    };
    add(tr("Written"), isWritten);
    add(tr("As before the send"), isOld);
    add(tr("Neither as before nor as planned"), isNeither);
    add(tr("Not readable now, and either as before or as planned"), isUnknown);
}

void addMissingKinds(const SendReport& report, const PreparedSend& send,
                     std::vector<std::string>& sentences)
{
    if (report.missingKinds.empty())
        return;
    const auto reason =
        send.canSend ? std::string{tr("The send broke off.")}
                     : trFormat("The driver {} cannot send. Connect a receiver that mounts as a "
                                "disk{}.",
                                driverName(*send.device.driver),
                                advice(", or name its location with --device", ""));
    sentences.push_back(trFormat("{} Missing: {}.", reason, kindsText(report.missingKinds)));
}

// @param wasSent  otherwise it is the plan's
std::string missingText(const MissingRecord& record, bool wasSent)
{
    const auto kind = termText(record.kind);
    const auto name = record.name ? '"' + *record.name + '"' : tr("without a name");
    return wasSent ? trFormat("The {} {} is not on the device.", kind, name)
                   : trFormat("The {} {} would not be on the device.", kind, name);
}

std::string moreMissingText(std::size_t count, bool wasSent)
{
    return wasSent ? trCounted(count, "And {} more record is not on the device.",
                               "And {} more records are not on the device.", count)
                   : trCounted(count, "And {} more record would not be on the device.",
                               "And {} more records would not be on the device.", count);
}

// Those of the same name make one sentence.
void addMissingRecords(const std::vector<MissingRecord>& missing, bool wasSent,
                       std::vector<std::string>& sentences)
{
    std::vector<std::pair<const MissingRecord*, std::size_t>> groups; // with their sizes
    std::size_t more = 0;
    for (const auto& record : missing) {
        const auto group = std::find_if(groups.begin(), groups.end(), [&](const auto& other) {
            return other.first->kind == record.kind && other.first->name == record.name;
        });
        if (group != groups.end())
            ++group->second;
        else if (groups.size() < kMostRecords)
            groups.emplace_back(&record, 1);
        else
            ++more;
    }
    for (const auto& [record, count] : groups) {
        const auto text = missingText(*record, wasSent);
        sentences.push_back(
            count == 1 ? text : trFormat("{} There are {} of these.", text, groupedText(count)));
    }
    if (more > 0)
        sentences.push_back(moreMissingText(more, wasSent));
    if (std::any_of(missing.begin(), missing.end(),
                    [](const MissingRecord& record) { return record.kind == "track"; }))
        sentences.emplace_back(tr("No number is free for another track. Remove tracks from the "
                                  "device, and send again."));
}

void addFaults(const PreparedSend& send, std::vector<std::string>& sentences)
{
    const auto named = std::min(send.faults.size(), kMostRecords);
    for (std::size_t i = 0; i < named; ++i)
        sentences.push_back(sentencesOf(send.faults[i]));
    if (send.faults.size() > named)
        sentences.push_back(trCounted(send.faults.size() - named, "And {} more such record.",
                                      "And {} more such records.",
                                      groupedText(send.faults.size() - named)));
}

} // namespace

std::string planReport(const PreparedSend& send)
{
    std::string text;
    const auto append = [&text](std::string_view line) { text += displayText(line) + '\n'; };
    // What the device has already was changed when it was sent.
    const bool hasChanges = send.present.isEmpty() || !send.request.data->empty();
    for (const auto& file : send.plan.files) {
        append(lineFor(file, send.device.location, !isWholeDeviceUnwritable(send)));
        if (file.droppedLines > 0)
            append(droppedLinesOf(file, send));
    }
    if (hasChanges) {
        for (const auto& change : send.textChanges)
            append(lineFor(change));
    }
    for (const auto& track : send.segmentedTracks)
        append(lineFor(track, send.request.segmentRule));
    for (const auto& unstored : send.unstoredTexts())
        append(lineFor(unstored));
    if (send.impossibleAltitudes > 0)
        append(impossibleAltitudesText(send.impossibleAltitudes));
    for (const auto& lost : send.plan.lostFields)
        append(lineFor(lost, send));
    if (!send.repeated.isEmpty())
        append(trFormat("In the files more than once, and sent once: {}.",
                        recordCountText(send.repeated)));
    if (!send.replaced.empty())
        append(lineFor(send.replaced));
    if (!send.present.isEmpty())
        append(trFormat("On the device already, and not sent again: {}.",
                        recordCountText(send.present)));
    for (const auto& remark : send.plan.remarks)
        append(remark);
    return text;
}

std::vector<std::string> emptyRecordErrors(const PreparedSend& send)
{
    std::vector<std::string> sentences;
    const auto& records = send.emptyRecords;
    const auto named = std::min(records.size(), kMostRecords);
    for (std::size_t i = 0; i < named; ++i)
        sentences.push_back(trFormat("The {} {} has no points, so it was left out.",
                                     termText(records[i].kind), quotedName(records[i].name)));
    if (records.size() > named)
        sentences.push_back(trFormat("Left out, because they have no points: {} more.",
                                     groupedText(records.size() - named)));
    return sentences;
}

std::vector<std::string> planErrors(const PreparedSend& send)
{
    std::vector<std::string> sentences;
    // A real send reports it in sendErrors().
    if (send.obstacle && send.request.isDryRun)
        sentences.push_back(sentencesOf(*send.obstacle));
    addFaults(send, sentences);
    if (isWholeDeviceUnwritable(send))
        return {unwritableDeviceText(send)};
    for (const auto& file : send.plan.files) {
        if (!file.error || isObstacle(send, file))
            continue;
        sentences.push_back(sentencesOf(*file.error));
        if (file.action == Action::kMerge)
            sentences.push_back(trFormat("The present content of this file cannot be merged: a "
                                         "send replaces it. {} Path: {}",
                                         send.request.backup ? tr("The backup keeps a copy.")
                                                             : tr("No backup keeps a copy."),
                                         file.path));
    }
    addMissingRecords(send.unplanned, false, sentences);
    return sentences;
}

std::vector<std::string> sendErrors(const SendReport& report, const PreparedSend& send)
{
    std::vector<std::string> sentences;
    if (report.obstacle)
        sentences = {sentencesOf(*report.obstacle), tr("Nothing was sent.")};
    if (report.backupError)
        sentences = {
            sentencesOf(*report.backupError),
            tr("There is no backup, so nothing was sent.") +
                advice(" Choose another folder with --backup, or send with --no-backup.", "")};
    for (const auto& error : report.errors)
        sentences.push_back(sentencesOf(error));
    if (report.moreErrors > 0)
        sentences.push_back(trCounted(report.moreErrors, "The plug-in met {} more error.{}",
                                      "The plug-in met {} more errors.{}", report.moreErrors,
                                      advice(" Run the command with -v to see them.", "")));
    addLosses(report, sentences);
    // What is missing after a stop is its consequence, and no error of its own.
    if (report.wasStopped) {
        addStop(report, send, sentences);
    } else {
        addMissingKinds(report, send, sentences);
        addFiles(report, sentences);
        addMissingRecords(report.missingRecords, true, sentences);
    }
    if (report.wasRun() && send.isPlanned() && !report.isComplete())
        addFileStates(report, send, sentences);
    return sentences;
}

std::vector<std::string> writingNotes(const SendReport& report, const PreparedSend& send)
{
    std::vector<std::string> sentences;
    std::size_t renamed = 0;
    for (const auto& file : report.files) {
        if (file.result == SentFile::Result::kAlsoChanged)
            sentences.push_back(trFormat("Another program has changed {} during the send. It "
                                         "holds what was sent, and what was there.",
                                         relativeTo(send.device.location, file.path)));
        if (file.result != SentFile::Result::kRenamed || ++renamed > kMostRecords)
            continue;
        sentences.push_back(trFormat("A track was written to {}, not to {} as planned.",
                                     relativeTo(send.device.location, file.writtenPath),
                                     relativeTo(send.device.location, file.path)));
    }
    if (renamed > kMostRecords)
        sentences.push_back(trFormat("Written under other names than planned: {} more.",
                                     groupedText(renamed - kMostRecords)));
    return sentences;
}

std::string dataSummary(const gps::Dictionary& data)
{
    const auto text = recordCountText(countRecords(data));
    return text.empty() ? tr("no records") : text;
}

std::string sentSummary(const PreparedSend& send)
{
    auto text = trFormat("sent: {}", dataSummary(*send.request.data));
    if (!send.isPlanned())
        return text;
    if (send.request.data->empty() && send.present.isEmpty())
        return tr("Nothing was sent: there are no waypoints, geocaches, routes or tracks to send.");
    const auto files = plannedWrites(send.plan);
    if (files == 0 && !send.present.isEmpty())
        return tr("Nothing is new: the device holds everything already.") +
               advice(" --again sends it.", "");
    return trCounted(files, "{}; {} file written and read back",
                     "{}; {} files written and read back", text, files);
}

} // namespace host
