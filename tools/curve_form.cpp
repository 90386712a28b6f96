// SPDX-License-Identifier: Apache-2.0
#include "tools/curve_form.h"

#include <array>
#include <iomanip>
#include <sstream>

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

constexpr uint64_t kContentAt = 12;  // after type, reserved bytes, and the count or function
constexpr double kGammaOne = 256.0;  // 1.0 in u8Fixed8
constexpr std::array<uint32_t, 5> kParameterCounts = {1, 3, 4, 5, 7};

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
    if (form.function >= kParameterCounts.size()) return form;
    const uint32_t count = kParameterCounts[form.function];
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
        case fourCc("curv"):
            return sampledForm(data);
        case fourCc("para"):
            return parametricForm(data);
        default:
            return {};
    }
}

char parameterName(size_t i) {
    return "gabcdef"[i % 7];
}

std::string CurveForm::text() const {
    std::ostringstream out;
    switch (kind) {
        case kIdentity:
            return "identity";
        case kGamma:
            out << "gamma " << std::fixed << std::setprecision(2) << numbers.at(0);
            return out.str();
        case kTable:
            return "table of " + std::to_string(entries) + " entries";
        case kParametric:
            out << "parametric type " << function << ':' << std::setprecision(6);
            for (size_t i = 0; i < numbers.size(); ++i)
                out << (i == 0 ? " " : ", ") << parameterName(i) << ' ' << numbers[i];
            return out.str();
        default:
            return "can't be read";
    }
}

}  // namespace lumoxa_tool
