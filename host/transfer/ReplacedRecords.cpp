// SPDX-License-Identifier: MIT
// Only the files that a send merges into lose records.

#include "host/transfer/ReplacedRecords.h"

#include "host/transfer/PresentFiles.h"
#include "host/transfer/SentRecords.h"

#include <string_view>

namespace host {
std::vector<ReplacedRecord> replacedRecords(const gps::Dictionary& data, const gps::SendPlan& plan,
                                            const gps::DeviceSnapshot& snapshot,
                                            const gps::GPSFileDevice& device)
{
    SentRecords sent{data, plan, device};
    for (const auto& file : plan.files) {
        const auto* const present = findFile(snapshot, file.path);
        if (file.action != gps::PlannedFile::Action::kMerge || present == nullptr || present->error)
            continue;
        // Of several records with one name, the file's last one counts.
        device.visitRecordsIn(
            file.path, present->content, [&](std::string_view key, const gps::Dictionary& inFile) {
                sent.forEachNamesake(file.kind, key, inFile, [&](SentRecords::Record& record) {
                    record.isMarked = !sent.areSame(record, inFile);
                });
            });
    }
    std::vector<ReplacedRecord> replaced;
    for (const auto& record : sent.all()) {
        if (record.isMarked)
            replaced.push_back({record.scope->kind, std::string{record.name}});
    }
    return replaced;
}

} // namespace host
