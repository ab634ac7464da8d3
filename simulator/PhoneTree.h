// The simulated phone's files: calibration files and driver nodes.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace simulator {

// The driver's nodes by the names that people use for them.
struct PhoneNode {
    std::string_view name;
    std::string_view path;  // the phone's
};
constexpr std::array<PhoneNode, 3> kPhoneNodes = {{
    {"panel", "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_panel_name"},
    {"cabc", "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_cabc_mode"},
    {"whitepoint", "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_whitepoint_info"},
}};

// A folder that stands for the phone's "/", and the device root of the process while it lives; the device root found
// before is put back after it, so that one may live inside the life of another. Changes go to its files; errors are a
// std::runtime_error that says which file and why.
class PhoneTree {
public:
    // A copy of a folder, in a temporary folder that goes away with this object.
    static PhoneTree copyOf(const std::filesystem::path& source);
    // A phone without files, in such a folder.
    static PhoneTree empty();
    // The folder itself.
    static PhoneTree at(const std::filesystem::path& folder);

    PhoneTree(PhoneTree&& other) noexcept;
    PhoneTree& operator=(PhoneTree&&) = delete;
    ~PhoneTree();

    const std::filesystem::path& root() const { return folder; }
    // Where a file of the phone stands in the folder.
    std::filesystem::path pathOf(std::string_view phonePath) const;

    // Writes a node's whole text; name is one of kPhoneNodes.
    void writeNode(std::string_view name, std::string_view text);
    // Removes a node; it is no error when it is not there.
    void removeNode(std::string_view name);
    // Removes the calibration file of the panel that the phone reports now; no error when it is not there.
    void removeCalibration();
    // Puts a copy of file in the place of the calibration file of the panel that the phone reports now. Returns the
    // phone's path of that place.
    std::string installCalibration(const std::filesystem::path& file);

private:
    PhoneTree(std::filesystem::path root, bool isTemporary);

    std::filesystem::path folder;  // empty once moved from
    bool temporary;
    std::string previousRoot;
};

}  // namespace simulator
