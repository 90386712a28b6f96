// SPDX-License-Identifier: Apache-2.0
//
// How colours were measured, are viewed and coded: small tags in words.
#include <array>

#include "inspect/facts.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

/// The bytes of a tag of one type and length at least; nothing otherwise.
std::optional<ByteView> tagOf(const ProfileFile& file, uint32_t signature, uint32_t type,
                              uint64_t least) {
    const TagEntry* entry = file.find(signature);
    if (entry == nullptr) return std::nullopt;
    const ByteView data = file.data(*entry);
    if (data.u32(0) != type || data.size() < least) return std::nullopt;
    return data;
}

/// An object that `fill` writes where there is such a tag, else null.
template <class Fill>
void writeTag(JsonObject& report, const char* name, const std::optional<ByteView>& tag, Fill fill) {
    if (!tag) return report.add(name, nullptr);
    report.object(name, [&](JsonObject& out) { fill(out, *tag); });
}

void writeXyz(JsonObject& out, const char* name, ByteView tag, uint64_t at) {
    writeNumbers(out, name, std::array{tag.fixed(at), tag.fixed(at + 4), tag.fixed(at + 8)});
}

// ICC.1:2010, 9.2.47.
constexpr Word kTechnologies[] = {
    {fourcc("fscn"), "film scanner"},
    {fourcc("dcam"), "digital camera"},
    {fourcc("rscn"), "reflective scanner"},
    {fourcc("ijet"), "ink jet printer"},
    {fourcc("twax"), "thermal wax printer"},
    {fourcc("epho"), "electrophotographic printer"},
    {fourcc("esta"), "electrostatic printer"},
    {fourcc("dsub"), "dye sublimation printer"},
    {fourcc("rpho"), "photographic paper printer"},
    {fourcc("fprn"), "film writer"},
    {fourcc("vidm"), "video monitor"},
    {fourcc("vidc"), "video camera"},
    {fourcc("pjtv"), "projection television"},
    {fourcc("CRT "), "cathode ray tube display"},
    {fourcc("PMD "), "passive matrix display"},
    {fourcc("AMD "), "active matrix display"},
    {fourcc("KPCD"), "Photo CD"},
    {fourcc("imgs"), "photographic image setter"},
    {fourcc("grav"), "gravure"},
    {fourcc("offs"), "offset lithography"},
    {fourcc("silk"), "silkscreen"},
    {fourcc("flex"), "flexography"},
    {fourcc("mpfs"), "motion picture film scanner"},
    {fourcc("mpfr"), "motion picture film recorder"},
    {fourcc("dmpc"), "digital motion picture camera"},
    {fourcc("dcpj"), "digital cinema projector"},
};

// ICC.1:2010, 10.12.
constexpr Word kIlluminants[] = {{0, "unknown"}, {1, "D50"}, {2, "D65"}, {3, "D93"}, {4, "F2"},
                                 {5, "D55"},     {6, "A"},   {7, "E"},   {8, "F8"}};
constexpr Word kObservers[] = {
    {0, "unknown"}, {1, "CIE 1931 standard observer"}, {2, "CIE 1964 standard observer"}};
constexpr Word kGeometries[] = {{0, "unknown"}, {1, "0/45 or 45/0"}, {2, "0/d or d/0"}};

void writeMeasurement(JsonObject& out, ByteView tag) {
    constexpr double kOne = 65536.0;  // of u16Fixed16
    writeWord(out, "observer", wordFor(kObservers, tag.u32(8)));
    writeXyz(out, "backing", tag, 12);
    writeWord(out, "geometry", wordFor(kGeometries, tag.u32(24)));
    out.add("flare", tag.u32(28) / kOne);
    writeWord(out, "illuminant", wordFor(kIlluminants, tag.u32(32)));
}

void writeViewing(JsonObject& out, ByteView tag) {
    writeXyz(out, "illuminantXyz", tag, 8);
    writeXyz(out, "surroundXyz", tag, 20);
    writeWord(out, "illuminant", wordFor(kIlluminants, tag.u32(32)));
}

