// SPDX-License-Identifier: Apache-2.0
// A folder for the files of one test or fuzzer.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace tests {

// Nobody else's: tests run side by side. Empty at first, removed at the end.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "display_control.XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(folder); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return folder; }
    // Makes the folders on the way, too. Returns where the file is.
    std::filesystem::path write(const std::filesystem::path& name, const std::string& bytes = "") const {
        std::filesystem::path file = folder / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

private:
    std::filesystem::path folder;
};

}  // namespace tests
