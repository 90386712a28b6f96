// SPDX-License-Identifier: Apache-2.0
#include "tools/values_command.h"

#include <charconv>
#include <iostream>

#include "tools/packed_converter.h"
#include "tools/result_text.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

// Colours that go through the transform together: a call for each would cost more than the colour.
constexpr size_t kBatch = 4096;

class ValueConverter {
  public:
    /// @param conversion  must outlive the converter
    ValueConverter(const ValuesArguments& arguments, const Conversion& conversion)
        : conversion_(conversion),
          converter_(conversion),
          top_(arguments.sixteenBits ? 65535 : 255) {}

    // @param where  names the value in a message
    void add(std::string_view text, const std::string& where) {
        const char* at = text.data();
        const char* const end = at + text.size();
        const uint32_t wanted = conversion_.desc.inChannels;
        for (uint32_t i = 0; i < wanted; ++i) {
            unsigned value = 0;
            while (at < end && *at == ' ')
                ++at;
            const auto [stop, error] = std::from_chars(at, end, value);
            if (error != std::errc() || value > top_) refuse(text, where);
            samples_.push_back(static_cast<uint16_t>(value));
            at = stop;
            while (at < end && (*at == ' ' || *at == '\r'))
                ++at;
            if ((at < end && *at == ',') != (i + 1 < wanted)) refuse(text, where);
            ++at;
        }
        if (at <= end) refuse(text, where);
        if (++count_ == kBatch) flush();
    }

    void flush() {
        if (count_ == 0) return;
        if (top_ == 255) {
            print(convert<uint8_t>(icSamples8));
        } else {
            print(convert<uint16_t>(icSamples16));
        }
        samples_.clear();
        count_ = 0;
    }

  private:
    [[noreturn]] void refuse(std::string_view text, const std::string& where) {
        samples_.resize(count_ * conversion_.desc.inChannels);
        flush();  // what came before is fine
        throw UsageError(where + " '" + std::string(text) + "' is not " +
                         std::to_string(conversion_.desc.inChannels) + " whole numbers 0.." +
                         std::to_string(top_) + " with commas between, as " +
                         spaceText(conversion_.desc.inSpace) + " has");
    }

    template <class Sample>
    std::vector<Sample> convert(int32_t dataType) {
        std::vector<Sample> source(samples_.begin(), samples_.end());
        std::vector<Sample> destination(count_ * conversion_.desc.outChannels);
        const int code =
            converter_.convert({source.data(), dataType}, {destination.data(), dataType}, count_);
        if (code != icSuccess) throw InputError("converting values " + faultText(code));
        return destination;
    }

    template <class Sample>
    void print(const std::vector<Sample>& samples) const {
        const size_t channels = conversion_.desc.outChannels;
        for (size_t i = 0; i < samples.size(); ++i) {
            std::cout << static_cast<unsigned>(samples[i])
                      << ((i + 1) % channels != 0 ? ',' : '\n');
        }
        std::cout.flush();
    }

    const Conversion& conversion_;
    PackedConverter converter_;
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

Conversion chosenConversion(const ValuesArguments& arguments) {
    if (!arguments.link.empty()) return makeLinkConversion(Profile::open(arguments.link));
    if (arguments.from.empty() || arguments.to.empty()) {
        throw UsageError("--from and --to, or --link, are required; see lumoxa --help");
    }
    const Profile from = Profile::open(arguments.from);
    const Profile to = Profile::open(arguments.to);
    return makeConversion(from, to, arguments.request);
}

}  // namespace

void runValues(const ValuesArguments& arguments) {
    // Streams with buffers of their own: synchronised ones can't tell whether more input is there.
    std::ios::sync_with_stdio(false);
    const Conversion conversion = chosenConversion(arguments);
    for (const ChainLink& link : conversion.links) {
        if (!link.notice.empty()) printMessage(link.notice);
    }
    ValueConverter converter(arguments, conversion);
    if (arguments.values.empty()) convertLines(converter);
    for (const std::string& value : arguments.values)
        converter.add(value, "value");
    converter.flush();
}

}  // namespace lumoxa_tool
