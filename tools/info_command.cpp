// SPDX-License-Identifier: Apache-2.0
#include "tools/info_command.h"

#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "tools/file_bytes.h"
#include "tools/info_json.h"
#include "tools/profile_facts.h"
#include "tools/signatures.h"
#include "tools/srgb_profile.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

constexpr int kLabelWidth = 18;

void printLine(const std::string& label, const std::string& text) {
    std::cout << "  " << std::left << std::setw(kLabelWidth) << label << text << '\n';
}

void printMore(uint64_t count) {
    if (count != 0) std::cout << "  and " << count << " more\n";
}

// Languages have a line each; a text without one is a line of its own.
void printTexts(const char* label, const LocalizedTexts& texts) {
    for (const LocalizedText& text : texts.texts)
        printLine(label, text.language.empty() ? text.text : text.language + " " + text.text);
    printMore(texts.more);
}

std::string xyzText(const Xyz& xyz) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(4) << xyz[0] << ' ' << xyz[1] << ' ' << xyz[2];
    return text.str();
}

// L* of CIE 15.
double lightness(double y) {
    constexpr double kLinearEnd = 216.0 / 24389.0, kLinearSlope = 24389.0 / 27.0;
    return y > kLinearEnd ? 116 * std::cbrt(y) - 16 : kLinearSlope * y;
}

void printPoints(const ProfileFacts& facts) {
    if (facts.mediaWhite) printLine("media white", xyzText(*facts.mediaWhite));
    if (!facts.mediaBlack) return;
    std::ostringstream text;
    text << xyzText(*facts.mediaBlack) << std::fixed << std::setprecision(1) << ", L* "
         << lightness((*facts.mediaBlack)[1]);
    printLine("media black", text.str());
}

void printTags(const ProfileFacts& facts) {
    std::cout << "tags\n  name  type    offset      size\n";
    for (const TagFact& tag : facts.tags) {
        std::cout << "  " << signatureText(tag.entry.signature) << "  " << signatureText(tag.type)
                  << std::right << std::setw(10) << tag.entry.offset << std::setw(10)
                  << tag.entry.size << '\n';
    }
    printMore(facts.moreTags);
}

void printCurves(const ProfileFacts& facts) {
    if (!facts.curves.empty()) std::cout << "curves\n";
    for (const CurveFact& curve : facts.curves) {
        std::string tags;
        for (const uint32_t tag : curve.tags)
            tags.append(tags.empty() ? "" : " ").append(signatureText(tag));
        printLine(tags, curve.form.text());
    }
}

void printLuts(const ProfileFacts& facts) {
    if (!facts.luts.empty()) std::cout << "tables\n";
    for (const LutFact& lut : facts.luts)
        std::cout << "  " << signatureText(lut.tag) << "  " << lut.shape.text() << '\n';
}

void printGrayDevice(const ProfileFacts& facts) {
    if (!facts.grayDevice) return;
    std::cout << "gray device\n  " << signatureText(kGrayTag) << "  " << facts.grayDevice->text()
              << '\n';
}

void printTransforms(const ProfileFacts& facts) {
    if (!facts.transforms.empty()) std::cout << "transforms\n";
    for (const TransformFact& transform : facts.transforms) {
        const std::string outcome = !transform.offered         ? "not offered"
                                    : !transform.fault.empty() ? "faulty"
                                                               : transform.text;
        std::cout << "  " << transform.direction << ", " << transform.intent << ": " << outcome
                  << '\n';
    }
    if (facts.gamutTest)
        std::cout << "  gamut test: " << (*facts.gamutTest ? "offered" : "not offered") << '\n';
}

void printViolations(const ProfileFacts& facts) {
    std::cout << "violations of ICC.1" << (facts.violations.empty() ? ": none found" : "") << '\n';
    for (const Violation& violation : facts.violations) {
        const std::string place = violation.tag.empty() ? "profile" : "'" + violation.tag + "'";
        std::cout << "  " << place << ", byte " << violation.offset << ": " << violation.rule
                  << '\n';
    }
    printMore(facts.moreViolations);
}

void printText(const ProfileFacts& facts) {
    std::cout << facts.title << '\n';
    // One description is the title already.
    if (facts.description.texts.size() > 1) printTexts("description", facts.description);
    printTexts("copyright", facts.copyright);
    for (const HeaderFact& field : facts.header)
        printLine(field.label, field.text);
    printPoints(facts);
    if (!facts.tags.empty()) printTags(facts);
    printCurves(facts);
    printLuts(facts);
    printGrayDevice(facts);
    printTransforms(facts);
    printViolations(facts);
}

}  // namespace

void runInfo(const InfoArguments& arguments) {
    const bool builtIn = arguments.profile == kBuiltInSrgb;
    const ProfileFacts facts =
        gatherFacts(builtIn ? "built-in sRGB" : arguments.profile,
                    builtIn ? makeSrgbProfile() : readFile(arguments.profile, "profile"));
    if (arguments.json) {
        std::cout << jsonText(facts) << '\n';
    } else {
        printText(facts);
    }
    std::cout.flush();
    if (!facts.fault.empty()) throw InputError(facts.fault);
}

}  // namespace lumoxa_tool
