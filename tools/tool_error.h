// SPDX-License-Identifier: Apache-2.0
//
// How the tool fails: a one-line sentence and an exit code.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

namespace lumoxa_tool {

/// What scripts see of a run.
enum ExitCode { kSuccess = 0, kInputAtFault = 1, kUsage = 2 };

/// An input file can't serve. The text names the file, what is wrong with it and what to do.
class InputError : public std::runtime_error {
  public:
    explicit InputError(const std::string& text) : std::runtime_error(text), fault_(text) {}
    InputError(const std::string& fault, const std::string& remedy)
        : std::runtime_error(fault + "; " + remedy), fault_(fault) {}

    /// The text without the remedy, for when another way out is found.
    const std::string& fault() const { return fault_; }

  private:
    std::string fault_;
};

/// The command line, or a value given on it, makes no sense.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The user asked to stop; everything has been cleaned up on the way out.
class Interrupted : public std::exception {};

/// Prints "lumoxa: text" on the standard error stream, with line breaks made into "; " so that a
/// message stays one line whatever a file or a codec has put into it.
void printMessage(const std::string& text);

/// Runs the work and prints what it throws. After an Interrupted, the process ends by its signal.
/// @return what the work returns, else the exit code of its failure
int exitCodeOf(const std::function<int()>& work);

}  // namespace lumoxa_tool
