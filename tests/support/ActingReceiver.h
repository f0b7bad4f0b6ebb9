// SPDX-License-Identifier: MIT
// ActingReceiver: a RecordingReceiver that runs an action in each call whose line begins with a
// given text, after it has stored the call. The action may throw.

#pragma once

#include "RecordingReceiver.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace support {

class ActingReceiver : public RecordingReceiver {
public:
    ActingReceiver(std::string call, std::function<void()> action)
        : call_(std::move(call)), action_(std::move(action))
    {}

protected:
    void afterCall(std::string_view call) override
    {
        if (call.starts_with(call_))
            action_();
    }

private:
    std::string call_;
    std::function<void()> action_;
};

} // namespace support
