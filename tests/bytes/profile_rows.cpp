// SPDX-License-Identifier: Apache-2.0
//
// Profiles as they are saved, tags as they are filled, and the profiles that packages install.
#include <map>

#include "tests/bytes/rows.h"
#include "tests/support/real_profiles.h"
#include "tests/support/temp_file.h"

namespace lumoxa_test {
namespace {

/// The file that a new profile with a transform in it becomes.
Row savedRow(const std::string& name, const OwnedXform& xform, uint32_t type) {
    icProfile_t profile = nullptr;
    EXPECT_EQ(icProfileCreate(nullptr, &profile), 0);
    const OwnedProfile owner(profile);
    icHeader header;
    EXPECT_EQ(icProfileGetHeader(profile, &header), 0);
    header.date = {2020, 5, 9, 12, 34, 56};
    EXPECT_EQ(icProfileSetHeader(profile, &header), 0);
    for (const icRenderingIntent intent : {icPerceptual, icSaturation})
        EXPECT_EQ(icXformSet(profile, type, intent, icDeviceToPcs, xform.get()), 0) << name;
    const TempFile file({});
    EXPECT_EQ(icProfileSaveProfile(profile, file.path().c_str()), 0);
    Row row{name, {}};
    row.hash.add(fileBytes(file.path()));
    return row;
}

template <class Fill, class... Arguments>
Row filledRow(const std::string& name, Fill fill, Arguments... arguments) {
    icTagBase* tag = nullptr;
    const int size = fill(arguments..., &tag);
    const auto* bytes = reinterpret_cast<const uint8_t*>(tag);
    Row row{name, {}};
    row.hash.add(Bytes(bytes, bytes + size));
    icFree(tag);
    return row;
}

/// Installed profiles by what follows the common folder.
std::map<std::string, Bytes> installedProfiles() {
    const std::string folder = "/color/icc/";
    std::map<std::string, Bytes> all;
    for (const std::string& path : realProfilePaths()) {
        const std::string name = std::filesystem::path(path).generic_string();
        const size_t at = name.find(folder);
        if (at != std::string::npos) all[name.substr(at + folder.size())] = fileBytes(path);
    }
    return all;
}

const struct {
    const char *from, *to;
    uint32_t intent;
} kInstalledChains[] = {{"colord/sRGB.icc", "ghostscript/default_cmyk.icc", 0},
                        {"LStar-RGB.icc", "ghostscript/default_cmyk.icc", 3},
                        {"Gray-CIE_L.icc", "ghostscript/default_cmyk.icc", 1},
                        {"ghostscript/default_cmyk.icc", "colord/AdobeRGB1998.icc", 1},
                        {"ITULab.icc", "colord/AdobeRGB1998.icc", 1}};

}  // namespace

Rows storedRows() {
    Rows rows;
    for (const float v : {0.9642f, -0.3f, 3e4f, 1e30f})
        rows.push_back(
            filledRow("white-point," + std::to_string(v), icFillWhitePoint, v, v / 3, -v));
    for (const int n : {0, 1, 1024})
        rows.push_back(filledRow("curve," + std::to_string(n), icFillTrc, image(1, 16).data(), n));
    rows.push_back(filledRow("description", icFillProfileDescription, "a display, measured"));
    LutContent content{4, 3, 5};
    content.clut = image(4, 16);
    content.clut.resize(power(5, 4) * 3);
    const OwnedXform toXyz = requested(rgbProfile(curves("h"), "mntr"), 1, icDeviceToPcs);
    const OwnedXform fromXyz = requested(rgbProfile(curves("g"), "scnr"), 1, icPcsToDevice);
    const auto inks = [](const Bytes& tag) {
        return requested(lutProfile(tag, "CMYK", "Lab "), 0, icDeviceToPcs);
    };
    const OwnedXform lut8 = inks(lut8Tag(content)), lut16 = inks(lut16Tag(content));
    rows.push_back(savedRow("lut8", lut8, fourcc("mft1")));
    for (const auto& [name, first] : {std::pair{"lut8,screen", lut8.get()},
                                      {"lut16,screen", lut16.get()},
                                      {"screen,screen", toXyz.get()}})
        rows.push_back(savedRow(name, combined({first, fromXyz.get()}), fourcc("mft2")));
    return rows;
}

Rows installedRows() {
    Rows rows;
    const std::map<std::string, Bytes> profiles = installedProfiles();
    for (const auto& [name, file] : profiles) {
        rows.push_back({name, {}, {file}});
        for (uint32_t i = 0; i < 12; ++i) {
            OwnedXform x;
            rows.back().hash.add<int>({request(file, i / 3, icDeviceToPcs + i % 3, x)});
            if (x) addInAllDepths(rows.back().hash, x.get());
        }
    }
    for (const auto& [from, to, intent] : kInstalledChains) {
        if (profiles.count(from) + profiles.count(to) < 2) continue;
        const Bytes &source = profiles.at(from), &target = profiles.at(to);
        OwnedXform first, last;
        rows.push_back({from + std::string(",") + to, {}, {source, target}});
        rows.back().hash.add<int>({request(source, intent, icDeviceToPcs, first),
                                   request(target, intent, icPcsToDevice, last)});
        if (first && last) addStored(rows.back().hash, combined({first.get(), last.get()}).get());
    }
    return rows;
}

}  // namespace lumoxa_test
