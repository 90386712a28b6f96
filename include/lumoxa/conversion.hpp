// SPDX-License-Identifier: Apache-2.0
//
// Conversions in C++: pictures, options, device links.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "lumoxa/lmx_conversion.h"
#include "lumoxa/profile.hpp"

namespace lumoxa {

/// Pixels in memory. Strides are in bytes and of any sign: interleaved, planar, bottom-up, cropped.
struct ImageView {
    void* data = nullptr;
    Sample sample = Sample::U8;
    int64_t width = 0, height = 0;
    int channels = 0;
    int64_t channelStride = 0, pixelStride = 0, rowStride = 0;

    /// Rows without gaps of pixels without gaps, channels interleaved. T is uint8_t, uint16_t or
    /// float, or one of them const for a source.
    template <class T>
    static ImageView packed(T* data, int64_t width, int64_t height, int channels) {
        using Value = std::remove_const_t<T>;
        static_assert(std::is_same_v<Value, uint8_t> || std::is_same_v<Value, uint16_t> ||
                          std::is_same_v<Value, float>,
                      "samples are uint8_t, uint16_t or float");
        ImageView view;
        view.data = const_cast<Value*>(data);
        view.sample = sizeof(T) == 1 ? Sample::U8 : sizeof(T) == 2 ? Sample::U16 : Sample::F32;
        view.width = width;
        view.height = height;
        view.channels = channels;
        view.channelStride = sizeof(T);
        view.pixelStride = view.channelStride * channels;
        // Wraps for sizes that run() refuses.
        view.rowStride = static_cast<int64_t>(static_cast<uint64_t>(view.pixelStride) *
                                              static_cast<uint64_t>(width));
        return view;
    }
};

/// The tone of a print on a gray device of three channels.
struct GrayTone {
    float a = 0, b = 0;  ///< a* and b* of the print
    float fade = 0;      ///< 0..1: how far the tone goes back to neutral at paper and black
    std::vector<std::array<float, 3>> points;  ///< split tone: L*, a*, b*; excludes `fade`
    bool shaped = true;                        ///< perceptual prints have their tones shaped
    float shape = 0;                           ///< -100..100, contrast of the middle tones
};

/// How a conversion is made. The defaults are right for most pictures.
struct Options {
    Intent intent = Intent::Relative;
    std::vector<Intent> intents;         ///< one for each step of the chain, instead of `intent`
    bool blackPointCompensation = true;  ///< ISO 18619; never for Absolute
    std::optional<Profile> proof;        ///< simulate this device: `intent` from the source to it,
    Intent proofIntent = Intent::Relative;  ///< `proofIntent` from it to the destination
    bool markOutOfGamut = false;            ///< of the proof device, else of the destination
    std::array<float, 3> gamutMark = {0.5f, 0.5f, 0.5f};  ///< sRGB, 0..1
    bool preserveBlack = false;    ///< CMYK to CMYK: black-only stays black-only
    float inkLimit = 0;            ///< total ink in percent, 0 for none
    bool exact = false;            ///< every pixel stage by stage, no table
    std::optional<GrayTone> tone;  ///< of a print, where the destination is a gray print device
};

namespace detail {

/// Options as lmx.h has them; what they point at lives as long as this object.
class OptionsRecord {
  public:
    explicit OptionsRecord(const Options& options) : proof_(options.proof) {
        lmx_options_init(&record_);
        record_.intent = static_cast<uint32_t>(options.intent);
        intents_.reserve(options.intents.size());
        for (const Intent intent : options.intents)
            intents_.push_back(static_cast<uint32_t>(intent));
        record_.intents = intents_.empty() ? nullptr : intents_.data();
        record_.intent_count = static_cast<uint32_t>(intents_.size());
        record_.black_point_compensation = options.blackPointCompensation ? 1 : 0;
        record_.proof = proof_ ? proof_->handle() : nullptr;
        record_.proof_intent = static_cast<uint32_t>(options.proofIntent);
        record_.mark_out_of_gamut = options.markOutOfGamut ? 1 : 0;
        for (size_t i = 0; i < options.gamutMark.size(); ++i)
            record_.gamut_mark[i] = options.gamutMark[i];
        record_.preserve_black = options.preserveBlack ? 1 : 0;
        record_.ink_limit = options.inkLimit;
        record_.exact = options.exact ? 1 : 0;
        if (options.tone) setTone(*options.tone);
    }
    OptionsRecord(const OptionsRecord&) = delete;
    OptionsRecord& operator=(const OptionsRecord&) = delete;

