// SPDX-License-Identifier: MIT

#include "host/transfer/SendCheck.h"

#include "host/base/HostError.h"

#include <platform/System/FileManager.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace host {
namespace {

using Action = gps::PlannedFile::Action;

constexpr std::array<std::pair<std::string_view, gps::TransferKind>, 3> kKeys{
    {{"track", gps::TransferKind::kTracks},
     {"waypoint", gps::TransferKind::kWaypoints},
     {"route", gps::TransferKind::kRoutes}}};

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

std::vector<gps::Error> missingFiles(const gps::SendPlan& plan)
{
    std::vector<gps::Error> missing;
    for (const auto& file : plan.files) {
        if (file.action == Action::kSkip)
            continue;
        std::string present;
        if (const auto failure = gps::FileManager{}.readFile(file.path, present))
            missing.push_back(hostError(
                failure->code() == static_cast<std::int32_t>(gps::FileErrorCode::kReadNoSuchFile)
                    ? "A file that was sent is not on the device"
                    : "A file that was sent cannot be read back from the device",
                "See what the device lacks, and try again", file.path));
        else if (present != file.content)
            missing.push_back(hostError("A file on the device does not hold what was sent",
                                        "See what the device lacks, and try again", file.path));
    }
    return missing;
}

bool isForeseen(const gps::Error& logged, const gps::SendPlan& plan)
{
    const auto* const cause = logged.userInfo().findDictionary(gps::kErrorUnderlyingKey);
    const auto* const code = cause != nullptr ? cause->find("code") : nullptr;
    return code != nullptr &&
           std::any_of(plan.files.begin(), plan.files.end(), [&](const gps::PlannedFile& file) {
               if (file.path != logged.path())
                   return false;
               if (file.action == Action::kMerge)
                   return file.error && code->int32Reading() == file.error->code();
               return file.action == Action::kCreate &&
                      code->int32Reading() ==
                          static_cast<std::int32_t>(gps::FileErrorCode::kReadNoSuchFile);
           });
}

} // namespace host
