// SPDX-License-Identifier: MIT
// Parses each line of an input as one argument, and completes the last one. A command line is
// either accepted or answered, and an answer is safe to print.

#include "FuzzTarget.h"

#include <host/base/Text.h>
#include <host/cli/CommandLine.h>
#include <host/commandline/Completion.h>
#include <host/options/CommandTable.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::vector<std::string> linesOf(std::string_view text)
{
    std::vector<std::string> lines;
    for (;;) {
        const auto end = text.find('\n');
        const auto line = text.substr(0, end);
        lines.emplace_back(line.substr(0, line.find('\0'))); // where an argument would end
        if (end == text.npos)
            return lines;
        text.remove_prefix(end + 1);
    }
}

void checkParsing(const std::vector<std::string>& words)
{
    std::vector<const char*> arguments{"magellangps"};
    for (const auto& word : words)
        arguments.push_back(word.c_str());
    const auto parsed =
        host::parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
    fuzz::require(parsed.options.has_value() == parsed.text.empty(),
                  "a command line without options has an answer");
    if (parsed.options)
        return;
    auto text = parsed.text;
    fuzz::require(text.back() == '\n', "an answer ends in a line end");
    std::erase(text, '\n');
    fuzz::require(host::displayText(text) == text, "an answer is safe to print");
    fuzz::require(parsed.status == host::ExitStatus::kSuccess ||
                      parsed.status == host::ExitStatus::kUsage,
                  "a mistake is a mistake of usage");
}

void checkCompletion(const std::vector<std::string>& words)
{
    static auto& table = *new host::CommandTable; // completion parses nothing
    const auto answers = host::completionsOf(table.app(), {}, words);
    fuzz::require(answers.empty() || answers.back() == '\n', "each completion has a line end");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto words = linesOf(fuzz::textOf(data, size));
    checkParsing(words);
    checkCompletion(words);
    return 0;
}
