// SPDX-License-Identifier: Apache-2.0
//
// Files: their names, reading one whole, and one that appears whole or not at all.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace lumoxa_tool {

/// The path of a name in UTF-8, as texts of the tool are: on Windows std::filesystem would widen
/// its bytes one by one. MinGW's path::string() gives UTF-8 back.
inline std::filesystem::path pathOf(const std::string& name) {
    return std::u8string(name.begin(), name.end());
}

/// @param kind  what the file is taken for, as in "profile"
/// @throws InputError when it can't be read or is too large to be that
std::vector<uint8_t> readFile(const std::string& path, const std::string& kind);

/// A temporary file beside the target, removed again unless commit() is reached. The name ends in
/// the target's suffix, by which the saver is chosen. An existing target stays as it is until then,
/// so it may even be the input; the new file takes over its permissions. Symbolic links are
/// followed and stay.
class OutputFile {
  public:
    /// Creates the temporary file, empty.
    /// @throws InputError when it can't be created or the target can't or mustn't be replaced
    explicit OutputFile(const std::filesystem::path& target);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    const std::filesystem::path& temporary() const { return temporary_; }

    /// Puts the finished file, once it is on the disk, in the target's place. @throws InputError
    void commit();

  private:
    std::filesystem::path target_;
    std::filesystem::path temporary_;
};

/// Writes a file whole or not at all, as OutputFile does. From here on Ctrl-C is noted and not died
/// of, so that nothing half-done stays behind.
/// @throws InputError, UsageError for an empty path, Interrupted
void writeFile(const std::string& path, const std::vector<uint8_t>& bytes);

}  // namespace lumoxa_tool
