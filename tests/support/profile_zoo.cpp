// SPDX-License-Identifier: Apache-2.0
#include "tests/support/profile_zoo.h"

#include "tests/support/gray_profiles.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

constexpr uint32_t kVersion42 = 0x04200000;

std::vector<uint16_t> rootTable(uint32_t entries) {
    std::vector<uint16_t> table;
    for (uint32_t i = 0; i < entries; ++i)  // x (2 - x): steep at black, as inverse curves are
        table.push_back(static_cast<uint16_t>(uint64_t{65535} * i * (2 * (entries - 1) - i) /
                                              (uint64_t{entries - 1} * (entries - 1))));
    return table;
}

LutABContent abContent(uint32_t inputs, uint32_t outputs, uint32_t points, bool against) {
    const std::vector<Bytes> curves = {curveTag({}), curveTag(rootTable(33)), curveTag({461}),
                                       parametricTag(0, {1.7})};
    const auto some = [&](size_t count) {
        return std::vector<Bytes>(curves.begin(), curves.begin() + static_cast<long>(count));
    };
    LutABContent content{inputs, outputs, 2};
    const bool toPcs = outputs == 3;
    content.aCurves = some(toPcs ? inputs : outputs);
    content.mCurves = some(3);
    content.bCurves = some(3);
    content.matrix = {0.9, 0.05, 0, 0, 1, 0, 0.02, 0, 0.9, 0.01, 0, 0.05};
    content.grid.assign(inputs, static_cast<uint8_t>(points));
    content.grid[0] = static_cast<uint8_t>(points + 1);
    uint32_t nodes = 1;
    for (const uint8_t n : content.grid)
        nodes *= n;
    SeededRandom random(points);
    for (uint32_t i = 0; i < nodes; ++i) {
        for (uint32_t o = 0; o < outputs; ++o) {
            const uint32_t level = o % inputs == 0 ? i * 60000 / nodes : i % points * 7000;
            const uint32_t value = std::min(level + random.upTo(500), 65535U);
            content.clut.push_back(static_cast<uint16_t>(against ? 65535 - value : value));
        }
    }
    return content;
}

Bytes lutPrinter(const char* space, const char* pcs, uint32_t inks, uint32_t points,
                 uint32_t pointsBack, bool wide) {
    const auto tag = [&](uint32_t inputs, uint32_t outputs, uint32_t n) {
        const LutContent content = noisyGrid(inputs, outputs, n, inks > 3);
        return wide ? lut16Tag(content) : lut8Tag(content);
    };
    return ProfileBytes("prtr", space, pcs)
        .addTag("A2B0", tag(inks, 3, points))
        .addTag("A2B1", tag(inks, 3, points + 1))
        .addTag("B2A0", tag(3, inks, pointsBack))
        .addTag("wtpt", xyzTag(0.82, 0.85, 0.72))
        .image();
}

std::map<std::string, Bytes> makeZoo() {
    const auto display = [](const Bytes& curve) {
        return rgbProfile({curve}, "mntr").addTag("wtpt", xyzTag(0.95, 1, 1.09)).image();
    };
    const auto abDevice = [](const char* space, uint32_t inks) {
        return withVersion(ProfileBytes("prtr", space, "Lab ")
                               .addTag("A2B0", lutAToBTag(abContent(inks, 3, 5, inks > 3)))
                               .addTag("B2A0", lutBToATag(abContent(3, inks, 5, inks > 3)))
                               .image(),
                           kVersion42);
    };
    return {
        {"gamma", display(curveTag({563}))},
        {"parametric", display(parametricTag(3, {2.4, 0.9479, 0.0521, 0.0774, 0.0405}))},
        {"table", display(curveTag(rootTable(1024)))},
        {"gray", oneTagProfile("mntr", "GRAY", "XYZ ", curveTag({461}), "kTRC")},
        {"grayLab", oneTagProfile("prtr", "GRAY", "Lab ", curveTag(rootTable(256)), "kTRC")},
        {"patches", grayProfile().image()},
        {"proofer", lutPrinter("RGB ", "XYZ ", 3, 6, 5, false)},
        {"press", lutPrinter("CMYK", "Lab ", 4, 4, 7, true)},
        {"six", lutPrinter("6CLR", "Lab ", 6, 2, 5, true)},
        {"ab", abDevice("RGB ", 3)},
        {"abPress", abDevice("CMYK", 4)},
        {"link", oneTagProfile("link", "RGB ", "CMYK", lut16Tag(noisyGrid(3, 4, 5, true)))},
        {"abstract", oneTagProfile("abst", "Lab ", "Lab ", lut16Tag(noisyGrid(3, 3, 5, false)))},
    };
}

}  // namespace

LutContent noisyGrid(uint32_t inputs, uint32_t outputs, uint32_t points, bool against) {
    SeededRandom random(inputs * 10 + outputs);
    LutContent content{inputs, outputs, points};
    const auto nodesBelow = [&](uint32_t dimensions) {
        uint32_t nodes = 1;
        for (uint32_t d = 0; d < dimensions; ++d)
            nodes *= points;
        return nodes;
    };
    const uint32_t nodes = nodesBelow(inputs);
    for (uint32_t i = 0; i < nodes * outputs; ++i) {
        const uint32_t dimension = outputs > 3 ? 0 : i % outputs % inputs;  // L* alone rules inks
        const uint32_t place = i / outputs / nodesBelow(inputs - 1 - dimension) % points;
        const auto value = static_cast<uint16_t>(place * 64500 / (points - 1) + random.upTo(1000));
        content.clut.push_back(against ? static_cast<uint16_t>(65535 - value) : value);
    }
    for (uint32_t i = 0; i < 256 * (inputs + outputs); ++i)
        (i < 256 * inputs ? content.inTables : content.outTables)
            .push_back(static_cast<uint16_t>(257 * (i % 256) * (i % 256) / 255));
    return content;
}

Bytes withVersion(Bytes profile, uint32_t version) {
    put32(profile, 8, version);
    return profile;
}

Bytes oneTagProfile(const std::string& deviceClass, const std::string& space,
                    const std::string& pcs, const Bytes& tag, const std::string& name) {
    return ProfileBytes(deviceClass, space, pcs).addTag(name, tag).image();
}

const std::map<std::string, Bytes>& profileZoo() {
    static const std::map<std::string, Bytes> zoo = makeZoo();
    return zoo;
}

}  // namespace lumoxa_test
