// SPDX-License-Identifier: Apache-2.0
#include "tools/values_command.h"

#include <charconv>
#include <iostream>

#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

// Colours that go through the transform together: a call for each would cost more than the colour.
constexpr size_t kBatch = 4096;

class ValueConverter {
  public:
    /// @param space  of the source, for messages
    ValueConverter(const ValuesArguments& arguments, lumoxa::Conversion conversion, uint32_t space)
        : conversion_(std::move(conversion)),
          space_(space),
          channels_(static_cast<size_t>(conversion_.inputChannels())),
          top_(arguments.sixteenBits ? 65535 : 255) {}

    // @param where  names the value in a message
    void add(std::string_view text, const std::string& where) {
        const char* at = text.data();
        const char* const end = at + text.size();
        for (size_t i = 0; i < channels_; ++i) {
            unsigned value = 0;
            while (at < end && *at == ' ')
                ++at;
            const auto [stop, error] = std::from_chars(at, end, value);
            if (error != std::errc() || value > top_) refuse(text, where);
            samples_.push_back(static_cast<uint16_t>(value));
            at = stop;
            while (at < end && (*at == ' ' || *at == '\r'))
                ++at;
            if ((at < end && *at == ',') != (i + 1 < channels_)) refuse(text, where);
            ++at;
        }
        if (at <= end) refuse(text, where);
        if (++count_ == kBatch) flush();
    }

    void flush() {
        if (count_ == 0) return;
        if (top_ == 255) {
            print(convert<uint8_t>());
        } else {
            print(convert<uint16_t>());
        }
        samples_.clear();
        count_ = 0;
    }

  private:
    [[noreturn]] void refuse(std::string_view text, const std::string& where) {
        samples_.resize(count_ * channels_);
        flush();  // what came before is fine
        throw UsageError(where + " '" + std::string(text) + "' is not " +
                         std::to_string(channels_) + " whole numbers 0.." + std::to_string(top_) +
                         " with commas between, as " + spaceText(space_) + " has");
    }

    template <class Sample>
    std::vector<Sample> convert() const {
        const int outputs = conversion_.outputChannels();
        const auto width = static_cast<int64_t>(count_);
        std::vector<Sample> source(samples_.begin(), samples_.end());
        std::vector<Sample> destination(count_ * static_cast<size_t>(outputs));
        conversion_.run(
            lumoxa::ImageView::packed(source.data(), width, 1, static_cast<int>(channels_)),
            lumoxa::ImageView::packed(destination.data(), width, 1, outputs));
        return destination;
    }

    template <class Sample>
    void print(const std::vector<Sample>& samples) const {
        const auto channels = static_cast<size_t>(conversion_.outputChannels());
        for (size_t i = 0; i < samples.size(); ++i) {
            std::cout << static_cast<unsigned>(samples[i])
                      << ((i + 1) % channels != 0 ? ',' : '\n');
        }
        std::cout.flush();
    }

    lumoxa::Conversion conversion_;
    uint32_t space_;
    size_t channels_;
    unsigned top_;
    std::vector<uint16_t> samples_;
    size_t count_ = 0;
};

void convertLines(ValueConverter& converter) {
    std::string line;
    for (uint64_t number = 1; std::getline(std::cin, line); ++number) {
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        converter.add(line, "line " + std::to_string(number));
        // Answer at once when nothing more has been read yet, as a program at the other end of a
        // pipe may wait for its answer before it asks again.
        if (std::cin.rdbuf()->in_avail() <= 0) converter.flush();
    }
    if (std::cin.bad()) {
        converter.flush();
        throw InputError("standard input: can't be read", "check where it comes from");
    }
}

std::vector<NamedProfile> openChain(const ValuesArguments& arguments) {
    if (!arguments.link.empty()) {
        const NamedProfile link = openProfile(arguments.link);
        requireLink(link);
        return {link};
    }
    if (arguments.from.empty() || arguments.to.empty()) {
        throw UsageError("--from and --to, or --link, are required; see lumoxa --help");
    }
    std::vector<NamedProfile> chain = {openProfile(arguments.from), openProfile(arguments.to)};
    for (const NamedProfile& profile : chain)
        requireDevice(profile);
    requireTonePossible(arguments.request, chain.back());
    return chain;
}

}  // namespace

void runValues(const ValuesArguments& arguments) {
    // Streams with buffers of their own: synchronised ones can't tell whether more input is there.
    std::ios::sync_with_stdio(false);
    const std::vector<NamedProfile> chain = openChain(arguments);
    constexpr bool kExact = true;
    ValueConverter converter(arguments, makeConversion(chain, arguments.request, kExact),
                             chain.front().profile.colorSpace());
    if (arguments.values.empty()) convertLines(converter);
    for (const std::string& value : arguments.values)
        converter.add(value, "value");
    converter.flush();
}

}  // namespace lumoxa_tool
