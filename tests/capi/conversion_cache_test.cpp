// SPDX-License-Identifier: Apache-2.0
//
// The cache: what is asked for again is the same conversion, and nothing else is.
#include "convert/conversion_cache.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/profile_zoo.h"

namespace lumoxa_test {
namespace {

using lumoxa::Conversion;
using lumoxa::ConversionCache;
using lumoxa::Options;
using lumoxa::Profile;
using lumoxa::engine::ConversionRequest;
using lumoxa::engine::ReadyConversion;

lumoxa::ProfileImage imageOf(const char* name) {
    return std::make_shared<const Bytes>(profileZoo().at(name));
}

ConversionRequest requestOf(const char* from, const char* to) {
    ConversionRequest request;
    request.profiles = {imageOf(from), imageOf(to)};
    request.intents = {icRelativeColorimetric};
    return request;
}

TEST(ConversionCache, KnowsWhatIsEqualByContent) {
    lumoxa::engine::ConversionCache cache(8);
    const auto first = cache.get(requestOf("press", "gamma"));
    EXPECT_EQ(cache.get(requestOf("press", "gamma")), first);
    ConversionRequest exact = requestOf("press", "gamma"), other = exact, mark = exact,
                      proof = exact;
    exact.exact = true;
    other.intents = {icPerceptual};
    mark.options.gamutMark[1] = 0.25f;
    proof.proof = imageOf("press");
    for (const ConversionRequest& request :
         {exact, other, mark, proof, requestOf("press", "parametric")}) {
        const auto made = cache.get(request);
        EXPECT_NE(made, first);
        EXPECT_EQ(cache.get(request), made);
    }
    EXPECT_EQ(cache.get(requestOf("press", "gamma")), first);
}

TEST(ConversionCache, LetsTheLeastRecentlyUsedGo) {
    lumoxa::engine::ConversionCache cache(2);
    const auto a = cache.get(requestOf("gamma", "parametric"));
    const std::weak_ptr<const ReadyConversion> b = cache.get(requestOf("parametric", "gamma"));
    EXPECT_EQ(cache.get(requestOf("gamma", "parametric")), a);
    cache.get(requestOf("gamma", "gamma"));
    EXPECT_TRUE(b.expired());
    EXPECT_EQ(cache.get(requestOf("gamma", "parametric")), a);
}

TEST(ConversionCache, ServesThreadsAndKeepsNoFailures) {
    const ConversionCache cache(3);
    const Profile srgb = Profile::named("sRGB"), wide = Profile::named("ProPhotoRGB");
    const std::string truth = Conversion(srgb, wide).explain();
    std::atomic<int> same = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i)
                same += cache.get(srgb, wide).explain() == truth ? 1 : 0;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(same, 80);
    Options wrong;
    wrong.inkLimit = 300;
    EXPECT_THROW(cache.get(srgb, wide, wrong), lumoxa::Error);
    EXPECT_THROW(cache.get({}), lumoxa::Error);
    EXPECT_THROW(ConversionCache(0), lumoxa::Error);
    const Conversion kept = ConversionCache(1).get(srgb, wide);
    EXPECT_EQ(kept.explain(), truth);
}

}  // namespace
}  // namespace lumoxa_test
