// SPDX-License-Identifier: Apache-2.0
//
// The interface for C, over the public C++ functions. Records cross it as copies of one layout,
// which same_records.cpp holds them to.
#include "lumoxa/lmx.h"

#include <bit>

#include "lumoxa/lumoxa.h"

namespace {

constexpr uint32_t kDescription = LMX_SIGNATURE('d', 'e', 's', 'c');

/// A C callback behind the signature of the C++ interface.
struct Listener {
    lmx_progress callback;
    void* user;

    static int hear(icIterState state, int percent, void* listener) {
        const auto& self = *static_cast<const Listener*>(listener);
        return self.callback(state, percent, self.user);
    }
    icProgressCallback entry() const { return callback != nullptr ? hear : nullptr; }
};

/// A packed run of pixels. The number of channels is the transform's business.
icPixelLayout_t packedRun(const void* data, int32_t type, int32_t pixels) {
    icPixelLayout_t layout = {};
    layout.dataType = type;
    layout.contiguous = 1;
    layout.pixelCount = pixels;
    layout.lineCount = 1;
    layout.channelData[0] = const_cast<void*>(data);
    return layout;
}

}  // namespace

// --- The library ---------------------------------------------------------------------------------

int32_t lmx_abi_version(void) {
    return LMX_ABI_VERSION;
}

const char* lmx_version(void) {
    return LUMOXA_VERSION;
}

int32_t lmx_error_text(int32_t code, char* buffer, int32_t size) {
    return icGetErrorText(code, size, buffer);
}

// --- Profiles ------------------------------------------------------------------------------------

int32_t lmx_profile_load(const void* image, uint64_t length, lmx_profile** out) {
    return icProfileLoadFromBuffer(nullptr, image, length, out);
}

int32_t lmx_profile_create(lmx_profile** out) {
    return icProfileCreate(nullptr, out);
}

void lmx_profile_free(lmx_profile* profile) {
    icProfileFree(profile);
}

int32_t lmx_profile_description(lmx_profile* profile, char* buffer, int32_t size) {
    return icGetDescription(profile, buffer, size);
}

int32_t lmx_profile_get_header(lmx_profile* profile, lmx_header* out) {
    if (out == nullptr) return icErrInvalid;
    icHeader header = {};
    const int code = icProfileGetHeader(profile, &header);
    if (code == icSuccess) *out = std::bit_cast<lmx_header>(header);
    return code;
}

int32_t lmx_profile_set_header(lmx_profile* profile, const lmx_header* header) {
    if (header == nullptr) return icErrInvalid;
    const auto copy = std::bit_cast<icHeader>(*header);
    return icProfileSetHeader(profile, &copy);
}

int32_t lmx_profile_set_description(lmx_profile* profile, const char* text) {
    if (text == nullptr) return icErrInvalid;
    icTagBase* tag = nullptr;
    const int size = icFillProfileDescription(text, &tag);
    if (size == 0) return icErrNoMemory;
    const int code = icTagAdd(profile, kDescription, static_cast<unsigned int>(size), tag);
    icFree(tag);
    return code;
}

int32_t lmx_profile_add_tag(lmx_profile* profile, uint32_t signature, const void* bytes,
                            uint32_t size) {
    return icTagAdd(profile, signature, size, bytes);
}

int32_t lmx_profile_store(lmx_profile* profile, uint32_t intent, uint32_t direction,
                          lmx_transform* transform) {
    constexpr icTagTypeSignature kOwnPrecision = 0;
    return icXformSet(profile, kOwnPrecision, static_cast<icRenderingIntent>(intent),
                      static_cast<icTransType>(direction), transform);
}

int32_t lmx_profile_save(lmx_profile* profile, const char* path) {
    icProfile_t copy = nullptr;
    int code = icProfileCopy(profile, &copy);
    if (code == icSuccess) code = icProfileSaveProfile(copy, path);
    icProfileFree(copy);
    return code;
}

// --- Transforms ----------------------------------------------------------------------------------

int32_t lmx_transform_get(lmx_profile* profile, uint32_t intent, uint32_t direction,
                          lmx_transform** out) {
    return icXformGet(profile, static_cast<icRenderingIntent>(intent),
                      static_cast<icTransType>(direction), out);
}

void lmx_transform_hold(lmx_transform* transform) {
    icXformInc(transform);
}

void lmx_transform_free(lmx_transform* transform) {
    icXformFree(transform);
}

int32_t lmx_transform_describe(lmx_transform* transform, lmx_transform_info* out) {
    if (out == nullptr) return icErrInvalid;
    icXformDesc_t desc = {};
    const int code = icXformGetDesc(transform, &desc);
    if (code == icSuccess) *out = std::bit_cast<lmx_transform_info>(desc);
    return code;
}

int32_t lmx_combine(int32_t count, lmx_transform* const* chain, int32_t options,
                    lmx_transform** out, int32_t* failing_transform, lmx_progress progress,
                    void* user) {
    Listener listener = {progress, user};
    return icCombineXforms(count, chain, out, options, failing_transform, listener.entry(),
                           &listener, 0);
}

// --- Pixels --------------------------------------------------------------------------------------

int32_t lmx_evaluate(lmx_transform* transform, const lmx_pixel_layout* source,
                     const lmx_pixel_layout* destination, lmx_progress progress, void* user) {
    if (source == nullptr || destination == nullptr) return icErrInvalid;
    const auto from = std::bit_cast<icPixelLayout_t>(*source);
    const auto to = std::bit_cast<icPixelLayout_t>(*destination);
    Listener listener = {progress, user};
    return icEvaluate(transform, &from, &to, listener.entry(), &listener);
}

int32_t lmx_evaluate_packed(lmx_transform* transform, const void* source, int32_t source_type,
                            void* destination, int32_t destination_type, int32_t pixels) {
    const icPixelLayout_t from = packedRun(source, source_type, pixels);
    const icPixelLayout_t to = packedRun(destination, destination_type, pixels);
    return icEvaluate(transform, &from, &to, nullptr, nullptr);
}
