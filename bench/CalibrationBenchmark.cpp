// SPDX-License-Identifier: Apache-2.0
// The calibration of the sample phone, against libxml2 doing the same calls with atof.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <platform/DeviceFiles.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "bench/QuietLog.h"
#include "calibration/ConfigXmlParser.h"
#include "calibration/PanelTable.h"
#include "simulator/PhoneFiles.h"

namespace bench {
namespace {

using namespace vendor::kov::hardware::display_control::V1_0::implementation;

void ours(benchmark::State& state) {
    const QuietLog quiet;
    const auto phone = simulator::PhoneFiles::at(simulator::PhoneFiles::samplePhone());
    for (auto _ : state) {
        const auto record = std::make_unique<ConfigXmlParser>();
        record->parser();
        benchmark::DoNotOptimize(record.get());
        if (!record->hasGammaCalib) state.SkipWithError("no calibration");
    }
}
BENCHMARK(ours)->Name("calibration/ours")->Unit(benchmark::kMicrosecond);

// Every element inside a block, as a number.
void convertAll(const xmlNode& root, std::vector<double>& values) {
    for (const xmlNode* block = root.children; block != nullptr; block = block->next) {
        for (xmlNode* element = block->children; element != nullptr; element = element->next) {
            if (element->type != XML_ELEMENT_NODE) continue;
            xmlChar* const text = xmlNodeGetContent(element);
            values.push_back(atof(reinterpret_cast<const char*>(text)));
            xmlFree(text);
        }
    }
}

// convert: what to do with the document.
template <typename Convert>
void byLibxml2(benchmark::State& state, Convert convert) {
    const auto phone = simulator::PhoneFiles::at(simulator::PhoneFiles::samplePhone());
    const std::string path = platform::devicePath(identifyPanel().calibFile);
    for (auto _ : state) {
        xmlKeepBlanksDefault(0);
        xmlDoc* const document = xmlParseFile(path.c_str());
        convert(*xmlDocGetRootElement(document));
        xmlFreeDoc(document);
        xmlCleanupParser();
    }
}

void bare(benchmark::State& state) {
    std::vector<double> values;
    byLibxml2(state, [&values](const xmlNode& root) {
        values.clear();
        convertAll(root, values);
        benchmark::DoNotOptimize(values.data());
    });
}
BENCHMARK(bare)->Name("calibration/libxml2 and atof")->Unit(benchmark::kMicrosecond);

void parseAlone(benchmark::State& state) {
    byLibxml2(state, [](const xmlNode& root) { benchmark::DoNotOptimize(&root); });
}
BENCHMARK(parseAlone)->Name("calibration/libxml2 parse")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bench
