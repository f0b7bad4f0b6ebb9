// SPDX-License-Identifier: MIT

#include "host/cli/Console.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"

#include <cstdio>

namespace host {
namespace {

void say(std::string_view prefix, std::string_view text)
{
    std::string line{prefix};
    line += displayText(text);
    line += '\n';
    std::fputs(line.c_str(), stderr);
}

} // namespace

void Console::error(const gps::Error& error) const
{
    this->error(sentencesOf(error));
}

void Console::error(std::string_view sentence) const
{
    if (errors_ != nullptr)
        errors_->emplace_back(sentence);
    else
        say("magellangps: ", sentence);
}

void Console::note(std::string_view sentence) const
{
    if (!quiet_)
        say("note: ", sentence);
}

void Console::lines(std::string_view text) const
{
    if (!quiet_)
        std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace host
