// SPDX-License-Identifier: MIT

#include "host/completions/Completions.h"

#include "host/completions/CommandTable.h"

namespace host {

std::string completionScript(const CLI::App& app, std::string_view shell)
{
    if (shell == "zsh")
        return zshScript(app);
    return shell == "fish" ? fishScript(app) : bashScript(app);
}

} // namespace host
