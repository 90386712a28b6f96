// SPDX-License-Identifier: Apache-2.0
//
// Profiles in C++, and the one exception of all that lumoxa.hpp has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "lumoxa/lmx_base.h"
#include "lumoxa/lmx_make.h"
#include "lumoxa/lmx_profile.h"

namespace lumoxa {

/// Rendering intents, with the values of the profile header (ICC.1:2010, 7.2.15).
enum class Intent : uint32_t { Perceptual, Relative, Saturation, Absolute };

/// Sample types of pixels.
enum class Sample : uint32_t { U8 = 1, U16 = 5, F32 = 9 };

/// Thrown by everything below; what() is one sentence that names profile, tag and rule.
class Error : public std::runtime_error {
  public:
    Error(int code, const std::string& sentence, uint32_t tag = 0, int64_t offset = -1,
          int profileIndex = -1)
        : std::runtime_error(sentence),
          code_(code),
          tag_(tag),
          offset_(offset),
          profileIndex_(profileIndex) {}

    /// LMX_ERR_...
    int code() const noexcept { return code_; }
    /// Signature of the tag at fault, 0 if none.
    uint32_t tag() const noexcept { return tag_; }
    /// Byte position in the profile, -1 if none.
    int64_t offset() const noexcept { return offset_; }
    /// Place of the profile in the caller's chain, -1 if none and for the proof profile.
    int profileIndex() const noexcept { return profileIndex_; }

  private:
    int code_;
    uint32_t tag_;
    int64_t offset_;
    int profileIndex_;
};

namespace detail {

/// Calls a function of lmx.h whose last argument is a fault, and throws what it finds.
template <class Function, class... Arguments>
int call(Function function, Arguments... arguments) {
    lmx_fault fault = {};
    fault.size = sizeof fault;
    const int code = function(arguments..., &fault);
    if (code == LMX_SUCCESS || code == LMX_CANCELLED) return code;
    throw Error(code, static_cast<const char*>(fault.sentence), fault.tag, fault.offset,
                fault.profile_index);
}

/// A path as messages show it: UTF-8, which C++20 gives a type of its own.
inline std::string utf8(const std::filesystem::path& path) {
    const auto text = path.u8string();
    return std::string(text.begin(), text.end());
}

struct Free {
    void operator()(void* block) const noexcept { lmx_free(block); }
};

/// The text that a function of lmx.h hands out behind its other arguments.
template <class Function, class... Arguments>
std::string text(Function function, Arguments... arguments) {
    char* block = nullptr;
    call(function, arguments..., &block);
    const std::unique_ptr<char, Free> owner(block);
    return block;
}

}  // namespace detail

/// A tone curve, from device values to linear light, both 0..1.
class ToneCurve {
  public:
    /// The two parts of IEC 61966-2-1.
    static ToneCurve sRGB() { return ToneCurve(LMX_CURVE_SRGB, 1, {}); }
    /// A power, above 0 and below 256.
    static ToneCurve gamma(double gamma) { return ToneCurve(LMX_CURVE_GAMMA, gamma, {}); }
    /// 2 to 4096 values from 0 to 1 over even steps of the device value, none below the one before.
    static ToneCurve table(std::vector<double> values) {
        return ToneCurve(LMX_CURVE_TABLE, 1, std::move(values));
    }

    /// As lmx.h has it; points into this object.
    lmx_curve record() const {
        lmx_curve curve = {};
        curve.size = sizeof curve;
        curve.kind = kind_;
        curve.gamma = gamma_;
        static const double kNothing = 0;
        curve.values = values_.empty() ? &kNothing : values_.data();
        constexpr size_t kTooMany = 4097;
        curve.value_count =
            static_cast<int32_t>(values_.size() < kTooMany ? values_.size() : kTooMany);
        return curve;
    }

  private:
    ToneCurve(int32_t kind, double gamma, std::vector<double> values)
        : kind_(kind), gamma_(gamma), values_(std::move(values)) {}

    int32_t kind_;
    double gamma_;
    std::vector<double> values_;
};

/// An ICC profile. Immutable, cheap to copy, usable on any number of threads.
class Profile {
  public:
    /// @throws Error for bytes that hold no profile
    static Profile fromBytes(const void* data, size_t size) {
        lmx_profile* handle = nullptr;
        detail::call(lmx_profile_from_bytes, data, static_cast<uint64_t>(size), &handle);
        return Profile(handle);
    }

