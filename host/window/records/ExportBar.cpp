// SPDX-License-Identifier: MIT
// Records that are being written may be replaced in the window: the job has a share in them.

#include "host/window/records/ExportBar.h"

#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/MainLoop.h"

#include <utility>

namespace host {

ExportBar::ExportBar() : Gtk::Box(Gtk::Orientation::HORIZONTAL, kSmallGap)
{
    set_margin(kSmallGap);
    progress_.set_hexpand(true);
    progress_.set_valign(Gtk::Align::CENTER);
    nameForReaders(progress_, tr("Export"));
    nameForReaders(stop_, tr("Stop the Export"));
    stop_.signal_clicked().connect([this] { stop(); });
    append(progress_);
    append(stop_);
    set_visible(false);
}

ExportBar::~ExportBar()
{
    *isAlive_ = false;
    isStopped_ = true;
}

void ExportBar::write(std::shared_ptr<const RecordSet> records, TickedRecords ticked,
                      ExportRequest request, Ended ended)
{
    isRunning_ = true;
    isStopped_ = false;
    progress_.set_text("");
    progress_.set_fraction(0);
    stop_.set_sensitive(true);
    set_visible(true);
    request.stopRequested = [this] { return isStopped_.load(); };
    request.progress = [this, alive = isAlive_](const TransferProgress& progress) {
        onMainLoop([this, alive, progress] {
            if (*alive)
                progress_.showProgress(progress);
        });
    };
    writer_.start([this, alive = isAlive_, records = std::move(records), ticked = std::move(ticked),
                   request = std::move(request), ended = std::move(ended)] {
        onMainLoop([this, alive, ended, report = exportRecords(*records, ticked, request)] {
            if (*alive)
                end(report, ended);
        });
    });
}

void ExportBar::stop()
{
    isStopped_ = true;
    stop_.set_sensitive(false);
}

void ExportBar::end(const ExportReport& report, const Ended& ended)
{
    isRunning_ = false;
    set_visible(false);
    ended(report);
}

} // namespace host
