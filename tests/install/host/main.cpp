// SPDX-License-Identifier: MIT
// tracks BUNDLE: prints what each driver of a plug-in bundle can do.
#include <gps/GPSPlugInProtocol.h>
#include <gps/VeloranPlugIn.h>
#include <platform/System/Bundle.h>

#include <iostream>

#include <dlfcn.h>

int main(int, char** argv)
{
    const gps::Bundle bundle{argv[1]};
    void* const module = dlopen(bundle.executablePath()->c_str(), RTLD_NOW | RTLD_NODELETE);
    const auto entry =
        reinterpret_cast<gps::PrincipalClassEntry>(dlsym(module, gps::kPrincipalClassEntry));
    auto* const loader = entry(bundle.infoDictionary().findString("NSPrincipalClass")->c_str());
    loader->piInitialize();
    auto drivers = loader->piGetPlugInsForClass(loader->piClass());
    while (const auto driver = drivers ? drivers->nextObject() : nullptr)
        std::cout << driver->gpsName() << ": " << driver->gpsCapabilities() << '\n';
}
