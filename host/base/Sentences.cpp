// SPDX-License-Identifier: MIT
// Drivers and the system write texts with and without a full stop; both must join well.

#include "host/base/Sentences.h"

#include "host/base/TranslatedFormat.h"

#include <platform/System/FileError.h>

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

// Drivers and the system say what happened to a file, and not what to do.
std::string_view adviceFor(const gps::Error& error)
{
    if (error.domain() != gps::kFileErrorDomain)
        return {};
    if (gps::FileErrorCode::kReadNoPermission == error.code())
        return tr("Let your user read it, and try again");
    if (gps::FileErrorCode::kWriteNoPermission == error.code())
        return tr("Let your user write there, and try again");
    return {};
}

} // namespace

std::string sentencesOf(const gps::Error& error)
{
    std::string text;
    appendSentence(text, error.description().value_or(""));
    if (text.empty())
        text = trFormat("Error {} of the domain {}.", error.code(), error.domain());
    const auto suggestion = error.suggestion().value_or("");
    appendSentence(text, suggestion.empty() ? adviceFor(error) : suggestion);
    if (const auto path = error.path())
        text += " " + trFormat("Path: {}", *path);
    return text;
}

} // namespace host
