// SPDX-License-Identifier: MIT

#include "host/base/Sentences.h"

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
        text = "Error " + std::to_string(error.code()) + " of the domain " + error.domain() + '.';
    appendSentence(text, error.suggestion().value_or(""));
    if (const auto path = error.path())
        text += " Path: " + *path;
    return text;
}

} // namespace host
