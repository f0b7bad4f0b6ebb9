// SPDX-License-Identifier: MIT
// A file is flushed to its medium before it replaces the old one, which takes longer than a frame.

#include "host/window/settings/SettingsKeeper.h"

#include "host/base/Sentences.h"
#include "host/files/StateFolder.h"
#include "host/window/base/MainLoop.h"
#include "host/window/settings/SettingsFile.h"

#include <utility>

namespace host {

SettingsKeeper::SettingsKeeper(Handlers handlers)
    : handlers_(std::move(handlers)), path_(configurationFile())
{
    if (!path_)
        return;
    if (const auto failure = readSettings(*path_, settings_))
        onMainLoop([failed = handlers_.failed, text = sentencesOf(*failure)] { failed(text); });
    written_ = settings_;
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
