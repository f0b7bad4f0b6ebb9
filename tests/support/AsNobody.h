// SPDX-License-Identifier: MIT
// A refusal that is real: root gives up its rights for as long as this lives. Other users have none
// to give up.

#pragma once

#include <unistd.h>

namespace support {

class AsNobody {
public:
    AsNobody() : changed_(::geteuid() == 0 && ::seteuid(65534) == 0) {}
    ~AsNobody()
    {
        if (changed_)
            (void)!::seteuid(0);
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

private:
    bool changed_;
};

} // namespace support
