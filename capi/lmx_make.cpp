// SPDX-License-Identifier: Apache-2.0
//
// For C: profiles made from measurements and descriptions, and their tags edited.
#include <string>
#include <utility>

#include "capi/fault_guard.h"
#include "capi/handles.h"
#include "make/display.h"
#include "make/gray_fit.h"
#include "make/gray_print.h"
#include "make/profile_edit.h"

namespace lumoxa {
namespace {

using engine::ToneCurveForm;

ToneCurveForm curveOf(const lmx_curve& record) {
    const lmx_curve given = copiedRecord(record, "lmx_curve");
    ToneCurveForm curve;
    switch (given.kind) {
        case LMX_CURVE_SRGB:
            break;
        case LMX_CURVE_GAMMA:
            curve.kind = ToneCurveForm::Kind::kGamma;
            curve.gamma = given.gamma;
            break;
        case LMX_CURVE_TABLE:
            curve.kind = ToneCurveForm::Kind::kTable;
            requireArgument(given.values, "the table of the tone curve");
            if (given.value_count < 0 ||
                given.value_count > static_cast<int64_t>(engine::kMostCurveValues)) {
                throw FaultError(LMX_ERR_INVALID, "a tone curve has 2 to 4096 values, not " +
                                                      std::to_string(given.value_count));
            }
            curve.table.assign(given.values, given.values + given.value_count);
            break;
        default:
            throw FaultError(LMX_ERR_INVALID, "there is no kind " + std::to_string(given.kind) +
                                                  " of tone curves, only 0 to 2");
    }
    return curve;
}

std::string textOf(const char* text, const char* name) {
    requireArgument(text, name);
    return text;
}

engine::DisplayForm displayOf(const lmx_display& record) {
    const lmx_display given = copiedRecord(record, "lmx_display");
    engine::DisplayForm display;
    display.colorimetry = {{{{given.red[0], given.red[1]},
                             {given.green[0], given.green[1]},
                             {given.blue[0], given.blue[1]}}},
                           {given.white[0], given.white[1]}};
    if (given.curve != nullptr) display.curve = curveOf(*given.curve);
    display.version = given.version;
    display.description = textOf(given.description, "the description");
    display.copyright = textOf(given.copyright, "the copyright");
    return display;
}

engine::GrayPrintForm grayPrintOf(const lmx_gray_print& record) {
    const lmx_gray_print given = copiedRecord(record, "lmx_gray_print");
    if (given.patch_count < 0 || (given.patch_count > 0 && given.patches == nullptr))
        throw FaultError(LMX_ERR_INVALID, "the print has no patches where it says so");
    engine::GrayPrintForm print;
    print.patches.resize(static_cast<size_t>(given.patch_count));
    for (size_t i = 0; i < print.patches.size(); ++i) {
        for (size_t c = 0; c < 3; ++c) {
            print.patches[i].device[c] = given.patches[i].device[c];
            print.patches[i].xyz[c] = given.patches[i].xyz[c];
        }
    }
    print.range = given.range;
    print.description = textOf(given.description, "the description");
    print.copyright = textOf(given.copyright, "the copyright");
    return print;
}

/// Runs `make`, which returns the bytes of a profile, and hands its handle out.
template <class Make>
int32_t handOutProfile(lmx_profile** out, lmx_fault* fault, Make make) {
    if (out != nullptr) *out = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(out, "the address of the handle");
        *out = profileOf(make());
        return LMX_SUCCESS;
    });
}

/// Runs `change` on the profile behind a handle.
template <class Change>
int32_t edit(lmx_profile* profile, lmx_fault* fault, Change change) {
    return faultGuarded(fault, [&] {
        change(const_cast<icProfileInternal&>(requireProfile(profile)));
        return LMX_SUCCESS;
    });
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

void lmx_display_init(lmx_display* display) {
    if (display == nullptr) return;
    // IEC 61966-2-1, with the primaries of ITU-R BT.709.
    *display = {sizeof *display,  kVersion4, {0.64, 0.33},  {0.30, 0.60},  {0.15, 0.06},
                {0.3127, 0.3290}, nullptr,   "RGB display", kFreeCopyright};
}

int32_t lmx_make_display(const lmx_display* display, lmx_profile** out, lmx_fault* fault) {
    return handOutProfile(out, fault, [&] {
        requireArgument(display, "the display");
        return engine::makeDisplay(displayOf(*display));
    });
}

void lmx_gray_print_init(lmx_gray_print* print) {
    if (print == nullptr) return;
    *print = {};
    print->size = sizeof *print;
    print->range = 1;
    print->description = "Gray print of three channels";
    print->copyright = kFreeCopyright;
}

int32_t lmx_make_gray_print(const lmx_gray_print* print, lmx_profile** out, lmx_fault* fault) {
    return handOutProfile(out, fault, [&] {
        requireArgument(print, "the print");
        return engine::makeGrayPrint(grayPrintOf(*print));
    });
}

int32_t lmx_gray_print_report(lmx_profile* profile, char** json, lmx_fault* fault) {
    if (json != nullptr) *json = nullptr;
    return faultGuarded(fault, [&] {
        requireArgument(json, "the address of the text");
        *json = handedOut(engine::grayPrintReport(imageOf(requireProfile(profile))));
        return LMX_SUCCESS;
    });
}

int32_t lmx_profile_set_text(lmx_profile* profile, uint32_t signature, const char* text,
                             lmx_fault* fault) {
    return edit(profile, fault, [&](icProfileInternal& edited) {
        requireArgument(text, "the text");
        engine::setText(edited, signature, text);
    });
}

int32_t lmx_profile_set_white(lmx_profile* profile, double X, double Y, double Z,
                              lmx_fault* fault) {
    return edit(profile, fault, [&](icProfileInternal& edited) {
        engine::setWhite(edited, {X, Y, Z});
    });
}

int32_t lmx_profile_set_curve(lmx_profile* profile, uint32_t signature, const lmx_curve* curve,
                              lmx_fault* fault) {
    return edit(profile, fault, [&](icProfileInternal& edited) {
        requireArgument(curve, "the curve");
        engine::setCurve(edited, signature, curveOf(*curve));
    });
}

int32_t lmx_profile_remove_tag(lmx_profile* profile, uint32_t signature, lmx_fault* fault) {
    return edit(profile, fault,
                [&](icProfileInternal& edited) { engine::removeTag(edited, signature); });
}
