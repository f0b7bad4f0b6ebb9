// SPDX-License-Identifier: MIT
// Testbed: a mocked device tree and mount table, which programs see through the real device
// database. The program must run under umockdev-wrapper.

#pragma once

#include <support/TemporaryFolder.h>

#include <umockdev.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace support {

class Testbed {
public:
    Testbed() : testbed_(umockdev_testbed_new()) {}
    ~Testbed() { g_object_unref(testbed_); }
    Testbed(const Testbed&) = delete;
    Testbed& operator=(const Testbed&) = delete;

    /// Adds devices, described as umockdev expects.
    void add(const std::string& devices) const
    {
        GError* error = nullptr;
        if (umockdev_testbed_add_from_string(testbed_, devices.c_str(), &error) == FALSE)
            throw std::invalid_argument{error->message};
    }

    /// Announces the removal of a device and removes it from the tree.
    void remove(const std::string& device) const
    {
        announce(device, "remove");
        umockdev_testbed_remove_device(testbed_, ("/sys" + device).c_str());
    }

    /// Adds a disk and its first partition below a device of the tree.
    void addDisk(const std::string& parent, const std::string& name, unsigned int major,
                 unsigned int minor, bool removable) const
    {
        const auto partition = name + (name.back() >= '0' && name.back() <= '9' ? "p1" : "1");
        add(block(parent + "/block/" + name, name, "disk", major, minor) +
            "A: removable=" + (removable ? "1" : "0") + "\\n\n\n" +
            block(parent + "/block/" + name + "/" + partition, partition, "partition", major,
                  minor + 1) +
            "\n");
    }

    /// A stick on USB as "sdb", its partition 8:17, and a disk inside the machine as "sda", its
    /// partition 8:1.
    void addStickAndInternalDisk() const
    {
        add("P: /devices/pci0/usb1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n\n"
            "P: /devices/pci0/usb1/1-1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n\n"
            "P: /devices/pci0/usb1/1-1/1-1:1.0\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\n");
        addDisk(kInternal, "sda", 8, 0, false);
        plugStickIn("sdb", 16);
    }

    /// Adds the stick alone. Once it was pulled out, it gets another name, as it does from a system
    /// that still uses the old one.
    /// @param minor  the disk's number; that of its partition follows
    void plugStickIn(const std::string& name, unsigned int minor) const
    {
        addDisk(kStick, name, 8, minor, true);
    }

    void pullStickOut(const std::string& name) const
    {
        remove(std::string{kStick} + "/block/" + name + '/' + name + '1');
        remove(std::string{kStick} + "/block/" + name);
    }

    void announceInternalDisk(const std::string& action) const
    {
        announce(std::string{kInternal} + "/block/sda/sda1", action);
    }

    void announceStick(const std::string& action) const
    {
        announce(std::string{kStick} + "/block/sdb/sdb1", action);
    }

    /// Announces an event of a device: "add", "remove" or "change".
    void announce(const std::string& device, const std::string& action) const
    {
        umockdev_testbed_uevent(testbed_, ("/sys" + device).c_str(), action.c_str());
    }

    /// For everything else that umockdev can do.
    [[nodiscard]] UMockdevTestbed* get() const { return testbed_; }

    /// Writes a mount table. @return  its path
    [[nodiscard]] std::string mountTable(const std::string& lines) const
    {
        return folder_.put("mountinfo", lines);
    }

    /// Sets the mount table that this process, and every program that it starts, sees.
    static void mount(const std::string& lines)
    {
        const auto folder = std::filesystem::path{std::getenv("UMOCKDEV_DIR")} / "proc/self";
        std::filesystem::create_directories(folder);
        std::ofstream{folder / "mountinfo"} << lines;
    }

    /// A line of that table: where the partition of these numbers is mounted.
    static std::string mountLine(const std::string& numbers, const std::string& path)
    {
        return "95 27 " + numbers + " / " + path + " rw - vfat /dev/some rw\n";
    }

private:
    static constexpr char kInternal[] = "/devices/pci0/ata1/host0/target0:0:0/0:0:0:0";
    static constexpr char kStick[] = "/devices/pci0/usb1/1-1/1-1:1.0/host1/target1:0:0/1:0:0:0";

    static std::string block(const std::string& path, const std::string& name,
                             const std::string& kind, unsigned int major, unsigned int minor)
    {
        const auto number = std::to_string(major) + ":" + std::to_string(minor);
        return "P: " + path + "\nN: " + name + "\nE: SUBSYSTEM=block\nE: DEVTYPE=" + kind +
               "\nE: DEVNAME=/dev/" + name + "\nE: MAJOR=" + std::to_string(major) +
               "\nE: MINOR=" + std::to_string(minor) + "\nA: dev=" + number + "\\n\n";
    }

    UMockdevTestbed* testbed_;
    TemporaryFolder folder_;
};

} // namespace support
