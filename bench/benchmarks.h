// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace lumoxa_bench {

/// Time and peak memory to load profiles, to get each transform and to combine chains. To be called
/// first: peak memory is measured here, while the process is small.
void registerBuildBenchmarks();

/// Time a pixel of every kernel family, at every pair of depths it converts.
void registerEvaluateBenchmarks();

/// Conversions of the accurate engine, with black point compensation: time from profile images to
/// a ready conversion, and time a pixel on one thread.
void registerEngineBenchmarks();

/// Measures how much longer a picture takes in lines than in one run, in 16 bits without a
/// callback, for the kernels that share their work out to threads; prints each ratio.
///
/// @return whether none exceeds the limit. Above it, threads are being started line by line, which
///         costs more than the pixels do.
bool linesCostNoMoreThanOneRun();

}  // namespace lumoxa_bench
