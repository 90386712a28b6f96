// SPDX-License-Identifier: Apache-2.0
#include "convert/black_probe.h"

#include <algorithm>

#include "convert/gray_print.h"

namespace lumoxa::engine {

void appendToLab(StageList& stages, uint32_t pcs) {
    if (pcs == kSpaceXyz) stages.append(std::make_shared<XyzToLabStage>(), "");
}

namespace {

/// A list of stages as the probe of black points wants it.
BlackPointProbe::Conversion runnerOf(const StageList& list, int inputs, int outputs) {
    return [stages = simplified(list), inputs, outputs](const float* from, float* to, int count) {
        Row rows[kMaxChannels];
        for (int done = 0; done < count; done += kBlockPixels) {
            const int n = std::min(kBlockPixels, count - done);
            for (int i = 0; i < n; ++i) {
                for (int c = 0; c < inputs; ++c)
                    rows[c][i] = from[(done + i) * inputs + c];
            }
            stages.run(rows, n);
            for (int i = 0; i < n; ++i) {
                for (int c = 0; c < outputs; ++c)
                    to[(done + i) * outputs + c] = rows[c][i];
            }
        }
    };
}

BlackPointProbe::Conversion toLabOf(const ProfileView& profile, uint32_t intent, int channels) {
    Side side = sideOf(profile, intent, Direction::kToPcs);
    appendToLab(side.stages, side.pcs);
    return runnerOf(side.stages, channels, 3);
}

BlackPointProbe::Conversion toDeviceOf(const ProfileView& profile, uint32_t intent, int channels) {
    const Side side = sideOf(profile, intent, Direction::kToDevice);
    StageList stages;
    if (side.pcs == kSpaceXyz) stages.append(std::make_shared<LabToXyzStage>(), "");
    stages.append(side.stages);
    return runnerOf(stages, 3, channels);
}

}  // namespace

BlackPointProbe blackProbeOf(const ProfileView& profile, icRenderingIntent intent,
                             BlackPointRole role) {
    BlackPointProbe probe;
    probe.colorSpace = profile.header().colorSpace;
    probe.channels = channelsOf(probe.colorSpace);
    const bool destination = role == BlackPointRole::kDestination;
    probe.hasLuts =
        lutTagOf(profile, intent, destination ? Direction::kToDevice : Direction::kToPcs) != 0;
    const bool hasTables = lutTagOf(profile, icPerceptual, Direction::kToDevice) != 0;
    if (probe.colorSpace == kSpaceCmyk && hasTables)
        probe.toDevicePerceptual = toDeviceOf(profile, icPerceptual, probe.channels);
    probe.toLab = toLabOf(profile, intent, probe.channels);
    if (destination && probe.hasLuts) {
        probe.toDevice = toDeviceOf(profile, intent, probe.channels);
        probe.toLabColorimetric = toLabOf(profile, icRelativeColorimetric, probe.channels);
    }
    return probe;
}

bool hasBlackPoint(const ProfileView& profile, Direction direction) {
    return !isConnectionSpace(profile.header().colorSpace) && !isGrayPrint(profile, direction);
}

bool leadsBackToLab(const ProfileView& destination, uint32_t intent) {
    return lutTagOf(destination, intent, Direction::kToDevice) == 0 ||
           lutTagOf(destination, intent, Direction::kToPcs) != 0;
}

}  // namespace lumoxa::engine
