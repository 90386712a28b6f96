// SPDX-License-Identifier: Apache-2.0
#include "tools/conversion_report.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

#include <nlohmann/json.hpp>

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

using Json = nlohmann::json;

// Table tags of a profile that take part, each as " A2B1".
std::string tableTags(const Json& facts, size_t place) {
    constexpr size_t kTagLetters = 4;
    const std::string end = "' of profile " + std::to_string(place + 1);
    std::string tags;
    for (const Json& stage : facts["stages"]) {
        const std::string origin = stage.value("origin", std::string());
        for (size_t at = origin.find(end); at != std::string::npos; at = origin.find(end, at + 1)) {
            if (at < kTagLetters) continue;
            const std::string tag = ' ' + origin.substr(at - kTagLetters, kTagLetters);
            const bool isTable = tag.starts_with(" A2B") || tag.starts_with(" B2A");
            if (isTable && tags.find(tag) == std::string::npos) tags += tag;
        }
    }
    return tags;
}

std::string gridText(const Json& facts) {
    std::string text;
    for (const Json& points : facts["table"]["grid"])
        text += (text.empty() ? "" : " x ") + std::to_string(points.get<int>());
    return text;
}

std::string planText(const Json& facts) {
    const std::string plan = facts["plan"];
    if (plan == "shaper") {
        return "curves and matrix, at most " + rounded(facts["error"]["largest"], 2) +
               " of 255 off";
    }
    if (plan == "stages") return "stage by stage: " + facts["reason"].get<std::string>();
    const Json& error = facts["error"];
    const std::string text = "table " + gridText(facts);
    if (error["largest"] == 0) return text + ", the profile's own";
    return text + ", " + error["unit"].get<std::string>() + " " +
           rounded(error["whole"]["mean"], 2) + " mean, " + rounded(error["largest"], 2) +
           " largest";
}

// Nothing where both sides have one black.
std::string blackLine(const Json& step) {
    const auto L = [&](const char* side) { return rounded(step[side]["L"], 1); };
    const std::string from = L("sourceBlack"), to = L("destinationBlack");
    return from == to ? "" : reportLine("black", "L* " + from + " to " + to + ", compensated");
}

}  // namespace

std::string rounded(double value, int digits) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(digits) << value;
    return text.str();
}

std::string reportLine(const std::string& label, const std::string& text) {
    constexpr size_t kLabelWidth = 10;
    std::string line(2, ' ');
    line += label;
    line.resize(std::max(line.size() + 1, 2 + kLabelWidth), ' ');
    return line + text + '\n';
}

std::string chainLines(const lumoxa::Conversion& conversion, const std::vector<NamedProfile>& chain,
                       const std::vector<std::string>& labels) {
    const Json facts = Json::parse(conversion.explain());
    std::string lines;
    for (size_t i = 0; i < chain.size(); ++i) {
        const std::string tags = tableTags(facts, i);
        lines += reportLine(labels[i], chain[i].description() + ": " +
                                           spaceText(chain[i].profile.colorSpace()) +
                                           (tags.empty() ? "" : "," + tags));
    }
    return lines;
}

std::string planLines(const lumoxa::Conversion& conversion) {
    const Json facts = Json::parse(conversion.explain());
    std::string lines = reportLine("plan", planText(facts));
    for (const Json& step : facts["steps"]) {
        if (step["blackPointCompensation"]) lines += blackLine(step);
        if (step.contains("note")) lines += reportLine("black", step["note"]);
    }
    for (const Json& note : facts["notes"])
        lines += reportLine("note", note);
    return lines;
}

std::string linkGridText(const lumoxa::Conversion& link) {
    const Json facts = Json::parse(link.explain());
    for (const Json& stage : facts["stages"]) {
        std::string text = stage["stage"];
        if (text.starts_with("grid")) return text;
    }
    return "none";
}

}  // namespace lumoxa_tool
