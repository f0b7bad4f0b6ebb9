// SPDX-License-Identifier: MIT
// ReportJson: the parts that the JSON documents of several commands share, described in
// docs/json.md. Stateless. [host thread]

#pragma once

#include "host/base/JsonDocument.h"
#include "host/transfer/RecordCounts.h"
#include "host/words/Message.h"

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/GPSTransferAccount.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The word for an enumerator, from a table in the order of the enumerators. Throws for one without
/// a word, instead of reading behind the table.
template <typename Enum, std::size_t count>
[[nodiscard]] Json wordFor(Enum value, const std::array<std::string_view, count>& words)
{
    return words.at(static_cast<std::size_t>(value));
}

/// An object; null without an error.
[[nodiscard]] Json errorJson(const std::optional<gps::Error>& error);

[[nodiscard]] Json kindsJson(const std::vector<gps::TransferKind>& kinds);
[[nodiscard]] Json countsJson(const RecordCounts& counts);
[[nodiscard]] Json messagesJson(const std::vector<Message>& messages);

/// Adds the lists of an account to an object, empty.
void addAccountLists(Json& object);

/// Appends what one operation's account has to the lists of an object.
void addAccount(Json& object, const gps::TransferAccount& account);

/// A document on one line, with its line end.
[[nodiscard]] std::string jsonLine(const Json& document);

} // namespace host
