// SPDX-License-Identifier: MIT
// The flags are independent of other data, so relaxed order is enough for them.

#include "OperationMonitor.h"

#include <utility>

namespace magellan {
namespace {

/// A receiver that sends positions between its answers is still a receiver.
constexpr int rankOf(gps::LineVoice voice) noexcept
{
    switch (voice) {
    case gps::LineVoice::kNothing:
        return 0;
    case gps::LineVoice::kNoise:
        return 1;
    case gps::LineVoice::kNmea:
        return 2;
    case gps::LineVoice::kReceiver:
        break;
    }
    return 3;
}

} // namespace

void OperationMonitor::begin()
{
    stop_.store(false, std::memory_order_relaxed);
    voice_.store(gps::LineVoice::kNothing, std::memory_order_relaxed);
    publish({});
}

void OperationMonitor::hear(gps::LineVoice voice) noexcept
{
    if (rankOf(voice) > rankOf(voice_.load(std::memory_order_relaxed)))
        voice_.store(voice, std::memory_order_relaxed);
}

void OperationMonitor::addUnseen(gps::UnseenPath unseen)
{
    const std::lock_guard lock{mutex_};
    account_.unseen.push_back(std::move(unseen));
}

void OperationMonitor::describe(const std::string& location, gps::DeviceDescription description)
{
    const std::lock_guard lock{mutex_};
    descriptions_[location] = std::move(description);
}

gps::DeviceDescription OperationMonitor::descriptionOf(const std::string& location) const
{
    const std::lock_guard lock{mutex_};
    const auto found = descriptions_.find(location);
    return found != descriptions_.end() ? found->second : gps::DeviceDescription{};
}

void OperationMonitor::publish(gps::TransferAccount account) noexcept
{
    const std::lock_guard lock{mutex_};
    account_ = std::move(account);
}

gps::TransferAccount OperationMonitor::account() const
{
    const std::lock_guard lock{mutex_};
    return account_;
}

} // namespace magellan
