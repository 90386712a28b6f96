// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <optional>

#include "inspect/lut_shape.h"
#include "inspect/tag_content_rules.h"

namespace lumoxa::inspection {
namespace {

// Spaces that a LUT tag leads from and to, as the header has them.
struct LutEnds {
    uint32_t from;
    int inputs, outputs;
};

std::optional<LutEnds> lutEnds(const ProfileFile& file, uint32_t signature) {
    constexpr uint32_t kFamily = 0xFFFFFF00;
    const int device = channelsOf(file.space());
    const int pcs = channelsOf(file.pcs());
    if (file.deviceClass() == fourcc("nmcl") || device == 0 || pcs == 0) return std::nullopt;
    if (signature == fourcc("gamt")) return LutEnds{file.pcs(), pcs, 1};
    switch (signature & kFamily) {
        case fourcc("A2B0") & kFamily:
            return LutEnds{file.space(), device, pcs};
        case fourcc("B2A0") & kFamily:
            return LutEnds{file.pcs(), pcs, device};
        case fourcc("pre0") & kFamily:
            return LutEnds{file.pcs(), pcs, pcs};
        default:
            return std::nullopt;
    }
}

void checkTables(const Examined& tag, const LutShape& shape, uint32_t from) {
    constexpr uint32_t kMostEntries = 4096;
    if (shape.type == kTypeLut16) {
        const auto sound = [](uint32_t entries) { return entries >= 2 && entries <= kMostEntries; };
        const std::string rule = "a table of this type has 2 to 4096 entries";
        tag.addUnless(sound(shape.inputEntries), 48, rule,
                      "it has " + std::to_string(shape.inputEntries));
        tag.addUnless(sound(shape.outputEntries), 50, rule,
                      "it has " + std::to_string(shape.outputEntries));
    }
    tag.addUnless(!shape.matrixActs || from == kSpaceXyz, 12,
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
    const bool hasClut = !shape.grid.empty();
    tag.addUnless(
        hasClut || shape.inputs == shape.outputs, 24,
        "a tag without a CLUT has as many inputs as outputs",
        "it has " + std::to_string(shape.inputs) + " and " + std::to_string(shape.outputs));
    const bool hasB = std::any_of(
        shape.elements.begin(), shape.elements.end(),
        [](const LutElement& element) { return element.field == 12 && element.at != 0; });
    tag.addUnless(hasB, 12, "the tag has B curves", "it has none");
}

void checkGrid(const Examined& tag, const LutShape& shape) {
    const auto least = std::min_element(shape.grid.begin(), shape.grid.end());
    if (least == shape.grid.end() || *least >= 2) return;
    const uint64_t at = shape.isAB() ? tag.data.u32(24) : 10;
    tag.add(at, "a grid has at least 2 points along each input",
            "it has " + std::to_string(*least));
}

}  // namespace

void checkLut(const Examined& tag) {
    const LutShape shape = lutShape(tag.data);
    checkGrid(tag, shape);
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

}  // namespace lumoxa::inspection
