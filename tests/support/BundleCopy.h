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

    /// The folder that the bundle is in.
    [[nodiscard]] std::string folder() const { return folder_.path(); }

    /// Loads the module, which stays loaded, and asks for its loader class.
    [[nodiscard]] gps::VeloranPlugIn& load() const { return loaderIn(open(folder_.path())); }

    /// Loads the module of the bundle in `folder`. @return  null if it cannot be loaded
    [[nodiscard]] static void* open(const std::string& folder)
    {
        const auto path = folder + "/MagellanGPSPlugin.bundle/Contents/Linux/MagellanGPSPlugin.so";
        return ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    }

    /// Asks a module for its loader class.
    [[nodiscard]] static gps::VeloranPlugIn& loaderIn(void* module)
    {
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
