// The fixtures: a phone on a desk, and the service on it.
#pragma once

#include <gmock/gmock.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <string>
#include <vector>

#include "service/DisplayControlImpl.h"
#include "tests/fakes/ClosedLibraries.h"
#include "tests/fakes/FakeComposer.h"
#include "tests/fakes/Journal.h"
#include "tests/fakes/PhoneFolder.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

using Lines = std::vector<std::string>;

// Pieces of a calibration file: a value element per number, and such elements in a block.
inline std::string elements(const std::vector<double>& values) {
    std::string xml;
    for (const double value : values) xml += "<v>" + std::to_string(value) + "</v>\n";
    return xml;
}
inline std::string block(const std::string& name, const std::vector<double>& values) {
    return "<" + name + ">" + elements(values) + "</" + name + ">\n";
}

// In place of libxml2's own, which would tell standard error of every malformed file.
inline void dropMessage(void* /*context*/, const char* /*format*/, ...) {}

// A phone with the backlight control node (holding "9999\n") and nothing else: no panel name, no measured white point,
// no calibration. The closed libraries answer without an error and leave their buffers as given.
class PhoneTest : public testing::Test {
protected:
    PhoneTest() {
        fakes::closedLibraries() = {};
        fakes::journal::take();
        xmlSetGenericErrorFunc(nullptr, dropMessage);
        phone.write(fakes::kCabcNode, "9999\n");
    }

    ~PhoneTest() override { xmlSetGenericErrorFunc(nullptr, nullptr); }

    void calibrate(const std::string& blocks) const {
        phone.write(fakes::kDefaultCalibration, "<panel>\n" + blocks + "</panel>\n");
    }

    // What has happened since one of these was asked last; the rest is forgotten.
    static Lines happened() { return fakes::journal::take(); }
    static Lines composerCalls() { return fakes::journal::take("composer "); }
    static Lines logLines() { return fakes::journal::take("log "); }

    const fakes::PhoneFolder phone;
    const fakes::JournaledLog log;
};

// The service on that phone, not started, and a composer with two displays and no faults.
class ServiceTest : public PhoneTest {
protected:
    ServiceTest() { composer->registerAsService(); }
    ~ServiceTest() override { platform::clearServices(); }

    // Puts a service that has just been made in the place of the one that was.
    void renewService() {
        service.~DisplayControlImpl();
        new (&service) DisplayControlImpl();
    }

    // Starts the service and forgets what happened meanwhile.
    int start() {
        const int result = service.init();
        happened();
        return result;
    }

    int64_t numOfDisplay() {
        int64_t answer = 0;
        service.getNumOfDisplay(7, [&answer](Result, uint32_t count) { answer = count; });
        return answer;
    }

    // "RESULT level" of a getter, one word per call of the callback.
    std::string unlimitedLevel(uint64_t display) {
        std::string answers;
        service.getUnlimitedCT(7, display, appendTo(answers));
        return answers;
    }
    std::string eyeCareLevel(uint64_t display) {
        std::string answers;
        service.getEyeCareCT(7, display, appendTo(answers));
        return answers;
    }

    // "RESULT: values, name" of a display.
    std::string displayInfo(uint64_t display) {
        std::string answers;
        service.getDisplayInfo(7, display, [&answers](Result result, const DisplayInfo& info) {
            answers += std::to_string(static_cast<int32_t>(result)) + ":";
            for (size_t i = 0; i < 3; ++i) answers += " " + std::to_string(info.values[i]);
            answers += std::string(", ") + info.name.c_str();
        });
        return answers;
    }

    const sp<fakes::FakeComposer> composer = new fakes::FakeComposer;
    DisplayControlImpl service;

private:
    static DisplayControlImpl::Level appendTo(std::string& answers) {
        return [&answers](Result result, int32_t level) {
            answers += (answers.empty() ? "" : "; ") + std::to_string(static_cast<int32_t>(result)) + " " +
                       std::to_string(level);
        };
    }
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
