// SPDX-License-Identifier: MIT
// Texts may come from a device, so they are made harmless before they reach a terminal.

#include "host/cli/Console.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"

#include <cstdio>
#include <string>

namespace host {
namespace {

void printLine(std::string_view prefix, std::string_view text)
{
    std::string line{prefix};
    line += displayText(text);
    line += '\n';
    std::fputs(line.c_str(), stderr); // in one piece: other programs may write there, too
}

} // namespace

void Console::error(const gps::Error& error) const
{
    this->error(sentencesOf(error));
}

void Console::error(std::string_view sentence) const
{
    printLine("magellangps: ", sentence);
}

void Console::note(std::string_view sentence) const
{
    if (!isQuiet_)
        printLine("note: ", sentence);
}

void Console::messages(const std::vector<Message>& messages) const
{
    for (const auto& message : messages) {
        if (message.isError)
            error(message.text);
        else
            note(message.text);
    }
}

// The text has line ends, so the caller applies displayText() to each line.
void Console::lines(std::string_view text) const
{
    if (!isQuiet_)
        std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace host
