// SPDX-License-Identifier: Apache-2.0
//
// The module with all that needs libvips. Loading libvips with its hundred libraries takes longer
// than converting a colour, so only `convert` does it.

#include <chrono>
#include <cstdio>
#include <iostream>

#include <unistd.h>

#include "tools/conversion_report.h"
#include "tools/files.h"
#include "tools/image_commands.h"
#include "tools/images/conversion_choice.h"
#include "tools/images/pixel_conversion.h"
#include "tools/interrupt.h"
#include "tools/output_format.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

struct FileName {
    std::string path;
    std::string options;  // libvips' options with their brackets, "" for none
};

FileName splitName(const std::string& text) {
    const GlibText path(vips_filename_get_filename(text.c_str()));
    const GlibText options(vips_filename_get_options(text.c_str()));
    return {path.get(), options.get()};
}

// Load options may choose other pages than the first one.
bool hasOptions(const std::string& input) {
    return !splitName(input).options.empty();
}

VipsInterpretation interpretationOf(uint32_t space, int colours, bool sixteenBits) {
    // Amounts of ink, not light: libvips converts RGB on the way into some files, but never bands
    // without a meaning. TIFF calls three of them RGB all the same, which is why a note tells.
    if (space == kGray && colours == kGrayPrintChannels) return VIPS_INTERPRETATION_MULTIBAND;
    if (space == kCmyk) return VIPS_INTERPRETATION_CMYK;
    if (space == kGray) return sixteenBits ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_B_W;
    return sixteenBits ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB;
}

bool targetSixteenBits(const ConvertArguments& arguments, const SourceImage& source,
                       const OutputFormat& format, bool print) {
    if (arguments.depth == 16 && !format.sixteenBits) {
        throw UsageError(std::string("--depth 16: ") + format.name +
                         " holds 8 bits a sample; write .tif or .png");
    }
    if (arguments.depth != 0) return arguments.depth == 16;
    if (print) return true;  // toners are weak where 8 bits would show their steps
    return source.sixteenBits && format.sixteenBits;
}

PixelPlan makePlan(const lumoxa::Conversion& conversion, const SourceImage& source,
                   const OutputFormat& format, bool print, bool sixteenBits) {
    PixelPlan plan;
    plan.conversion = &conversion;
    plan.sourceBands = source.bands;
    const int extras = source.bands - conversion.inputChannels();
    const bool holds = format.alpha && !print && (extras == 1 || format.manyExtras);
    plan.extras = holds ? extras : 0;
    plan.sourceSixteenBits = source.sixteenBits;
    plan.targetSixteenBits = sixteenBits;
    return plan;
}

// Classic TIFF ends at 4 GiB; what comes near it is written as BigTIFF.
bool needsBigTiff(VipsImage* image) {
    constexpr double kSafeBytes = 3.9e9;
    return static_cast<double>(VIPS_IMAGE_SIZEOF_IMAGE(image)) > kSafeBytes;
}

int writeImage(VipsImage* image, const std::string& file, const FileName& name,
               const OutputFormat& format) {
    const std::string target = file + (name.options.empty() ? format.options : name.options);
    if (std::string(format.name) == "TIFF" && needsBigTiff(image)) {
        return vips_image_write_to_file(image, target.c_str(), "bigtiff", TRUE, nullptr);
    }
    return vips_image_write_to_file(image, target.c_str(), nullptr);
}

// libvips' text without the temporary name, which would tell the user nothing.
std::string writeError(const std::string& temporary, const std::string& output) {
    std::string text = takeVipsError();
    for (size_t at = text.find(temporary); at != std::string::npos; at = text.find(temporary)) {
        text.replace(at, temporary.size(), output);
    }
    return text;
}

