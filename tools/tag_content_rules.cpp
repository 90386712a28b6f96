// SPDX-License-Identifier: Apache-2.0
#include "tools/tag_content_rules.h"

#include <algorithm>
#include <optional>

#include "tools/curve_form.h"
#include "tools/lut_shape.h"
#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

// One tag under examination; positions are within the tag.
struct Examined {
    const ProfileFile& file;
    const TagEntry& entry;
    ByteView data;
    ViolationList& list;

    uint32_t type() const { return data.u32(0); }
    void add(uint64_t at, const std::string& rule, const std::string& found) const {
        list.add(signatureText(entry.signature), entry.offset + at, rule, kTypeClause, found);
    }
    void addUnless(bool kept, uint64_t at, const std::string& rule,
                   const std::string& found) const {
        if (!kept) add(at, rule, found);
    }
};

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
        case kXyz:
            return 20;
        case fourCc("sig "):
            return 12;
        case fourCc("desc"):
            return descriptionBytes(tag);
        case fourCc("mluc"):
            return localizedBytes(tag);
        case fourCc("curv"):
        case fourCc("para"):
            return curveForm(tag).bytes;
        case kLut8:
        case kLut16:
        case kLutAToB:
        case kLutBToA:
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
    {kLut8, 11, 1}, {kLut16, 11, 1}, {kLutAToB, 10, 2}, {kLutBToA, 10, 2}, {fourCc("para"), 10, 2},
};

void checkZeroBytes(const Examined& tag) {
    for (const ZeroBytes& zero : kZeroBytes) {
        if (zero.type != tag.type()) continue;
        for (uint64_t at = zero.at; at < zero.at + zero.count; ++at) {
            tag.addUnless(tag.data.u8(at) == 0, at,
                          "byte " + std::to_string(at) + " of the type is zero",
                          "it is " + std::to_string(tag.data.u8(at)));
        }
    }
}

void checkAscii(const Examined& tag) {
    const uint64_t start = tag.type() == fourCc("text") ? 8 : 12;
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

// Spaces that a LUT tag leads from and to, as the header has them.
struct LutEnds {
    uint32_t from;
    int inputs, outputs;
};

std::optional<LutEnds> lutEnds(const ProfileFile& file, uint32_t signature) {
    constexpr uint32_t kFamily = 0xFFFFFF00;
    const int device = channelsOfSpace(file.space());
    const int pcs = channelsOfSpace(file.pcs());
    if (file.deviceClass() == fourCc("nmcl") || device == 0 || pcs == 0) return std::nullopt;
    if (signature == fourCc("gamt")) return LutEnds{file.pcs(), pcs, 1};
    switch (signature & kFamily) {
        case fourCc("A2B0") & kFamily:
            return LutEnds{file.space(), device, pcs};
        case fourCc("B2A0") & kFamily:
            return LutEnds{file.pcs(), pcs, device};
        case fourCc("pre0") & kFamily:
            return LutEnds{file.pcs(), pcs, pcs};
        default:
            return std::nullopt;
    }
}

void checkTables(const Examined& tag, const LutShape& shape, uint32_t from) {
    constexpr uint32_t kMostEntries = 4096;
    if (shape.type == kLut16) {
        const auto sound = [](uint32_t entries) { return entries >= 2 && entries <= kMostEntries; };
        const std::string rule = "a table of this type has 2 to 4096 entries";
        tag.addUnless(sound(shape.inputEntries), 48, rule,
                      "it has " + std::to_string(shape.inputEntries));
        tag.addUnless(sound(shape.outputEntries), 50, rule,
                      "it has " + std::to_string(shape.outputEntries));
    }
    tag.addUnless(!shape.matrixActs || from == kXyz, 12,
                  "the matrix is the identity where the input isn't 'XYZ '", "it is none");
}

void checkElements(const Examined& tag, const LutShape& shape) {
    for (const LutElement& element : shape.elements) {
        tag.addUnless(
            element.at % 4 == 0, element.field, "elements of the tag start at a multiple of four",
            std::string("the ") + element.name + " start at byte " + std::to_string(element.at));
        if (element.field != 24 || element.at == 0) continue;
        tag.addUnless(shape.precision == 8 || shape.precision == 16, element.at + 16,
                      "a CLUT value has 1 or 2 bytes",
                      "the field is " + std::to_string(shape.precision / 8));
        for (uint64_t at = element.at + 17; at < element.at + 20; ++at) {
            tag.addUnless(tag.data.u8(at) == 0, at, "bytes 17 to 19 of a CLUT are zero",
                          "this one is " + std::to_string(tag.data.u8(at)));
        }
    }
    const bool hasB = std::any_of(
        shape.elements.begin(), shape.elements.end(),
        [](const LutElement& element) { return element.field == 12 && element.at != 0; });
    tag.addUnless(hasB, 12, "the tag has B curves", "it has none");
}

void checkLut(const Examined& tag) {
    const LutShape shape = lutShape(tag.data);
    const auto ends = lutEnds(tag.file, tag.entry.signature);
    if (ends) {
        const auto inputs = static_cast<uint32_t>(ends->inputs);
        const auto outputs = static_cast<uint32_t>(ends->outputs);
        tag.addUnless(
            shape.inputs == inputs && shape.outputs == outputs, 8,
            "channels are as many as the header's spaces have: " + std::to_string(inputs) + " to " +
                std::to_string(outputs),
            "they are " + std::to_string(shape.inputs) + " to " + std::to_string(shape.outputs));
    }
    if (shape.isAB()) {
        checkElements(tag, shape);
    } else if (ends) {
        checkTables(tag, shape, ends->from);
    }
}

struct TypeCheck {
    uint32_t type;
    void (*check)(const Examined& tag);
};

constexpr TypeCheck kTypeChecks[] = {
    {fourCc("text"), checkAscii},
    {fourCc("desc"), checkAscii},
    {fourCc("mluc"), checkLocalized},
    {fourCc("para"), checkParametric},
    {kLut8, checkLut},
    {kLut16, checkLut},
    {kLutAToB, checkLut},
    {kLutBToA, checkLut},
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

}  // namespace lumoxa_tool
