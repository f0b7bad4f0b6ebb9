// SPDX-License-Identifier: MIT
// The values are tried on a table of commands that nobody uses otherwise.

#include "host/options/ConfigurationCheck.h"

#include "host/options/CommandTable.h"
#include "host/options/RawOptions.h"

#include <variant>
#include <vector>

namespace host {

std::string readCheckedConfiguration(Configuration& configuration)
{
    if (auto wrong = readConfiguration(configuration); !wrong.empty())
        return wrong;
    CommandTable untyped;
    const auto checkFormat = [](const ConfiguredOption& option) {
        const auto* const values = std::get_if<std::vector<std::string>>(&option.value);
        return option.name == "format" && values != nullptr && !values->empty()
                   ? formatMistake(values->front())
                   : "";
    };
    return checkConfiguration(configuration, untyped.app(), untyped.exclusions(), checkFormat);
}

} // namespace host
