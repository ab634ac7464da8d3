// SPDX-License-Identifier: Apache-2.0
// ISO 28178 (CGATS.17) text files. lcms2 parses and validates the header, the fields and the number of rows. The cells
// are converted here, because lcms2 reads "nan", "inf" and words as 0, moves cells of a short row up from the next one,
// and reports no lines.
#include "tools/accuracy/Measurement.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iomanip>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>

#include "tools/text/Text.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;

constexpr uintmax_t kLargestFile = 8 << 20;  // bytes
constexpr double kFullRgb = 100;             // in files
constexpr double kSmallestXyz = -1;          // noise of an instrument at black
constexpr double kLargestXyz = 1e5;          // brighter than any display, in cd/m2 as well
constexpr double kLargestStep = 0.25;        // between two levels of a ramp
constexpr double kSameLevel = 1e-4;          // rounding of files

struct Row {
    size_t line;
    std::vector<std::string> cells;
};

// The first table of a file.
struct Table {
    std::string text;  // of the file, up to the end of the table
    std::vector<Row> rows;
    std::vector<std::string> fields;       // one for each cell of a row
    std::string sheetType;                 // first word of the file
    std::optional<std::string> luminance;  // property LUMINANCE_XYZ_CDM2
    bool isNormalized = true;              // to Y = 100 for white; property NORMALIZED_TO_Y_100 is not "NO"
    std::string instrument;                // property TARGET_INSTRUMENT, otherwise ORIGINATOR
    std::string date;                      // property CREATED
};

[[noreturn]] void fail(const fs::path& file, const std::string& what) {
    throw std::runtime_error(file.string() + ": " + what);
}

[[noreturn]] void fail(const fs::path& file, size_t line, const std::string& what) {
    throw std::runtime_error(file.string() + ":" + std::to_string(line) + ": " + what);
}

// The words of a line, quoted ones without their quotes, up to a comment.
std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream stream(line.substr(0, line.find('#')));
    std::vector<std::string> words;
    for (std::string word; stream >> std::quoted(word);) words.push_back(word);
    return words;
}

bool includesAnother(const std::string& line) {
    constexpr std::string_view kInclude = ".INCLUDE";
    const auto isSame = [](unsigned char a, char b) { return std::toupper(a) == b; };
    return std::search(line.begin(), line.end(), kInclude.begin(), kInclude.end(), isSame) != line.end();
}

// The text and the rows of the first table.
Table splitTable(const fs::path& file) {
    std::error_code error;
    if (fs::is_other(file, error)) fail(file, "is not a regular file; expected a CGATS file");
    requireFile(file, "a CGATS file");
    if (fs::file_size(file, error) > kLargestFile) fail(file, "is larger than 8 MiB; expected a CGATS file");
    std::ifstream stream(file, std::ios::binary);
    Table table;
    bool inData = false;
    std::string line;
    for (size_t number = 1; std::getline(stream, line); ++number) {
        if (includesAnother(line)) fail(file, number, "names another file; expected no .INCLUDE");
        table.text += line + "\n";
        std::vector<std::string> words = wordsOf(line);
        if (words.empty()) continue;
        if (words.front() == "END_DATA") return table;
        if (inData)
            table.rows.push_back({number, std::move(words)});
        else
            inData = words.front() == "BEGIN_DATA";
    }
    fail(file, "has no complete table; expected the lines BEGIN_DATA and END_DATA");
}

struct FreeContext {
    void operator()(cmsContext context) const { cmsDeleteContext(context); }
};
struct FreeTable {
    void operator()(cmsHANDLE it8) const { cmsIT8Free(it8); }
};

