// SPDX-License-Identifier: MIT
// The loader interface: what a host calls first in a plug-in bundle, to get its drivers.
// [host thread]
//
// A bundle is a folder NAME.bundle with Contents/Info.plist, Contents/Linux/ and
// Contents/Resources/. Info.plist names the module under "CFBundleExecutable" and the loader class
// under "NSPrincipalClass". The module exports one function of the type PrincipalClassEntry under
// the name kPrincipalClassEntry, which returns the loader for that class name.

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

/// The drivers that one call returned.
class PlugInEnumerator {
public:
    explicit PlugInEnumerator(std::vector<std::shared_ptr<GPSPlugInProtocol>> drivers)
        : drivers_(std::move(drivers))
    {}

    /// The next driver; null at the end. [host thread]
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

    /// `piInitialize`: the first call; whether the plug-in can be used. [host thread]
    [[nodiscard]] virtual bool piInitialize() = 0;

    /// `piName`: the plug-in's name for the user. [host thread]
    [[nodiscard]] virtual std::string piName() = 0;

    /// `piInfo`: what a host shows about the plug-in, such as its version. [host thread]
    [[nodiscard]] virtual Dictionary piInfo() = 0;

    /// `piClass`: the class of plug-ins that piGetPlugInsForClass() offers. [host thread]
    [[nodiscard]] virtual std::string piClass() = 0;

    /// `piAPIVersion`: the version of these interfaces that the plug-in was built for.
    /// [host thread]
    [[nodiscard]] virtual std::int32_t piAPIVersion() = 0;

    /// `piGetPlugInsForClass:`: creates the drivers, anew with each call. [host thread]
    /// @param plugInClass  "GPSPlugIn"
    /// @return             nullopt if there is no driver to offer
    [[nodiscard]] virtual std::optional<PlugInEnumerator>
    piGetPlugInsForClass(std::string_view plugInClass) = 0;

    /// `piTerminate`: the last call. [host thread]
    virtual void piTerminate() = 0;
};

/// The module's exported function. [host thread]
/// @return  the loader of that class, which lives as long as the process; null if the module has no
///          such class
using PrincipalClassEntry = VeloranPlugIn* (*)(const char* className);

inline constexpr char kPrincipalClassEntry[] = "VeloranPlugInPrincipalClass";

} // namespace gps
