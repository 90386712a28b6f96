// SPDX-License-Identifier: Apache-2.0
//
// The accurate engine: what conversions, explanations, built-in profiles and links are in bytes.
#include <bit>
#include <sstream>

#include "lumoxa/lumoxa.hpp"
#include "tests/bytes/rows.h"
#include "tests/support/profile_zoo.h"
#include "tests/support/real_profiles.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using lumoxa::Conversion;
using lumoxa::ImageView;
using lumoxa::Options;
using lumoxa::Profile;
using lumoxa::Sample;

// Chains of profiles, and after a colon what is asked for: 0 to 3 intents, one a step or one for
// all; n no black point compensation, e exact, k black kept, i ink limit, g gamut marked, p proof
// on the press, t a split tone.
constexpr const char* kChains =
    "gamma>parametric; parametric>sRGB; table>AdobeRGB; sRGB>ProPhotoRGB:n; gamma>DisplayP3:3;"
    "sRGB>Rec2020:0; gray>gray-2.2; gray>sRGB; sRGB>gray; grayLab>sRGB:0; sRGB>grayLab;"
    "sRGB>XYZ; sRGB>Lab; Lab>sRGB; XYZ>sRGB; XYZ>Lab; Lab>XYZ; sRGB>press; table>press:n;"
    "gamma>press:0; sRGB>press:2; sRGB>press:3; sRGB>press:e; press>sRGB; press>sRGB:3; press>Lab;"
    "Lab>press; Lab>press:3; press>abPress; abPress>press:k; abPress>press:ki; press>abPress:n;"
    "ab>sRGB; sRGB>ab:0; ab>abPress; abPress>ab:3; proofer>ab; sRGB>proofer; proofer>press:e;"
    "six>sRGB; sRGB>six; press>six:i; sRGB>press:g; sRGB>gamma:p; sRGB>ab:pg; link; link>press;"
    "sRGB>link; sRGB>abstract>press; press>abstract>abstract>sRGB; sRGB>press>sRGB:03;"
    "sRGB>patches; sRGB>patches:0t; patches>sRGB";

// From and to profiles of packages.
constexpr const char* kInstalled[][2] = {
    {"colord/sRGB.icc", "ghostscript/default_cmyk.icc"},
    {"ghostscript/default_cmyk.icc", "colord/AdobeRGB1998.icc"},
    {"LStar-RGB.icc", "colord/ProPhotoRGB.icc"},
    {"Gray-CIE_L.icc", "ghostscript/default_cmyk.icc"}};

Profile profileOf(const Bytes& bytes) {
    return Profile::fromBytes(bytes.data(), bytes.size());
}

Profile profileOf(const std::string& name) {
    const auto found = profileZoo().find(name);
    const bool isOurs = found != profileZoo().end() && name != "gray";
    return isOurs ? profileOf(found->second) : Profile::named(name.c_str());
}

void setOption(Options& options, char letter) {
    if (letter >= '0' && letter <= '3')
        options.intents.push_back(static_cast<lumoxa::Intent>(letter - '0'));
    if (letter == 'n') options.blackPointCompensation = false;
    if (letter == 'e') options.exact = true;
    if (letter == 'k') options.preserveBlack = true;
    if (letter == 'i') options.inkLimit = 220;
    if (letter == 'g') options.markOutOfGamut = true;
    if (letter == 'p') options.proof = profileOf("press");
    if (letter == 't') {
        options.tone.emplace();
        options.tone->points = {{20, 5, -4}, {70, -3, 8}};
    }
}

struct Request {
    std::vector<Profile> chain;
    Options options;
};

Request requestOf(const std::string& line) {
    Request request;
    std::istringstream words(line.substr(0, line.find(':')));
    for (std::string name; std::getline(words, name, '>');)
        request.chain.push_back(profileOf(name));
    if (const size_t colon = line.find(':'); colon != std::string::npos) {
        for (const char letter : line.substr(colon + 1))
            setOption(request.options, letter);
    }
    if (request.options.intents.size() == 1) {
        request.options.intent = request.options.intents[0];
        request.options.intents.clear();
    }
    return request;
}

Conversion conversionOf(const std::string& line) {
    const Request request = requestOf(line);
    return Conversion(request.chain, request.options);
}

int bytesOf(Sample sample) {
    return sample == Sample::U8 ? 1 : sample == Sample::U16 ? 2 : 4;
}

/// The test image as bytes of a sample type, little end first on the machines that there are.
Bytes picture(Sample sample, int channels) {
    const Samples numbers = image(static_cast<uint32_t>(channels), sample == Sample::U8 ? 8 : 16);
    Bytes bytes;
    for (const uint16_t number : numbers) {
        const uint32_t bits =
            sample == Sample::F32 ? std::bit_cast<uint32_t>(number / 65535.0f) : uint32_t{number};
        for (int i = 0; i < bytesOf(sample); ++i)
            bytes.push_back(static_cast<uint8_t>(bits >> 8 * i));
    }
    return bytes;
}

ImageView rowOf(Bytes& bytes, Sample sample, int64_t width, int channels) {
    ImageView view = ImageView::packed(bytes.data(), width, 1, channels);
    view.sample = sample;
    view.channelStride = bytesOf(sample);
    view.pixelStride = view.channelStride * channels;
    return view;
}