// Says in the metadata what the pixels are now.
void describePixels(VipsImage* image, const NamedProfile* to) {
    if (to != nullptr) {
        const std::vector<uint8_t> bytes = to->profile.bytes();
        vips_image_set_blob_copy(image, VIPS_META_ICC_NAME, bytes.data(), bytes.size());
    } else {
        vips_image_remove(image, VIPS_META_ICC_NAME);
    }
    // Cameras write 1, sRGB, here, and some readers believe it more than the profile: 65535 is
    // Exif's word for any other space.
    constexpr const char* kExifSpace = "exif-ifd2-ColorSpace";
    if (vips_image_get_typeof(image, kExifSpace) != 0) {
        vips_image_set_string(image, kExifSpace, "65535");
    }
}

constexpr int kBarWidth = 40;

void stopWhenInterrupted(VipsImage* image, VipsProgress*, void*) {
    if (interrupted()) vips_image_set_kill(image, TRUE);
}

void drawBar(VipsImage* image, VipsProgress* progress, void*) {
    // Called for every strip: draw again only what has changed.
    constexpr const char* kShown = "lumoxa-percent-shown";
    const gpointer shown = GINT_TO_POINTER(progress->percent + 1);
    if (g_object_get_data(G_OBJECT(image), kShown) == shown) return;
    g_object_set_data(G_OBJECT(image), kShown, shown);
    const auto filled = static_cast<size_t>(progress->percent * kBarWidth / 100);
    const std::string bar = std::string(filled, '=') + std::string(kBarWidth - filled, ' ');
    std::fprintf(stderr, "\r[%s] %3d %%, %d s left ", bar.c_str(), progress->percent,
                 progress->eta);
    std::fflush(stderr);
}

void clearBar(VipsImage*, VipsProgress*, void*) {
    std::fprintf(stderr, "\r%*s\r", kBarWidth + 30, "");
    std::fflush(stderr);
}

void connect(VipsImage* image, const char* signal,
             void (*callback)(VipsImage*, VipsProgress*, void*)) {
    g_signal_connect(image, signal, reinterpret_cast<GCallback>(callback), nullptr);
}

// Follows `image` while it is written: draws a bar on the standard error stream when that is a
// terminal and `quiet` is not set, and stops the writing once a signal has come.
void followProgress(VipsImage* image, bool quiet) {
    vips_image_set_progress(image, TRUE);
    connect(image, "eval", stopWhenInterrupted);
    if (quiet || isatty(STDERR_FILENO) == 0) return;
    connect(image, "preeval", drawBar);
    connect(image, "eval", drawBar);
    connect(image, "posteval", clearBar);
}

void convertFile(const ConvertArguments& arguments, const FileName& name,
                 const OutputFormat& format, SourceImage source, const PixelPlan& plan,
                 const Target& target) {
    OutputFile file(pathOf(name.path));
    ImageHandle image = convertPixels(
        source.image.get(), plan,
        interpretationOf(target.space, plan.conversion->outputChannels(), plan.targetSixteenBits));
    if (!image) throw InputError(arguments.input + ": " + takeVipsError());
    describePixels(image.get(), target.embedded());
    followProgress(image.get(), arguments.quiet);
    const int code = writeImage(image.get(), file.temporary().string(), name, format);
    throwIfInterrupted();
    if (code != 0) {
        throw InputError(arguments.input + ": can't be converted into " + name.path + " (" +
                         writeError(file.temporary().string(), name.path) +
                         "); check the image and the room on the disk");
    }
    image.reset();
    source.image.reset();  // closes the input, which may be the file to replace
    file.commit();
}

std::string sizeText(const PixelPlan& plan, int width, int height) {
    const auto bits = [](bool sixteen) { return sixteen ? "16" : "8"; };
    return std::to_string(width) + " x " + std::to_string(height) + ", " +
           bits(plan.sourceSixteenBits) + " to " + bits(plan.targetSixteenBits) + " bits" +
           (plan.extras > 0 ? ", with alpha" : "");
}

