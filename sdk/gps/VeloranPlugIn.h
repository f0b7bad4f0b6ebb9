// SPDX-License-Identifier: MIT
// The loader interface: the first thing that a host asks a plug-in bundle. All of it [host thread].
//
// A bundle is a folder NAME.bundle with Contents/Info.plist, Contents/Linux/ and
// Contents/Resources/. Info.plist names the module under "CFBundleExecutable" and the loader class
// under "NSPrincipalClass". The module exports one entry of the type PrincipalClassEntry under the
// name kPrincipalClassEntry, which answers the loader for that class name.

#pragma once

#include <gps/Value.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gps {

class GPSPlugInProtocol;

/// Yields the drivers of one answer, in order, then null.
class PlugInEnumerator {
public:
    explicit PlugInEnumerator(std::vector<std::shared_ptr<GPSPlugInProtocol>> drivers)
        : drivers_(std::move(drivers))
    {}

    [[nodiscard]] std::shared_ptr<GPSPlugInProtocol> nextObject()
    {
        return next_ < drivers_.size() ? drivers_[next_++] : nullptr;
    }

private:
    std::vector<std::shared_ptr<GPSPlugInProtocol>> drivers_;
    std::size_t next_ = 0;
};

/// The class operations of a plug-in's principal class.
class VeloranPlugIn {
public:
    virtual ~VeloranPlugIn() = default;

    [[nodiscard]] virtual bool piInitialize() = 0;
    [[nodiscard]] virtual std::string piName() = 0;
    [[nodiscard]] virtual Dictionary piInfo() = 0;
    [[nodiscard]] virtual std::string piClass() = 0;
    [[nodiscard]] virtual std::int32_t piAPIVersion() = 0;

    /// `piGetPlugInsForClass:`: new drivers at each call; none where there is not a single one.
    [[nodiscard]] virtual std::optional<PlugInEnumerator>
    piGetPlugInsForClass(std::string_view plugInClass) = 0;

    virtual void piTerminate() = 0;
};

/// @return  the loader of that class, alive as long as the process; null when the module has no
/// such class
using PrincipalClassEntry = VeloranPlugIn* (*)(const char* className);

inline constexpr char kPrincipalClassEntry[] = "VeloranPlugInPrincipalClass";

} // namespace gps
