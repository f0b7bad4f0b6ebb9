// SPDX-License-Identifier: MIT
// Exporter: writes the ticked records to the file that the user has chosen, and shows what became
// of it. [main loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/NewRecords.h"
#include "host/window/base/MessageArea.h"
#include "host/window/devices/Receivers.h"
#include "host/window/records/ExportBar.h"

#include <functional>
#include <memory>
#include <string>

namespace host {

class Exporter {
public:
    struct Handlers {
        /// The ticked ones of these are in a file now.
        std::function<void(std::shared_ptr<const NewRecords> records, const TickedRecords& ticked)>
            saved;
        std::function<void(const ExportReport& report)> ended;
    };

    /// @param messages  shows the progress, too
    Exporter(MessageArea& messages, Handlers handlers);

    /// Writes ticked records to a file, unless there is a reason not to, which is shown.
    /// Precondition: isRunning() is false.
    void write(const std::string& path, const ReceivedRecords& received,
               const TickedRecords& ticked);

    [[nodiscard]] bool isRunning() const noexcept { return bar_.isRunning(); }

    /// Makes the running export end soon, without a file.
    void stop() { bar_.stop(); }

private:
    void showEnd(const std::string& path, bool isComplete, const ExportReport& report);

    MessageArea& messages_;
    Handlers handlers_;
    ExportBar bar_;
};

} // namespace host
