// SPDX-License-Identifier: Apache-2.0
//
// Profiles that the library makes of displays and of gray prints, in bytes.
#include "lumoxa/lumoxa.hpp"
#include "tests/bytes/rows.h"

namespace lumoxa_test {
namespace {

using lumoxa::Display;
using lumoxa::GrayPatch;
using lumoxa::ToneCurve;

Row rowOf(const std::string& name, const lumoxa::Profile& profile) {
    Row row{name, {}};
    row.hash.add(withoutDate(profile.bytes()));
    return row;
}

void addDisplays(Rows& rows) {
    const std::pair<const char*, ToneCurve> curves[] = {
        {"sRGB", ToneCurve::sRGB()},
        {"2.2", ToneCurve::gamma(2.2)},
        {"2.25", ToneCurve::gamma(2.25)},  // which version 2 holds exactly
        {"table", ToneCurve::table({0, 0.125, 0.375, 1})}};
    Display wide;
    wide.red = {0.7347, 0.2653}, wide.green = {0.1596, 0.8404}, wide.blue = {0.0366, 0.0001};
    wide.white = {0.3457, 0.3585};
    const std::pair<const char*, Display> displays[] = {{"sRGB", {}}, {"wide", wide}};
    for (auto [name, display] : displays) {
        for (const auto& [curveName, curve] : curves) {
            for (const uint32_t version : {2, 4}) {
                display.curve = curve;
                display.version = version == 2 ? 0x02400000 : 0x04300000;
                rows.push_back(rowOf(std::string("display,") + name + ',' + curveName + ",v" +
                                         std::to_string(version),
                                     lumoxa::makeDisplay(display)));
            }
        }
    }
}

/// A patch of a device whose inks let light through by polynomials, which every machine computes
/// alike: a dense gray, and two thin inks, one yellowish and one bluish.
GrayPatch patchOf(double main, double first, double second) {
    const double rest = 1 - main * 0.8;
    const double gray = rest * rest * rest;
    return {main * 65535,
            first * 65535,
            second * 65535,
            0.84 * gray * (1 - 0.125 * second),
            0.88 * gray * (1 - 0.0625 * first) * (1 - 0.0625 * second),
            0.72 * gray * (1 - 0.25 * first)};
}

void addGrayPrints(Rows& rows) {
    lumoxa::GrayPrint print;
    print.range = 65535;
    std::vector<GrayPatch> ramp;
    for (int i = 0; i <= 16; ++i)
        ramp.push_back(patchOf(i / 16.0, i / 16.0, i / 16.0));
    rows.push_back(rowOf("gray,ramp", lumoxa::makeGrayPrint(ramp, print)));
    for (const int steps : {15, 16}) {  // others than 16 are resampled
        std::vector<GrayPatch> grid = {patchOf(0, 0, 0), patchOf(1, 0, 0)};
        for (int step = 1; step <= steps; ++step) {
            for (int i = 0; i < 5; ++i) {
                for (int j = 0; j < 5; ++j)
                    grid.push_back(patchOf(step / (steps + 1.0), i / 4.0, j / 4.0));
            }
        }
        const lumoxa::Profile profile = lumoxa::makeGrayPrint(grid, print);
        rows.push_back(rowOf("gray,grid," + std::to_string(steps), profile));
        const std::string report = lumoxa::grayPrintReport(profile);
        rows.back().hash.add(Bytes(report.begin(), report.end()));
    }
}

}  // namespace

Bytes withoutDate(Bytes profile) {
    constexpr size_t kDate = 24, kDateSize = 12;
    for (size_t i = kDate; i < kDate + kDateSize; ++i)
        profile.at(i) = 0;
    return profile;
}

Rows madeRows() {
    Rows rows;
    addDisplays(rows);
    addGrayPrints(rows);
    return rows;
}

}  // namespace lumoxa_test
