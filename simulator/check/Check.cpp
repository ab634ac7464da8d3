#include "simulator/check/Check.h"

#include <android/log.h>

#include <fstream>
#include <stdexcept>

#include "simulator/phone/PhoneTree.h"

namespace simulator {

CheckedCalibration checkCalibration(const std::filesystem::path& file) {
    if (!std::ifstream(file)) throw std::runtime_error(file.string() + ": could not be read; expected a calibration");
    PhoneTree tree = PhoneTree::copyOf(std::filesystem::path(DISPLAY_CONTROL_DATA_DIR) / "phone");
    tree.installCalibration(file);
    CheckedCalibration checked{std::make_unique<ConfigXmlParser>(), {}};
    const int32_t priority = __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    checked.record->parser();
    __android_log_set_minimum_priority(priority);
    return checked;
}

}  // namespace simulator
