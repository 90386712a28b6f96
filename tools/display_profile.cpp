// SPDX-License-Identifier: Apache-2.0
#include "tools/display_profile.h"

#include "tools/filled_tag.h"
#include "tools/signatures.h"
#include "tools/text_tag.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kHeaderBytes = 128;
constexpr uint32_t kEntryBytes = 12;  // of the tag table

void putXyz(Bytes& tag, const FixedXyz& xyz) {
    for (const int32_t value : xyz)
        put32(tag, static_cast<uint32_t>(value));
}

Bytes xyzTag(const FixedXyz& xyz) {
    Bytes tag = startOfTag(fourCc("XYZ "));
    putXyz(tag, xyz);
    return tag;
}

Bytes matrixTag(const std::array<FixedXyz, 3>& rows) {
    Bytes tag = startOfTag(fourCc("sf32"));
    for (const FixedXyz& row : rows)
        putXyz(tag, row);
    return tag;
}

struct NewTag {
    std::vector<uint32_t> signatures;  // several names may share one body
    Bytes body;
};

Bytes header(uint32_t size, const icDateTimeNumber& created) {
    Bytes bytes;
    put32(bytes, size);
    put32(bytes, 0);  // no preferred colour engine
    put32(bytes, kDisplayVersion);
    put32(bytes, fourCc("mntr"));
    put32(bytes, kRgb);
    put32(bytes, kXyz);
    for (const uint32_t part : {created.year, created.month, created.day, created.hours,
                                created.minutes, created.seconds})
        put16(bytes, part);
    put32(bytes, fourCc("acsp"));
    bytes.insert(bytes.end(), 28, 0);  // platform .. rendering intent
    putXyz(bytes, kD50);
    bytes.resize(kHeaderBytes, 0);
    return bytes;
}

Bytes assemble(std::vector<NewTag> tags, const icDateTimeNumber& created) {
    uint32_t entries = 0;
    uint32_t end = kHeaderBytes + 4;
    for (const NewTag& tag : tags)
        entries += static_cast<uint32_t>(tag.signatures.size());
    end += kEntryBytes * entries;
    Bytes table;
    put32(table, entries);
    Bytes bodies;
    for (NewTag& tag : tags) {
        const auto offset = end + static_cast<uint32_t>(bodies.size());
        for (const uint32_t signature : tag.signatures) {
            put32(table, signature);
            put32(table, offset);
            put32(table, static_cast<uint32_t>(tag.body.size()));
        }
        tag.body.resize((tag.body.size() + 3) / 4 * 4, 0);  // tags start on 4-byte boundaries
        bodies.insert(bodies.end(), tag.body.begin(), tag.body.end());
    }
    Bytes profile = header(end + static_cast<uint32_t>(bodies.size()), created);
    profile.insert(profile.end(), table.begin(), table.end());
    profile.insert(profile.end(), bodies.begin(), bodies.end());
    return profile;
}

}  // namespace

std::vector<uint8_t> makeDisplayProfile(const DisplayProfile& display) {
    const DisplayMatrix matrix = displayMatrix(display.colorimetry);
    return assemble(
        {
            {{fourCc("desc")}, descriptionTag(display.description, kDisplayVersion)},
            {{fourCc("cprt")}, copyrightTag(display.copyright, kDisplayVersion)},
            {{fourCc("wtpt")}, xyzTag(kD50)},
            {{fourCc("chad")}, matrixTag(matrix.adaptation)},
            {{fourCc("rXYZ")}, xyzTag(matrix.colorants[0])},
            {{fourCc("gXYZ")}, xyzTag(matrix.colorants[1])},
            {{fourCc("bXYZ")}, xyzTag(matrix.colorants[2])},
            {{fourCc("rTRC"), fourCc("gTRC"), fourCc("bTRC")}, display.curve},
        },
        display.created);
}

}  // namespace lumoxa_tool
