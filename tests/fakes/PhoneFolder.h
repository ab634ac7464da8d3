// A folder that stands for the phone's "/".
#pragma once

#include <filesystem>
#include <string>

namespace fakes {

constexpr const char* kPanelNameNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_panel_name";
constexpr const char* kCabcNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_cabc_mode";
constexpr const char* kWhitePointNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_whitepoint_info";
constexpr const char* kDefaultCalibration = "/vendor/etc/disp_calib_data_default.xml";

// An empty device root as long as it lives, removed at the end. Node writes are journaled.
class PhoneFolder {
public:
    PhoneFolder();
    ~PhoneFolder();
    PhoneFolder(const PhoneFolder&) = delete;
    PhoneFolder& operator=(const PhoneFolder&) = delete;

    // Paths are the phone's absolute ones; folders on the way are made.
    void write(const std::string& path, const std::string& bytes) const;
    std::string read(const std::string& path) const;
    void makeFolder(const std::string& path) const;
    void remove(const std::string& path) const;
    std::string at(const std::string& path) const { return root.string() + path; }

private:
    std::filesystem::path root;
};

}  // namespace fakes
