// SPDX-License-Identifier: MIT
// SendRemarks: sentences for the user about records that a receiver would store changed,
// incompletely or not at all. Part of the planning before a send. Stateless. [any]

#pragma once

#include "DeviceFileWriters.h"
#include "SendOrder.h"

#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// Appends a remark for each text that loses characters or is cut, each symbol without an icon, and
/// each record that will not be written. Equal remarks are appended once.
void remarkOnRecords(const SendJob& job, std::vector<std::string>& remarks);

/// Appends a remark for each route whose points are stored under other names.
/// @param renamed  in the order of the routes
void remarkOnRenamedPoints(const std::vector<RenamedPoint>& renamed,
                           std::vector<std::string>& remarks);

/// Appends a remark if a path is a link: a writer replaces it, whatever it leads to.
void remarkOnLink(const std::string& path, std::vector<std::string>& remarks);

/// Appends a remark if a file has more records than receivers read from it.
/// @param content  the complete text of the file, as the merge has made it
void remarkOnFile(RecordKind kind, std::string_view path, std::string_view content,
                  std::vector<std::string>& remarks);

} // namespace magellan
