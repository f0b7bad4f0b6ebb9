// SPDX-License-Identifier: MIT
// Paths come from devices, so they are made fit to be displayed.

#include "host/words/RestoreText.h"

#include "host/backup/Manifest.h"
#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/points/LocalTime.h"
#include "host/points/Points.h"
#include "host/words/ProgressText.h"
#include "host/words/RecordCountText.h"
#include "host/words/StopText.h"

#include <gps/Characters.h>
#include <gps/NumberText.h>
#include <platform/System/Paths.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace host {
namespace {

constexpr std::size_t kMostFiles = 20;       // that are named
constexpr std::size_t kTimestampLength = 19; // "2026-11-23 05:01:55"

std::string filesText(std::size_t count)
{
    return trCounted(count, "{} file", "{} files", count);
}

std::string contentText(const RecordCounts& counts)
{
    const auto text = recordCountText(counts);
    return text.empty() ? tr("no records") : text;
}

std::string lineFor(const RestoredFile& file)
{
    if (!file.isOnDevice)
        return trFormat("{}: is made again, with {}.", displayText(file.path),
                        contentText(file.then));
    if (file.now == file.then)
        return trFormat("{}: is replaced; it has {} before and after.", displayText(file.path),
                        contentText(file.then));
    return trFormat("{}: gets {} instead of {}.", displayText(file.path), contentText(file.then),
                    contentText(file.now));
}

std::string extraText(const std::vector<std::string>& files)
{
    std::vector<std::string> named;
    for (std::size_t i = 0; i < std::min(files.size(), kMostFiles); ++i)
        named.push_back(displayText(files[i]));
    auto list = joined(named, ", ");
    if (const auto more = files.size() - named.size(); more > 0)
        list = trFormat("{}, and {} more", list, more);
    return trCounted(files.size(), "{} file is not in the backup, and will stay: {}.",
                     "{} files are not in the backup, and will stay: {}.", files.size(), list);
}

// Seconds since 1970-01-01 00:00 UTC; nullopt for a name of another form.
std::optional<std::int64_t> timeOfBackup(std::string_view name)
{
    using namespace std::chrono;
    constexpr std::string_view kForm = "YYYYMMDDTHHMMSSZ";
    const auto isOfForm = [&](std::size_t i) {
        return kForm[i] == 'T' || kForm[i] == 'Z' ? name[i] == kForm[i] : gps::isDigit(name[i]);
    };
    if (name.size() < kForm.size())
        return std::nullopt;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        if (!isOfForm(i))
            return std::nullopt;
    }
    const auto number = [&](std::size_t at, std::size_t length) {
        return static_cast<int>(gps::wholeInteger(name.substr(at, length)).value_or(0));
    };
    const year_month_day date{year{number(0, 4)}, month{static_cast<unsigned>(number(4, 2))},
                              day{static_cast<unsigned>(number(6, 2))}};
    if (!date.ok())
        return std::nullopt;
    const auto time =
        sys_days{date} + hours{number(9, 2)} + minutes{number(11, 2)} + seconds{number(13, 2)};
    return time.time_since_epoch().count();
}

} // namespace

std::string backupTimeText(std::string_view name, bool isUtc)
{
    const auto time = timeOfBackup(name);
    if (!time)
        return displayText(name);
    std::array<char, kMostOfLocalTime> text;
    const std::string local{text.data(), putLocalTime(text.data(), *time)};
    const auto offset = local.substr(kTimestampLength);
    if (!isUtc)
        return fmt::format("{} UTC{}", local.substr(0, kTimestampLength),
                           offset == "+00:00" ? "" : offset);
    std::string inUtc;
    appendTimestamp(inUtc, *time, ' ');
    return inUtc + " UTC";
}

std::string backupSizeText(const Backup& backup)
{
    return filesText(backup.files) + ", " + byteText(backup.bytes);
}

std::string damagedBackupText(const DamagedBackup& backup)
{
    return trFormat("{} is damaged: its list of files, manifest.json, cannot be read, so it "
                    "cannot be restored. Copy what you need from {}",
                    backup.name, displayText(gps::joinPath(backup.path, kFilesName)));
}

std::vector<std::string> comparisonLines(const BackupComparison& comparison)
{
    if (comparison.error)
        return {sentencesOf(*comparison.error)};
    std::vector<std::string> lines;
    const auto& files = comparison.files;
    if (files.empty())
        lines.emplace_back(
            tr("The receiver already holds what the backup holds: there is nothing to restore."));
    else if (comparison.unchangedFiles == 0)
        lines.push_back(trFormat("{} would be written.", filesText(files.size())));
    else
        lines.push_back(trCounted(
            comparison.unchangedFiles,
            "{} would be written; the other {} of the backup is unchanged on the receiver.",
            "{} would be written; the other {} of the backup are unchanged on the receiver.",
            filesText(files.size()), filesText(comparison.unchangedFiles)));
    for (std::size_t i = 0; i < std::min(files.size(), kMostFiles); ++i)
        lines.push_back(lineFor(files[i]));
    if (files.size() > kMostFiles)
        lines.push_back(trFormat("And {} more.", filesText(files.size() - kMostFiles)));
    if (!comparison.extraFiles.empty())
        lines.push_back(extraText(comparison.extraFiles));
    return lines;
}

std::vector<std::string> restoreLines(const RestoreReport& report)
{
    std::vector<std::string> lines;
    if (report.wasUpToDate)
        lines.emplace_back(tr("The device already holds what the backup holds."));
    if (report.previous)
        lines.push_back(trFormat("The files before the restore are kept in the backup {}",
                                 displayText(report.previous->name)));
    for (const auto& name : report.deletedBackups)
        lines.push_back(
            trFormat("deleted, because enough newer backups are kept: {}", displayText(name)));
    for (const auto& path : report.restored)
        lines.push_back(trFormat("restored: {}", displayText(path)));
    for (const auto& path : report.extraFiles)
        lines.push_back(trFormat("not in the backup, left as it is: {}", displayText(path)));
    return lines;
}

std::vector<Message> restoreMessages(const RestoreReport& report)
{
    std::vector<Message> messages;
    if (report.error)
        messages.push_back({true, sentencesOf(*report.error)});
    const bool isAnyWritten = !report.restored.empty();
    if (report.wasStopped)
        messages.push_back(
            {true, isAnyWritten ? tr("The restore was stopped. Restore again to write the rest.")
                                : stoppedRestoreText()});
    if (isAnyWritten && !report.asBefore.empty())
        messages.push_back(
            {true, trFormat("As before the restore: {}.", joined(report.asBefore, ", "))});
    return messages;
}

} // namespace host
