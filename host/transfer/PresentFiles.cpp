// SPDX-License-Identifier: MIT
// A device without a folder for geocaches has them in its file of waypoints.

#include "host/transfer/PresentFiles.h"

#include "host/transfer/MissingRecords.h"
#include "host/transfer/SendCheck.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace host {
namespace {

bool isUnchanged(const gps::PlannedFile& planned, const gps::DeviceSnapshot& device)
{
    if (planned.action != gps::PlannedFile::Action::kMerge || planned.error)
        return false;
    const auto* const present = findFile(device, planned.path);
    return present != nullptr && !present->error &&
           present->content == std::string_view{planned.content};
}

} // namespace

bool hasKind(const gps::SendPlan& plan, std::string_view kind)
{
    return std::any_of(plan.files.begin(), plan.files.end(),
                       [kind](const gps::PlannedFile& file) { return file.kind == kind; });
}

const gps::DeviceFile* findFile(const gps::DeviceSnapshot& device, const std::string& path)
{
    const auto& files = device.files();
    const auto found = std::find_if(files.begin(), files.end(),
                                    [&](const auto& file) { return file.path == path; });
    return found != files.end() ? &*found : nullptr;
}

RecordCounts removeUnchangedKinds(gps::Dictionary& data, const gps::SendPlan& plan,
                                  const gps::DeviceSnapshot& device,
                                  const gps::GPSFileDevice& files)
{
    std::set<std::string_view> kinds;
    for (const auto& file : plan.files) {
        if (isUnchanged(file, device))
            kinds.insert(file.kind);
    }
    if (kinds.contains("waypoints") && !hasKind(plan, "geocaches"))
        kinds.insert("geocaches");
    if (kinds.empty() || !missingRecords(data, plan, files).empty())
        return {};
    const auto before = countRecords(data);
    removeKinds(data, kinds);
    return removedSince(before, data);
}

} // namespace host
