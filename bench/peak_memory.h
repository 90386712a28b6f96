// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>

namespace lumoxa_bench {

/// Bytes by which a job's highest resident memory exceeds what the process has before, measured in
/// a child process of its own. Nothing on systems other than Linux. To be called while this process
/// has a single thread.
std::optional<double> peakMemoryGrowth(const std::function<void()>& job);

}  // namespace lumoxa_bench
