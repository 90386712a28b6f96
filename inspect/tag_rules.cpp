// SPDX-License-Identifier: Apache-2.0
//
// What ICC.1 demands of a tag: its type, and the bytes that every type keeps zero.
#include <algorithm>
#include <string_view>

#include "inspect/icc_rules.h"
#include "inspect/tag_content_rules.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
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
    {fourcc("A2B0"), fourcc("A2B2"), "mft1mft2", "mft1mft2mAB "},
    {fourcc("B2A0"), fourcc("B2A2"), "mft1mft2", "mft1mft2mBA "},
    {fourcc("gamt"), fourcc("gamt"), "mft1mft2", "mft1mft2mBA "},
    {fourcc("pre0"), fourcc("pre2"), "mft1mft2", "mft1mft2mAB mBA "},
    {fourcc("rTRC"), fourcc("rTRC"), "curv", "curvpara"},
    {fourcc("gTRC"), fourcc("gTRC"), "curv", "curvpara"},
    {fourcc("bTRC"), fourcc("bTRC"), "curv", "curvpara"},
    {fourcc("kTRC"), fourcc("kTRC"), "curv", "curvpara"},
    {fourcc("rXYZ"), fourcc("rXYZ"), "XYZ ", "XYZ "},
    {fourcc("gXYZ"), fourcc("gXYZ"), "XYZ ", "XYZ "},
    {fourcc("bXYZ"), fourcc("bXYZ"), "XYZ ", "XYZ "},
    {fourcc("wtpt"), fourcc("wtpt"), "XYZ ", "XYZ "},
    {fourcc("bkpt"), fourcc("bkpt"), "XYZ ", "XYZ "},
    {fourcc("lumi"), fourcc("lumi"), "XYZ ", "XYZ "},
    {fourcc("desc"), fourcc("desc"), "desc", "mluc"},
    {fourcc("dmnd"), fourcc("dmnd"), "desc", "mluc"},
    {fourcc("dmdd"), fourcc("dmdd"), "desc", "mluc"},
    {fourcc("vued"), fourcc("vued"), "desc", "mluc"},
    {fourcc("cprt"), fourcc("cprt"), "text", "mluc"},
    {fourcc("targ"), fourcc("targ"), "text", "text"},
    {fourcc("chad"), fourcc("chad"), "sf32", "sf32"},
    {fourcc("chrm"), fourcc("chrm"), "chrm", "chrm"},
    {fourcc("tech"), fourcc("tech"), "sig ", "sig "},
    {fourcc("meas"), fourcc("meas"), "meas", "meas"},
    {fourcc("view"), fourcc("view"), "view", "view"},
    {fourcc("calt"), fourcc("calt"), "dtim", "dtim"},
    {fourcc("pseq"), fourcc("pseq"), "pseq", "pseq"},
    {fourcc("ncl2"), fourcc("ncl2"), "ncl2", "ncl2"},
    {fourcc("clrt"), fourcc("clrt"), "", "clrt"},
    {fourcc("clot"), fourcc("clot"), "", "clrt"},
    {fourcc("clro"), fourcc("clro"), "", "clro"},
    {fourcc("D2B0"), fourcc("D2B3"), "", "mpet"},
    {fourcc("B2D0"), fourcc("B2D3"), "", "mpet"},
};

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
    if (data.holds(0, kTypeHead) && data.u32(4) != 0 && isKnownType(data.u32(0))) {
        list.addMinor(name, uint64_t{entry.offset} + 4, "bytes 4 to 7 of a tag are zero",
                      clauseOfType(data.u32(0)), "they are not");
    }
}

void checkType(const ProfileFile& file, const TagEntry& entry, std::string_view types,
               ViolationList& list) {
    if (!file.data(entry).holds(0, 4) || lists(types, file.type(entry))) return;
    list.add(signatureText(entry.signature), entry.offset,
             "this tag's type is " + alternatives(types), kTagClause,
             "it is " + quoted(file.type(entry)));
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

}  // namespace lumoxa::inspection
