// SPDX-License-Identifier: Apache-2.0
// The XML document of a calibration file.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string>

#include "calibration/ConfigXmlParser.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

constexpr long kLongestCalibrationFile = 16L << 20;  // bytes

// Why a calibration file is not used.
enum class Refusal {
    NONE,
    NOT_ACCEPTED,       // not a regular file of at most kLongestCalibrationFile
    NOT_WELL_FORMED,    // libxml2 cannot parse it
    DECLARES_ENTITIES,  // a few entities can expand to any amount of text
};

struct XmlRelease {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};

struct CalibrationDocument {
    Refusal refusal;
    std::unique_ptr<xmlDoc, XmlRelease> xml;  // null unless refusal is NONE
};

// Parses the file at path. The caller releases the document and then calls xmlCleanupParser.
CalibrationDocument loadCalibration(const std::string& path);

// Stores the values of every block below root in record.
void readBlocks(ConfigXmlParser& record, const xmlNode& root);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