// Reads what the header of the table says.
void parseHeader(const fs::path& file, Table& table) {
    std::string errors;  // such as ": Line 14, Count mismatch" and a line feed
    const std::unique_ptr<std::remove_pointer_t<cmsContext>, FreeContext> context(cmsCreateContext(nullptr, &errors));
    cmsSetLogErrorHandlerTHR(context.get(), [](cmsContext where, cmsUInt32Number, const char* message) {
        static_cast<std::string*>(cmsGetContextUserData(where))->append(message);
    });
    const std::unique_ptr<void, FreeTable> it8(
        cmsIT8LoadFromMem(context.get(), table.text.data(), static_cast<cmsUInt32Number>(table.text.size())));
    errors.erase(0, errors.find_first_not_of(": "));
    if (!errors.empty()) fail(file, harmless(errors.substr(0, errors.find('\n'))) + "; expected a CGATS table");
    if (!it8) fail(file, "does not begin with its type; expected a CGATS table");

    table.sheetType = cmsIT8GetSheetType(it8.get());
    table.sheetType.erase(std::min(table.sheetType.find_first_of(" \t\r"), table.sheetType.size()));
    char** names = nullptr;
    const int fields = cmsIT8EnumDataFormat(it8.get(), &names);
    for (int i = 0; i < fields; ++i) table.fields.emplace_back(names[i] != nullptr ? names[i] : "");
    const auto property = [&it8](const char* name) {
        const char* const text = cmsIT8GetProperty(it8.get(), name);
        return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
    };
    table.luminance = property("LUMINANCE_XYZ_CDM2");
    table.isNormalized = property("NORMALIZED_TO_Y_100") != "NO";
    table.instrument = property("TARGET_INSTRUMENT").value_or(property("ORIGINATOR").value_or(""));
    table.date = property("CREATED").value_or("");
}

// type: the first word of the file; expected: the content of such files, for messages.
Table readTable(const fs::path& file, const char* type, const char* expected) {
    Table table = splitTable(file);
    parseHeader(file, table);
    if (table.sheetType != type)
        fail(file, 1, "is a file of type " + inQuotes(table.sheetType) + "; expected " + type + ", " + expected);
    std::set<std::string> known;
    for (const std::string& field : table.fields) {
        if (!known.insert(field).second) fail(file, "repeats the field " + inQuotes(field) + "; expected each once");
    }
    const std::string count = std::to_string(table.fields.size());
    for (const auto& [line, cells] : table.rows) {
        if (cells.size() != table.fields.size())
            fail(file, line, "has " + std::to_string(cells.size()) + " values; expected " + count + ", one a field");
    }
    return table;
}

size_t columnOf(const fs::path& file, const Table& table, const std::string& field) {
    const auto found = std::find(table.fields.begin(), table.fields.end(), field);
    if (found == table.fields.end())
        fail(file, "has no field " + field + "; expected SAMPLE_ID, RGB and, in a measurement, XYZ");
    return static_cast<size_t>(found - table.fields.begin());
}

std::optional<double> toNumber(const std::string& text) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

// The values of three fields in each row, divided by unit.
std::vector<Vec3> vectorsOf(const fs::path& file, const Table& table, const std::array<const char*, 3>& fields,
                            double least, double most, double unit) {
    std::vector<Vec3> vectors(table.rows.size());
    for (size_t i = 0; i < 3; ++i) {
        const size_t column = columnOf(file, table, fields[i]);
        for (size_t row = 0; row < vectors.size(); ++row) {
            const std::string& cell = table.rows[row].cells[column];
            const auto value = toNumber(cell);
            if (!value || *value < least || *value > most)
                fail(file, table.rows[row].line,
                     std::string(fields[i]) + " is " + inQuotes(cell) + "; expected a number from " +
                         std::to_string(std::lround(least)) + " to " + std::to_string(std::lround(most)));
            vectors[row][i] = *value / unit;
        }
    }
    return vectors;
}

std::vector<Patch> patchesOf(const fs::path& file, const Table& table) {
    const size_t column = columnOf(file, table, "SAMPLE_ID");
    const std::vector<Vec3> rgb = vectorsOf(file, table, {"RGB_R", "RGB_G", "RGB_B"}, 0, kFullRgb, kFullRgb);
    std::vector<Patch> patches;
    std::set<std::string> known;
    for (const auto& [line, cells] : table.rows) {
        const std::string& id = cells[column];
        if (!known.insert(id).second)
            fail(file, line, "repeats the SAMPLE_ID " + inQuotes(id) + "; expected each once");
        patches.push_back({id, rgb[patches.size()]});
    }
    return patches;
}

// The unit of the file's Y in cd/m2.
std::optional<double> candelasOf(const fs::path& file, const Table& table) {
    if (!table.luminance) return std::nullopt;
    std::istringstream stream(*table.luminance);
    Vec3 white{};
    if (!(stream >> white[0] >> white[1] >> white[2]) || white[1] <= 0)
        fail(file, "LUMINANCE_XYZ_CDM2 is " + inQuotes(*table.luminance) + "; expected X, Y and Z of white in cd/m2");
    return table.isNormalized ? white[1] / 100 : 1;
}

