// SPDX-License-Identifier: Apache-2.0
//
// What the engine makes of a profile: transforms and black points.
#include <algorithm>

#include "convert/black_probe.h"
#include "inspect/facts.h"
#include "inspect/lut_shape.h"
#include "inspect/words.h"
#include "xform/tag_choice.h"

namespace lumoxa::inspection {
namespace {

using engine::BlackPoint;
using engine::BlackPointRole;
using engine::Direction;
using engine::ProfileView;

void writeSound(JsonObject& out, const ProfileFile& file, const TransformFact& transform) {
    const uint32_t tag = transform.side.tag;
    writeText(out, "tag", tag == 0 ? std::string() : signatureText(tag));
    out.add("kind", transform.kind);
    out.add("from", spaceText(transform.from));
    out.add("to", spaceText(transform.to));
    out.add("inputs", transform.inputs);
    out.add("outputs", transform.outputs);
    const TagEntry* const entry = tag == 0 ? nullptr : file.find(tag);
    const LutShape shape = entry == nullptr ? LutShape() : lutShape(file.data(*entry));
    if (!shape.grid.empty())
        out.add("grid", *std::max_element(shape.grid.begin(), shape.grid.end()));
    out.array("stages", [&](JsonArray& list) {
        for (const engine::PlacedStage& placed : transform.side.stages.stages())
            list.add(placed.stage->describe());
    });
}

void writeTransform(JsonObject& out, const ProfileFile& file, const TransformFact& transform) {
    out.add("direction", transform.direction);
    out.add("intent", transform.intent);
    out.add("offered", transform.offered);
    out.add("available", !transform.fault);
    if (transform.fault) {
        writeFault(out, "fault", *transform.fault);
    } else {
        writeSound(out, file, transform);
    }
}

constexpr uint32_t kDeviceClasses[] = {fourcc("scnr"), fourcc("mntr"), fourcc("prtr"),
                                       fourcc("spac")};

bool isDevice(const ProfileView& profile) {
    return std::find(std::begin(kDeviceClasses), std::end(kDeviceClasses),
                     profile.header().deviceClass) != std::end(kDeviceClasses);
}

std::optional<BlackPoint> blackOf(const Subject& subject, icRenderingIntent intent,
                                  BlackPointRole role) {
    const ProfileView& profile = *subject.view();
    const bool source = role == BlackPointRole::kSource;
    if (!hasBlackPoint(profile, source ? Direction::kToPcs : Direction::kToDevice)) return {};
    if (!source && !leadsBackToLab(profile, intent)) return {};
    std::optional<BlackPoint> black;
    const auto fault = subject.faultIn([&] {
        if (!source) sideOf(profile, intent, Direction::kToDevice);  // else it is no destination
        const auto probe = blackProbeOf(profile, intent, role);
        black = source ? sourceBlackPoint(probe) : destinationBlackPoint(probe, intent);
    });
    return fault ? std::nullopt : black;
}

void writeBlack(JsonObject& out, const char* name, const std::optional<BlackPoint>& black) {
    if (!black) return out.add(name, nullptr);
    out.object(name, [&](JsonObject& point) {
        point.add("L", black->L);
        point.add("origin", black->origin);
    });
}

}  // namespace

void writeTransforms(JsonObject& report, const Subject& subject,
                     const std::vector<TransformFact>& transforms) {
    report.array("transforms", [&](JsonArray& list) {
        for (const TransformFact& transform : transforms) {
            list.object([&](JsonObject& out) { writeTransform(out, subject.file(), transform); });
        }
    });
    const bool known =
        subject.view() != nullptr && subject.view()->header().deviceClass != fourcc("link");
    if (known) {
        report.add("gamutTest", subject.view()->has(kGamutTag));
    } else {
        report.add("gamutTest", nullptr);
    }
}

void writeBlackPoints(JsonObject& report, const Subject& subject) {
    report.array("blackPoints", [&](JsonArray& list) {
        if (subject.view() == nullptr || !isDevice(*subject.view())) return;
        for (const icRenderingIntent intent :
             {icPerceptual, icRelativeColorimetric, icSaturation}) {
            const auto source = blackOf(subject, intent, BlackPointRole::kSource);
            const auto destination = blackOf(subject, intent, BlackPointRole::kDestination);
            if (!source && !destination) continue;
            list.object([&](JsonObject& out) {
                out.add("intent", intentText(intent));
                writeBlack(out, "asSource", source);
                writeBlack(out, "asDestination", destination);
            });
        }
    });
}

}  // namespace lumoxa::inspection
