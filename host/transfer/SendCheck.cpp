// SPDX-License-Identifier: MIT
// A worker logs its failures and goes on. It also logs a read error for each default file that does
// not exist yet, because it reads every file before it merges into it. That is not a failure.

#include "host/transfer/SendCheck.h"

#include <platform/System/FileManager.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

namespace host {
namespace {

using Action = gps::PlannedFile::Action;
using Result = SentFile::Result;

constexpr std::array<std::pair<std::string_view, gps::TransferKind>, 3> kKeys{
    {{"track", gps::TransferKind::kTracks},
     {"waypoint", gps::TransferKind::kWaypoints},
     {"route", gps::TransferKind::kRoutes}}};

Result resultOf(const gps::PlannedFile& file)
{
    if (file.action == Action::kSkip)
        return file.error ? Result::kBlocked : Result::kNothingToWrite;
    std::string present;
    if (const auto failure = gps::FileManager{}.readFile(file.path, present))
        return failure->code() == gps::FileErrorCode::kReadNoSuchFile ? Result::kMissing
                                                                      : Result::kUnreadable;
    return present == file.content ? Result::kWritten : Result::kDifferent;
}

} // namespace

std::vector<gps::TransferKind> kindsIn(const gps::Dictionary& data)
{
    std::vector<gps::TransferKind> kinds;
    for (const auto& [key, kind] : kKeys) {
        if (data.findArray(key) != nullptr)
            kinds.push_back(kind);
    }
    return kinds;
}

std::vector<SentFile> checkFiles(const gps::SendPlan& plan)
{
    std::vector<SentFile> files;
    for (const auto& file : plan.files)
        files.push_back({file.path, resultOf(file)});
    return files;
}

bool isExpected(const gps::Error& logged, const gps::SendPlan& plan)
{
    const auto* const cause = logged.userInfo().findDictionary(gps::kErrorUnderlyingKey);
    const auto* const code = cause != nullptr ? cause->find("code") : nullptr;
    if (code == nullptr)
        return false;
    const auto isExpectedOf = [&](const gps::PlannedFile& file) {
        if (file.path != logged.path())
            return false;
        if (file.action == Action::kCreate)
            return code->int32Reading() == gps::FileErrorCode::kReadNoSuchFile;
        return file.action == Action::kMerge && file.error &&
               code->int32Reading() == file.error->code();
    };
    return std::any_of(plan.files.begin(), plan.files.end(), isExpectedOf);
}

} // namespace host
