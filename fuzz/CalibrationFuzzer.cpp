// SPDX-License-Identifier: Apache-2.0
// The calibration reader on any document: the same record each time, the record that a plainer reading makes, and
// nothing left open.
#include <fcntl.h>
#include <unistd.h>

#include <string_view>

#include "fuzz/PlainReading.h"
#include "fuzz/Quiet.h"
#include "fuzz/Require.h"
#include "simulator/PhoneFiles.h"

namespace fuzz {

namespace {

std::unique_ptr<CalibrationRecord> read() {
    auto record = std::make_unique<CalibrationRecord>();
    record->parser();
    return record;
}

// With the padding, because a new record is zero.
std::string_view bytesOf(const CalibrationRecord& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

bool isSame(const CalibrationRecord& a, const CalibrationRecord& b) {
    return bytesOf(a) == bytesOf(b);
}

int lowestFreeDescriptor() {
    const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
    close(descriptor);
    return descriptor;
}

void readCalibration(const std::string& document) {
    static auto phone = simulator::PhoneFiles::empty();
    phone.write("/vendor/etc/disp_calib_data_default.xml", document);
    beQuiet();
    const int free = lowestFreeDescriptor();
    const auto record = read();
    beQuiet();
    require(isSame(*record, *read()), "the same document makes the same record");
    beQuiet();
    const auto plain = readPlainly(document);
    require(plain == nullptr || isSame(*record, *plain), "the record is the one of the plain reading");
    require(lowestFreeDescriptor() == free, "no descriptor stays open");
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::readCalibration({data, data + size});
    return 0;
}
