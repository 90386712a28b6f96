// SPDX-License-Identifier: Apache-2.0
#include "tools/info_command.h"

#include <iomanip>
#include <iostream>
#include <string>

#include <nlohmann/json.hpp>

#include "lumoxa/lumoxa.hpp"
#include "tools/conversion_report.h"
#include "tools/named_profile.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Json = nlohmann::json;
using std::string;

constexpr int kLabelWidth = 18;

void printLine(std::ostream& out, const string& label, const string& text) {
    out << "  " << std::left << std::setw(kLabelWidth) << label << text << '\n';
}

void printMore(std::ostream& out, const Json& count) {
    if (count != 0) out << "  and " << count << " more\n";
}

string joined(const Json& list, const char* between) {
    string text;
    for (const Json& item : list) {
        text += text.empty() ? "" : between;
        text += item.is_string() ? item.get<string>() : item.dump();
    }
    return text;
}

// A text, or "none" for null.
string wordOf(const Json& value) {
    return value.is_null() ? "none" : value.get<string>();
}

// Languages have a line each; a text without one is a line of its own.
void printTexts(std::ostream& out, const char* label, const Json& texts) {
    for (const Json& text : texts) {
        const string language = text.value("language", "");
        printLine(out, label,
                  (language.empty() ? "" : language + " ") + text["text"].get<string>());
    }
}

string xyzText(const Json& xyz) {
    return rounded(xyz[0], 4) + ' ' + rounded(xyz[1], 4) + ' ' + rounded(xyz[2], 4);
}

struct HeaderField {
    const char* label;
    const char* member;
    const char* words;  // the member that explains it, or null
};

// One of the two spaces is there: that of a link, or that of another profile.
constexpr HeaderField kHeaderFields[] = {
    {"size", "size", nullptr},
    {"version", "version", nullptr},
    {"class", "class", "className"},
    {"colour space", "colourSpace", nullptr},
    {"connection space", "connectionSpace", nullptr},
    {"output space", "outputSpace", nullptr},
    {"created", "created", nullptr},
    {"rendering intent", "renderingIntent", nullptr},
    {"illuminant", "illuminant", nullptr},
    {"flags", "flags", "flagWords"},
    {"attributes", "attributes", "attributeWords"},
    {"platform", "platform", "platformName"},
    {"colour engine", "colourEngine", nullptr},
    {"manufacturer", "manufacturer", nullptr},
    {"model", "model", nullptr},
    {"creator", "creator", nullptr},
};

string fieldText(const Json& value) {
    if (value.is_number()) return value.dump() + " bytes";
    return value.is_array() ? xyzText(value) : wordOf(value);
}

void printHeader(std::ostream& out, const Json& header) {
    if (header.is_null()) return;
    for (const HeaderField& field : kHeaderFields) {
        if (!header.contains(field.member)) continue;
        string text = fieldText(header[field.member]);
        const Json words = field.words == nullptr ? Json() : header[field.words];
        if (words.is_array()) text += " (" + joined(words, ", ") + ")";
        if (words.is_string()) text += " (" + words.get<string>() + ")";
        printLine(out, field.label, text);
    }
    if (header["profileId"].is_null()) return;
    printLine(out, "profile ID",
              header["profileId"].get<string>() +
                  (header["profileIdMatches"] == true ? "" : " (not that of these bytes)"));
}

void printColours(std::ostream& out, const Json& report) {
    const Json &white = report["mediaWhitePoint"], &black = report["mediaBlackPoint"];
    if (!white.is_null()) printLine(out, "media white", xyzText(white));
    if (!black.is_null())
        printLine(out, "media black",
                  xyzText(black) + ", L* " + rounded(report["mediaBlackLightness"], 1));
    const Json& adaptation = report["chromaticAdaptation"];
    if (!adaptation.is_null()) printLine(out, "adaptation", wordOf(adaptation["words"]));
}

void printTags(std::ostream& out, const Json& report) {
    if (report["tags"].empty()) return;
    out << "tags\n  name  type    offset      size\n";
    for (const Json& tag : report["tags"]) {
        const string type = tag["type"].is_null() ? "none" : tag["type"].get<string>();
        out << "  " << tag["signature"].get<string>() << "  " << type << std::right << std::setw(10)
            << tag["offset"].get<uint64_t>() << std::setw(10) << tag["size"].get<uint64_t>()
            << '\n';
    }
    printMore(out, report["tagsNotListed"]);
}

string curveText(const Json& curve) {
    if (curve["form"].is_null()) return "can't be read";
    string form = curve["form"];
    if (form == "gamma") return "gamma " + rounded(curve["gamma"], 2);
    if (form == "table") return "table of " + curve["entries"].dump() + " entries";
    if (form != "parametric") return form;
    string text = "parametric type " + curve["function"].dump() + ":";
    // ICC.1 counts the parameters from g: "gabcdef".
    for (const char name : string("gabcdef")) {
        const auto value = curve["parameters"].find(string(1, name));
        if (value == curve["parameters"].end()) continue;
        text += string(name == 'g' ? " " : ", ") + name + ' ' + value->dump();
    }
    return text;
}

void printCurves(std::ostream& out, const Json& curves) {
    if (!curves.empty()) out << "curves\n";
    for (const Json& curve : curves)
        printLine(out, joined(curve["tags"], " "), curveText(curve));
}

string lutTypeText(const string& type) {
    static const std::pair<const char*, const char*> kNames[] = {
        {"mft1", "lut8"}, {"mft2", "lut16"}, {"mAB ", "lutAtoB"}, {"mBA ", "lutBtoA"}};
    for (const auto& [signature, name] : kNames) {
        if (type == signature) return name;
    }
    return type;
}

