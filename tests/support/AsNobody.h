// SPDX-License-Identifier: MIT
// AsNobody: runs the rest of a scope without root's privileges, so that permissions are really
// refused. Does nothing for other users.

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