void addDepths(Hash& hash, const Conversion& conversion, Sample in, Sample out) {
    const int ins = conversion.inputChannels(), outs = conversion.outputChannels();
    Bytes from = picture(in, ins);
    const auto width = static_cast<int64_t>(from.size()) / (ins * bytesOf(in));
    Bytes to(static_cast<size_t>(width * outs * bytesOf(out)));
    conversion.run(rowOf(from, in, width, ins), rowOf(to, out, width, outs));
    hash.add(to);
}

constexpr Sample kSamples[] = {Sample::U8, Sample::U16, Sample::F32};

Row conversionRow(const std::string& name, const Conversion& conversion,
                  std::vector<Bytes> installed = {}) {
    Row row{name, {}, std::move(installed)};
    for (const Sample sample : kSamples)
        addDepths(row.hash, conversion, sample, sample);
    const std::string explanation = conversion.explain();
    row.hash.add(Bytes(explanation.begin(), explanation.end()));
    return row;
}

/// Two views of memory that is larger than them, laid out otherwise, with a channel more.
struct Layout {
    const char* name;
    bool planar, bottomUp, premultiplied;
    int threads;
};
constexpr Layout kLayouts[] = {{"alpha", false, false, false, 1},
                               {"premultiplied", false, false, true, 1},
                               {"planar", true, false, false, 1},
                               {"bottom-up", false, true, false, 1},
                               {"planar,bottom-up,premultiplied", true, true, true, 1},
                               {"alpha,2-threads", false, false, false, 2},
                               {"alpha,5-threads", false, false, false, 5}};

Row layoutRow(const Layout& layout, const Conversion& conversion) {
    constexpr int64_t kWidth = 380, kHeight = 240;  // enough for five threads
    const auto view = [&](Bytes& memory, int channels) {
        ImageView v = ImageView::packed(memory.data(), kWidth, kHeight, channels);
        v.rowStride += 5;
        if (layout.planar) {
            v.pixelStride = 1;
            v.rowStride = kWidth + 5;
            v.channelStride = v.rowStride * kHeight;
        }
        if (layout.bottomUp) {
            v.data = memory.data() + v.rowStride * (kHeight - 1);
            v.rowStride = -v.rowStride;
        }
        return v;
    };
    const int ins = conversion.inputChannels() + 1, outs = conversion.outputChannels() + 1;
    SeededRandom random(11);
    Bytes from(static_cast<size_t>(kHeight * (kWidth + 5) * ins));
    for (uint8_t& byte : from)
        byte = static_cast<uint8_t>(random.upTo(255));
    Bytes to(static_cast<size_t>(kHeight * (kWidth + 5) * outs), 0xA5);
    Conversion::Run run;
    run.threads = layout.threads;
    run.premultiplied = layout.premultiplied;
    conversion.run(view(from, ins), view(to, outs), run);
    Row row{layout.name, {}};
    row.hash.add(to);
    return row;
}

Row linkRow(const std::string& line, Sample precision) {
    const Request request = requestOf(line);
    Row row{"link," + line + (precision == Sample::U8 ? ",8" : ",16"), {}};
    row.hash.add(withoutDate(lumoxa::makeLink(request.chain, request.options, precision).bytes()));
    return row;
}

Bytes ifInstalled(const char* path) {
    try {
        return realProfile(path);
    } catch (const std::runtime_error&) {
        return {};
    }
}

}  // namespace

Rows engineRows() {
    Rows rows;
    std::istringstream lines(kChains);
    for (std::string line; std::getline(lines >> std::ws, line, ';');)
        rows.push_back(conversionRow(line, conversionOf(line)));
    for (const auto& [from, to] : kInstalled) {
        const Bytes source = ifInstalled(from), target = ifInstalled(to);
        if (source.empty() || target.empty()) continue;
        rows.push_back(conversionRow(from + std::string(">") + to,
                                     Conversion(profileOf(source), profileOf(target)),
                                     {source, target}));
    }
    return rows;
}

Rows engineRunRows() {
    Rows rows;
    for (const char* chain : {"gamma>sRGB", "sRGB>press", "ab>press:e"}) {
        const Conversion conversion = conversionOf(chain);
        for (const Sample in : kSamples) {
            for (const Sample out : kSamples) {
                if (in == out) continue;
                rows.push_back({chain + std::string(",") + std::to_string(8 * bytesOf(in)) + "-" +
                                    std::to_string(8 * bytesOf(out)),
                                {}});
                addDepths(rows.back().hash, conversion, in, out);
            }
        }
    }
    const Conversion conversion = conversionOf("sRGB>press");
    for (const Layout& layout : kLayouts)
        rows.push_back(layoutRow(layout, conversion));
    return rows;
}

Rows engineProfileRows() {
    Rows rows;
    for (const char* name : {"sRGB", "AdobeRGB", "DisplayP3", "Rec2020", "ProPhotoRGB", "gray",
                             "gray-2.2", "Lab", "XYZ"}) {
        rows.push_back({name, {}});
        rows.back().hash.add(Profile::named(name).bytes());
    }
    for (const char* chain :
         {"sRGB>press", "press>sRGB:0", "gray>gamma", "abPress>press:ki", "sRGB>press:3",
          "gamma>AdobeRGB:n", "ab>abPress:2", "six>sRGB", "sRGB>abstract>press", "link>press",
          "sRGB>press>sRGB:03", "sRGB>press:g"}) {
        for (const Sample precision : {Sample::U8, Sample::U16})
            rows.push_back(linkRow(chain, precision));
    }
    return rows;
}

}  // namespace lumoxa_test
