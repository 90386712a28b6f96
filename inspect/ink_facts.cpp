// SPDX-License-Identifier: Apache-2.0
//
// The most ink that a printer's tables put on one place.
#include <algorithm>
#include <array>

#include "convert/tag_stages.h"
#include "inspect/facts.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

using engine::Affine;
using engine::Direction;
using engine::ProfileView;
using engine::Side;

// Nodes of tables with 9, 17 and 33 points along each side, which most printers have.
constexpr int kGridPoints = 33;

bool isInkSpace(uint32_t space) {
    const std::string letters = signatureText(space);
    return space == kSpaceCmyk || space == kSpaceCmy ||
           (channelsOf(space) > 0 && (letters.substr(1) == "CLR" || letters.substr(0, 3) == "MCH"));
}

struct TotalInk {
    double sum = -1;  // of inks 0..1
    std::array<float, 3> lab = {};
};

/// Lab of a line of the grid along b*, as tags encode it.
void fillLine(Row* rows, const Affine& decoding, int l, int a) {
    for (int b = 0; b < kGridPoints; ++b) {
        const std::array<int, 3> place = {l, a, b};
        for (size_t c = 0; c < 3; ++c) {
            const double sample = place[c] / static_cast<double>(kGridPoints - 1);
            rows[c][b] = static_cast<float>(sample * decoding.factors[c][c] + decoding.offsets[c]);
        }
    }
}

TotalInk totalInkOf(const ProfileView& profile, const Side& side, int inks) {
    static_assert(kGridPoints <= kBlockPixels);
    engine::StageList stages;
    if (side.pcs == kSpaceXyz) stages.append(std::make_shared<engine::LabToXyzStage>(), "");
    stages.append(side.stages);
    const bool legacy = profile.require(side.tag).type() == kTypeLut16;
    const Affine decoding = engine::decoding(kSpaceLab, legacy);
    Row rows[engine::kMaxChannels], lab[3];
    TotalInk most;
    for (int l = 0; l < kGridPoints; ++l) {
        for (int a = 0; a < kGridPoints; ++a) {
            fillLine(lab, decoding, l, a);
            fillLine(rows, decoding, l, a);
            stages.run(rows, kGridPoints);
            for (int b = 0; b < kGridPoints; ++b) {
                double sum = 0;
                for (int c = 0; c < inks; ++c)
                    sum += rows[c][b];
                if (sum > most.sum) most = {sum, {lab[0][b], lab[1][b], lab[2][b]}};
            }
        }
    }
    return most;
}

void writeIntent(JsonArray& list, const Subject& subject, uint32_t intent) {
    const ProfileView& profile = *subject.view();
    const uint32_t tag = lutTagOf(profile, intent, Direction::kToDevice);
    if (tag == 0) return;
    TotalInk most;
    const auto fault = subject.faultIn([&] {
        most = totalInkOf(profile, sideOf(profile, intent, Direction::kToDevice),
                          channelsOf(profile.header().colorSpace));
    });
    if (fault || most.sum < 0) return;
    list.object([&](JsonObject& out) {
        constexpr double kPercent = 100;
        out.add("intent", intentText(intent));
        out.add("tag", signatureText(tag));
        out.add("percent", kPercent * most.sum);
        writeNumbers(out, "at", most.lab);
    });
}

}  // namespace

void writeTotalInk(JsonObject& report, const Subject& subject) {
    report.array("totalInk", [&](JsonArray& list) {
        const ProfileView* const view = subject.view();
        if (view == nullptr || view->header().deviceClass != kClassPrinter ||
            !isInkSpace(view->header().colorSpace))
            return;
        for (uint32_t intent = icPerceptual; intent <= icSaturation; ++intent)
            writeIntent(list, subject, intent);
    });
}

}  // namespace lumoxa::inspection
