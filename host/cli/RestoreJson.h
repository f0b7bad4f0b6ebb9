// SPDX-License-Identifier: MIT
// RestoreJson: what `restore` lists or did, as the JSON document of --json, described in
// docs/json.md. Stateless. [host thread]

#pragma once

#include "host/cli/ExitStatus.h"
#include "host/transfer/DeviceRestore.h"
#include "host/words/Message.h"

#include <string>
#include <vector>

namespace host {

/// The document of a list of backups, on one line, with its line end.
[[nodiscard]] std::string backupListJson(const std::string& device,
                                         const std::vector<Backup>& backups,
                                         const std::vector<DamagedBackup>& damaged);

/// The document of a restore, on one line, with its line end.
/// @param backup    the path of the backup's folder; empty: a list was wanted, and failed
/// @param messages  what is printed on standard error
[[nodiscard]] std::string restoreJson(const std::string& device, const std::string& backup,
                                      const RestoreReport& report,
                                      const std::vector<Message>& messages, ExitStatus status);

} // namespace host
