// SPDX-License-Identifier: Apache-2.0
#include "convert/profile_view.h"

#include <algorithm>

#include "base/byte_order.h"
#include "base/pcs_encoding.h"
#include "profile/description_text.h"
#include "profile/header_reader.h"
#include "profile/tag_table.h"

namespace lumoxa::engine {
namespace {

constexpr double kFixedOne = 65536.0;

struct Space {
    uint32_t signature;
    int channels;
};

constexpr Space kSpaces[] = {
    {kSpaceXyz, 3},
    {kSpaceLab, 3},
    {fourcc("Luv "), 3},
    {fourcc("YCbr"), 3},
    {fourcc("Yxy "), 3},
    {kSpaceRgb, 3},
    {kSpaceGray, 1},
    {fourcc("HSV "), 3},
    {fourcc("HLS "), 3},
    {kSpaceCmyk, 4},
    {kSpaceCmy, 3},
    {fourcc("2CLR"), 2},
    {fourcc("3CLR"), 3},
    {fourcc("4CLR"), 4},
    {fourcc("5CLR"), 5},
    {fourcc("6CLR"), 6},
    {fourcc("7CLR"), 7},
    {fourcc("8CLR"), 8},
    {fourcc("9CLR"), 9},
    {fourcc("ACLR"), 10},
    {fourcc("BCLR"), 11},
    {fourcc("CCLR"), 12},
    {fourcc("DCLR"), 13},
    {fourcc("ECLR"), 14},
    {fourcc("FCLR"), 15},
    // Older signatures of the same, in use before ICC.1 had those above.
    {fourcc("MCH1"), 1},
    {fourcc("MCH2"), 2},
    {fourcc("MCH3"), 3},
    {fourcc("MCH4"), 4},
    {fourcc("MCH5"), 5},
    {fourcc("MCH6"), 6},
    {fourcc("MCH7"), 7},
    {fourcc("MCH8"), 8},
};

std::string letters(uint32_t signature) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto c = static_cast<char>(signature >> shift & 0xFF);
        text += c >= ' ' && c <= '~' ? c : '?';
    }
    return text;
}

}  // namespace

std::string quoted(uint32_t signature) {
    std::string text(1, '\'');
    text += letters(signature);
    text += '\'';
    return text;
}

std::string spaceName(uint32_t space) {
    std::string text = letters(space);
    if (text.substr(1) == "CLR") return std::to_string(channelsOf(space)) + "-colour";
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text == "GRAY" ? "gray" : text;
}

int channelsOf(uint32_t space) {
    const auto* const known = std::find_if(std::begin(kSpaces), std::end(kSpaces),
                                           [=](const Space& s) { return s.signature == space; });
    return known == std::end(kSpaces) ? 0 : known->channels;
}

// --- tags ----------------------------------------------------------------------------------------

std::span<const uint8_t> TagReader::bytes() const {
    return std::span(profile_->bytes()).subspan(offset_, size_);
}

const uint8_t* TagReader::need(uint64_t at, uint64_t size) const {
    if (!fits(at, size, size_)) {
        fail(icErrRead, static_cast<int64_t>(std::min<uint64_t>(at, size_)),
             "ends after " + std::to_string(size_) + " bytes, but declares data up to byte " +
                 std::to_string(at + size));
    }
    return profile_->bytes().data() + offset_ + at;
}

uint32_t TagReader::u16(uint64_t at) const {
    return loadFileOrder<uint16_t>(need(at, 2));
}

uint32_t TagReader::u32(uint64_t at) const {
    return loadFileOrder<uint32_t>(need(at, 4));
}

double TagReader::fixed(uint64_t at) const {
    return static_cast<int32_t>(u32(at)) / kFixedOne;
}

void TagReader::fail(int code, int64_t at, const std::string& rule) const {
    profile_->fail(code, signature_, at < 0 ? int64_t{offset_} : offset_ + at,
                   "tag " + quoted(signature_) + " " + rule);
}

// --- the profile ---------------------------------------------------------------------------------

