// SPDX-License-Identifier: MIT
// ExportBar: writes ticked records to a file on another thread, and shows how far that is. Hidden
// while nothing is written. [main loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordSet.h"
#include "host/window/base/Background.h"
#include "host/window/base/TransferBar.h"
#include "host/window/base/Translation.h"

#include <atomic>
#include <functional>
#include <memory>

#include <gtkmm.h>

namespace host {

class ExportBar : public Gtk::Box {
public:
    using Ended = std::function<void(const ExportReport& report)>;

    ExportBar();

    /// Stops what is being written, and waits for its end.
    ~ExportBar() override;
    ExportBar(const ExportBar&) = delete;
    ExportBar& operator=(const ExportBar&) = delete;

    /// Writes a file. Precondition: isRunning() is false.
    /// @param request  without progress and stop
    /// @param ended    called once, unless this object is gone by then
    void write(std::shared_ptr<const RecordSet> records, TickedRecords ticked,
               ExportRequest request, Ended ended);

    [[nodiscard]] bool isRunning() const noexcept { return isRunning_; }

    /// Makes the running export end soon, without a file.
    void stop();

private:
    void end(const ExportReport& report, const Ended& ended);

    Gtk::Button stop_{tr("Stop")};
    TransferBar progress_;
    bool isRunning_ = false;
    std::atomic<bool> isStopped_{false};
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true); // read and set by the main loop
    Background writer_;                                            // last: its job uses the others
};

} // namespace host