std::string timeText(double megapixels, double seconds) {
    return rounded(seconds, 2) + " s, " + rounded(megapixels / seconds, 1) +
           " megapixels per second";
}

void printReport(const ConvertArguments& arguments, const FileName& name, const Chosen& chosen,
                 const PixelPlan& plan, int width, int height, double seconds) {
    const bool linked = !arguments.link.empty();
    const std::vector<std::string> labels =
        linked ? std::vector<std::string>{"link"} : std::vector<std::string>{"from", "to"};
    std::cout << arguments.input << " -> " << name.path << '\n'
              << chainLines(chosen.conversion, chosen.chain, labels);
    if (!linked) std::cout << reportLine("intent", intentText(arguments.request.intent));
    std::cout << planLines(chosen.conversion) << reportLine("size", sizeText(plan, width, height))
              << reportLine("time", timeText(1e-6 * width * height, seconds)) << std::flush;
}

void printNotices(const ConvertArguments& arguments, const SourceImage& source,
                  const PixelPlan& plan, const OutputFormat& format, bool print) {
    if (!arguments.link.empty() && source.profile) {
        printNote(arguments, arguments.input + ": has its own profile, which a link doesn't need");
    }
    if (arguments.to.empty()) {
        printNote(arguments,
                  arguments.output + ": gets no profile; name the one to embed with --to");
    }
    if (source.pages > 1 && !hasOptions(arguments.input)) {
        printNote(arguments, arguments.input + ": has " + std::to_string(source.pages) +
                                 " pages, only one is converted; choose it with '" +
                                 arguments.input + "[page=N]'");
    }
    if (print) {
        printNote(arguments, arguments.output + ": is a print file of three channels without a " +
                                 "profile; to read it back, name " + arguments.to + " with --from");
    }
    const int extras = source.bands - plan.conversion->inputChannels();
    if (extras > plan.extras) {
        printNote(arguments, arguments.output + ": " + (print ? "a print file" : format.name) +
                                 " holds no transparency, which is dropped");
    }
}

void runConvert(const ConvertArguments& arguments) {
    const FileName name = splitName(arguments.output);
    const OutputFormat& format = outputFormat(name.path);
    if (arguments.link.empty() || !arguments.to.empty()) {
        requireProfileKept(name.path, name.options);
    }
    const Target target = openTarget(arguments);
    if (target.print) {
        requirePrint(name.path, format, name.options);
    } else {
        requireSpace(name.path, format, target.space);
    }
    SourceImage source = openSourceImage(arguments.input);
    const bool sixteenBits = targetSixteenBits(arguments, source, format, target.print);
    const Clock::time_point start = Clock::now();
    const Chosen chosen = chooseConversion(arguments, source, target);
    watchForInterrupt();  // not before: there is nothing to clean up yet
    const PixelPlan plan = makePlan(chosen.conversion, source, format, target.print, sixteenBits);
    printNotices(arguments, source, plan, format, target.print);
    const int width = vips_image_get_width(source.image.get());
    const int height = vips_image_get_height(source.image.get());
    convertFile(arguments, name, format, std::move(source), plan, target);
    if (arguments.quiet) return;
    printReport(arguments, name, chosen, plan, width, height, secondsSince(start));
}

void ignoreLog(const char*, GLogLevelFlags, const char*, void*) {}

// Codecs warn of trifles in several lines; what matters comes back as an error.
void startVips() {
    if (VIPS_INIT("lumoxa") != 0)
        throw InputError("libvips does not start: " + std::string(vips_error_buffer()));
    g_log_set_handler("VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK), ignoreLog, nullptr);
    vips_cache_set_max(0);  // one image, one pass: nothing comes again
}

}  // namespace

int lumoxaConvertImage(const ConvertArguments* arguments) {
    const int code = exitCodeOf([=] {
        startVips();
        runConvert(*arguments);
        return kSuccess;
    });
    vips_shutdown();
    return code;
}

}  // namespace lumoxa_tool
