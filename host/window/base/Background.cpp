// SPDX-License-Identifier: MIT
// Each work has a number, which its result still has to have when it is shown.

#include "host/window/base/Background.h"

#include "host/window/base/MainLoop.h"

#include <utility>

namespace host {

void Background::run(Work work)
{
    job_.start([latest = latest_, number = ++*latest_, work = std::move(work)] {
        onMainLoop([latest, number, result = work()] {
            if (*latest == number)
                result();
        });
    });
}

} // namespace host
