// SPDX-License-Identifier: MIT
// UDisks: the disk service of Linux desktops, udisks2, which lets the user at the machine mount
// removable disks. [host thread]

#pragma once

#include "host/desktop/DiskService.h"

#include <memory>
#include <optional>
#include <string>

namespace host {

class Bus;
struct BusFailure;

class UDisks final : public DiskService {
public:
    UDisks();
    ~UDisks() override;

    [[nodiscard]] std::optional<gps::Error> whyUnavailable() override;
    [[nodiscard]] std::optional<gps::Error> mount(const std::string& node,
                                                  std::string& folder) override;
    [[nodiscard]] std::optional<gps::Error> unmount(const std::string& node) override;
    [[nodiscard]] std::optional<gps::Error> powerOff(const std::string& node, bool& isOff) override;

private:
    [[nodiscard]] Bus& bus(); // connected by the first call
    [[nodiscard]] std::optional<BusFailure> findObject(const std::string& node,
                                                       std::string& object);
    [[nodiscard]] std::optional<BusFailure> findDrive(const std::string& node, std::string& drive);
    [[nodiscard]] std::optional<BusFailure> driveCan(const std::string& drive, const char* property,
                                                     bool& answer);

    std::unique_ptr<Bus> bus_;
};

} // namespace host