    const lmx_options* get() const { return &record_; }

  private:
    void setTone(const GrayTone& tone) {
        for (const std::array<float, 3>& point : tone.points)
            points_.insert(points_.end(), point.begin(), point.end());
        tone_.size = sizeof tone_;
        tone_.a = tone.a;
        tone_.b = tone.b;
        tone_.fade = tone.fade;
        tone_.points = points_.empty() ? nullptr : points_.data();
        tone_.point_count = static_cast<int32_t>(tone.points.size());
        tone_.shaped = tone.shaped ? 1 : 0;
        tone_.shape = tone.shape;
        record_.tone = &tone_;
    }

    lmx_options record_ = {};
    lmx_gray_tone tone_ = {};
    std::optional<Profile> proof_;
    std::vector<uint32_t> intents_;
    std::vector<float> points_;
};

/// Handles of a chain, in one row.
inline std::vector<lmx_profile*> handlesOf(const std::vector<Profile>& chain) {
    std::vector<lmx_profile*> handles;
    handles.reserve(chain.size());
    for (const Profile& profile : chain)
        handles.push_back(profile.handle());
    return handles;
}

inline lmx_image imageOf(const ImageView& view) {
    lmx_image image = {};
    image.size = sizeof image;
    image.sample = static_cast<int32_t>(view.sample);
    image.data = view.data;
    image.width = view.width;
    image.height = view.height;
    image.channels = view.channels;
    image.channel_stride = view.channelStride;
    image.pixel_stride = view.pixelStride;
    image.row_stride = view.rowStride;
    return image;
}

}  // namespace detail

/// A conversion between the devices of profiles. Immutable, cheap to copy, usable on any number of
/// threads at once.
class Conversion {
  public:
    /// @throws Error when a profile can't serve
    Conversion(const Profile& from, const Profile& to, const Options& options = {})
        : Conversion(std::vector<Profile>{from, to}, options) {}

    /// A chain of profiles, or a device link alone. @throws Error when a profile can't serve
    explicit Conversion(const std::vector<Profile>& chain, const Options& options = {}) {
        const std::vector<lmx_profile*> handles = detail::handlesOf(chain);
        const detail::OptionsRecord record(options);
        lmx_conversion* handle = nullptr;
        detail::call(lmx_conversion_create, handles.data(), static_cast<int32_t>(handles.size()),
                     record.get(), &handle);
        handle_ = std::shared_ptr<lmx_conversion>(handle, lmx_conversion_free);
    }

    /// Takes over a handle of lmx.h, which is released with the last copy.
    explicit Conversion(lmx_conversion* handle) : handle_(handle, lmx_conversion_free) {}

    /// Channels of a source pixel, without extra ones.
    int inputChannels() const {
        int32_t channels = 0;
        lmx_conversion_channels(handle(), &channels, nullptr);
        return channels;
    }
    /// Channels of a destination pixel, without extra ones.
    int outputChannels() const {
        int32_t channels = 0;
        lmx_conversion_channels(handle(), nullptr, &channels);
        return channels;
    }

    /// How a run is done. Extra channels (alpha) are copied; `premultiplied` takes the first of
    /// them into account. `progress` gets 0..1 on the caller's thread and answers whether to go on
    /// (after the last pixel, at 1, there is nothing left to stop); what it throws comes out of
    /// run().
    struct Run {
        int threads = 0;  ///< at most so many; 0 for one a processor core
        bool premultiplied = false;
        std::function<bool(double)> progress;
        Run() {}
    };

