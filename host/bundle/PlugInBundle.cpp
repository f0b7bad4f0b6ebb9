// SPDX-License-Identifier: MIT
// Every failure names the path and the option --plugin, because the usual reason is a wrong or an
// incomplete bundle. RTLD_NODELETE: drivers' workers may still run code of the module at exit.

#include "host/bundle/PlugInBundle.h"

#include "host/base/HostError.h"
#include "host/base/TranslatedFormat.h"

#include <platform/System/Bundle.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include <dlfcn.h>

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr char kBundleName[] = "MagellanGPSPlugin.bundle";

gps::Error loadError(const std::string& what, const std::string& path)
{
    return hostError(
        what, tr("Name a working plug-in bundle with --plugin, or install the program again"),
        path);
}

std::optional<gps::Error> openModule(const std::string& path, void*& module)
{
    const gps::Bundle bundle{path};
    std::error_code ignored;
    if (!fs::is_directory(path, ignored))
        return loadError(tr("There is no plug-in bundle at this path"), path);
    const auto executable = bundle.executablePath();
    if (!executable)
        return loadError(tr("The plug-in bundle has no readable Info.plist that names its module"),
                         path);
    // RTLD_NOW: a symbol that is missing is an error here, with its name, and not a crash during a
    // download. RTLD_LOCAL: its symbols are invisible to other libraries.
    module = ::dlopen(executable->c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr)
        return loadError(trFormat("The plug-in's module cannot be loaded: {}", ::dlerror()),
                         *executable);
    return std::nullopt;
}

std::optional<gps::Error> findLoader(const std::string& path, gps::VeloranPlugIn*& loader)
{
    void* module = nullptr;
    if (auto failure = openModule(path, module))
        return failure;
    const auto info = gps::Bundle{path}.infoDictionary();
    const auto* principalClass = info.findString("NSPrincipalClass");
    if (principalClass == nullptr)
        return loadError(tr("The plug-in bundle's Info.plist names no principal class"), path);
    const auto entry =
        reinterpret_cast<gps::PrincipalClassEntry>(::dlsym(module, gps::kPrincipalClassEntry));
    if (entry == nullptr)
        return loadError(tr("The plug-in's module is not a GPS plug-in"), path);
    loader = entry(principalClass->c_str());
    if (loader == nullptr)
        return loadError(trFormat("The plug-in's module has no class {}", *principalClass), path);
    return std::nullopt;
}

std::vector<Driver> driversFrom(std::optional<gps::PlugInEnumerator> enumerator)
{
    std::vector<Driver> drivers;
    while (enumerator) {
        auto driver = enumerator->nextObject();
        if (!driver)
            break;
        drivers.push_back(std::move(driver));
    }
    return drivers;
}

} // namespace

std::vector<std::string> bundleCandidates(const std::string& program)
{
    const fs::path folder = fs::path{program}.parent_path();
    return {folder / kBundleName,
            folder.parent_path() / HOST_LIBRARY_FOLDER / "magellangps" / kBundleName};
}

std::optional<std::string> findBundle(const std::optional<std::string>& requested)
{
    if (requested)
        return requested;
    std::error_code ignored;
    // argv[0] would not do: it can be relative, or just a name that the shell found in PATH.
    const auto candidates = bundleCandidates(fs::read_symlink("/proc/self/exe", ignored).string());
    const auto found =
        std::find_if(candidates.begin(), candidates.end(),
                     [&](const std::string& path) { return fs::is_directory(path, ignored); });
    return found != candidates.end() ? std::optional{*found} : std::nullopt;
}

std::optional<gps::Error> loadBundle(const std::string& path, PlugInBundle& bundle)
{
    gps::VeloranPlugIn* loader = nullptr;
    if (auto failure = findLoader(path, loader))
        return failure;
    if (!loader->piInitialize())
        return loadError(tr("The plug-in refused to start"), path);
    PlugInBundle loaded{.path = path};
    loaded.name = loader->piName();
    loaded.info = loader->piInfo();
    loaded.plugInClass = loader->piClass();
    loaded.apiVersion = loader->piAPIVersion();
    // Checked before the drivers are asked for, because their interface may differ with the
    // version.
    if (loaded.apiVersion != kLoaderAPIVersion)
        return loadError(trFormat("The plug-in has version {} of the loader interface; this "
                                  "program needs version {}",
                                  loaded.apiVersion, kLoaderAPIVersion),
                         path);
    loaded.drivers = driversFrom(loader->piGetPlugInsForClass(loaded.plugInClass));
    loaded.loader = loader;
    bundle = std::move(loaded);
    return std::nullopt;
}

// A known driver keeps its instance, which holds the user's selection and perhaps a running worker.
void addNewDrivers(PlugInBundle& bundle)
{
    for (auto& offered : driversFrom(bundle.loader->piGetPlugInsForClass(bundle.plugInClass))) {
        const auto isKnown =
            std::any_of(bundle.drivers.begin(), bundle.drivers.end(), [&](const Driver& known) {
                return known->className() == offered->className();
            });
        if (!isKnown)
            bundle.drivers.push_back(std::move(offered));
    }
}

} // namespace host
