// A folder that stands for the phone's "/".
#pragma once

#include <platform/DeviceFiles.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/fakes/Journal.h"
#include "tests/fakes/TemporaryFolder.h"

namespace fakes {

const std::string kPanelNameNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_panel_name";
const std::string kCabcNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_cabc_mode";
const std::string kWhitePointNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_whitepoint_info";
const std::string kDefaultCalibration = "/vendor/etc/disp_calib_data_default.xml";

// An empty device root as long as it lives, removed at the end. Node writes are journaled.
// Paths are the phone's absolute ones.
class PhoneFolder {
public:
    PhoneFolder() {
        platform::setDeviceRoot(folder.path().string());
        platform::setNodeWriteObserver([](std::string_view path, std::string_view bytes) {
            std::string line = "node " + std::filesystem::path(path).filename().string();
            for (const char byte : bytes) {
                char hex[4];
                snprintf(hex, sizeof hex, " %02x", static_cast<unsigned char>(byte));
                line += hex;
            }
            journal::add(line);
        });
    }
    ~PhoneFolder() {
        platform::setNodeWriteObserver(nullptr);
        platform::setDeviceRoot("");
    }
    PhoneFolder(const PhoneFolder&) = delete;
    PhoneFolder& operator=(const PhoneFolder&) = delete;

    // Makes the folders on the way, too.
    void write(const std::string& path, const std::string& bytes) const { folder.write(path.substr(1), bytes); }
    std::string read(const std::string& path) const {
        std::ifstream file(at(path), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void makeFolder(const std::string& path) const { std::filesystem::create_directories(at(path)); }
    void remove(const std::string& path) const { std::filesystem::remove_all(at(path)); }
    std::string at(const std::string& path) const { return folder.path().string() + path; }

private:
    TemporaryFolder folder;
};

}  // namespace fakes
