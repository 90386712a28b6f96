// SPDX-License-Identifier: Apache-2.0
#include "profile/new_profile.h"

#include <algorithm>
#include <chrono>
#include <limits>

#include "base/fault.h"

namespace lumoxa {
namespace {

constexpr size_t kHeaderBytes = 128;
constexpr size_t kEntryBytes = 12;  // of the tag table
constexpr size_t kAlignment = 4;

uint32_t narrowed(size_t bytes) {
    if (bytes > std::numeric_limits<uint32_t>::max()) {
        throw FaultError(icErrInvalid, "the tags are larger than a profile can be, 4 GiB");
    }
    return static_cast<uint32_t>(bytes);
}

// ICC.1:2010, 7.2.
TagBytes header(const NewProfile& profile, uint32_t size) {
    TagBytes bytes;
    for (const uint32_t field :
         {size, 0U, profile.version, profile.deviceClass, profile.space, profile.pcs})
        put32(bytes, field);
    const icDateTimeNumber& created = profile.created;
    for (const uint32_t part : {created.year, created.month, created.day, created.hours,
                                created.minutes, created.seconds})
        put16(bytes, part);
    put32(bytes, kMagic);
    put32(bytes, profile.platform);
    bytes.resize(bytes.size() + 20, 0);  // flags .. device attributes
    put32(bytes, profile.intent);
    putFixed(bytes, kD50Xyz);
    bytes.resize(kHeaderBytes, 0);
    return bytes;
}

}  // namespace

std::vector<uint8_t> profileBytes(const NewProfile& profile) {
    const std::vector<NewTag>& tags = profile.tags;
    const size_t bodiesAt = kHeaderBytes + sizeof(uint32_t) + kEntryBytes * tags.size();
    std::vector<size_t> offsets;
    TagBytes table, bodies;
    put32(table, narrowed(tags.size()));
    for (const NewTag& tag : tags) {
        const auto same = std::find_if(tags.begin(), tags.end(), [&](const NewTag& earlier) {
            return &earlier == &tag || earlier.bytes == tag.bytes;
        });
        const auto index = static_cast<size_t>(same - tags.begin());
        if (index == offsets.size()) {
            offsets.push_back(bodiesAt + bodies.size());
            bodies.insert(bodies.end(), tag.bytes.begin(), tag.bytes.end());
            bodies.resize((bodies.size() + kAlignment - 1) / kAlignment * kAlignment, 0);
        } else {
            offsets.push_back(offsets[index]);
        }
        for (const size_t field : {size_t{tag.signature}, offsets.back(), tag.bytes.size()})
            put32(table, narrowed(field));
    }
    TagBytes bytes = header(profile, narrowed(bodiesAt + bodies.size()));
    bytes.insert(bytes.end(), table.begin(), table.end());
    bytes.insert(bytes.end(), bodies.begin(), bodies.end());
    return bytes;
}

icDateTimeNumber utcNow() {
    using namespace std::chrono;
    const auto time = floor<seconds>(system_clock::now());
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    const auto part = [](auto value) { return static_cast<uint16_t>(value); };
    return {part(static_cast<int>(date.year())),     part(static_cast<unsigned>(date.month())),
            part(static_cast<unsigned>(date.day())), part(clock.hours().count()),
            part(clock.minutes().count()),           part(clock.seconds().count())};
}

}  // namespace lumoxa
