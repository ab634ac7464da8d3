// SPDX-License-Identifier: Apache-2.0
// Reads the sample phone's calibration 30 times and prints the processor time of one read, in nanoseconds:
//
//     calibration_read ours    with the library's reader
//     calibration_read bare    with the same calls of libxml2 and atof; the values are not stored
//     calibration_read init    as the service's init does
//
// One measurement a process: how much memory the C library returns to the system after a read depends on what the
// process did before.
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <platform/DeviceFiles.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>

#include "bench/QuietLog.h"
#include "calibration/ConfigXmlParser.h"
#include "calibration/PanelTable.h"
#include "service/DisplayControlImpl.h"
#include "simulator/Phone.h"

namespace {

using namespace vendor::kov::hardware::display_control::V1_0::implementation;

// Each of these is one read. False if there is no calibration.

bool ours() {
    return readCalibration()->hasGammaCalib;
}

bool bare() {
    static const std::string kPath = platform::devicePath(identifyPanel().calibFile);
    xmlKeepBlanksDefault(0);
    xmlDoc* const document = xmlParseFile(kPath.c_str());
    if (document == nullptr) return false;
    double sum = 0;
    for (const xmlNode* block = xmlDocGetRootElement(document)->children; block != nullptr; block = block->next) {
        for (xmlNode* element = block->children; element != nullptr; element = element->next) {
            if (element->type != XML_ELEMENT_NODE) continue;
            xmlChar* const text = xmlNodeGetContent(element);
            sum += atof(reinterpret_cast<const char*>(text));
            xmlFree(text);
        }
    }
    xmlFreeDoc(document);
    xmlCleanupParser();
    return sum != 0;
}

bool init() {
    static DisplayControlImpl service;
    return service.init() == 0;
}

double processorNanoseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kReads = 30;
    const std::map<std::string, bool (*)()> kReaders = {{"ours", ours}, {"bare", bare}, {"init", init}};
    const auto reader = kReaders.find(argc == 2 ? argv[1] : "");
    if (reader == kReaders.end()) {
        fprintf(stderr, "usage: calibration_read ours | bare | init\n");
        return 2;
    }
    const bench::QuietLog quiet;
    const simulator::Phone phone(DISPLAY_CONTROL_DATA_DIR "/phone");

    const double begin = processorNanoseconds();
    for (int i = 0; i < kReads; ++i) {
        if (reader->second()) continue;
        fprintf(stderr, "calibration_read: the calibration could not be read\n");
        return 1;
    }
    printf("%.0f\n", (processorNanoseconds() - begin) / kReads);
    return 0;
}
