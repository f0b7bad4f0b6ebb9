// SPDX-License-Identifier: MIT
// OperationAccount: the account of one operation while it is being kept. An operation creates one
// on its worker, and the parts of the operation add to it. Recording never throws and never changes
// what the operation does: details that do not fit into memory are counted as omitted. [worker], or
// [host thread] in an import.

#pragma once

#include <gps/Error.h>
#include <gps/GPSTransferAccount.h>

#include <string>
#include <string_view>

namespace magellan {

class OperationMonitor;

class OperationAccount {
public:
    /// Begins with what the monitor has of this operation already.
    /// @param monitor  must outlive this object
    explicit OperationAccount(OperationMonitor& monitor) noexcept;

    /// Publishes the account through the monitor.
    ~OperationAccount();
    OperationAccount(const OperationAccount&) = delete;
    OperationAccount& operator=(const OperationAccount&) = delete;

    /// Adds a file that was read, or could not be.
    void addFile(gps::FileAccount file) noexcept;

    void addUnseen(std::string_view kind, const std::string& path,
                   const gps::Error& error) noexcept;

    /// Adds a command. The reference is valid until the next call.
    [[nodiscard]] gps::CommandAccount& addCommand(std::string_view command,
                                                  gps::CommandPurpose purpose) noexcept;

    /// Returns the phase of a kind, which is added if it is missing. The reference is valid until
    /// the next phase is added.
    [[nodiscard]] gps::PhaseAccount& phase(std::string_view kind) noexcept;

    void setStopped() noexcept { account_.stopped = true; }

private:
    [[nodiscard]] gps::FileAccount& totalOf(const std::string& kind);
    void trimDetails(gps::LineAccount& lines) noexcept;
    void addToTotal(const gps::FileAccount& file) noexcept;

    OperationMonitor& monitor_;
    gps::TransferAccount account_;
    std::size_t details_ = 0; // that the account has
    // Returned by addCommand() and phase() if memory has run out. They are not in the account.
    gps::CommandAccount spareCommand_;
    gps::PhaseAccount sparePhase_;
};

} // namespace magellan
