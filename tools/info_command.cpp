// SPDX-License-Identifier: Apache-2.0
#include "tools/info_command.h"

#include <cmath>
#include <iomanip>
#include <iostream>
#include <optional>

#include "tools/fault_finder.h"
#include "tools/lut_tag.h"
#include "tools/profile_text.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"
#include "tools/transform_chain.h"

namespace lumoxa_tool {
namespace {

void printLine(const char* label, const std::string& text) {
    std::cout << "  " << std::left << std::setw(18) << label << text << '\n';
}

std::string hexText(uint64_t value, int digits) {
    std::ostringstream text;
    text << "0x" << std::hex << std::setw(digits) << std::setfill('0') << value;
    return text.str();
}

std::string optionalSignature(uint32_t signature) {
    return signature == 0 ? "none" : quotedSignature(signature);
}

std::string versionText(uint32_t version) {
    return std::to_string(version >> 24) + "." + std::to_string(version >> 20 & 15) + "." +
           std::to_string(version >> 16 & 15);
}

std::string dateText(const icDateTimeNumber& date) {
    std::ostringstream text;
    text << std::setfill('0') << std::setw(4) << date.year << '-' << std::setw(2) << date.month
         << '-' << std::setw(2) << date.day << ' ' << std::setw(2) << date.hours << ':'
         << std::setw(2) << date.minutes << ':' << std::setw(2) << date.seconds;
    return text.str();
}

std::string xyzText(const icXYZNumber& xyz) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(4) << xyz.X / 65536.0 << ' ' << xyz.Y / 65536.0 << ' '
         << xyz.Z / 65536.0;
    return text.str();
}

std::string className(uint32_t deviceClass) {
    struct ClassName {
        uint32_t deviceClass;
        const char* name;
    };
    static constexpr ClassName kNames[] = {
        {fourCc("scnr"), "input device"},  {fourCc("mntr"), "display"},
        {fourCc("prtr"), "output device"}, {fourCc("link"), "device link"},
        {fourCc("spac"), "colour space"},  {fourCc("abst"), "abstract"},
        {fourCc("nmcl"), "named colours"},
    };
    for (const ClassName& entry : kNames) {
        if (entry.deviceClass == deviceClass) return entry.name;
    }
    return "unknown class";
}

void printHeader(const Profile& profile) {
    const icHeader& header = profile.header();
    const uint8_t* creator = profile.bytes().data() + 80;  // icHeader keeps it in file byte order
    printLine("size", std::to_string(header.size) + " bytes");
    printLine("version", versionText(header.version));
    printLine("class", className(header.deviceClass) + " " + quotedSignature(header.deviceClass));
    printLine("colour space", spaceText(header.colorSpace));
    printLine("connection space", spaceText(header.pcs));
    printLine("created", dateText(header.date));
    printLine("rendering intent", intentText(header.renderingIntent));
    printLine("illuminant", xyzText(header.illuminant));
    printLine("flags", hexText(header.flags, 8));
    printLine("attributes", hexText(header.attributes, 16));
    printLine("platform", optionalSignature(header.platform));
    printLine("colour engine", optionalSignature(header.cmmId));
    printLine("manufacturer", optionalSignature(header.manufacturer));
    printLine("model", optionalSignature(header.model));
    printLine("creator", optionalSignature(bigEndian32(creator)));
}

void printTags(const Profile& profile) {
    std::cout << "tags\n  name  type    offset      size\n";
    for (const icTag_safe64bit& entry : profile.tags()) {
        const uint32_t type =
            entry.size >= 4 ? bigEndian32(profile.bytes().data() + entry.location) : 0;
        std::cout << "  " << signatureText(entry.signature) << "  " << signatureText(type)
                  << std::right << std::setw(10) << entry.location << std::setw(10) << entry.size
                  << '\n';
    }
}

std::string transformText(const Profile& profile, const ChainLink& link) {
    std::string text = link.describe() + ", " + std::to_string(link.desc.inChannels) + " to " +
                       std::to_string(link.desc.outChannels) + " channels";
    if (link.tag == 0) return text;
    const Tag tag = profile.tag(link.tag).value();
    if (tag.type == kLut16) {
        text += ", tables " + std::to_string(bigEndian16(&tag.bytes[48])) + " and " +
                std::to_string(bigEndian16(&tag.bytes[50]));
    }
    const std::string leftOut = stagesLeftOut(tag);
    return leftOut.empty() ? text : text + ", without its " + leftOut;
}

// The transform, or nothing when the profile doesn't offer it.
std::optional<ChainLink> offeredLink(const Profile& profile, uint32_t intent,
                                     icTransType direction) {
    // What LUT tags a named colour profile may carry describe no device.
    if (profile.header().deviceClass == fourCc("nmcl")) return std::nullopt;
    const bool fromLut = lutTagFor(profile, intent, direction) != 0;
    const bool fromCurves = profile.hasTag(fourCc("rTRC")) || profile.hasTag(fourCc("kTRC"));
    if (!fromLut && !fromCurves) return std::nullopt;
    return makeLink(profile, intent, direction);
}

// Prints one line a transform; the first fault found, or an empty text.
std::string printTransforms(const Profile& profile) {
    std::string fault;
    std::cout << "transforms\n";
    for (const icTransType direction : {icDeviceToPcs, icPcsToDevice}) {
        for (uint32_t intent = icPerceptual; intent <= icAbsoluteColorimetric; ++intent) {
            std::cout << "  " << (direction == icDeviceToPcs ? "from device, " : "to device, ")
                      << intentText(intent) << ": ";
            try {
                const auto link = offeredLink(profile, intent, direction);
                std::cout << (link ? transformText(profile, *link) : "not offered") << '\n';
            } catch (const InputError& error) {
                std::cout << "faulty\n";
                if (fault.empty()) fault = error.what();
            }
        }
    }
    std::cout << "  gamut test: " << (profile.hasTag(fourCc("gamt")) ? "offered" : "not offered")
              << '\n';
    return fault;
}

}  // namespace

void runInfo(const std::string& path) {
    const Profile profile = Profile::open(path);
    std::cout << profile.description() << '\n';
    const std::optional<Tag> copyright = profile.tag(kCopyrightTag);
    if (copyright) printLine("copyright", tagText(*copyright));
    printHeader(profile);
    printTags(profile);
    const std::string fault = printTransforms(profile);
    std::cout.flush();
    if (!fault.empty()) throw InputError(fault);
}

}  // namespace lumoxa_tool
