// SPDX-License-Identifier: Apache-2.0
#include "tools/option_values.h"

#include <cmath>
#include <locale>
#include <sstream>

#include <CLI/CLI.hpp>

namespace lumoxa_tool {

void addProfileOptions(CLI::App& command, NewProfile& profile, const std::string& description) {
    command.add_option("-o,--output", profile.output, "Profile to write")
        ->required()
        ->option_text("OUT");
    command.add_option("--description", profile.description, description)->option_text("TEXT");
    command.add_option("--copyright", profile.copyright, "Copyright; free unless given")
        ->option_text("TEXT");
    command.add_flag("-q,--quiet", profile.quiet, "No report, no notes; warnings stay");
}

std::optional<double> parseNumber(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double value = 0;
    if (!(stream >> value) || !std::isfinite(value)) return std::nullopt;
    stream >> std::ws;
    return stream.eof() ? std::optional<double>(value) : std::nullopt;
}

std::vector<double> parseNumbers(const std::string& option, const std::string& text, size_t count) {
    std::vector<double> numbers;
    std::istringstream parts(text);
    bool sound = text.empty() || text.back() != ',';
    for (std::string part; std::getline(parts, part, ',');) {
        const std::optional<double> number = parseNumber(part);
        sound = sound && number;
        numbers.push_back(number.value_or(0));
    }
    if (sound && numbers.size() == count) return numbers;
    const std::string wanted =
        count == 1 ? "a number" : std::to_string(count) + " numbers with commas between";
    throw UsageError(option + ": '" + text + "' is not " + wanted);
}

}  // namespace lumoxa_tool
