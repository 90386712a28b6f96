// SPDX-License-Identifier: Apache-2.0
#include "inspect/tag_content_rules.h"

#include <algorithm>

#include "inspect/curve_form.h"
#include "inspect/lut_shape.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

uint64_t localizedBytes(ByteView tag) {
    constexpr uint64_t kFirstRecord = 16, kRecordBytes = 12;
    return kFirstRecord + kRecordBytes * tag.u32(8);
}

// ASCII, language code, Unicode, and a Macintosh text of fixed length.
uint64_t descriptionBytes(ByteView tag) {
    constexpr uint64_t kAsciiAt = 12, kScriptBytes = 2 + 1 + 67;
    const uint64_t unicodeAt = kAsciiAt + tag.u32(8) + 8;
    return unicodeAt + 2 * uint64_t{tag.u32(unicodeAt - 4)} + kScriptBytes;
}

// What a tag of its type takes at least.
uint64_t bytesTaken(ByteView tag) {
    switch (tag.u32(0)) {
        case kTypeXyz:
            return 20;
        case fourcc("sig "):
            return 12;
        case kTypeDescription:
            return descriptionBytes(tag);
        case kTypeMultiLocalized:
            return localizedBytes(tag);
        case kTypeCurve:
        case kTypeParametric:
            return curveForm(tag).bytes;
        case kTypeLut8:
        case kTypeLut16:
        case kTypeLutAToB:
        case kTypeLutBToA:
            return lutShape(tag).bytes;
        default:
            return 0;
    }
}

// Bytes within types that are kept zero.
struct ZeroBytes {
    uint32_t type;
    uint64_t at;
    uint64_t count;
};

constexpr ZeroBytes kZeroBytes[] = {
    {kTypeLut8, 11, 1},    {kTypeLut16, 11, 1},      {kTypeLutAToB, 10, 2},
    {kTypeLutBToA, 10, 2}, {kTypeParametric, 10, 2},
};

void checkZeroBytes(const Examined& tag) {
    for (const ZeroBytes& zero : kZeroBytes) {
        if (zero.type != tag.type()) continue;
        for (uint64_t at = zero.at; at < zero.at + zero.count; ++at) {
            if (tag.data.u8(at) == 0) continue;
            tag.addMinor(at, "byte " + std::to_string(at) + " of the type is zero",
                         "it is " + std::to_string(tag.data.u8(at)));
        }
    }
}

void checkAscii(const Examined& tag) {
    const uint64_t start = tag.type() == kTypeText ? 8 : 12;
    const uint64_t count = start == 8 ? tag.data.size() : tag.data.u32(8);
    const ByteView text = tag.data.part(start, count);
    const auto* const odd =
        std::find_if(text.begin(), text.end(), [](uint8_t character) { return character > 0x7F; });
    if (odd == text.end()) return;
    tag.add(start + static_cast<uint64_t>(odd - text.begin()), "the text is 7-bit ASCII",
            "this byte is " + std::to_string(*odd));
}

void checkLocalized(const Examined& tag) {
    constexpr uint64_t kFirstRecord = 16, kRecordBytes = 12, kMostRecords = 1000;
    tag.addUnless(tag.data.u32(12) == kRecordBytes, 12, "a record takes 12 bytes",
                  "the size field is " + std::to_string(tag.data.u32(12)));
    const uint64_t count = std::min<uint64_t>(tag.data.u32(8), kMostRecords);
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t at = kFirstRecord + i * kRecordBytes;
        if (!tag.data.holds(at, kRecordBytes)) return;
        const uint64_t end = uint64_t{tag.data.u32(at + 4)} + tag.data.u32(at + 8);
        tag.addUnless(
            end <= tag.data.size(), at + 4, "a text ends within its tag",
            "it ends at byte " + std::to_string(end) + " of " + std::to_string(tag.data.size()));
    }
}

void checkParametric(const Examined& tag) {
    constexpr uint32_t kLastFunction = 4;
    tag.addUnless(tag.data.u16(8) <= kLastFunction, 8, "the function type is 0 to 4",
                  "it is " + std::to_string(tag.data.u16(8)));
}

struct TypeCheck {
    uint32_t type;
    void (*check)(const Examined& tag);
};

constexpr TypeCheck kTypeChecks[] = {
    {kTypeText, checkAscii},
    {kTypeDescription, checkAscii},
    {kTypeMultiLocalized, checkLocalized},
    {kTypeParametric, checkParametric},
    {kTypeLut8, checkLut},
    {kTypeLut16, checkLut},
    {kTypeLutAToB, checkLut},
    {kTypeLutBToA, checkLut},
};

}  // namespace

void checkTagContent(const ProfileFile& file, const TagEntry& entry, ViolationList& list) {
    const Examined tag = {file, entry, file.data(entry), list};
    // Of a tag that the file cuts off, no more can be said than that.
    if (entry.end() > file.bytes().size() || tag.data.size() < 8) return;
    const uint64_t taken = bytesTaken(tag.data);
    if (taken > tag.data.size()) {
        tag.add(
            0, "a tag holds what its type and counts take",
            std::to_string(taken) + " bytes are more than its " + std::to_string(tag.data.size()));
        return;
    }
    checkZeroBytes(tag);
    for (const TypeCheck& entryCheck : kTypeChecks) {
        if (entryCheck.type == tag.type()) entryCheck.check(tag);
    }
}

}  // namespace lumoxa::inspection
