// SPDX-License-Identifier: Apache-2.0
//
// Descriptions and copyrights as single-byte text, out of the text types of ICC versions 2 and 4.
#include <algorithm>
#include <cstddef>
#include <limits>

#include "base/byte_order.h"
#include "base/c_heap.h"
#include "base/entry_guard.h"
#include "lumoxa/tags.h"
#include "profile/profile_object.h"
#include "profile/signatures.h"
#include "profile/tag_table.h"

namespace lumoxa {
namespace {

constexpr uint32_t kTextStart = sizeof(icTagBase);         // of a textType
constexpr uint32_t kDescriptionCount = sizeof(icTagBase);  // of a textDescriptionType
constexpr uint32_t kDescriptionStart = kDescriptionCount + 4;
constexpr uint32_t kFirstRecord = sizeof(icMultiLocalizedUnicodeType);
constexpr uint32_t kRecordSize = 12;

/// The records of a multi-localized tag copy.
class LocalizedTexts {
  public:
    explicit LocalizedTexts(const void* tag) : bytes_(static_cast<const uint8_t*>(tag)) {}

    uint32_t count() const {
        return loadFileOrder<uint32_t>(bytes_ + offsetof(icMultiLocalizedUnicodeType, count));
    }
    uint32_t recordSize() const {
        return loadFileOrder<uint32_t>(bytes_ + offsetof(icMultiLocalizedUnicodeType, recordSize));
    }
    // A record: language and country, 16 bits each, then these two.
    uint32_t length(uint32_t i) const { return loadFileOrder<uint32_t>(record(i) + 4); }
    uint32_t offset(uint32_t i) const { return loadFileOrder<uint32_t>(record(i) + 8); }
    const uint8_t* text(uint32_t i) const { return bytes_ + offset(i); }

  private:
    const uint8_t* record(uint32_t i) const {
        return bytes_ + kFirstRecord + size_t{kRecordSize} * i;
    }

    const uint8_t* bytes_;
};

bool textsFit(const LocalizedTexts& texts, uint32_t tagSize) {
    if (tagSize < kFirstRecord || texts.recordSize() != kRecordSize) return false;
    if (!fits(kFirstRecord, uint64_t{texts.count()} * kRecordSize, tagSize)) return false;
    for (uint32_t i = 0; i < texts.count(); ++i) {
        if (!fits(texts.offset(i), texts.length(i), tagSize)) return false;
    }
    return true;
}

/// Unit `i` of a UTF-16 text as a Latin-1 character.
char latin1(const uint8_t* utf16, size_t i) {
    const auto unit = loadFileOrder<uint16_t>(utf16 + 2 * i);
    return unit < 256 ? static_cast<char>(unit) : '?';
}

/// A block of the pointers followed by the texts they point at; null without memory. One allocation
/// whose size is known beforehand, so every pointer leads to its text.
CHeapPtr<char*> convertTexts(const LocalizedTexts& texts) {
    const uint32_t count = texts.count();
    uint64_t size = uint64_t{count} * sizeof(char*);
    for (uint32_t i = 0; i < count; ++i)
        size += texts.length(i) / 2 + 1;
    if (size > std::numeric_limits<size_t>::max()) return nullptr;
    auto block = allocateZeroed<char*>(static_cast<size_t>(size));
    if (block == nullptr) return nullptr;
    char* at = reinterpret_cast<char*>(block.get() + count);
    for (uint32_t i = 0; i < count; ++i) {
        block.get()[i] = at;
        for (uint32_t unit = 0; unit < texts.length(i) / 2; ++unit)
            *at++ = latin1(texts.text(i), unit);
        ++at;  // the NUL that the block was filled with
    }
    return block;
}

/// Where a single-byte text goes.
struct TextBuffer {
    char* bytes;
    size_t size;

    /// Copies the text from `start` of the tag to its NUL or the tag's end, as much as fits.
    void store(const TagCopy& tag, uint32_t start) const {
        const uint8_t* first = tag.data() + start;
        const uint8_t* last = tag.data() + std::min<size_t>(tag.size, start + size - 1);
        char* end = std::copy(first, std::find(first, last, uint8_t{0}), bytes);
        *end = '\0';
    }
};

int readText(const TagCopy& tag, const TextBuffer& out) {
    out.store(tag, kTextStart);
    return icSuccess;
}

int readDescription(const TagCopy& tag, const TextBuffer& out) {
    if (tag.size < kDescriptionStart) return icErrTextType;
    out.store(tag, kDescriptionStart);
    // It counts as cut by the count that it states, not by the characters it has. Where the two
    // contradict each other, the last byte of the buffer is NUL, too.
    const auto count = loadFileOrder<uint32_t>(tag.data() + kDescriptionCount);
    if (count > out.size) out.bytes[out.size - 1] = '\0';
    return icSuccess;
}

/// Converts only the first text: all of them together may be many times as long as the tag, whose
/// records may overlap.
int readFirstLocalized(const TagCopy& tag, const TextBuffer& out) {
    const LocalizedTexts texts(tag.data());
    if (!textsFit(texts, tag.size) || texts.count() == 0) return icErrTextType;
    const size_t length = std::min<size_t>(texts.length(0) / 2, out.size - 1);
    for (size_t i = 0; i < length; ++i)
        out.bytes[i] = latin1(texts.text(0), i);
    out.bytes[length] = '\0';
    out.bytes[out.size - 1] = '\0';
    return icSuccess;
}

/// Reads the text in the tag of that signature, whose single-byte type `readSingleByte` knows.
int readTextTag(icProfile_t handle, icTagSignature signature, char* buffer, int size,
                icTagTypeSignature singleByteType,
                int (*readSingleByte)(const TagCopy&, const TextBuffer&)) {
    const icProfileInternal* profile = validProfile(handle);
    if (profile == nullptr || buffer == nullptr) return icErrInvalid;
    if (size < 1) return icErrBufferSize;
    return guarded([&] {
        TagCopy tag;
        if (const int code = readTag(*profile, signature, tag)) return code;
        const TextBuffer out{buffer, static_cast<size_t>(size)};
        if (tag.type() == singleByteType) return readSingleByte(tag, out);
        if (tag.type() == kTypeMultiLocalized) return readFirstLocalized(tag, out);
        return icErrTextType;
    });
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icGetMLUFromTag(const icMultiLocalizedUnicodeType* tag, int* count, char*** texts) {
    if (texts != nullptr) *texts = nullptr;
    if (count != nullptr) *count = 0;
    if (tag == nullptr || count == nullptr || texts == nullptr) return 0;
    const LocalizedTexts localized(tag);
    constexpr uint32_t kMostTexts = std::numeric_limits<int>::max();
    if (localized.recordSize() != kRecordSize || localized.count() > kMostTexts) return 0;
    CHeapPtr<char*> block = convertTexts(localized);
    if (block == nullptr) return 0;
    *texts = block.release();
    *count = static_cast<int>(localized.count());
    return *count;
}

int icGetDescription(icProfile_t profile, char* buffer, int size) {
    return readTextTag(profile, fourcc("desc"), buffer, size, kTypeDescription, readDescription);
}

int icGetCopyright(icProfile_t profile, char* buffer, int size) {
    return readTextTag(profile, fourcc("cprt"), buffer, size, kTypeText, readText);
}
