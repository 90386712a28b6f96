// SPDX-License-Identifier: Apache-2.0
#include "convert/chain.h"

#include <utility>

#include "convert/black_probe.h"
#include "convert/print_stages.h"

namespace lumoxa::engine {
namespace {

constexpr uint32_t kClassLink = fourcc("link");
constexpr uint32_t kClassAbstract = fourcc("abst");
constexpr uint32_t kClassNamed = fourcc("nmcl");

using ViewPtr = std::shared_ptr<const ProfileView>;

bool isLink(const ProfileView& profile) {
    return profile.header().deviceClass == kClassLink;
}

/// The chain as far as it has been built, and where colour stands at its end.
class ChainBuilder {
  public:
    ChainBuilder(std::vector<ViewPtr> profiles, const ChainRequest& request) : request_(request) {
        chain_.profiles = std::move(profiles);
    }

    Chain build() {
        for (size_t i = 0; i < chain_.profiles.size(); ++i)
            append(i);
        finish();
        return std::move(chain_);
    }

  private:
    enum class Place { kNowhere, kDevice, kConnectionSpace };

    const ProfileView& profile(size_t i) const { return *chain_.profiles[i]; }
    bool isLast(size_t i) const { return i + 1 == chain_.profiles.size(); }
    bool nextIsLink(size_t i) const { return !isLast(i) && isLink(profile(i + 1)); }

    void append(size_t i) {
        const ProfileView& p = profile(i);
        if (request_.options.tone.given && isLast(i) && !isGrayPrint(p, Direction::kToDevice)) {
            p.fail(icErrInvalid, 0, -1, "is no gray print device, and only those take a tone");
        }
        const uint32_t deviceClass = p.header().deviceClass;
        if (deviceClass == kClassNamed) {
            p.fail(icErrInvalid, 0, kClassOffset,
                   "is a named-colour profile, which lists colours and describes no device");
        }
        requireKnown(p, p.header().colorSpace, kSpaceOffset);
        if (deviceClass == kClassLink) {
            appendLink(p);
        } else if (deviceClass == kClassAbstract) {
            appendAbstract(p, i);
        } else {
            appendDevice(p, i);
        }
    }

    void appendLink(const ProfileView& p) {
        if (place_ == Place::kConnectionSpace) {
            p.fail(icErrInvalid, 0, kClassOffset,
                   "is a device link, which takes the colours of a device, but the profile before "
                   "it leads to the connection space");
        }
        requireKnown(p, p.header().pcs, kPcsOffset);
        enterSpace(p, p.header().colorSpace);
        chain_.stages.append(wholeStages(p));
        place_ = Place::kDevice;
        space_ = p.header().pcs;
        channels_ = lastOutputs();
    }

    void appendAbstract(const ProfileView& p, size_t i) {
        if (place_ == Place::kDevice) {
            p.fail(icErrInvalid, 0, kClassOffset,
                   "is an abstract profile, which changes colours of the connection space, but the "
                   "profile before it leads to a device");
        }
        requireConnectionSpace(p, p.header().colorSpace, kSpaceOffset);
        requireConnectionSpace(p, p.header().pcs, kPcsOffset);
        if (place_ == Place::kNowhere) {
            enterSpace(p, p.header().colorSpace);
            pcs_ = p.header().colorSpace;
        } else {
            changePcs(p.header().colorSpace);
            addStep(i);
        }
        chain_.stages.append(wholeStages(p));
        pcs_ = p.header().pcs;
        place_ = Place::kConnectionSpace;
        source_ = nullptr;
        channels_ = 3;
        space_ = pcs_;
    }

    void appendDevice(const ProfileView& p, size_t i) {
        if (place_ == Place::kConnectionSpace) {
            enterDevice(p, i);
        } else {
            enterSpace(p, p.header().colorSpace);
        }
        if (!isLast(i) && !nextIsLink(i)) leaveDevice(p, i);
    }

    /// A space that ICC.1 lists has a number of channels, by which tags are checked.
    static void requireKnown(const ProfileView& p, uint32_t space, int64_t offset) {
        if (channelsOf(space) == 0)
            p.fail(icErrInvalid, 0, offset, "has the unknown colour space " + quoted(space));
    }

