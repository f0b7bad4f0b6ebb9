// SPDX-License-Identifier: MIT
// SmallHost: loads the built plug-in bundle as the guide for writers of hosts describes, and knows
// nothing of it but sdk/. It handles no failures, so whatever the plug-in does wrong shows.

#pragma once

#include <gps/GPSPlugInProtocol.h>
#include <gps/VeloranPlugIn.h>
#include <platform/System/Bundle.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <dlfcn.h>

namespace support {

class SmallHost {
public:
    using Driver = std::shared_ptr<gps::GPSPlugInProtocol>;

    /// @param path  of the bundle
    explicit SmallHost(const std::string& path = MAGELLAN_BIN_DIR "/MagellanGPSPlugin.bundle")
    {
        const gps::Bundle bundle{path};
        module_ = ::dlopen(bundle.executablePath()->c_str(), RTLD_NOW | RTLD_NODELETE);
        if (module_ == nullptr)
            throw std::runtime_error{::dlerror()};
        loader_ = exported<gps::PrincipalClassEntry>(gps::kPrincipalClassEntry)(
            bundle.infoDictionary().findString("NSPrincipalClass")->c_str());
        if (!loader_->piInitialize())
            throw std::runtime_error{"piInitialize"};
    }

    /// The drivers that are offered now, created anew.
    [[nodiscard]] std::vector<Driver> drivers() const
    {
        std::vector<Driver> all;
        auto offered = loader_->piGetPlugInsForClass(loader_->piClass());
        while (const auto driver = offered ? offered->nextObject() : nullptr)
            all.push_back(driver);
        return all;
    }

    /// A new driver of this name.
    [[nodiscard]] Driver driver(std::string_view name = "Magellan") const
    {
        for (const auto& driver : drivers()) {
            if (driver->gpsName() == name)
                return driver;
        }
        throw std::runtime_error{"no driver " + std::string{name}};
    }

    /// What the module exports under a name.
    /// @tparam Pointer  its type, a pointer
    template <typename Pointer> [[nodiscard]] Pointer exported(const char* name) const
    {
        void* const symbol = ::dlsym(module_, name);
        if (symbol == nullptr)
            throw std::runtime_error{::dlerror()};
        return reinterpret_cast<Pointer>(symbol);
    }

private:
    void* module_ = nullptr;
    gps::VeloranPlugIn* loader_ = nullptr;
};

} // namespace support
