// SPDX-License-Identifier: Apache-2.0
#include <iomanip>
#include <sstream>

#include "tools/profile_facts.h"
#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

std::string hexText(uint64_t value, int digits) {
    std::ostringstream text;
    text << "0x" << std::hex << std::setw(digits) << std::setfill('0') << value;
    return text.str();
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

HeaderFact words(const char* label, const char* key, const std::string& text) {
    return {label, key, text, text};
}

HeaderFact signature(const char* label, const char* key, uint32_t value) {
    return {label, key, value == 0 ? "none" : quotedSignature(value),
            value == 0 ? std::string() : signatureText(value)};
}

HeaderFact space(const char* label, const char* key, uint32_t value) {
    return {label, key, spaceText(value), spaceText(value)};
}

HeaderFact point(const char* label, const char* key, const icXYZNumber& xyz) {
    constexpr double kOne = 65536.0;  // in s15Fixed16
    const Xyz value = {xyz.X / kOne, xyz.Y / kOne, xyz.Z / kOne};
    std::ostringstream text;
    text << std::fixed << std::setprecision(4) << value[0] << ' ' << value[1] << ' ' << value[2];
    return {label, key, text.str(), value};
}

std::string classText(uint32_t deviceClass) {
    const char* name = deviceClassName(deviceClass);
    return std::string(name != nullptr ? name : "unknown class") + " " +
           quotedSignature(deviceClass);
}

}  // namespace

std::vector<HeaderFact> headerFacts(const ProfileFile& file) {
    icHeader header = {};
    if (!file.hasHeader() || icReadHeader(file.bytes().begin(), &header) != icSuccess) return {};
    const bool link = header.deviceClass == fourCc("link");
    return {
        {"size", "size", std::to_string(header.size) + " bytes", uint64_t{header.size}},
        words("version", "version", versionText(header.version)),
        {"class", "class", classText(header.deviceClass), signatureText(header.deviceClass)},
        space("colour space", "colourSpace", header.colorSpace),
        link ? space("output space", "outputSpace", header.pcs)
             : space("connection space", "connectionSpace", header.pcs),
        words("created", "created", dateText(header.date)),
        words("rendering intent", "renderingIntent", intentText(header.renderingIntent)),
        point("illuminant", "illuminant", header.illuminant),
        words("flags", "flags", hexText(header.flags, 8)),
        words("attributes", "attributes", hexText(header.attributes, 16)),
        signature("platform", "platform", header.platform),
        signature("colour engine", "colourEngine", header.cmmId),
        signature("manufacturer", "manufacturer", header.manufacturer),
        signature("model", "model", header.model),
        signature("creator", "creator", file.bytes().u32(header_at::kCreator)),
    };
}

}  // namespace lumoxa_tool