    static void requireConnectionSpace(const ProfileView& p, uint32_t space, int64_t offset) {
        if (isConnectionSpace(space)) return;
        p.fail(icErrInvalid, 0, offset,
               "is an abstract profile with " + quoted(space) +
                   " where only the connection spaces 'XYZ ' and 'Lab ' may be");
    }

    /// Requires that the colours at this place are those of `space`, or begins with them.
    void enterSpace(const ProfileView& p, uint32_t space) {
        const int channels =
            isGrayPrint(p, Direction::kToPcs) ? kGrayPrintChannels : channelsOf(space);
        if (place_ == Place::kNowhere) {
            chain_.inSpace = space_ = space;
            chain_.inputs = channels_ = channels;
            place_ = Place::kDevice;
            return;
        }
        if (space_ == space && channels_ == channels) return;
        p.fail(icErrInvalid, 0, kSpaceOffset,
               "is for " + spaceName(space) + " of " + std::to_string(channels) +
                   " channels, but the profile before it gives " + spaceName(space_) + " of " +
                   std::to_string(channels_));
    }

    void leaveDevice(const ProfileView& p, size_t i) {
        const icRenderingIntent intent = request_.intents[i];
        const Side side = isGrayPrint(p, Direction::kToPcs)
                              ? grayPrintSide(p, intent, Direction::kToPcs, {})
                              : sideOf(p, intent, Direction::kToPcs);
        chain_.stages.append(side.stages);
        pcs_ = side.pcs;
        source_ = whiteSource_ = &p;
        place_ = Place::kConnectionSpace;
    }

    void enterDevice(const ProfileView& p, size_t i) {
        const icRenderingIntent intent = request_.intents[i - 1];
        const bool grayPrint = isGrayPrint(p, Direction::kToDevice);
        const Side side = grayPrint
                              ? grayPrintSide(p, intent, Direction::kToDevice,
                                              isLast(i) ? request_.options.tone : GrayPrintTone())
                              : sideOf(p, intent, Direction::kToDevice);
        addStep(i);
        if (intent == icAbsoluteColorimetric) {
            scaleWhite(p);
        } else if (request_.options.blackPointCompensation) {
            compensateBlack(p, intent);
        }
        noteAsked(i);
        changePcs(side.pcs);
        chain_.stages.append(side.stages);
        place_ = Place::kDevice;
        space_ = p.header().colorSpace;
        channels_ = grayPrint ? kGrayPrintChannels : channelsOf(space_);
        last_ = &p;
    }

    void addStep(size_t i) {
        StepReport step;
        step.intent = request_.intents[i - 1];
        step.from = static_cast<int>(i) - 1;
        step.to = static_cast<int>(i);
        chain_.steps.push_back(step);
    }

    void changePcs(uint32_t wanted) {
        if (pcs_ == wanted) return;
        if (wanted == kSpaceLab) {
            chain_.stages.append(std::make_shared<XyzToLabStage>(), "CIE 15");
        } else {
            chain_.stages.append(std::make_shared<LabToXyzStage>(), "CIE 15");
        }
        pcs_ = wanted;
    }

    ProfileView::MediaWhite whiteOf(const ProfileView* p) {
        if (p == nullptr) return {};
        const ProfileView::MediaWhite white = p->mediaWhite();
        if (white.replaced) {
            chain_.notes.push_back(p->name() +
                                   ": its white is taken as D50 for absolute colorimetry, "
                                   "as ICC.1 version 4 defines it for displays; its tag "
                                   "'wtpt' says otherwise");
        }
        return white;
    }

    /// Colours relative to the source's white become relative to the destination's (ICC.1:2010,
    /// 6.3.2).
    void scaleWhite(const ProfileView& destination) {
        const ProfileView::MediaWhite from = whiteOf(whiteSource_), to = whiteOf(&destination);
        std::array<double, 3> ratio = {};
        for (size_t c = 0; c < 3; ++c)
            ratio[c] = from.ratio[c] / to.ratio[c];
        if (ratio == std::array<double, 3>{1, 1, 1}) return;
        changePcs(kSpaceXyz);
        chain_.stages.append(
            std::make_shared<AffineStage>(Affine::diagonal(ratio), "white scaling"),
            "absolute colorimetry");
    }