string lutText(const Json& lut) {
    const string type = lutTypeText(lut["type"]);
    if (!lut.contains("inputs")) return type + ", can't be read";
    const string head =
        type + ", " + lut["inputs"].dump() + " to " + lut["outputs"].dump() + " channels";
    const string grid = joined(lut["grid"], "x");
    if (!lut.contains("elements"))
        return head + ", grid " + grid + ", tables of " + lut["inputEntries"].dump() + " and " +
               lut["outputEntries"].dump() + " entries" +
               (lut["matrix"] == true ? ", with a matrix" : "");
    string text = head;
    for (const Json& element : lut["elements"]) {
        text += (text == head ? ": " : ", ") + element.get<string>();
        if (element == "CLUT") text += " " + grid + " of " + lut["bits"].dump() + " bits";
    }
    return text;
}

void printLuts(std::ostream& out, const Json& luts) {
    if (!luts.empty()) out << "tables\n";
    for (const Json& lut : luts)
        out << "  " << lut["tag"].get<string>() << "  " << lutText(lut) << '\n';
}

// Layout 2 of docs/gray.md is a ramp, the others are grids.
void printGrayDevice(std::ostream& out, const Json& device) {
    if (device.is_null()) return;
    const string points = device["points"].dump();
    out << "gray device\n  wzgd  "
        << (device["layout"] == 2 ? "ramp of " + points + " patches"
                                  : "grids of " + points + "x" + points + " companions")
        << ", " << device["steps"] << " steps, layout " << device["layout"] << '\n';
}

string transformText(const Json& transform) {
    if (transform["offered"] == false) return "not offered";
    if (transform["available"] == false) return "faulty";
    const string tag = transform["tag"].is_null() ? "" : transform["tag"].get<string>() + " ";
    const string grid = transform.contains("grid") ? ", grid " + transform["grid"].dump() : "";
    return tag + transform["kind"].get<string>() + ", " + transform["from"].get<string>() + " to " +
           transform["to"].get<string>() + grid + ", " + transform["inputs"].dump() + " to " +
           transform["outputs"].dump() + " channels";
}

void printTransforms(std::ostream& out, const Json& report) {
    if (!report["transforms"].empty()) out << "transforms\n";
    for (const Json& transform : report["transforms"])
        out << "  " << transform["direction"].get<string>() << ", "
            << transform["intent"].get<string>() << ": " << transformText(transform) << '\n';
    if (!report["gamutTest"].is_null())
        out << "  gamut test: " << (report["gamutTest"] == true ? "offered" : "not offered")
            << '\n';
}

string blackText(const Json& point) {
    return point.is_null() ? "none" : "L* " + rounded(point["L"], 1);
}

void printLimits(std::ostream& out, const Json& report) {
    if (!report["blackPoints"].empty()) out << "black points (ISO 18619)\n";
    for (const Json& black : report["blackPoints"])
        printLine(out, black["intent"],
                  "as source " + blackText(black["asSource"]) + ", as destination " +
                      blackText(black["asDestination"]));
    if (!report["totalInk"].empty()) out << "largest sum of inks\n";
    for (const Json& ink : report["totalInk"])
        printLine(out, ink["intent"], rounded(ink["percent"], 0) + " %");
}

void printViolations(std::ostream& out, const Json& report) {
    const Json& violations = report["violations"];
    out << "violations of ICC.1" << (violations.empty() ? ": none found" : "") << '\n';
    for (const Json& violation : violations) {
        const string place =
            violation["tag"].is_null()
                ? "profile"
                : string(1, '\'').append(violation["tag"].get<string>()).append(1, '\'');
        out << "  " << place << ", byte " << violation["offset"] << ": "
            << violation["rule"].get<string>();
        if (!violation["clause"].is_null()) out << " (" << violation["clause"].get<string>() << ")";
        out << '\n';
    }
    printMore(out, report["violationsNotListed"]);
}

// @param name  the title of a profile that has no description
void printReport(std::ostream& out, const Json& report, const string& name) {
    out << (report["title"].is_null() ? name : report["title"].get<string>()) << '\n';
    // One description is the title already.
    if (report["description"].size() > 1) printTexts(out, "description", report["description"]);
    printMore(out, report["descriptionsNotListed"]);
    printTexts(out, "copyright", report["copyright"]);
    printHeader(out, report["header"]);
    printColours(out, report);
    printTags(out, report);
    printCurves(out, report["curves"]);
    printLuts(out, report["luts"]);
    printGrayDevice(out, report["grayDevice"]);
    printTransforms(out, report);
    printLimits(out, report);
    printViolations(out, report);
}

const char* remedyOf(const Json& report) {
    if (report["header"].is_null()) return "give a profile file";
    return report["fault"]["tag"] == signatureText(kGrayTag)
               ? "make the profile anew with lumoxa make-gray"
               : "get a sound copy of the profile";
}

string reportOn(const std::vector<uint8_t>& bytes) {
    static constexpr uint8_t kNothing = 0;  // an empty vector may have no address
    return lumoxa::inspect(bytes.empty() ? &kNothing : bytes.data(), bytes.size());
}

}  // namespace

void runInfo(const InfoArguments& arguments) {
    const ProfileContent content = readProfile(arguments.profile);
    const string text = reportOn(content.bytes);
    const Json report = Json::parse(text);
    if (arguments.json) {
        std::cout << text << '\n';
    } else {
        printReport(std::cout, report, content.name);
    }
    std::cout.flush();
    if (report["fault"].is_null()) return;
    const string sentence = report["fault"]["sentence"];
    throw InputError(content.name + ": " + sentence, remedyOf(report));
}

}  // namespace lumoxa_tool
