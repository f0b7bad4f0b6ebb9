// SPDX-License-Identifier: MIT
// FileDevice: the driver of mounted receivers as hosts get it, with the interfaces that they use
// before a send. A class of its own, because the serial driver, which inherits MagellanGPSPlugin,
// must not have those interfaces. [host thread]

#pragma once

#include "MagellanGPSPlugin.h"

#include <gps/GPSFileDevice.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

class FileDevice final : public MagellanGPSPlugin,
                         public gps::GPSFileDevice,
                         public gps::GPSUnusedRoutePoints {
public:
    [[nodiscard]] std::optional<std::string> deviceIdentifier() const override;
    [[nodiscard]] std::vector<std::string> dataFolders() const override;
    [[nodiscard]] std::string deviceCharacters() const override;
    [[nodiscard]] std::size_t longestName() const override;
    void visitRecordsIn(std::string_view path, std::string_view content,
                        const gps::RecordVisitor& visit) const override;
    void visitPointsIn(std::string_view path, std::string_view content,
                       const gps::PointVisitor& visit) const override;
    void visitUnusedRoutePointsIn(
        std::string_view path, std::string_view content,
        const std::function<void(const gps::Dictionary& record)>& visit) const override;
    [[nodiscard]] std::string deviceSymbol(std::string_view symbol) const override;
    [[nodiscard]] std::unique_ptr<gps::DeviceSnapshot> takeSnapshot() const override;

protected:
    [[nodiscard]] std::shared_ptr<const PlannedTexts> plannedTexts() const override
    {
        return planned_.lock();
    }

private:
    mutable std::weak_ptr<const PlannedTexts> planned_; // those of the last snapshot
};

} // namespace magellan
