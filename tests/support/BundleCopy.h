// SPDX-License-Identifier: MIT
// BundleCopy: a copy of the built plug-in bundle. A test may change its resources before it loads
// the module as a host does.

#pragma once

#include "TemporaryFolder.h"

#include <gps/VeloranPlugIn.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include <dlfcn.h>

namespace support {

class BundleCopy {
public:
    BundleCopy()
    {
        std::filesystem::copy(MAGELLAN_BIN_DIR "/MagellanGPSPlugin.bundle",
                              folder_.path("MagellanGPSPlugin.bundle"),
                              std::filesystem::copy_options::recursive);
    }

    void remove(std::string_view resource) const
    {
        std::filesystem::remove(folder_.path(inside(resource)));
    }
    void put(std::string_view resource, std::string_view content) const
    {
        folder_.put(inside(resource), content);
    }
    [[nodiscard]] std::string read(std::string_view resource) const
    {
        return folder_.read(inside(resource));
    }

    /// Loads the module, which stays loaded, and asks for its loader class.
    [[nodiscard]] gps::VeloranPlugIn& load() const
    {
        void* module = ::dlopen(
            folder_.path("MagellanGPSPlugin.bundle/Contents/Linux/MagellanGPSPlugin.so").c_str(),
            RTLD_NOW | RTLD_LOCAL);
        void* entry = module != nullptr ? ::dlsym(module, gps::kPrincipalClassEntry) : nullptr;
        if (entry == nullptr)
            throw std::runtime_error{::dlerror()};
        return *reinterpret_cast<gps::PrincipalClassEntry>(entry)("MagellanGPSPluginLoader");
    }

private:
    static std::string inside(std::string_view resource)
    {
        return "MagellanGPSPlugin.bundle/Contents/Resources/" + std::string{resource};
    }

    TemporaryFolder folder_;
};

} // namespace support
