// SPDX-License-Identifier: Apache-2.0
//
// Tests of a profile header against search criteria.
#include <algorithm>
#include <array>

#include "lumoxa/profile.h"

namespace lumoxa {
namespace {

using Value = decltype(icSearchCriterion_t::value);
using HeaderTest = bool (*)(const icHeader& header, const Value& value);

template <uint32_t icHeader::*Field>
bool equals(const icHeader& header, const Value& value) {
    return header.*Field == value.u32[0];
}

template <int Shift>
bool attributesEqual(const icHeader& header, const Value& value) {
    return static_cast<uint32_t>(header.attributes >> Shift) == value.u32[0];
}

bool illuminantEquals(const icHeader& header, const Value& value) {
    const icXYZNumber& white = header.illuminant;
    return static_cast<uint32_t>(white.X) == value.u32[0] &&
           static_cast<uint32_t>(white.Y) == value.u32[1] &&
           static_cast<uint32_t>(white.Z) == value.u32[2];
}

// Each part of a date is tested by itself, and all three must pass: stricter than a comparison of
// dates, since 1 February is not after 31 January here.
bool isBefore(const icHeader& header, const Value& value) {
    const icDateTimeNumber& date = header.date;
    return date.year <= value.u16[0] && date.month <= value.u16[1] && date.day < value.u16[2];
}

bool isOn(const icHeader& header, const Value& value) {
    const icDateTimeNumber& date = header.date;
    return date.year == value.u16[0] && date.month == value.u16[1] && date.day == value.u16[2];
}

bool isAfter(const icHeader& header, const Value& value) {
    const icDateTimeNumber& date = header.date;
    return date.year >= value.u16[0] && date.month >= value.u16[1] && date.day > value.u16[2];
}

bool passes(const icHeader&, const Value&) {
    return true;
}

// By selector. The numbers are part of the interface.
constexpr std::array<HeaderTest, 18> kTests = {
    passes,                              // 0: no test
    equals<&icHeader::deviceClass>,      // 1
    equals<&icHeader::colorSpace>,       // 2
    equals<&icHeader::pcs>,              // 3
    equals<&icHeader::cmmId>,            // 4
    equals<&icHeader::platform>,         // 5
    equals<&icHeader::flags>,            // 6
    equals<&icHeader::manufacturer>,     // 7
    equals<&icHeader::model>,            // 8
    attributesEqual<32>,                 // 9
    attributesEqual<0>,                  // 10
    equals<&icHeader::renderingIntent>,  // 11
    illuminantEquals,                    // 12
    equals<&icHeader::version>,          // 13
    isBefore,                            // 14
    isOn,                                // 15
    isAfter,                             // 16
    equals<&icHeader::creator>,          // 17, in file byte order on both sides
};

bool holds(const icSearchCriterion_t& criterion, const icHeader& header) {
    return criterion.selector >= kTests.size() ||
           kTests[criterion.selector](header, criterion.value);
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icProfileCheck(const icSearch_t* search, const icHeader* header) {
    if (search == nullptr) return icErrInvalid;
    if (search->count < 1) return icSuccess;
    if (search->criteria == nullptr || header == nullptr) return icErrInvalid;
    const bool all =
        std::all_of(search->criteria, search->criteria + search->count,
                    [header](const auto& criterion) { return holds(criterion, *header); });
    return all ? icSuccess : icErrInvalid;
}
