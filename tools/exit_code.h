// SPDX-License-Identifier: Apache-2.0
//
// The end of a run: messages and exit codes.
#pragma once

#include <functional>

namespace lumoxa_tool {

/// Runs the work and prints what it throws. After an Interrupted, the process ends by its signal.
/// @return what the work returns, else the exit code of its failure
int exitCodeOf(const std::function<int()>& work);

}  // namespace lumoxa_tool
