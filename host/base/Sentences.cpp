// SPDX-License-Identifier: MIT
// Drivers and the system write texts with and without a full stop; both must join well.

#include "host/base/Sentences.h"

#include <fmt/format.h>

#include <string_view>

namespace host {
namespace {

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

std::string sentencesOf(const gps::Error& error)
{
    std::string text;
    appendSentence(text, error.description().value_or(""));
    if (text.empty())
        text = fmt::format("Error {} of the domain {}.", error.code(), error.domain());
    appendSentence(text, error.suggestion().value_or(""));
    if (const auto path = error.path())
        text += " Path: " + *path;
    return text;
}

} // namespace host
