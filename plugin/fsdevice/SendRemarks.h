// SPDX-License-Identifier: MIT
// SendRemarks: what of a host's records will not arrive on a receiver as it is. Stateless: [any]
// thread.

#pragma once

#include "SendOrder.h"

#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// Appends a sentence for each text that loses characters or is cut, each symbol that has no icon,
/// and each record that is left out.
void remarkOnRecords(const SendJob& job, std::vector<std::string>& remarks);

/// Appends a sentence when a file holds more than receivers take from it.
/// @param content  the whole text of a file of that kind
void remarkOnFile(SendKind kind, std::string_view path, std::string_view content,
                  std::vector<std::string>& remarks);

} // namespace magellan
