// SPDX-License-Identifier: MIT
// PresentFiles: leaves out of a send what a merge would not change. PresentRecords keeps a record
// whose name the device holds with another content as well, in another file. If the file that the
// record goes to holds it already, it need not be sent again and again. Stateless. [any]

#pragma once

#include "host/transfer/RecordCounts.h"

#include <gps/GPSFileDevice.h>

#include <string>
#include <string_view>

namespace host {

/// Whether a plan has a file of a kind, as in gps::PlannedFile.
[[nodiscard]] bool hasKind(const gps::SendPlan& plan, std::string_view kind);

/// A file of a snapshot; null if the device had none at this path.
[[nodiscard]] const gps::DeviceFile* findFile(const gps::DeviceSnapshot& device,
                                              const std::string& path);

/// Removes the kinds of records whose planned file is the present one, byte for byte. Removes
/// nothing if the plan has no place for one of the records.
/// @param data   the records to send; changed in place
/// @param files  decodes the planned files
/// @return       how many were removed. If any were, the plan is out of date
[[nodiscard]] RecordCounts removeUnchangedKinds(gps::Dictionary& data, const gps::SendPlan& plan,
                                                const gps::DeviceSnapshot& device,
                                                const gps::GPSFileDevice& files);

} // namespace host
