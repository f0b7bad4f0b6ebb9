// SPDX-License-Identifier: MIT
// Both documents have the same keys: those of the list, and those of a restore. Scripts depend on
// them, so a change goes into docs/json.md and the schema, too.

#include "host/cli/RestoreJson.h"

#include "host/cli/ReportJson.h"

namespace host {
namespace {

Json backupJson(const Backup& backup)
{
    return {{"name", backup.name},
            {"path", backup.path},
            {"files", backup.files},
            {"bytes", backup.bytes}};
}

std::string documentOf(const std::string& device, ExitStatus status, const Json& backups,
                       const Json& damaged, const Json& backup, const RestoreReport& report,
                       const std::vector<Message>& messages)
{
    return jsonLine({{"status", static_cast<int>(status)},
                     {"complete", report.isComplete()},
                     {"interrupted", report.wasStopped},
                     {"device", device.empty() ? Json() : Json(device)},
                     {"backups", backups},
                     {"damagedBackups", damaged},
                     {"backup", backup},
                     {"upToDate", report.wasUpToDate},
                     {"previous", report.previous ? backupJson(*report.previous) : Json()},
                     {"deleted", report.deletedBackups},
                     {"restored", report.restored},
                     {"asBefore", report.asBefore},
                     {"extraFiles", report.extraFiles},
                     {"error", errorJson(report.error)},
                     {"messages", messagesJson(messages)}});
}

} // namespace

std::string backupListJson(const std::string& device, const std::vector<Backup>& backups,
                           const std::vector<DamagedBackup>& damaged)
{
    Json list = Json::array();
    for (const auto& backup : backups)
        list.push_back(backupJson(backup));
    Json damagedList = Json::array();
    for (const auto& backup : damaged)
        damagedList.push_back({{"name", backup.name}, {"path", backup.path}});
    return documentOf(device, ExitStatus::kSuccess, list, damagedList, {}, {}, {});
}

std::string restoreJson(const std::string& device, const std::string& backup,
                        const RestoreReport& report, const std::vector<Message>& messages,
                        ExitStatus status)
{
    return documentOf(device, status, {}, {}, backup.empty() ? Json() : Json(backup), report,
                      messages);
}

} // namespace host
