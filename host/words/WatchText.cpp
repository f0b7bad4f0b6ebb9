// SPDX-License-Identifier: MIT
// A download is one line: what was saved, or that there was nothing. If anything failed, another
// line has all errors of that download.

#include "host/words/WatchText.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/words/DownloadMessages.h"
#include "host/words/RecordCountText.h"

#include <fmt/format.h>

#include <iterator>
#include <utility>

namespace host {
namespace {

std::string nameOf(const WatchedDevice& device)
{
    return fmt::format("{}, {}", device.name, device.location);
}

std::vector<Message> messagesOf(const WatchEvent& event, bool isLogShown)
{
    std::vector<Message> messages;
    const auto add = [&](std::vector<Message> more) {
        messages.insert(messages.end(), std::make_move_iterator(more.begin()),
                        std::make_move_iterator(more.end()));
    };
    for (const auto& operation : event.report.operations)
        add(operationMessages(operation, {.isLogShown = isLogShown}));
    add(choiceMessages(event.report));
    if (const auto advice = dateAdvice(event.report.dates); !advice.empty())
        add({{false, advice}});
    add(outputMessages(event.report.output));
    if (event.error)
        add({{true, sentencesOf(*event.error)}});
    return messages;
}

WatchText downloadText(const WatchEvent& event, bool isNewOnly, bool isLogShown)
{
    WatchText text;
    std::vector<std::string> errors;
    for (auto& message : messagesOf(event, isLogShown)) {
        if (message.isError)
            errors.push_back(std::move(message.text));
        else
            text.notes.push_back(std::move(message));
    }
    const auto& output = event.report.output;
    if (output.state == OutputReport::State::kComplete)
        text.lines.push_back(
            trFormat("saved: {}: {}", output.path, recordCountText(event.report.written)));
    else if (errors.empty())
        text.lines.push_back(isNewOnly ? trFormat("nothing new: {}", nameOf(event.device))
                                       : trFormat("nothing to save: {}", nameOf(event.device)));
    if (!errors.empty())
        text.lines.push_back(trFormat("failed: {}: {}", nameOf(event.device), joined(errors, " ")) +
                             (event.isRetried ? tr(" Trying again.") : ""));
    return text;
}

// A failure that is followed by another try may be that of a disk that is not ready yet.
bool isWorthANotification(const WatchEvent& event)
{
    if (event.kind == WatchEvent::Kind::kUnmounted)
        return event.error.has_value();
    return event.kind == WatchEvent::Kind::kNotMounted ||
           (event.kind == WatchEvent::Kind::kDownloaded && !event.isRetried);
}

} // namespace

std::optional<WatchNotification> watchNotification(const WatchEvent& event, bool isNewOnly)
{
    if (!isWorthANotification(event))
        return std::nullopt;
    const auto& name = event.device.name;
    return WatchNotification{name.empty() ? tr("GPS receiver") : name,
                             joined(watchText(event, isNewOnly, false).lines, "\n")};
}

WatchText watchText(const WatchEvent& event, bool isNewOnly, bool isLogShown)
{
    const auto device = nameOf(event.device);
    switch (event.kind) {
    case WatchEvent::Kind::kAppeared:
        return {{event.device.isReadable
                     ? trFormat("appeared: {}", device)
                     : trFormat("appeared: {}. You have no permission to read its files", device)}};
    case WatchEvent::Kind::kGone:
        return {{trFormat("gone: {}", device)}};
    case WatchEvent::Kind::kListUnusable:
    case WatchEvent::Kind::kNotMounted:
        return {{trFormat("note: {}", event.error ? sentencesOf(*event.error) : std::string{})}};
    case WatchEvent::Kind::kUnmounted:
        if (event.error)
            return {{trFormat("failed: {}: {}", device, sentencesOf(*event.error))}};
        return {{trFormat("unmounted: {}: it can be unplugged", device)}};
    case WatchEvent::Kind::kDownloaded:
        return downloadText(event, isNewOnly, isLogShown);
    case WatchEvent::Kind::kStarted:
    case WatchEvent::Kind::kDriverMissing:
        break;
    }
    return {};
}

} // namespace host
