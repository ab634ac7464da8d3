// SPDX-License-Identifier: Apache-2.0
#include "simulator/PhoneFiles.h"

#include <platform/DeviceFiles.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <mutex>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace simulator {

namespace {

namespace fs = std::filesystem;
using vendor::kov::hardware::display_control::V1_0::implementation::identifyPanel;

[[noreturn]] void fail(const fs::path& file, const std::string& reason) {
    throw std::runtime_error(file.string() + ": " + reason);
}

void check(const std::error_code& error, const fs::path& file, const std::string& what, const std::string& expected) {
    if (error) fail(file, what + " (" + error.message() + "); expected " + expected);
}

struct TemporaryFolders {
    std::mutex mutex;
    std::set<fs::path> inUse;
};
TemporaryFolders& temporaryFolders() {
    static TemporaryFolders folders;
    return folders;
}

fs::path makeTemporaryFolder() {
    std::string pattern = (fs::temp_directory_path() / "phone-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        fail(pattern, std::generic_category().message(errno) + "; expected a place for temporary files");
    return pattern;
}

void makeFolderOf(const fs::path& file) {
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    check(error, file, "its folder could not be made", "a phone's folder that can be written");
}

}  // namespace

std::string_view nodePath(std::string_view name) {
    return std::find_if(kPhoneNodes.begin(), kPhoneNodes.end(),
                        [name](const PhoneNode& candidate) { return candidate.name == name; })
        ->path;
}

PhoneFiles::PhoneFiles(fs::path root, bool isTemporary)
    : folder(std::move(root)), temporary(isTemporary), previousRoot(platform::devicePath("")) {
    platform::setDeviceRoot(folder.string());
    if (!temporary) return;
    const std::lock_guard<std::mutex> lock(temporaryFolders().mutex);
    temporaryFolders().inUse.insert(folder);
}

PhoneFiles::PhoneFiles(PhoneFiles&& other) noexcept
    : folder(std::exchange(other.folder, {})),
      temporary(std::exchange(other.temporary, false)),
      previousRoot(std::move(other.previousRoot)) {}

PhoneFiles::~PhoneFiles() {
    if (folder.empty()) return;
    platform::setDeviceRoot(previousRoot);
    std::error_code ignored;
    if (!temporary) return;
    const std::lock_guard<std::mutex> lock(temporaryFolders().mutex);
    temporaryFolders().inUse.erase(folder);
    fs::remove_all(folder, ignored);
}

void PhoneFiles::removeTemporaryFolders() {
    const std::lock_guard<std::mutex> lock(temporaryFolders().mutex);
    std::error_code ignored;
    for (const fs::path& folder : temporaryFolders().inUse) fs::remove_all(folder, ignored);
}

PhoneFiles PhoneFiles::copyOf(const fs::path& source) {
    if (!fs::is_directory(source)) fail(source, "is not a folder; expected a folder of the phone's files");
    PhoneFiles tree(makeTemporaryFolder(), true);
    std::error_code error;
    fs::recursive_directory_iterator entries(source, fs::directory_options::follow_directory_symlink, error);
    check(error, source, "could not be read", "a folder of the phone's files");
    for (; entries != fs::end(entries); entries.increment(error)) {
        const fs::path& file = entries->path();
        const fs::path place = tree.folder / file.lexically_relative(source);
        if (entries->is_directory(error)) {
            fs::create_directory(place, error);
        } else if (!error) {
            fs::copy_file(file, place, error);
        }
        check(error, file, "could not be copied", "a file of the phone that can be read");
    }
    return tree;
}

PhoneFiles PhoneFiles::empty() {
    return {makeTemporaryFolder(), true};
}

PhoneFiles PhoneFiles::at(const fs::path& folder) {
    if (!fs::is_directory(folder)) fail(folder, "is not a folder; expected a folder of the phone's files");
    return {fs::absolute(folder), false};
}

fs::path PhoneFiles::pathOf(std::string_view phonePath) const {
    return folder.string().append(phonePath);
}

void PhoneFiles::write(std::string_view phonePath, std::string_view bytes) {
    const fs::path file = pathOf(phonePath);
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    if (!stream.is_open()) {
        makeFolderOf(file);
        stream.open(file, std::ios::binary | std::ios::trunc);
    }
    stream << bytes << std::flush;
    if (!stream) fail(file, "could not be written; expected a phone's folder that can be written");
}

void PhoneFiles::makeFolder(std::string_view phonePath) {
    makeFolderOf(pathOf(phonePath) / "");
}

std::string PhoneFiles::read(std::string_view phonePath) const {
    std::ifstream stream(pathOf(phonePath), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void PhoneFiles::remove(std::string_view phonePath) {
    const fs::path file = pathOf(phonePath);
    std::error_code error;
    fs::remove_all(file, error);
    check(error, file, "could not be removed", "a phone's folder that can be written");
}

std::string PhoneFiles::calibrationPath() const {
    return identifyPanel().calibFile;
}

std::string PhoneFiles::installCalibration(const fs::path& file) {
    std::string phonePath = calibrationPath();
    const fs::path place = pathOf(phonePath);
    makeFolderOf(place);
    std::error_code error;
    fs::copy_file(file, place, fs::copy_options::overwrite_existing, error);
    check(error, file, "could not be copied to the phone", "a calibration file");
    return phonePath;
}

}  // namespace simulator
