// SPDX-License-Identifier: Apache-2.0
//
// Small synthetic profiles that keep every rule of ICC.1, to be broken or added to.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>

#include "tests/support/profile_bytes.h"

namespace lumoxa_test {

inline Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

inline Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

inline Bytes textTag(const std::string& text) {
    return joined({bytesOf("text"), Bytes(4), bytesOf(text), Bytes(1)});
}

inline Bytes descriptionTag() {
    return joined({bytesOf("desc"), {0, 0, 0, 0, 0, 0, 0, 2, 'x', 0}, Bytes(78)});
}

/// 'mluc' in one language, "enUS".
inline Bytes localizedTag(const std::string& language, const Bytes& utf16) {
    Bytes head = joined({bytesOf("mluc"), Bytes(12), bytesOf(language), Bytes(8)});
    head[11] = 1, head[15] = 12, head[27] = 28;
    head[23] = static_cast<uint8_t>(utf16.size());
    return joined({head, utf16});
}

/// What every profile has, in the form of its version.
inline ProfileBytes completed(ProfileBytes profile, int version = 2) {
    const Bytes text = localizedTag("enUS", {0, 'x'});
    return profile.addTag("desc", version == 2 ? descriptionTag() : text)
        .addTag("cprt", version == 2 ? textTag("free") : text)
        .addTag("wtpt", xyzTag(0.9642, 1, 0.8249));
}

inline Bytes made(const ProfileBytes& profile, uint32_t version) {
    constexpr size_t kVersionAt = 8;
    Bytes image = profile.image();
    put32(image, kVersionAt, version << 24);
    return image;
}

/// Gray displays, since those take few tags.
inline Bytes version2() {
    return made(completed(ProfileBytes("mntr", "GRAY").addTag("kTRC", curveTag({563}))), 2);
}
inline Bytes version4() {
    return made(completed(ProfileBytes("mntr", "GRAY").addTag("kTRC", parametricTag(0, {2})), 4),
                4);
}

/// A printer of version 2 whose tag A2B0 is `lut`.
inline Bytes output2(const Bytes& lut, const std::string& space = "RGB ") {
    ProfileBytes profile("prtr", space, "Lab ");
    const uint32_t inks = space == "CMYK" ? 4 : 3;
    for (const std::string tag : {"A2B0", "A2B1", "A2B2", "B2A0", "B2A1", "B2A2", "gamt"}) {
        LutContent content;
        content.inputs = tag[0] == 'A' ? inks : 3;
        content.outputs = tag[0] == 'g' ? 1 : tag[0] == 'B' ? inks : 3;
        profile.addTag(tag, tag == "A2B0" && !lut.empty() ? lut : lut16Tag(content));
    }
    return made(completed(profile), 2);
}

/// A LUT profile of version 4.
inline Bytes display4(const LutABContent& content, const char* deviceClass = "mntr") {
    ProfileBytes profile(deviceClass, "RGB ", "XYZ ");
    profile.addTag("A2B0", lutAToBTag(content)).addTag("B2A0", lutBToATag(content));
    return made(completed(profile, 4), 4);
}

inline LutABContent cube() {
    LutABContent content;
    content.grid = {2, 3, 4};
    content.aCurves = content.bCurves = std::vector<Bytes>(3, curveTag({}));
    return content;
}

/// Positions of a tag's row in the table, and of its data.
inline size_t entryOf(const Bytes& image, const std::string& tag) {
    constexpr long kTableAt = 132;
    const Bytes signature = bytesOf(tag);
    return static_cast<size_t>(
        std::search(image.begin() + kTableAt, image.end(), signature.begin(), signature.end()) -
        image.begin());
}
inline size_t dataOf(const Bytes& image, const std::string& tag) {
    return numberAt(image, entryOf(image, tag) + 4);
}

inline Bytes withWord(Bytes image, size_t at, uint32_t value) {
    put32(image, at, value);
    return image;
}
inline Bytes withText(Bytes image, size_t at, const std::string& text) {
    std::copy(text.begin(), text.end(), image.begin() + static_cast<long>(at));
    return image;
}

}  // namespace lumoxa_test
