// SPDX-License-Identifier: Apache-2.0
#include "bench/conversions.h"

#include "tests/support/gray_profiles.h"
#include "tests/support/profile_bytes.h"
#include "tests/support/real_profiles.h"

namespace lumoxa_bench {
namespace {

using namespace lumoxa_test;
using Image = std::shared_ptr<const Bytes>;

Image shared(Bytes bytes) {
    return std::make_shared<const Bytes>(std::move(bytes));
}

std::string deviceSpace(uint32_t channels) {
    static const char* const names[] = {"GRAY", "2CLR", "RGB ", "CMYK", "5CLR", "6CLR"};
    return names[channels - 1];
}

// The grids are those that profile makers use for so many inputs.
LutContent lutOf(uint32_t inputs) {
    static const uint32_t grids[] = {255, 65, 33, 9, 6, 5};
    LutContent content;
    content.inputs = inputs;
    content.grid = grids[inputs - 1];
    return content;
}

Image printerWith(const std::string& tag, uint32_t inputs, Bytes data) {
    return shared(ProfileBytes("prtr", deviceSpace(inputs), "Lab ")
                      .addTag("wtpt", xyzTag(0.9642, 1.0, 0.8249))
                      .addTag(tag, std::move(data))
                      .image());
}

Bytes gammaTable() {
    std::vector<uint16_t> entries(256);
    for (size_t i = 0; i < entries.size(); ++i)
        entries[i] = static_cast<uint16_t>(i * i);
    return curveTag(entries);
}

LutABContent fullLutAB() {
    LutABContent content;
    content.aCurves.assign(3, gammaTable());
    content.mCurves.assign(3, parametricTag(0, {1.8}));
    content.bCurves.assign(3, gammaTable());
    content.matrix = {0.9, 0.05, 0.05, 0.05, 0.9, 0.05, 0.05, 0.05, 0.9, 0, 0, 0};
    content.grid = {33, 33, 33};
    return content;
}

void addSyntheticLuts(std::vector<Conversion>& list) {
    for (uint32_t inputs : {1u, 2u, 5u, 6u}) {
        const std::string inputName = std::to_string(inputs) + "_inputs";
        list.push_back({"mft1_plain_" + inputName,
                        {{printerWith("A2B0", inputs, lut8Tag(lutOf(inputs))), icDeviceToPcs}}});
        list.push_back({"mft2_plain_" + inputName,
                        {{printerWith("A2B0", inputs, lut16Tag(lutOf(inputs))), icDeviceToPcs}}});
    }
    list.push_back({"mft1_penta", {{printerWith("A2B0", 4, lut8Tag(lutOf(4))), icDeviceToPcs}}});
    list.push_back(
        {"mAB_tetra", {{printerWith("A2B0", 3, lutAToBTag(fullLutAB())), icDeviceToPcs}}});
    list.push_back(
        {"mBA_tetra", {{printerWith("B2A0", 3, lutBToATag(fullLutAB())), icPcsToDevice}}});
}

// Three-channel gray out of patches: what building costs is the search for the companions.
void addPatchGray(std::vector<Conversion>& list) {
    const Image gray = shared(grayProfile().image());
    list.push_back({"KtoL", {{gray, icDeviceToPcs}}});
    list.push_back({"LtoK", {{gray, icPcsToDevice}}});
}

}  // namespace

Bytes realProfile(const std::string& pathEnd) {
    return lumoxa_test::realProfile(pathEnd);
}

std::vector<Conversion> makeConversions() {
    const Image srgb = shared(realProfile("ghostscript/srgb.icc"));
    const Image adobe = shared(realProfile("colord/AdobeRGB1998.icc"));
    const Image cmyk = shared(realProfile("ghostscript/default_cmyk.icc"));
    const Image gray = shared(realProfile("ghostscript/default_gray.icc"));
    const Image lab = shared(realProfile("icc/ITULab.icc"));
    std::vector<Conversion> list = {
        {"TrcM", {{srgb, icDeviceToPcs}}},       {"MatT", {{srgb, icPcsToDevice}}},
        {"TrcM_gray", {{gray, icDeviceToPcs}}},  {"MatT_gray", {{gray, icPcsToDevice}}},
        {"mft1_tetra", {{cmyk, icPcsToDevice}}}, {"mft2_tetra", {{lab, icDeviceToPcs}}},
        {"mft2_penta", {{cmyk, icDeviceToPcs}}},
    };
    addSyntheticLuts(list);
    addPatchGray(list);
    list.push_back({"sRGB_to_AdobeRGB", {{srgb, icDeviceToPcs}, {adobe, icPcsToDevice}}});
    list.push_back({"sRGB_to_CMYK", {{srgb, icDeviceToPcs}, {cmyk, icPcsToDevice}}});
    list.push_back({"CMYK_to_sRGB", {{cmyk, icDeviceToPcs}, {srgb, icPcsToDevice}}});
    return list;
}

Xform makeXform(const Conversion& conversion) {
    std::vector<Xform> stages;
    std::vector<icXform_t> chain;
    for (const Link& link : conversion.links) {
        stages.push_back(getXform(loadProfile(*link.profile), link.direction));
        chain.push_back(stages.back().get());
    }
    return stages.size() == 1 ? std::move(stages.front()) : combine(chain);
}

}  // namespace lumoxa_bench
