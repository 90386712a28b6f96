// SPDX-License-Identifier: Apache-2.0
//
// What no other rule names, but keeps the engine from reading a tag or from making a transform.
#include "convert/tag_stages.h"
#include "inspect/icc_rules.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

using engine::TagReader;

using Read = void (*)(const TagReader& tag, const icHeader& header);

void readLut(const TagReader& tag, uint32_t from, uint32_t to) {
    engine::lutStages(tag, from, to, "");
}
void readAToB(const TagReader& tag, const icHeader& header) {
    readLut(tag, header.colorSpace, header.pcs);
}
void readBToA(const TagReader& tag, const icHeader& header) {
    readLut(tag, header.pcs, header.colorSpace);
}
void readGamut(const TagReader& tag, const icHeader& header) {
    readLut(tag, header.pcs, kSpaceGray);  // one channel: 0 for colours that the device has
}
void readPreview(const TagReader& tag, const icHeader& header) {
    readLut(tag, header.pcs, header.pcs);
}
void readTone(const TagReader& tag, const icHeader&) {
    engine::readCurve(tag);
}
void readPoint(const TagReader& tag, const icHeader&) {
    if (tag.type() != kTypeXyz) {
        tag.fail(icErrTagType, 0, "is of type " + quoted(tag.type()) + ", not 'XYZ '");
    }
    engine::readXyz(tag);
}

struct ReadTags {
    uint32_t first, last;  // signatures, the same but for the last character
    Read read;
};

constexpr ReadTags kReadTags[] = {
    {fourcc("A2B0"), fourcc("A2B2"), readAToB},  {fourcc("B2A0"), fourcc("B2A2"), readBToA},
    {fourcc("gamt"), fourcc("gamt"), readGamut}, {fourcc("pre0"), fourcc("pre2"), readPreview},
    {fourcc("rTRC"), fourcc("rTRC"), readTone},  {fourcc("gTRC"), fourcc("gTRC"), readTone},
    {fourcc("bTRC"), fourcc("bTRC"), readTone},  {fourcc("kTRC"), fourcc("kTRC"), readTone},
    {fourcc("rXYZ"), fourcc("rXYZ"), readPoint}, {fourcc("gXYZ"), fourcc("gXYZ"), readPoint},
    {fourcc("bXYZ"), fourcc("bXYZ"), readPoint}, {fourcc("wtpt"), fourcc("wtpt"), readPoint},
};

void addFault(const Subject& subject, const Fault& fault, ViolationList& list) {
    const TagEntry* const entry = subject.file().find(fault.tag);
    const std::string tag = fault.tag == 0 ? std::string() : signatureText(fault.tag);
    if (list.explains(tag)) return;
    const int64_t offset = fault.offset >= 0  ? fault.offset
                           : entry != nullptr ? int64_t{entry->offset}
                                              : int64_t{kTagCountAt};
    const Clause clause = entry != nullptr ? clauseOfType(subject.file().type(*entry))
                          : fault.tag != 0 ? kTagTableClause
                                           : kHeaderClause;
    list.add(tag, static_cast<uint64_t>(offset), fault.sentence, clause);
}

}  // namespace

void checkEngine(const Subject& subject, const std::vector<TransformFact>& transforms,
                 ViolationList& list) {
    if (subject.view() == nullptr) return;
    const icHeader& header = subject.view()->header();
    for (const ReadTags& tags : kReadTags) {
        for (uint32_t signature = tags.first; signature <= tags.last; ++signature) {
            const std::optional<TagReader> tag = subject.view()->find(signature);
            if (!tag) continue;
            const auto fault = subject.faultIn([&] { tags.read(*tag, header); });
            if (fault) addFault(subject, *fault, list);
        }
    }
    for (const TransformFact& transform : transforms) {
        if (transform.offered && transform.fault) addFault(subject, *transform.fault, list);
    }
    if (subject.fault()) addFault(subject, *subject.fault(), list);
}

}  // namespace lumoxa::inspection
