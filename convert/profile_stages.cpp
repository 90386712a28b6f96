// SPDX-License-Identifier: Apache-2.0
#include "convert/profile_stages.h"

#include "base/pcs_encoding.h"
#include "convert/tag_stages.h"
#include "xform/tag_choice.h"

namespace lumoxa::engine {
namespace {

constexpr uint32_t kColorantTags[] = {fourcc("rXYZ"), fourcc("gXYZ"), fourcc("bXYZ")};
constexpr uint32_t kCurveTags[] = {fourcc("rTRC"), fourcc("gTRC"), fourcc("bTRC")};
constexpr uint32_t kGrayCurveTag = fourcc("kTRC");

std::string originOf(const ProfileView& profile, const std::string& tags) {
    return tags + " of " + profile.title();
}

uint32_t connectionSpaceOf(const ProfileView& profile) {
    const uint32_t pcs = profile.header().pcs;
    if (isConnectionSpace(pcs)) return pcs;
    constexpr int64_t kPcsOffset = 20;
    profile.fail(icErrInvalid, 0, kPcsOffset,
                 "has " + quoted(pcs) + " as connection space, which is neither 'XYZ ' nor 'Lab '");
}

Side lutSide(const ProfileView& profile, uint32_t tag, Direction direction) {
    const uint32_t pcs = connectionSpaceOf(profile);
    const uint32_t device = profile.header().colorSpace;
    const bool toPcs = direction == Direction::kToPcs;
    const TagReader bytes = profile.require(tag);
    return {lutStages(bytes, toPcs ? device : pcs, toPcs ? pcs : device,
                      originOf(profile, quoted(tag))),
            pcs, tag};
}

/// Three curves, then the colorants as columns (ICC.1:2010, F.3).
Side matrixSide(const ProfileView& profile, Direction direction) {
    connectionSpaceOf(profile);  // colorants are XYZ, whichever of the two a header names
    Affine matrix;
    std::vector<CurvePtr> curves;
    for (size_t c = 0; c < 3; ++c) {
        curves.push_back(readCurve(profile.require(kCurveTags[c])));
        const std::array<double, 3> column = readXyz(profile.require(kColorantTags[c]));
        for (size_t r = 0; r < 3; ++r)
            matrix.factors[r][c] = column[r];
    }
    const auto tone = std::make_shared<CurveStage>(std::move(curves));
    Side side;
    side.pcs = kSpaceXyz;
    const std::string curveOrigin = originOf(profile, "'rTRC', 'gTRC', 'bTRC'");
    const std::string matrixOrigin = originOf(profile, "'rXYZ', 'gXYZ', 'bXYZ'");
    if (direction == Direction::kToPcs) {
        side.stages.append(tone, curveOrigin);
        side.stages.append(std::make_shared<AffineStage>(matrix, "matrix"), matrixOrigin);
        return side;
    }
    Affine inverse;
    if (!matrix.invert(inverse)) {
        profile.require(kColorantTags[0])
            .fail(icErrTagType, -1,
                  "and tags 'gXYZ' and 'bXYZ' hold colorants that depend on one another, so "
                  "no colour leads back to the device");
    }
    side.stages.append(std::make_shared<AffineStage>(inverse, "inverse matrix"), matrixOrigin);
    side.stages.append(tone->inverse(), curveOrigin);
    return side;
}

/// One curve for the lightness of neutral colours: Y of D50, or L* (ICC.1:2010, F.2).
Side graySide(const ProfileView& profile, Direction direction) {
    const uint32_t pcs = connectionSpaceOf(profile);
    const std::array<double, 3> top =
        pcs == kSpaceLab ? std::array<double, 3>{100, 0, 0} : std::to_array(kPcsWhite);
    const size_t measure = pcs == kSpaceLab ? 0 : 1;  // L* or Y
    const auto tone = std::make_shared<CurveStage>(
        std::vector<CurvePtr>{readCurve(profile.require(kGrayCurveTag))});
    Affine scale;
    Side side;
    side.pcs = pcs;
    scale.factors = {};
    const std::string origin = originOf(profile, "'kTRC'");
    if (direction == Direction::kToPcs) {
        scale.inputs = 1;
        for (size_t r = 0; r < 3; ++r)
            scale.factors[r][0] = top[r];
        side.stages.append(tone, origin);
        side.stages.append(std::make_shared<AffineStage>(scale, "gray to neutral"), origin);
        return side;
    }
    scale.outputs = 1;
    scale.factors[0][measure] = 1.0 / top[measure];
    side.stages.append(std::make_shared<AffineStage>(scale, "lightness to gray"), origin);
    side.stages.append(tone->inverse(), origin);
    return side;
}

[[noreturn]] void refuse(const ProfileView& profile, Direction direction) {
    const bool toPcs = direction == Direction::kToPcs;
    const uint32_t tag = lumoxa::lutTagOf(icPerceptual, toPcs ? icDeviceToPcs : icPcsToDevice);
    const char* const others = profile.header().colorSpace == kSpaceGray ? " nor tag 'kTRC'"
                               : channelsOf(profile.header().colorSpace) == 3
                                   ? " nor colorants and curves"
                                   : "";
    profile.fail(icErrNoTag, tag, -1,
                 std::string("has neither tag ") +
                     (toPcs ? "'A2B0', 'A2B1', 'A2B2'" : "'B2A0', 'B2A1', 'B2A2'") + others +
                     ", so colours can't be converted " + (toPcs ? "from" : "to") + " its device");
}

}  // namespace

uint32_t lutTagOf(const ProfileView& profile, uint32_t intent, Direction direction) {
    const bool toPcs = direction == Direction::kToPcs;
    const uint32_t named = lumoxa::lutTagOf(intent, toPcs ? icDeviceToPcs : icPcsToDevice);
    if (named != 0 && profile.has(named)) return named;
    for (const uint32_t tag : kLutTags[toPcs ? 0 : 1]) {
        if (profile.has(tag)) return tag;
    }
    return 0;
}

Side sideOf(const ProfileView& profile, uint32_t intent, Direction direction) {
    if (const uint32_t tag = lutTagOf(profile, intent, direction); tag != 0)
        return lutSide(profile, tag, direction);
    const uint32_t space = profile.header().colorSpace;
    if (space == kSpaceGray && profile.has(kGrayCurveTag)) return graySide(profile, direction);
    const bool hasAny = profile.has(kColorantTags[0]) || profile.has(kCurveTags[0]);
    if (channelsOf(space) == 3 && hasAny) return matrixSide(profile, direction);
    refuse(profile, direction);
}

StageList wholeStages(const ProfileView& profile) {
    const uint32_t tag = lutTagOf(profile, icPerceptual, Direction::kToPcs);
    if (tag == 0) {
        profile.fail(icErrNoTag, kLutTags[0][0], -1,
                     "has no tag 'A2B0', which holds what a profile of its class converts");
    }
    return lutStages(profile.require(tag), profile.header().colorSpace, profile.header().pcs,
                     originOf(profile, quoted(tag)));
}

}  // namespace lumoxa::engine
