// SPDX-License-Identifier: Apache-2.0
//
// Which colours a device can't reproduce, and pixels that show it.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "convert/profile_stages.h"

namespace lumoxa::engine {

/// Tells colours that lie outside a device's gamut: by the profile's 'gamt' tag, whose answer is 0
/// inside (ICC.1:2010, 9.2.28), or, without a usable one, by the way to the device and back, which
/// moves what it can't reproduce.
class GamutTest {
  public:
    /// @throws FaultError for a profile with neither
    explicit GamutTest(const ProfileView& device);

    /// How far outside each colour is, 0 for those inside: Delta E*ab of the way to and fro beyond
    /// limit(), or the answer of the tag in percent.
    /// @param lab  rows of L*, a*, b* relative to the device's white; overwritten
    void run(Row* lab, int pixels, float* excess) const;

    bool byTag() const { return byTag_; }
    /// Delta E*ab up to which the way to and fro may move a colour inside: what it moves 99 of 100
    /// colours by that the device can reproduce, and 1, which nobody sees.
    double limit() const { return limit_; }

  private:
    bool readTag(const ProfileView& device);
    void measureInside();

    bool byTag_ = false;
    double limit_ = 0;
    StageList toAnswer_;      // Lab to the tag's answer
    StageList thereAndBack_;  // Lab to device to Lab
    StageList toLab_;         // device to Lab
};

/// A list of stages whose result is replaced where a colour on its way is out of gamut.
///
/// @param whole  all stages, from `inputs` to `mark.size()` channels
/// @param toLab  those up to the device that is tested, then to Lab
std::shared_ptr<const Stage> makeGamutMark(StageList whole, StageList toLab, int inputs,
                                           std::shared_ptr<const GamutTest> test,
                                           std::vector<float> mark);

}  // namespace lumoxa::engine
