// SPDX-License-Identifier: Apache-2.0
//
// What ICC.1 demands of a tag: its type, and the bytes that every type keeps zero.
#include <algorithm>
#include <string_view>

#include "tools/icc_rules.h"
#include "tools/signatures.h"
#include "tools/tag_content_rules.h"

namespace lumoxa_tool {
namespace {

constexpr size_t kSignatureLength = 4;
constexpr uint64_t kTypeHead = 8;  // type signature and reserved bytes

// Types that a tag may have, as signatures one after the other; none where a version doesn't know
// the tag.
struct TagTypes {
    uint32_t first, last;  // signatures, the same but for the last character
    std::string_view version2, version4;
};

constexpr TagTypes kTagTypes[] = {
    {fourCc("A2B0"), fourCc("A2B2"), "mft1mft2", "mft1mft2mAB "},
    {fourCc("B2A0"), fourCc("B2A2"), "mft1mft2", "mft1mft2mBA "},
    {fourCc("gamt"), fourCc("gamt"), "mft1mft2", "mft1mft2mBA "},
    {fourCc("pre0"), fourCc("pre2"), "mft1mft2", "mft1mft2mAB mBA "},
    {fourCc("rTRC"), fourCc("rTRC"), "curv", "curvpara"},
    {fourCc("gTRC"), fourCc("gTRC"), "curv", "curvpara"},
    {fourCc("bTRC"), fourCc("bTRC"), "curv", "curvpara"},
    {fourCc("kTRC"), fourCc("kTRC"), "curv", "curvpara"},
    {fourCc("rXYZ"), fourCc("rXYZ"), "XYZ ", "XYZ "},
    {fourCc("gXYZ"), fourCc("gXYZ"), "XYZ ", "XYZ "},
    {fourCc("bXYZ"), fourCc("bXYZ"), "XYZ ", "XYZ "},
    {fourCc("wtpt"), fourCc("wtpt"), "XYZ ", "XYZ "},
    {fourCc("bkpt"), fourCc("bkpt"), "XYZ ", "XYZ "},
    {fourCc("lumi"), fourCc("lumi"), "XYZ ", "XYZ "},
    {fourCc("desc"), fourCc("desc"), "desc", "mluc"},
    {fourCc("dmnd"), fourCc("dmnd"), "desc", "mluc"},
    {fourCc("dmdd"), fourCc("dmdd"), "desc", "mluc"},
    {fourCc("vued"), fourCc("vued"), "desc", "mluc"},
    {fourCc("cprt"), fourCc("cprt"), "text", "mluc"},
    {fourCc("targ"), fourCc("targ"), "text", "text"},
    {fourCc("chad"), fourCc("chad"), "sf32", "sf32"},
    {fourCc("chrm"), fourCc("chrm"), "chrm", "chrm"},
    {fourCc("tech"), fourCc("tech"), "sig ", "sig "},
    {fourCc("meas"), fourCc("meas"), "meas", "meas"},
    {fourCc("view"), fourCc("view"), "view", "view"},
    {fourCc("calt"), fourCc("calt"), "dtim", "dtim"},
    {fourCc("pseq"), fourCc("pseq"), "pseq", "pseq"},
    {fourCc("ncl2"), fourCc("ncl2"), "ncl2", "ncl2"},
    {fourCc("clrt"), fourCc("clrt"), "", "clrt"},
    {fourCc("clot"), fourCc("clot"), "", "clrt"},
    {fourCc("clro"), fourCc("clro"), "", "clro"},
    {fourCc("D2B0"), fourCc("D2B3"), "", "mpet"},
    {fourCc("B2D0"), fourCc("B2D3"), "", "mpet"},
};

// Types of ICC.1 in both versions; others may use their bytes as they like.
constexpr std::string_view kTypes =
    "bfd chrmclroclrtcrdicurvdatadescdevsdtimmAB mBA measmft1mft2mlucmpetncl2ncolparapseqpsidrcs2"
    "scrnsf32sig textuf32ui08ui16ui32ui64viewXYZ ";

bool lists(std::string_view types, uint32_t type) {
    for (size_t at = 0; at < types.size(); at += kSignatureLength) {
        if (ByteView(reinterpret_cast<const uint8_t*>(types.data()), types.size()).u32(at) == type)
            return true;
    }
    return false;
}

std::string alternatives(std::string_view types) {
    std::string text;
    for (size_t at = 0; at < types.size(); at += kSignatureLength) {
        if (at > 0) text += at + kSignatureLength == types.size() ? " or " : ", ";
        text.append("'").append(types.substr(at, kSignatureLength)).append("'");
    }
    return text;
}

// What takes as long for a tag of any length, since there may be any number of them.
void checkHead(const ProfileFile& file, const TagEntry& entry, ViolationList& list) {
    const ByteView data = file.data(entry);
    const std::string name = signatureText(entry.signature);
    if (entry.size < kTypeHead) {
        list.add(name, entry.at + 8, "a tag has a type and four reserved bytes", kTypeClause,
                 "this one has " + std::to_string(entry.size) + " bytes");
    }
    if (data.holds(0, kTypeHead) && data.u32(4) != 0 && lists(kTypes, data.u32(0))) {
        list.add(name, uint64_t{entry.offset} + 4, "bytes 4 to 7 of a tag are zero", kTypeClause,
                 "they are not");
    }
}

void checkType(const ProfileFile& file, const TagEntry& entry, std::string_view types,
               ViolationList& list) {
    if (!file.data(entry).holds(0, 4) || lists(types, file.type(entry))) return;
    list.add(signatureText(entry.signature), entry.offset,
             "this tag's type is " + alternatives(types), kTagClause,
             "it is " + quotedSignature(file.type(entry)));
}

}  // namespace

void checkTags(const ProfileFile& file, ViolationList& list) {
    for (const TagEntry& entry : file.entries())
        checkHead(file, entry, list);
    const uint32_t major = file.majorVersion();
    for (const TagTypes& known : kTagTypes) {
        const std::string_view types = major == 2   ? known.version2
                                       : major == 4 ? known.version4
                                                    : std::string_view();
        for (uint32_t signature = known.first; signature <= known.last; ++signature) {
            const TagEntry* const entry = file.find(signature);
            if (entry == nullptr) continue;
            if (!types.empty()) checkType(file, *entry, types, list);
            checkTagContent(file, *entry, list);
        }
    }
}

}  // namespace lumoxa_tool
