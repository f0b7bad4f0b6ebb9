// SPDX-License-Identifier: MIT
// A file is flushed to its medium before it replaces the old one, which takes longer than a frame.

#include "host/window/settings/SettingsKeeper.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/files/StateFolder.h"
#include "host/options/ConfigurationCheck.h"
#include "host/window/base/MainLoop.h"
#include "host/window/base/Translation.h"
#include "host/window/settings/SettingsFile.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <glibmm.h>

namespace host {

SettingsKeeper::SettingsKeeper(Handlers handlers)
    : handlers_(std::move(handlers)), path_(configurationFile())
{
    if (!path_)
        return;
    if (const auto failure = readSettings(*path_, settings_))
        onMainLoop([failed = handlers_.failed, text = sentencesOf(*failure)] { failed(text); });
    else
        checkRest();
    written_ = settings_;
}

// The command line would refuse to start with them.
void SettingsKeeper::checkRest()
{
    checker_.run([this, path = *path_]() -> Background::Result {
        Configuration configuration{.path = path, .escape = tr("remove the line")};
        std::error_code failure; // then reading reports it
        const bool isMissing = !std::filesystem::exists(path, failure) && !failure;
        const auto mistake = isMissing ? "" : readCheckedConfiguration(configuration);
        return [this, mistake] {
            if (!mistake.empty())
                handlers_.failed(Glib::ustring::compose(
                    tr("The command line cannot use its configuration file: %1."),
                    displayText(mistake)));
        };
    });
}

SettingsKeeper::~SettingsKeeper()
{
    writer_.reset(); // waits for what is being written, which may be older
    if (path_ && settings_ != written_)
        (void)writeSettings(*path_, settings_); // nobody is there to read why not
}

void SettingsKeeper::set(WindowSettings settings)
{
    if (settings == settings_)
        return;
    settings_ = std::move(settings);
    handlers_.changed(settings_);
    if (!path_)
        return;
    writer_->run([this, path = *path_, settings = settings_]() -> Background::Result {
        const auto failure = writeSettings(path, settings);
        return [this, settings, text = failure ? sentencesOf(*failure) : std::string{}] {
            written_ = settings; // or they cannot be written
            if (!text.empty())
                handlers_.failed(text);
        };
    });
}

} // namespace host
