// SPDX-License-Identifier: Apache-2.0
//
// Memory that fails, at each allocation in turn, once or from then on: a call of the accurate
// engine tells so and leaves nothing behind. A program of its own, since it replaces operator new,
// and calloc where the linker can (LUMOXA_WRAPS_CALLOC).
#include <atomic>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>

#include <gtest/gtest.h>

#include "lumoxa/lmx.h"
#include "tests/support/profile_zoo.h"

namespace {

constexpr int64_t kNever = std::numeric_limits<int64_t>::max();
std::atomic<int64_t> allocationsLeft = kNever;
std::atomic<bool> failsFromThenOn = false;

bool fails() {
    if (allocationsLeft == kNever) return false;
    const int64_t left = allocationsLeft--;
    return left == 0 || (left < 0 && failsFromThenOn);
}

void* allocated(size_t size) {
    void* const block = fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

}  // namespace

void* operator new(size_t size) {
    return allocated(size);
}
void* operator new[](size_t size) {
    return allocated(size);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, size_t) noexcept {
    std::free(block);
}

#ifdef LUMOXA_WRAPS_CALLOC
extern "C" {
void* __real_calloc(size_t count, size_t size);
void* __wrap_calloc(size_t count, size_t size) {
    return fails() ? nullptr : __real_calloc(count, size);
}
}
#endif

namespace lumoxa_test {
namespace {

/// Calls with the allocation of number `index` failing. @return whether there was one
bool withFailure(int64_t index, bool fromThenOn, const std::function<void()>& call) {
    failsFromThenOn = fromThenOn;
    allocationsLeft = index;
    call();
    const bool reached = allocationsLeft < 0;
    allocationsLeft = kNever;
    return reached;
}

lmx_profile* loaded(const char* name) {
    const Bytes& bytes = profileZoo().at(name);
    lmx_profile* profile = nullptr;
    EXPECT_EQ(lmx_profile_from_bytes(bytes.data(), bytes.size(), &profile, nullptr), 0);
    return profile;
}

struct Call {
    const char* name;
    std::vector<const char*> chain;
    /// Makes and releases something; the failing memory is that of the whole call.
    int32_t (*run)(lmx_profile* const* chain, lmx_fault* fault);
    int stride;  // of the allocations that fail: calls that take long have many
    int32_t code = LMX_SUCCESS;
};
void PrintTo(const Call& call, std::ostream* out) {
    *out << call.name;
}

int32_t load(lmx_profile* const*, lmx_fault* fault) {
    const Bytes& bytes = profileZoo().at("press");
    lmx_profile* profile = nullptr;
    const int32_t code = lmx_profile_from_bytes(bytes.data(), bytes.size(), &profile, fault);
    lmx_profile_free(profile);
    return code;
}

int32_t name(lmx_profile* const*, lmx_fault* fault) {
    lmx_profile* profile = nullptr;
    const int32_t code = lmx_profile_named("Rec2020", &profile, fault);
    lmx_profile_free(profile);
    return code;
}

template <bool exact>
int32_t create(lmx_profile* const* chain, lmx_fault* fault) {
    lmx_options options;
    lmx_options_init(&options);
    options.exact = exact;
    lmx_conversion* conversion = nullptr;
    const int32_t code = lmx_conversion_create(chain, 2, &options, &conversion, fault);
    lmx_conversion_free(conversion);
    return code;
}

int32_t link(lmx_profile* const* chain, lmx_fault* fault) {
    lmx_profile* made = nullptr;
    const int32_t code = lmx_make_link(chain, 2, nullptr, LMX_SAMPLES_8, &made, fault);
    lmx_profile_free(made);
    return code;
}

int32_t run(lmx_profile* const* chain, lmx_fault* fault) {
    static lmx_conversion* conversion = nullptr;  // made once, where no memory fails
    if (conversion == nullptr) return lmx_conversion_create(chain, 2, nullptr, &conversion, fault);
    uint8_t pixels[2][12] = {};
    lmx_image images[2] = {};
    for (int side = 0; side < 2; ++side) {
        lmx_image& image = images[side];
        image.size = sizeof image;
        image.sample = LMX_SAMPLES_8;
        image.data = pixels[side];
        image.width = 2;
        image.height = 1;
        image.channels = 3;
        image.channel_stride = 2;  // planar, so that there are buffers
        image.pixel_stride = 1;
    }
    int32_t code = lmx_conversion_run(conversion, images, images + 1, nullptr, fault);
    char* json = nullptr;
    if (code == 0) code = lmx_conversion_explain(conversion, &json, fault);
    lmx_free(json);
    return code;
}

const Call kCalls[] = {
    {"Load", {}, load, 1},
    {"Named", {}, name, 1},
    {"Shaper", {"gamma", "parametric"}, create<false>, 1},
    {"ExactTables", {"ab", "press"}, create<true>, 1},
    {"GrayPrint", {"gray", "patches"}, create<true>, 3},
    {"Table", {"table", "press"}, create<false>, 7},
    {"Link", {"gray", "grayLab"}, link, 1},
    {"Run", {"gamma", "parametric"}, run, 1},
    {"Fault", {"link", "abstract"}, create<true>, 1, LMX_ERR_INVALID},
};

class FailingMemory : public testing::TestWithParam<Call> {};

TEST_P(FailingMemory, IsTold) {
    const Call& call = GetParam();
    std::vector<lmx_profile*> chain;
    for (const char* profile : call.chain)
        chain.push_back(loaded(profile));
    lmx_fault fault = {};
    fault.size = sizeof fault;
    ASSERT_EQ(call.run(chain.data(), &fault), call.code) << fault.sentence;
    for (const bool fromThenOn : {false, true}) {
        bool reached = true;
        int told = 0;
        for (int64_t index = 0; reached; index += call.stride) {
            int32_t code = 0;
            fault.code = 0;
            fault.sentence[0] = '\0';
            reached =
                withFailure(index, fromThenOn, [&] { code = call.run(chain.data(), &fault); });
            // The analyzer takes the replaced operator new for a malloc of the test's.
            // NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
            told += code == LMX_ERR_NO_MEMORY;
            // Threads that can't be started cost nothing but time.
            EXPECT_TRUE(code == LMX_ERR_NO_MEMORY || code == call.code) << index;
            if (code == LMX_SUCCESS) continue;
            EXPECT_EQ(fault.code, code) << index;
            EXPECT_NE(fault.sentence[0], '\0') << index;
        }
        EXPECT_GT(told, 0);
    }
    for (lmx_profile* profile : chain)
        lmx_profile_free(profile);
}

INSTANTIATE_TEST_SUITE_P(Calls, FailingMemory, testing::ValuesIn(kCalls),
                         [](const auto& entry) { return entry.param.name; });

}  // namespace
}  // namespace lumoxa_test
