// SPDX-License-Identifier: MIT
// Each vector is bounded where it grows, and the details of all files and phases share one bound.

#include "OperationAccount.h"

#include "LineAccounts.h"
#include "OperationMonitor.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

namespace magellan {
namespace {

constexpr auto kMost = gps::TransferAccount::kMostDetails;

/// Runs an action. @return  whether there was memory for it
template <typename Action> bool hadMemoryFor(Action action) noexcept
{
    try {
        action();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

/// Appends an element if there is room and memory. @return  whether it did
template <typename Element, typename Make>
bool append(std::vector<Element>& elements, Make make) noexcept
{
    return elements.size() < kMost && hadMemoryFor([&] { elements.push_back(make()); });
}

} // namespace

OperationAccount::OperationAccount(OperationMonitor& monitor) noexcept : monitor_(monitor)
{
    if (!hadMemoryFor([&] { account_ = monitor.account(); }))
        ++account_.omitted;
}

OperationAccount::~OperationAccount()
{
    for (auto& phase : account_.phases)
        trimDetails(phase.lines);
    monitor_.publish(std::move(account_));
}

void OperationAccount::addFile(gps::FileAccount file) noexcept
{
    addToTotal(file);
    trimDetails(file.lines);
    const auto details = file.lines.details.size();
    if (append(account_.files, [&] { return std::move(file); }))
        return;
    details_ -= details;
    account_.omitted += 1 + details;
}

void OperationAccount::addToTotal(const gps::FileAccount& file) noexcept
{
    const bool added = hadMemoryFor([&] {
        auto& total = totalOf(file.kind);
        total.lines.addCounts(file.lines);
        if (!total.error)
            total.error = file.error;
    });
    if (!added)
        ++account_.omitted;
}

gps::FileAccount& OperationAccount::totalOf(const std::string& kind)
{
    const auto found = std::find_if(account_.totals.begin(), account_.totals.end(),
                                    [&](const auto& total) { return total.kind == kind; });
    if (found != account_.totals.end())
        return *found;
    return account_.totals.emplace_back(gps::FileAccount{.kind = kind});
}

void OperationAccount::addUnseen(std::string_view kind, const std::string& path,
                                 const gps::Error& error) noexcept
{
    if (!append(account_.unseen, [&] { return gps::UnseenPath{std::string{kind}, path, error}; }))
        ++account_.omitted;
}

gps::CommandAccount& OperationAccount::addCommand(std::string_view command,
                                                  gps::CommandPurpose purpose) noexcept
{
    if (append(account_.commands, [&] {
            return gps::CommandAccount{.command = std::string{command}, .purpose = purpose};
        }))
        return account_.commands.back();
    ++account_.omitted;
    spareCommand_ = {};
    return spareCommand_;
}

gps::PhaseAccount& OperationAccount::phase(std::string_view kind) noexcept
{
    const auto found = std::find_if(account_.phases.begin(), account_.phases.end(),
                                    [&](const auto& phase) { return phase.kind == kind; });
    if (found != account_.phases.end())
        return *found;
    if (append(account_.phases, [&] { return gps::PhaseAccount{std::string{kind}}; }))
        return account_.phases.back();
    ++account_.omitted;
    return sparePhase_;
}

void OperationAccount::trimDetails(gps::LineAccount& lines) noexcept
{
    const auto room = std::min(lines.details.size(), kMost - details_);
    lines.details.erase(lines.details.begin() + static_cast<std::ptrdiff_t>(room),
                        lines.details.end());
    details_ += room;
    account_.omitted += detailCount(lines) - room;
}

} // namespace magellan