ProfileView::ProfileView(ProfileImage image, int index) : image_(std::move(image)), index_(index) {
    name_ = title();
    if (image_->size() < kTagTableOffset) {
        fail(icErrRead, 0, static_cast<int64_t>(image_->size()),
             "has " + std::to_string(image_->size()) +
                 " bytes, fewer than header and tag count of an ICC profile (132)");
    }
    header_ = headerOf(image_->data());
    if (header_.magic != kMagic) {
        constexpr int64_t kMagicOffset = 36;
        fail(icErrInvalid, 0, kMagicOffset, "is no ICC profile: there is no 'acsp' at byte 36");
    }
    readTable();
    if (const std::optional<TagReader> text = find(fourcc("desc"))) {
        description_ = descriptionUtf8(text->bytes());
    }
    if (!description_.empty()) name_ += " \"" + description_ + "\"";
}

void ProfileView::readTable() {
    const uint8_t* const bytes = image_->data();
    const auto length = static_cast<uint64_t>(image_->size());
    const auto count = loadFileOrder<uint32_t>(bytes + kTagCountOffset);
    if (!fits(kTagTableOffset, uint64_t{count} * kTagEntrySize, length)) {
        fail(icErrRead, 0, kTagCountOffset,
             "has a tag table of " + std::to_string(count) + " entries, which doesn't fit " +
                 std::to_string(length) + " bytes");
    }
    entries_.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t* at = bytes + kTagTableOffset + size_t{kTagEntrySize} * i;
        const Entry entry = {loadFileOrder<uint32_t>(at), loadFileOrder<uint32_t>(at + 4),
                             loadFileOrder<uint32_t>(at + 8)};
        if (!fits(entry.offset, entry.size, length)) {
            fail(icErrRead, entry.signature, at - bytes,
                 "tag " + quoted(entry.signature) + " ends at byte " +
                     std::to_string(uint64_t{entry.offset} + entry.size) +
                     ", after the profile's end at " + std::to_string(length));
        }
        entries_.push_back(entry);
    }
}

std::string ProfileView::title() const {
    if (index_ == kProofProfile) return "the proof profile";
    return index_ < 0 ? "the profile" : "profile " + std::to_string(index_ + 1);
}

bool ProfileView::has(uint32_t signature) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [=](const Entry& entry) { return entry.signature == signature; });
}

std::optional<TagReader> ProfileView::find(uint32_t signature) const {
    for (const Entry& entry : entries_) {
        if (entry.signature == signature)
            return TagReader(*this, signature, entry.offset, entry.size);
    }
    return std::nullopt;
}

TagReader ProfileView::require(uint32_t signature) const {
    if (const std::optional<TagReader> tag = find(signature)) return *tag;
    fail(icErrNoTag, signature, -1, "has no tag " + quoted(signature));
}

ProfileView::MediaWhite ProfileView::mediaWhite() const {
    constexpr uint64_t kNumbers = 8;     // behind type and reserved bytes
    constexpr double kTolerance = 5e-4;  // of D50 as profiles round it
    MediaWhite white;
    const std::optional<TagReader> tag = find(fourcc("wtpt"));
    if (!tag || tag->size() < kNumbers + 12 || tag->type() != kTypeXyz) return white;
    MediaWhite own;
    bool isD50 = true;
    for (int c = 0; c < 3; ++c) {
        const double value = tag->fixed(kNumbers + 4 * static_cast<uint64_t>(c));
        if (value <= 0) return white;
        isD50 = isD50 && value > kPcsWhite[c] - kTolerance && value < kPcsWhite[c] + kTolerance;
        own.ratio[c] = value / kPcsWhite[c];
    }
    if (version4() || header_.deviceClass != kClassDisplay) return own;
    white.replaced = !isD50;
    return white;
}

void ProfileView::fail(int code, uint32_t tag, int64_t offset, const std::string& rule) const {
    throw FaultError(
        Fault{code, name_ + ": " + rule, tag, offset, std::max(index_, kOutsideOfChains)});
}

}  // namespace lumoxa::engine