    void compensateBlack(const ProfileView& destination, icRenderingIntent intent) {
        StepReport& step = chain_.steps.back();
        if (source_ == nullptr || !hasBlackPoint(*source_, Direction::kToPcs) ||
            !hasBlackPoint(destination, Direction::kToDevice)) {
            step.note = "no black point compensation: one side is no device that ISO 18619 covers";
            return;
        }
        if (!leadsBackToLab(destination, intent)) {
            step.note = "no black point compensation: the destination has no way back to Lab";
            return;
        }
        step.compensated = true;
        step.sourceBlack =
            sourceBlackPoint(blackProbeOf(*source_, intent, BlackPointRole::kSource));
        step.destinationBlack = destinationBlackPoint(
            blackProbeOf(destination, intent, BlackPointRole::kDestination), intent);
        const BlackPointMapping mapping = mapBlack(step.sourceBlack.L, step.destinationBlack.L);
        const Affine affine =
            Affine::diagonal({mapping.scale, mapping.scale, mapping.scale}, mapping.offset);
        if (affine.isIdentity()) return;
        changePcs(kSpaceXyz);
        chain_.stages.append(std::make_shared<AffineStage>(affine, "black point compensation"),
                             "ISO 18619");
    }

    /// Keeps the stages up to here, which lead to the colour that the device is asked for.
    void noteAsked(size_t i) {
        const int device = request_.gamutDevice < 0 ? static_cast<int>(chain_.profiles.size()) - 1
                                                    : request_.gamutDevice;
        StageList asked = chain_.stages;
        appendToLab(asked, pcs_);
        if (static_cast<int>(i) == device) {
            print_.toGamutDevice = asked;
            print_.gamutDevice = &profile(i);
        }
        if (isLast(i)) print_.toDestination = std::move(asked);
    }

    int lastOutputs() const { return chain_.stages.stages().back().stage->outputs(); }

    void finish() {
        if (chain_.profiles.size() == 1 && !isLink(profile(0))) {
            profile(0).fail(
                icErrInvalid, 0, kClassOffset,
                "is alone in its chain: a conversion needs two profiles or a device link");
        }
        chain_.outSpace = space_;
        chain_.outputs = channels_;
        if (last_ != nullptr && space_ == last_->header().colorSpace) addMeasure(*last_);
        if (isConnectionSpace(space_)) {
            chain_.toLab = {};
            appendToLab(chain_.toLab, space_);
        }
        chain_.stages = simplified(chain_.stages);
        print_.destination = last_;
        addPrintStages(chain_, request_, std::move(print_));
    }

    /// The destination seen through its own A2B, where it has one.
    void addMeasure(const ProfileView& destination) {
        if (isConnectionSpace(space_) || isGrayPrint(destination, Direction::kToPcs)) return;
        try {
            Side side = sideOf(destination, icRelativeColorimetric, Direction::kToPcs);
            appendToLab(side.stages, side.pcs);
            chain_.toLab = simplified(side.stages);
        } catch (const FaultError&) {
            chain_.toLab = {};  // none, or a faulty one: the conversion doesn't need it
        }
    }

    // Where in a header the fields stand that faults name.
    static constexpr int64_t kClassOffset = 12;
    static constexpr int64_t kSpaceOffset = 16;
    static constexpr int64_t kPcsOffset = 20;

    const ChainRequest& request_;
    Chain chain_;
    Place place_ = Place::kNowhere;
    uint32_t space_ = 0;  // of the device that colours stand at
    uint32_t pcs_ = 0;    // or of the connection space
    int channels_ = 0;
    const ProfileView* source_ = nullptr;       // of the step's black
    const ProfileView* whiteSource_ = nullptr;  // of its white, abstract profiles passed over
    const ProfileView* last_ = nullptr;
    PrintSides print_;
};

}  // namespace

Chain makeChain(std::vector<std::shared_ptr<const ProfileView>> profiles,
                const ChainRequest& request) {
    return ChainBuilder(std::move(profiles), request).build();
}

}  // namespace lumoxa::engine