// ITU-T H.273, tables 2 to 4.
constexpr Word kPrimaries[] = {
    {1, "ITU-R BT.709"},
    {2, "unspecified"},
    {4, "ITU-R BT.470 System M"},
    {5, "ITU-R BT.601, 625 lines"},
    {6, "ITU-R BT.601, 525 lines"},
    {7, "SMPTE ST 240"},
    {8, "generic film"},
    {9, "ITU-R BT.2020"},
    {10, "CIE 1931 XYZ (SMPTE ST 428-1)"},
    {11, "DCI P3 (SMPTE RP 431-2)"},
    {12, "P3 with D65 (SMPTE EG 432-1)"},
    {22, "EBU Tech. 3213-E"},
};
constexpr Word kTransfers[] = {
    {1, "ITU-R BT.709"},
    {2, "unspecified"},
    {4, "gamma 2.2"},
    {5, "gamma 2.8"},
    {6, "ITU-R BT.601"},
    {7, "SMPTE ST 240"},
    {8, "linear"},
    {9, "logarithmic, 100 to 1"},
    {10, "logarithmic, 100 x sqrt(10) to 1"},
    {11, "IEC 61966-2-4"},
    {12, "ITU-R BT.1361 extended gamut"},
    {13, "IEC 61966-2-1 (sRGB)"},
    {14, "ITU-R BT.2020, 10 bits"},
    {15, "ITU-R BT.2020, 12 bits"},
    {16, "PQ (SMPTE ST 2084)"},
    {17, "SMPTE ST 428-1"},
    {18, "HLG (ARIB STD-B67)"},
};
constexpr Word kMatrices[] = {
    {0, "none (RGB)"},
    {1, "ITU-R BT.709"},
    {2, "unspecified"},
    {4, "US FCC 73.682"},
    {5, "ITU-R BT.601, 625 lines"},
    {6, "ITU-R BT.601, 525 lines"},
    {7, "SMPTE ST 240"},
    {8, "YCgCo"},
    {9, "ITU-R BT.2020, non-constant luminance"},
    {10, "ITU-R BT.2020, constant luminance"},
    {11, "SMPTE ST 2085"},
    {12, "from the primaries, non-constant luminance"},
    {13, "from the primaries, constant luminance"},
    {14, "ICtCp (ITU-R BT.2100)"},
};
constexpr Word kRanges[] = {{0, "narrow"}, {1, "full"}};

template <size_t Count>
void writeCode(JsonObject& out, const char* name, const Word (&words)[Count], uint32_t code) {
    out.object(name, [&](JsonObject& entry) {
        entry.add("code", code);
        writeWord(entry, "words", wordFor(words, code));
    });
}

void writeCicp(JsonObject& out, ByteView tag) {
    writeCode(out, "primaries", kPrimaries, tag.u8(8));
    writeCode(out, "transfer", kTransfers, tag.u8(9));
    writeCode(out, "matrix", kMatrices, tag.u8(10));
    writeCode(out, "range", kRanges, tag.u8(11));
}

// A private tag, widely used: curves for a display's video card.
void writeVideoCard(JsonObject& out, ByteView tag) {
    static constexpr Word kForms[] = {{0, "table"}, {1, "formula"}};
    writeWord(out, "form", wordFor(kForms, tag.u32(8)));
    if (tag.u32(8) != 0) return;
    out.add("channels", tag.u16(12));
    out.add("entries", tag.u16(14));
    out.add("bits", 8 * tag.u16(16));
}

}  // namespace

void writeConditions(JsonObject& report, const ProfileFile& file) {
    writeTag(report, "technology", tagOf(file, fourcc("tech"), fourcc("sig "), 12),
             [](JsonObject& out, ByteView tag) {
                 out.add("signature", signatureText(tag.u32(8)));
                 writeWord(out, "words", wordFor(kTechnologies, tag.u32(8)));
             });
    writeTag(report, "viewingConditions", tagOf(file, fourcc("view"), fourcc("view"), 36),
             writeViewing);
    writeTag(report, "measurement", tagOf(file, fourcc("meas"), fourcc("meas"), 36),
             writeMeasurement);
    writeTag(report, "cicp", tagOf(file, fourcc("cicp"), fourcc("cicp"), 12), writeCicp);
    writeTag(report, "videoCardCurves", tagOf(file, fourcc("vcgt"), fourcc("vcgt"), 12),
             writeVideoCard);
}

}  // namespace lumoxa::inspection
