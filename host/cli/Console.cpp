// SPDX-License-Identifier: MIT

#include "host/cli/Console.h"

#include <cstdio>

#include "host/formats/Text.h"

namespace host {
namespace {

void say(std::string_view prefix, std::string_view text)
{
    std::string line{prefix};
    line += displayText(text);
    line += '\n';
    std::fputs(line.c_str(), stderr);
}

void appendSentence(std::string& text, std::string_view sentence)
{
    if (sentence.empty())
        return;
    if (!text.empty())
        text += ' ';
    text += sentence;
    if (std::string_view{".!?"}.find(sentence.back()) == std::string_view::npos)
        text += '.';
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

std::string sentencesOf(const gps::Error& error)
{
    std::string text;
    appendSentence(text, error.description().value_or(""));
    if (text.empty())
        text = "Error " + std::to_string(error.code()) + " of the domain " + error.domain() + '.';
    appendSentence(text, error.suggestion().value_or(""));
    if (const auto path = error.path())
        text += " Path: " + *path;
    return text;
}

} // namespace host
