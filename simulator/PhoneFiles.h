// SPDX-License-Identifier: Apache-2.0
// The simulated phone's files: calibration files and driver nodes.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "calibration/PanelTable.h"
#include "service/SysfsNodes.h"

namespace simulator {

using vendor::kov::hardware::display_control::V1_0::implementation::kCabcNode;
using vendor::kov::hardware::display_control::V1_0::implementation::kDefaultCalibFile;
using vendor::kov::hardware::display_control::V1_0::implementation::kPanelNameNode;
using vendor::kov::hardware::display_control::V1_0::implementation::kWhitePointNode;

// The driver's nodes by the names that people use for them.
struct PhoneNode {
    std::string_view name;
    std::string_view path;  // the phone's
};
constexpr std::array<PhoneNode, 3> kPhoneNodes = {
    {{"panel", kPanelNameNode}, {"cabc", kCabcNode}, {"whitepoint", kWhitePointNode}}};

// The path of a node of that name; the name is one of kPhoneNodes.
std::string_view nodePath(std::string_view name);

// A folder that represents the phone's "/". It is the process's device root while this lives; then the previous root is
// set again, so that one may live inside the life of another. Paths are the phone's absolute ones. Errors are a
// std::runtime_error that says which file and why.
class PhoneFiles {
public:
    // A copy of a folder, in a temporary folder that is removed with this object.
    static PhoneFiles copyOf(const std::filesystem::path& source);
    // An empty temporary folder, deleted with this object.
    static PhoneFiles empty();
    // The folder itself.
    static PhoneFiles at(const std::filesystem::path& folder);
    // Removes every temporary folder that is in use, from any thread: for a process that a signal ends.
    static void removeTemporaryFolders();

    PhoneFiles(PhoneFiles&& other) noexcept;
    PhoneFiles& operator=(PhoneFiles&&) = delete;
    ~PhoneFiles();

    const std::filesystem::path& root() const { return folder; }
    // Where the host keeps a file of the phone.
    std::filesystem::path pathOf(std::string_view phonePath) const;

    // The folders on the way are made too.
    void write(std::string_view phonePath, std::string_view bytes);
    void makeFolder(std::string_view phonePath);
    // The bytes; nothing of a file that cannot be read.
    std::string read(std::string_view phonePath) const;
    // With all that is in it; a file that is not there is not an error.
    void remove(std::string_view phonePath);

    // The phone's path of the calibration file of the panel that the phone reports now.
    std::string calibrationPath() const;
    // Replaces that file by a copy of file. Returns its phone's path.
    std::string installCalibration(const std::filesystem::path& file);

private:
    PhoneFiles(std::filesystem::path root, bool isTemporary);

    std::filesystem::path folder;  // empty once moved from
    bool temporary;
    std::string previousRoot;
};

}  // namespace simulator
