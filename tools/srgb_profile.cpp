// SPDX-License-Identifier: Apache-2.0
//
// The profile is computed from the standard's own figures: chromaticities of BT.709 primaries and
// D65, adapted to the D50 of the connection space with the linear Bradford transform (ICC.1, annex
// E), and the two-part curve of IEC 61966-2-1.
#include "tools/srgb_profile.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "tools/sampled_curves.h"
#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;  // rows
using Bytes = std::vector<uint8_t>;

// D50 of the connection space in s15Fixed16, as headers carry it.
constexpr std::array<int32_t, 3> kD50 = {63190, 65536, 54061};

constexpr Matrix kBradford = {
    {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};

Vector multiply(const Matrix& m, const Vector& v) {
    Vector result;
    for (size_t r = 0; r < 3; ++r)
        result[r] = m[r][0] * v[0] + m[r][1] * v[1] + m[r][2] * v[2];
    return result;
}

// Cofactors over the determinant; neither matrix used here is near singular.
Matrix inverse(const Matrix& m) {
    const auto cofactor = [&](size_t r, size_t c) {
        const size_t r1 = (r + 1) % 3, r2 = (r + 2) % 3, c1 = (c + 1) % 3, c2 = (c + 2) % 3;
        return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
    };
    const double determinant =
        m[0][0] * cofactor(0, 0) + m[0][1] * cofactor(0, 1) + m[0][2] * cofactor(0, 2);
    Matrix result;
    for (size_t r = 0; r < 3; ++r) {
        for (size_t c = 0; c < 3; ++c)
            result[r][c] = cofactor(c, r) / determinant;
    }
    return result;
}

Vector fromChromaticity(double x, double y) {
    return {x / y, 1.0, (1.0 - x - y) / y};
}

Vector adaptToD50(const Vector& xyz, const Vector& white) {
    Vector d50;
    for (size_t i = 0; i < 3; ++i)
        d50[i] = kD50[i] / 65536.0;
    Vector cone = multiply(kBradford, xyz);
    const Vector from = multiply(kBradford, white);
    const Vector to = multiply(kBradford, d50);
    for (size_t i = 0; i < 3; ++i)
        cone[i] *= to[i] / from[i];
    return multiply(inverse(kBradford), cone);
}

// Red, green and blue colorants in s15Fixed16. Green takes what rounding left over, so that the
// three add up to D50 and white stays exactly white.
std::array<std::array<int32_t, 3>, 3> colorants() {
    const Vector white = fromChromaticity(0.3127, 0.3290);
    const std::array<Vector, 3> primaries = {
        fromChromaticity(0.64, 0.33), fromChromaticity(0.30, 0.60), fromChromaticity(0.15, 0.06)};
    Matrix columns;
    for (size_t r = 0; r < 3; ++r) {
        for (size_t c = 0; c < 3; ++c)
            columns[r][c] = primaries[c][r];
    }
    const Vector luminance = multiply(inverse(columns), white);
    std::array<std::array<int32_t, 3>, 3> result;
    for (size_t c = 0; c < 3; ++c) {
        Vector xyz = primaries[c];
        for (double& value : xyz)
            value *= luminance[c];
        const Vector adapted = adaptToD50(xyz, white);
        for (size_t i = 0; i < 3; ++i) {
            result[c][i] = static_cast<int32_t>(std::lround(adapted[i] * 65536.0));
        }
    }
    for (size_t i = 0; i < 3; ++i)
        result[1][i] = kD50[i] - result[0][i] - result[2][i];
    return result;
}

double linearLight(double encoded) {
    return encoded <= 0.04045 ? encoded / 12.92 : std::pow((encoded + 0.055) / 1.055, 2.4);
}

Bytes typed(uint32_t type) {
    Bytes tag;
    put32(tag, type);
    put32(tag, 0);
    return tag;
}

void putText(Bytes& tag, std::string_view text) {
    tag.insert(tag.end(), text.begin(), text.end());
    tag.push_back(0);
}

Bytes textTag(std::string_view text) {
    Bytes tag = typed(fourCc("text"));
    putText(tag, text);
    return tag;
}

// textDescriptionType: the ASCII form, then empty Unicode and 67 bytes of empty script code forms.
Bytes descriptionTag(std::string_view text) {
    Bytes tag = typed(fourCc("desc"));
    put32(tag, static_cast<uint32_t>(text.size()) + 1);
    putText(tag, text);
    tag.insert(tag.end(), 4 + 4 + 2 + 1 + 67, 0);
    return tag;
}

Bytes xyzTag(const std::array<int32_t, 3>& xyz) {
    Bytes tag = typed(fourCc("XYZ "));
    for (const int32_t value : xyz)
        put32(tag, static_cast<uint32_t>(value));
    return tag;
}

struct NewTag {
    std::vector<uint32_t> signatures;  // several names may share one body
    Bytes body;
};

Bytes header(uint32_t size) {
    Bytes bytes;
    put32(bytes, size);
    put32(bytes, 0);           // no preferred colour engine
    put32(bytes, 0x02100000);  // version 2.1
    put32(bytes, fourCc("mntr"));
    put32(bytes, kRgb);
    put32(bytes, fourCc("XYZ "));
    // A fixed date keeps the bytes, and with them converted files, the same from run to run.
    for (const uint32_t part : {2024u, 1u, 1u, 0u, 0u, 0u})
        put16(bytes, part);
    put32(bytes, fourCc("acsp"));
    bytes.insert(bytes.end(), 28, 0);  // platform .. rendering intent
    for (const int32_t value : kD50)
        put32(bytes, static_cast<uint32_t>(value));
    bytes.resize(128, 0);
    return bytes;
}

Bytes assemble(std::vector<NewTag> tags) {
    uint32_t entries = 0;
    uint32_t end = 128 + 4;
    for (const NewTag& tag : tags)
        entries += static_cast<uint32_t>(tag.signatures.size());
    end += 12 * entries;
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
    Bytes profile = header(end + static_cast<uint32_t>(bodies.size()));
    profile.insert(profile.end(), table.begin(), table.end());
    profile.insert(profile.end(), bodies.begin(), bodies.end());
    return profile;
}

}  // namespace

std::vector<uint8_t> makeSrgbProfile() {
    const auto rgb = colorants();
    return assemble({
        {{fourCc("desc")}, descriptionTag("sRGB (IEC 61966-2-1)")},
        {{fourCc("cprt")}, textTag("No copyright, use freely")},
        {{fourCc("wtpt")}, xyzTag(kD50)},
        {{fourCc("rXYZ")}, xyzTag(rgb[0])},
        {{fourCc("gXYZ")}, xyzTag(rgb[1])},
        {{fourCc("bXYZ")}, xyzTag(rgb[2])},
        {{fourCc("rTRC"), fourCc("gTRC"), fourCc("bTRC")}, sampledCurveTag(linearLight)},
    });
}

}  // namespace lumoxa_tool