    /// Converts pixels. @return false where progress asked to stop. @throws Error, before anything
    /// is written, for views that don't fit
    bool run(const ImageView& source, const ImageView& destination, const Run& options = {}) const {
        const lmx_image from = detail::imageOf(source);
        const lmx_image to = detail::imageOf(destination);
        Listener listener = {&options.progress, nullptr};
        lmx_run_options record = {};
        record.size = sizeof record;
        record.threads = options.threads;
        record.premultiplied = options.premultiplied ? 1 : 0;
        record.progress = options.progress ? Listener::hear : nullptr;
        record.user = &listener;
        const int code = detail::call(lmx_conversion_run, handle(), &from, &to,
                                      static_cast<const lmx_run_options*>(&record));
        if (listener.thrown) std::rethrow_exception(listener.thrown);
        return code != LMX_CANCELLED;
    }

    /// One pixel, exactly. @throws Error for another number of samples than inputChannels()
    std::vector<float> operator()(const std::vector<float>& pixel) const {
        if (pixel.size() != static_cast<size_t>(inputChannels())) {
            throw Error(LMX_ERR_INVALID, "the pixel has " + std::to_string(pixel.size()) +
                                             " samples, the conversion takes " +
                                             std::to_string(inputChannels()));
        }
        std::vector<float> result(static_cast<size_t>(outputChannels()));
        detail::call(lmx_conversion_pixel, handle(), pixel.data(), result.data());
        return result;
    }

    /// JSON: plan, stages with tags, grid, measured error, black points.
    std::string explain() const { return detail::text(lmx_conversion_explain, handle()); }

    /// For the functions of lmx.h; belongs to this object and its copies.
    lmx_conversion* handle() const noexcept { return handle_.get(); }

  private:
    struct Listener {
        const std::function<bool(double)>* progress;
        std::exception_ptr thrown;

        static int32_t hear(double done, void* user) {
            auto& self = *static_cast<Listener*>(user);
            try {
                return (*self.progress)(done) ? 0 : 1;
            } catch (...) {
                self.thrown = std::current_exception();
                return 1;
            }
        }
    };

    std::shared_ptr<lmx_conversion> handle_;
};

/// Hands out ready conversions, for programs that convert many pictures between few profiles: what
/// was asked for before, with equal options and profiles of equal bytes, is not made again. Cheap
/// to copy, usable on any number of threads at once; conversions outlive it.
class ConversionCache {
  public:
    /// @param capacity  conversions kept, of up to some 5 MB each: the least recently used go
    explicit ConversionCache(int capacity = 16) {
        lmx_conversion_cache* handle = nullptr;
        detail::call(lmx_conversion_cache_create, static_cast<int32_t>(capacity), &handle);
        handle_ = std::shared_ptr<lmx_conversion_cache>(handle, lmx_conversion_cache_free);
    }

    /// @throws Error as the constructors of Conversion
    Conversion get(const Profile& from, const Profile& to, const Options& options = {}) const {
        return get(std::vector<Profile>{from, to}, options);
    }
    Conversion get(const std::vector<Profile>& chain, const Options& options = {}) const {
        const std::vector<lmx_profile*> handles = detail::handlesOf(chain);
        const detail::OptionsRecord record(options);
        lmx_conversion* handle = nullptr;
        detail::call(lmx_conversion_cache_get, handle_.get(), handles.data(),
                     static_cast<int32_t>(handles.size()), record.get(), &handle);
        return Conversion(handle);
    }

  private:
    std::shared_ptr<lmx_conversion_cache> handle_;
};

/// A device link of a chain of profiles. `precision` is U16, or U8 for a smaller, coarser table.
/// @throws Error when a profile can't serve
inline Profile makeLink(const std::vector<Profile>& chain, const Options& options = {},
                        Sample precision = Sample::U16) {
    const std::vector<lmx_profile*> handles = detail::handlesOf(chain);
    const detail::OptionsRecord record(options);
    lmx_profile* handle = nullptr;
    detail::call(lmx_make_link, handles.data(), static_cast<int32_t>(handles.size()), record.get(),
                 static_cast<int32_t>(precision), &handle);
    return Profile(handle);
}

}  // namespace lumoxa