bool isSame(const Vec3& a, const Vec3& b) {
    const auto isNear = [](double x, double y) { return std::abs(x - y) <= kSameLevel; };
    return std::equal(a.begin(), a.end(), b.begin(), isNear);
}

}  // namespace

std::vector<Patch> readPatches(const fs::path& file) {
    return patchesOf(file, readTable(file, "CTI1", "a list of RGB patches"));
}

Measurement readMeasurement(const fs::path& file) {
    const Table table = readTable(file, "CTI3", "a measurement from RGB to XYZ");
    const std::vector<Patch> patches = patchesOf(file, table);
    const std::vector<Vec3> xyz = vectorsOf(file, table, {"XYZ_X", "XYZ_Y", "XYZ_Z"}, kSmallestXyz, kLargestXyz, 1);
    Measurement measurement{{}, candelasOf(file, table), table.instrument, table.date};
    for (size_t i = 0; i < patches.size(); ++i) measurement.patches.push_back({patches[i], xyz[i]});
    return measurement;
}

Measurement readPanel(const fs::path& file) {
    Measurement panel = readMeasurement(file);
    const auto white = meanXyz(panel.patches, kFullWhite);
    const auto black = meanXyz(panel.patches, kFullBlack);
    if (!white) fail(file, "has no white; expected a patch with RGB 100 100 100");
    if (!black) fail(file, "has no black; expected a patch with RGB 0 0 0");
    if ((*white)[1] <= (*black)[1]) fail(file, "white is not brighter than black; expected a panel that shows light");
    constexpr std::array<const char*, 3> kNames = {"red", "green", "blue"};
    for (size_t primary = 0; primary < 3; ++primary) {
        const std::vector<double> ramp = rampOf(panel.patches, primary);
        const auto isGap = [](double a, double b) { return b - a > kLargestStep + kSameLevel; };
        if (ramp.back() < 1 - kSameLevel || std::adjacent_find(ramp.begin(), ramp.end(), isGap) != ramp.end())
            fail(file, std::string("has no full ramp of ") + kNames[primary] +
                           "; expected patches of it alone from 0 to 100 in steps of at most 25");
    }
    return panel;
}

std::vector<double> rampOf(const std::vector<MeasuredPatch>& patches, size_t primary) {
    std::vector<double> levels;
    for (const MeasuredPatch& patch : patches) {
        Vec3 others = patch.rgb;
        others[primary] = 0;
        if (isSame(others, kFullBlack)) levels.push_back(patch.rgb[primary]);
    }
    std::sort(levels.begin(), levels.end());
    const auto isRepeated = [](double a, double b) { return b - a <= kSameLevel; };
    levels.erase(std::unique(levels.begin(), levels.end(), isRepeated), levels.end());
    return levels;
}

std::optional<Vec3> meanXyz(const std::vector<MeasuredPatch>& patches, const Vec3& rgb) {
    Vec3 sum{};
    double count = 0;
    for (const MeasuredPatch& patch : patches) {
        if (!isSame(patch.rgb, rgb)) continue;
        ++count;
        for (size_t i = 0; i < 3; ++i) sum[i] += patch.xyz[i];
    }
    if (count == 0) return std::nullopt;
    return Vec3{sum[0] / count, sum[1] / count, sum[2] / count};
}

std::string toTi1(const std::vector<Patch>& patches) {
    std::ostringstream text;
    text << "CTI1\n\nDESCRIPTOR \"Patches that drive a panel\"\nCOLOR_REP \"RGB\"\n\nNUMBER_OF_FIELDS 4\n"
            "BEGIN_DATA_FORMAT\nSAMPLE_ID RGB_R RGB_G RGB_B\nEND_DATA_FORMAT\n\nNUMBER_OF_SETS "
         << patches.size() << "\nBEGIN_DATA\n"
         << std::fixed << std::setprecision(10);
    for (const auto& [id, rgb] : patches) {
        text << std::quoted(id);
        for (const double level : rgb) text << ' ' << kFullRgb * level;
        text << "\n";
    }
    text << "END_DATA\n";
    return text.str();
}

}  // namespace simulator
