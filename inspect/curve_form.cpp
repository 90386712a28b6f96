// SPDX-License-Identifier: Apache-2.0
#include "inspect/curve_form.h"

#include "lut/lut_tag.h"

namespace lumoxa::inspection {
namespace {

constexpr uint64_t kContentAt = lut_layout::kCurveData;
constexpr double kGammaOne = 256.0;  // 1.0 in u8Fixed8

CurveForm sampledForm(ByteView data) {
    CurveForm form;
    const uint32_t count = data.u32(8);
    form.bytes = kContentAt + 2 * uint64_t{count};
    if (!data.holds(0, form.bytes)) return form;
    form.kind = count == 0   ? CurveForm::kIdentity
                : count == 1 ? CurveForm::kGamma
                             : CurveForm::kTable;
    if (count == 1) form.numbers = {data.u16(kContentAt) / kGammaOne};
    form.entries = count > 1 ? count : 0;
    return form;
}

CurveForm parametricForm(ByteView data) {
    CurveForm form;
    form.function = data.u16(8);
    const uint32_t count = parametricCount(form.function);
    if (count == 0) return form;
    form.bytes = kContentAt + 4 * uint64_t{count};
    if (!data.holds(0, form.bytes)) return form;
    form.kind = CurveForm::kParametric;
    for (uint32_t i = 0; i < count; ++i)
        form.numbers.push_back(data.fixed(kContentAt + 4 * uint64_t{i}));
    return form;
}

}  // namespace

CurveForm curveForm(ByteView data) {
    switch (data.u32(0)) {
        case kTypeCurve:
            return sampledForm(data);
        case kTypeParametric:
            return parametricForm(data);
        default:
            return {};
    }
}

char parameterName(size_t i) {
    return "gabcdef"[i % 7];
}

}  // namespace lumoxa::inspection
