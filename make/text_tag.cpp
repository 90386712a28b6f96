// SPDX-License-Identifier: Apache-2.0
#include "make/text_tag.h"

#include <algorithm>
#include <string>

#include "base/fault.h"
#include "base/utf8.h"
#include "convert/profile_view.h"
#include "profile/signatures.h"

namespace lumoxa::engine {
namespace {

constexpr uint32_t kFirstLocalized = 0x04000000;  // the version that brought multi-localized texts
// UTF-16 of a text at most doubles its bytes, and a tag has a size of 32 bits.
constexpr size_t kMostBytes = size_t{1} << 30;
// Zero bytes behind a description, as icFillProfileDescription has them.
constexpr size_t kDescriptionTail = 3;

constexpr uint32_t kCopyright = fourcc("cprt");
constexpr uint32_t kTexts[] = {fourcc("desc"), kCopyright, fourcc("dmnd"), fourcc("dmdd"),
                               fourcc("vued")};

[[noreturn]] void refuse(uint32_t signature, const std::string& rule) {
    Fault fault;
    fault.tag = signature;
    fault.sentence = rule;
    throw FaultError(fault);
}

bool isControl(char c) {
    const auto code = static_cast<unsigned char>(c);
    return (code < 0x20 && c != '\n' && c != '\t') || code == 0x7F;
}

bool isAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

void requireSound(uint32_t signature, std::string_view text) {
    const std::string name = "the text for tag " + quoted(signature);
    if (std::find(std::begin(kTexts), std::end(kTexts), signature) == std::end(kTexts)) {
        refuse(signature, "tag " + quoted(signature) +
                              " is none of the texts 'desc', 'cprt', 'dmnd', 'dmdd' and 'vued'");
    }
    if (text.size() > kMostBytes) refuse(signature, name + " is longer than 1 GiB");
    if (!isUtf8(text)) refuse(signature, name + " is not valid UTF-8");
    if (std::any_of(text.begin(), text.end(), isControl)) {
        refuse(signature, name + " has control characters, which are no part of a text");
    }
}

}  // namespace

TagBytes textTagFor(uint32_t signature, std::string_view text, uint32_t version) {
    requireSound(signature, text);
    if (version >= kFirstLocalized) return localizedTag(text);
    if (!std::all_of(text.begin(), text.end(), isAscii)) {
        refuse(signature, "text '" + std::string(text) +
                              "' is not plain ASCII, and a profile before version 4 holds nothing "
                              "else in tag " +
                              quoted(signature));
    }
    if (signature == kCopyright) return textTag(text);
    TagBytes tag = descriptionTag(text);
    tag.resize(tag.size() + kDescriptionTail);
    return tag;
}

}  // namespace lumoxa::engine
