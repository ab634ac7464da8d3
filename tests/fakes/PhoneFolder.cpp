#include "tests/fakes/PhoneFolder.h"

#include <platform/DeviceFiles.h>
#include <stdlib.h>

#include <cstdio>
#include <fstream>
#include <iterator>

#include "tests/fakes/Journal.h"

namespace fakes {

namespace filesystem = std::filesystem;

PhoneFolder::PhoneFolder() {
    std::string pattern = (filesystem::temp_directory_path() / "phone.XXXXXX").string();
    root = mkdtemp(pattern.data());
    platform::setDeviceRoot(root.string());
    platform::setNodeWriteObserver([](std::string_view path, std::string_view bytes) {
        std::string line = "node " + filesystem::path(path).filename().string();
        for (const char byte : bytes) {
            char hex[4];
            snprintf(hex, sizeof hex, " %02x", static_cast<unsigned char>(byte));
            line += hex;
        }
        journal::add(line);
    });
}

PhoneFolder::~PhoneFolder() {
    platform::setNodeWriteObserver(nullptr);
    platform::setDeviceRoot("");
    filesystem::remove_all(root);
}

void PhoneFolder::write(const std::string& path, const std::string& bytes) const {
    filesystem::create_directories(filesystem::path(at(path)).parent_path());
    std::ofstream(at(path), std::ios::binary) << bytes;
}

std::string PhoneFolder::read(const std::string& path) const {
    std::ifstream file(at(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void PhoneFolder::makeFolder(const std::string& path) const {
    filesystem::create_directories(at(path));
}

void PhoneFolder::remove(const std::string& path) const {
    filesystem::remove_all(at(path));
}

}  // namespace fakes
