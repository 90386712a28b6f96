// SPDX-License-Identifier: Apache-2.0
#include "tools/gray_csv.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>

#include "tools/files.h"
#include "tools/option_values.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Fields = std::vector<std::string>;

constexpr const char* kColumns[] = {"main", "first", "second", "X", "Y", "Z"};
constexpr size_t kColumnCount = std::size(kColumns);
constexpr size_t kMain = 0, kFirst = 1, kSecond = 2, kX = 3;
constexpr size_t kAbsent = static_cast<size_t>(-1);
constexpr const char* kHeaderRemedy =
    "the first line names the columns: main,X,Y,Z and, for grids, first,second";

std::string trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t\r";
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

Fields split(const std::string& line, char separator) {
    Fields fields(1);
    for (const char character : line) {
        if (character == separator) {
            fields.emplace_back();
        } else {
            fields.back() += character;
        }
    }
    std::transform(fields.begin(), fields.end(), fields.begin(), trimmed);
    return fields;
}

char separatorOf(const std::string& header) {
    for (const char separator : {'\t', ';'}) {
        if (header.find(separator) != std::string::npos) return separator;
    }
    return ',';
}

[[noreturn]] void refuseLine(const std::string& path, size_t line, const std::string& fault,
                             const std::string& remedy) {
    throw InputError(path + ", line " + std::to_string(line) + ": " + fault, remedy);
}

// Reads lines behind the header; columns that it doesn't know are left alone.
class CsvReader {
  public:
    CsvReader(const std::string& path, double range) : path_(path), range_(range) {}

    void readHeader(const std::string& line, size_t number) {
        separator_ = separatorOf(line);
        const Fields names = split(line, separator_);
        fieldCount_ = names.size();
        for (size_t i = 0; i < kColumnCount; ++i) {
            const auto found = std::find(names.begin(), names.end(), kColumns[i]);
            columns_[i] =
                found == names.end() ? kAbsent : static_cast<size_t>(found - names.begin());
            if (std::count(names.begin(), names.end(), kColumns[i]) > 1)
                refuse(number, "names " + std::string(kColumns[i]) + " twice");
        }
        const bool noCompanions = columns_[kFirst] == kAbsent && columns_[kSecond] == kAbsent;
        for (size_t i = 0; i < kColumnCount; ++i) {
            const bool companion = i == kFirst || i == kSecond;
            if (columns_[i] == kAbsent && !(companion && noCompanions))
                refuse(number, "has no column " + std::string(kColumns[i]));
        }
    }

    lumoxa::GrayPatch readPatch(const std::string& line, size_t number) const {
        const Fields fields = split(line, separator_);
        if (fields.size() != fieldCount_) {
            refuseLine(path_, number,
                       "has " + std::to_string(fields.size()) + " fields, but the header " +
                           std::to_string(fieldCount_),
                       "correct the line");
        }
        const auto device = [&](size_t c) {
            return number0To(fields, columns_[c] == kAbsent ? kMain : c, range_, number);
        };
        const auto xyz = [&](size_t c) { return number0To(fields, c, kMostXyz, number); };
        return {device(kMain), device(kFirst), device(kSecond), xyz(kX), xyz(kX + 1), xyz(kX + 2)};
    }

  private:
    static constexpr double kMostXyz = 200;  // a brightened paper in percent is below

    double number0To(const Fields& fields, size_t column, double top, size_t number) const {
        const std::string& text = fields[columns_[column]];
        const std::optional<double> value = parseNumber(text);
        if (value && *value >= 0 && *value <= top) return *value;
        std::ostringstream limit;
        limit << top;
        refuseLine(path_, number,
                   std::string(kColumns[column]) + " '" + text + "' is no number 0.." + limit.str(),
                   column < kX ? "correct it, or state the scale of the device values with --range"
                               : "correct it, or measure the patch again");
    }

    [[noreturn]] void refuse(size_t number, const std::string& fault) const {
        refuseLine(path_, number, fault, kHeaderRemedy);
    }

    const std::string& path_;
    double range_;
    char separator_ = ',';
    size_t fieldCount_ = 0;
    std::array<size_t, kColumnCount> columns_ = {};
};

}  // namespace

std::vector<lumoxa::GrayPatch> readGrayCsv(const std::string& path, double range) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    const std::vector<uint8_t> bytes = readFile(path, "table of patches");
    std::string text(bytes.begin(), bytes.end());
    if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
    std::istringstream lines(text);
    CsvReader reader(path, range);
    std::vector<lumoxa::GrayPatch> patches;
    size_t number = 0;
    bool inPatches = false;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        line.resize(std::min(line.find('#'), line.size()));
        if (trimmed(line).empty()) continue;
        if (inPatches) {
            patches.push_back(reader.readPatch(line, number));
        } else {
            reader.readHeader(line, number);
            inPatches = true;
        }
    }
    if (patches.empty()) throw InputError(path + ": holds no patches", kHeaderRemedy);
    return patches;
}

}  // namespace lumoxa_tool
