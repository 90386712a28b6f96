// SPDX-License-Identifier: Apache-2.0
//
// Forms of tone curves, shapes of tables, and the list of tags.
#include <algorithm>
#include <iterator>
#include <set>

#include "gray/gray_state.h"
#include "inspect/curve_form.h"
#include "inspect/facts.h"
#include "inspect/lut_shape.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

constexpr size_t kMostTags = 1000;  // listed; real profiles have some dozen

struct CurveFact {
    std::vector<uint32_t> tags;  ///< those that hold the same bytes
    ByteView data;
};

std::vector<CurveFact> curvesOf(const ProfileFile& file) {
    std::vector<CurveFact> curves;
    for (const uint32_t tag : {fourcc("rTRC"), fourcc("gTRC"), fourcc("bTRC"), fourcc("kTRC")}) {
        const TagEntry* entry = file.find(tag);
        if (entry == nullptr) continue;
        const ByteView data = file.data(*entry);
        const bool same =
            !curves.empty() && std::equal(data.begin(), data.end(), curves.back().data.begin(),
                                          curves.back().data.end());
        if (!same) curves.push_back({{}, data});
        curves.back().tags.push_back(tag);
    }
    return curves;
}

void writeForm(JsonObject& out, const CurveForm& form) {
    static constexpr const char* kForms[] = {"identity", "gamma", "table", "parametric", nullptr};
    writeWord(out, "form", kForms[form.kind]);
    if (form.kind == CurveForm::kGamma) out.add("gamma", form.numbers.at(0));
    if (form.kind == CurveForm::kTable) out.add("entries", form.entries);
    if (form.kind != CurveForm::kParametric) return;
    out.add("function", form.function);
    out.object("parameters", [&](JsonObject& parameters) {
        for (size_t i = 0; i < form.numbers.size(); ++i)
            parameters.add(std::string(1, parameterName(i)), form.numbers[i]);
    });
}

void writeCurve(JsonObject& out, const CurveFact& curve) {
    out.array("tags", [&](JsonArray& tags) {
        for (const uint32_t tag : curve.tags)
            tags.add(signatureText(tag));
    });
    writeForm(out, curveForm(curve.data));
}

bool isLutTag(uint32_t signature) {
    constexpr uint32_t kFamily = 0xFFFFFF00;
    const uint32_t family = signature & kFamily;
    return family == (fourcc("A2B0") & kFamily) || family == (fourcc("B2A0") & kFamily) ||
           signature == fourcc("gamt");
}

void writeLut(JsonObject& out, uint32_t tag, const LutShape& shape) {
    out.add("tag", signatureText(tag));
    out.add("type", signatureText(shape.type));
    if (!shape.known) return;
    out.add("inputs", shape.inputs);
    out.add("outputs", shape.outputs);
    writeNumbers(out, "grid", shape.grid);
    out.add("bits", shape.precision);
    if (!shape.isAB()) {
        out.add("inputEntries", shape.inputEntries);
        out.add("outputEntries", shape.outputEntries);
        out.add("matrix", shape.matrixActs);
        return;
    }
    out.array("elements", [&](JsonArray& elements) {
        for (const LutElement& element : shape.elements) {
            if (element.at != 0) elements.add(element.name);
        }
    });
}

// A gray device of three channels, from the head of its tag (docs/gray.md).
void writeGrayDevice(JsonObject& report, const ProfileFile& file) {
    constexpr uint64_t kPatchesAt = 12;
    const TagEntry* entry = file.find(kGrayTag);
    const ByteView data = entry == nullptr ? ByteView() : file.data(*entry);
    if (file.space() != kSpaceGray || data.size() < kPatchesAt) {
        report.add("grayDevice", nullptr);
        return;
    }
    report.object("grayDevice", [&](JsonObject& out) {
        out.add("points", data.u16(8));
        out.add("steps", data.u8(10));
        out.add("layout", data.u8(11));
    });
}

}  // namespace

void writeShapes(JsonObject& report, const ProfileFile& file) {
    report.array("curves", [&](JsonArray& list) {
        for (const CurveFact& curve : curvesOf(file))
            list.object([&](JsonObject& out) { writeCurve(out, curve); });
    });
    report.array("luts", [&](JsonArray& list) {
        std::set<uint32_t> seen;  // of several tags of one signature, the first counts
        for (const TagEntry& entry : file.entries()) {
            if (!isLutTag(entry.signature) || !seen.insert(entry.signature).second) continue;
            list.object([&](JsonObject& out) {
                writeLut(out, entry.signature, lutShape(file.data(entry)));
            });
        }
    });
    writeGrayDevice(report, file);
}

void writeTags(JsonObject& report, const ProfileFile& file) {
    const size_t listed = std::min(file.entries().size(), kMostTags);
    report.array("tags", [&](JsonArray& list) {
        for (size_t i = 0; i < listed; ++i) {
            const TagEntry& entry = file.entries()[i];
            const uint32_t type = file.type(entry);
            list.object([&](JsonObject& out) {
                out.add("signature", signatureText(entry.signature));
                writeText(out, "type", type == 0 ? std::string() : signatureText(type));
                out.add("offset", entry.offset);
                out.add("size", entry.size);
            });
        }
    });
    report.add("tagsNotListed", file.entries().size() - listed);
}

}  // namespace lumoxa::inspection