    /// @throws Error also for a file that can't be read
    static Profile fromFile(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        if (!file) {
            throw Error(LMX_ERR_OPEN, detail::utf8(path) + ": can't be opened for reading");
        }
        std::vector<char> bytes;
        std::vector<char> piece(size_t{1} << 16);
        while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())) ||
               file.gcount() > 0) {
            bytes.insert(bytes.end(), piece.data(), piece.data() + file.gcount());
        }
        if (!file.eof()) throw Error(LMX_ERR_READ, detail::utf8(path) + ": can't be read");
        lmx_profile* handle = nullptr;
        static const char kNothing = 0;
        try {
            detail::call(lmx_profile_from_bytes,
                         static_cast<const void*>(bytes.empty() ? &kNothing : bytes.data()),
                         static_cast<uint64_t>(bytes.size()), &handle);
        } catch (const Error& error) {
            throw Error(error.code(), detail::utf8(path) + ": " + error.what(), error.tag(),
                        error.offset(), error.profileIndex());
        }
        return Profile(handle);
    }

    /// "sRGB", "AdobeRGB", "DisplayP3", "Rec2020", "ProPhotoRGB", "gray" (sRGB's curve),
    /// "gray-2.2", "Lab", "XYZ"; case does not matter. @throws Error for another name
    static Profile named(const char* name) {
        lmx_profile* handle = nullptr;
        detail::call(lmx_profile_named, name, &handle);
        return Profile(handle);
    }

    /// Takes over a handle of lmx.h, which is released with the last copy.
    explicit Profile(lmx_profile* handle) : handle_(handle, lmx_profile_free) {}

    /// The whole profile, as in a file.
    std::vector<uint8_t> bytes() const {
        uint8_t* block = nullptr;
        uint64_t size = 0;
        detail::call(lmx_profile_bytes, handle(), &block, &size);
        const std::unique_ptr<uint8_t, detail::Free> owner(block);
        return std::vector<uint8_t>(block, block + size);
    }

    /// Its description as UTF-8; empty where it has none.
    std::string description() const { return detail::text(lmx_profile_text, handle()); }

    /// Device class of the header: 'mntr', 'prtr', 'scnr', 'link', 'spac', 'abst' or 'nmcl'.
    uint32_t deviceClass() const { return header().device_class; }
    /// Space of the device side ('RGB ', 'CMYK' ...), of a link that of its source.
    uint32_t colorSpace() const { return header().color_space; }
    /// 'Lab ' or 'XYZ '; of a link the space of its destination.
    uint32_t connectionSpace() const { return header().pcs; }
    /// As in the header: 0x02400000 is version 2.4.
    uint32_t version() const { return header().version; }
    /// Channels of the device side.
    int channels() const { return lmx_profile_channels(handle()); }

    /// The profile with another text, in the type that its version has for it: 'desc', 'cprt',
    /// 'dmnd', 'dmdd' or 'vued' as LMX_SIGNATURE('d', 'e', 's', 'c'). @throws Error for a text that
    /// the type can't hold, as one that isn't ASCII before version 4
    Profile withText(uint32_t signature, const std::string& utf8) const {
        if (utf8.find('\0') != std::string::npos)
            throw Error(LMX_ERR_INVALID, "a text of a profile ends at its first character 0");
        return edited(lmx_profile_set_text, signature, utf8.c_str());
    }
    /// The profile with another media white, Y = 1 for a perfect one. @throws Error
    Profile withWhite(double X, double Y, double Z) const {
        return edited(lmx_profile_set_white, X, Y, Z);
    }
    /// The profile with another 'rTRC', 'gTRC', 'bTRC' or 'kTRC'. @throws Error
    Profile withCurve(uint32_t signature, const ToneCurve& curve) const {
        const lmx_curve record = curve.record();
        return edited(lmx_profile_set_curve, signature, &record);
    }
    /// The profile without the tags of a signature. @throws Error where there is none or no other
    Profile without(uint32_t signature) const { return edited(lmx_profile_remove_tag, signature); }

    /// For the functions of lmx.h; belongs to this object and its copies.
    lmx_profile* handle() const noexcept { return handle_.get(); }

  private:
    template <class Function, class... Arguments>
    Profile edited(Function function, Arguments... arguments) const {
        const std::vector<uint8_t> whole = bytes();
        Profile copy = fromBytes(whole.data(), whole.size());
        detail::call(function, copy.handle(), arguments...);
        return copy;
    }

    lmx_header header() const {
        lmx_header header = {};
        lmx_profile_get_header(handle(), &header);
        return header;
    }

    std::shared_ptr<lmx_profile> handle_;
};

}  // namespace lumoxa
