// SPDX-License-Identifier: Apache-2.0
#include "tools/convert_command.h"

#include <chrono>
#include <iomanip>
#include <iostream>
#include <optional>

#include "tools/interrupt.h"
#include "tools/output_file.h"
#include "tools/output_format.h"
#include "tools/pixel_conversion.h"
#include "tools/progress_bar.h"
#include "tools/signatures.h"
#include "tools/source_image.h"
#include "tools/srgb_profile.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

constexpr const char* kNameProfile = "name the image's profile with --from";
constexpr const char* kOtherLink = "give a link that starts from the image's colours";

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

// Throws an InputError when the profile describes other pixels than the image has.
void requireFit(const std::string& input, const SourceImage& source, const Profile& profile,
                const char* remedy = kNameProfile) {
    const int wanted = deviceChannels(profile, icDeviceToPcs);
    // Three channels of ink in a TIFF read as RGB: the format has no word for them.
    const bool sameSpace = source.space == 0 || source.space == profile.space() ||
                           (isGrayDevice(profile, icDeviceToPcs) && source.space == kRgb);
    if (wanted == source.colourBands && sameSpace) return;
    std::string image = std::to_string(source.colourBands);
    if (source.space != 0) image += " " + spaceText(source.space);
    throw InputError(input + ": has " + image + " channels, but " + profile.name() + " is for " +
                         std::to_string(wanted) + " " + spaceText(profile.space()) + " channels",
                     remedy);
}

void printNote(const ConvertArguments& arguments, const std::string& text) {
    if (!arguments.quiet) printMessage("note: " + text);
}

// The profile if it is a gray device's. One that can't be opened is refused where it is needed.
std::optional<Profile> grayDeviceOf(const std::string& from) {
    if (from.empty()) return std::nullopt;
    try {
        Profile profile = Profile::open(from);
        if (isGrayDevice(profile, icDeviceToPcs)) return profile;
    } catch (const InputError&) {
        return std::nullopt;
    }
    return std::nullopt;
}

// A print file has no profile; an image that has one of colours is no print file.
void requirePrintFile(const ConvertArguments& arguments, const SourceImage& source) {
    constexpr size_t kSpaceAt = 16;  // in a header
    if (!source.profile || source.profile->size() < kSpaceAt + 4) return;
    const uint32_t space = bigEndian32(source.profile->data() + kSpaceAt);
    if (space == kGray) return;
    throw InputError(arguments.input + ": has an embedded profile of " + spaceText(space) +
                         ", so its channels are not those of " + arguments.from,
                     "leave out --from, or remove the profile from the image if it is wrong");
}

// The embedded profile; --from helps out where that one can't serve.
Profile sourceProfile(const ConvertArguments& arguments, const SourceImage& source) {
    if (std::optional<Profile> gray = grayDeviceOf(arguments.from)) {
        requirePrintFile(arguments, source);
        return std::move(*gray);
    }
    if (source.profile) {
        try {
            Profile embedded("profile embedded in " + arguments.input, *source.profile,
                             kNameProfile);
            requireFit(arguments.input, source, embedded);
            if (arguments.from.empty()) return embedded;
            makeDeviceLink(embedded, arguments.request.intent, icDeviceToPcs);  // throws: no use
            printNote(arguments, arguments.input + ": has its own profile, --from is not used");
            return embedded;
        } catch (const InputError& error) {
            if (arguments.from.empty()) throw;
            printNote(arguments, error.fault() + "; --from is used instead");
        }
    }
    if (!arguments.from.empty()) return Profile::open(arguments.from);
    if (source.space == kRgb) return Profile::open(kBuiltInSrgb);
    throw InputError(arguments.input + ": has no embedded profile and is not RGB", kNameProfile);
}

VipsInterpretation interpretationOf(uint32_t space, int colours, bool sixteenBits) {
    // Amounts of ink, not light: libvips converts RGB on the way into some files, but never bands
    // without a meaning. TIFF calls three of them RGB all the same, which is why a note tells.
    if (space == kGray && colours == kGrayDeviceChannels) return VIPS_INTERPRETATION_MULTIBAND;
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

PixelPlan makePlan(const Conversion& conversion, const SourceImage& source, bool holdsAlpha,
                   bool sixteenBits) {
    PixelPlan plan;
    plan.conversion = &conversion;
    plan.sourceColours = source.colourBands;
    plan.targetColours = static_cast<int>(conversion.desc.outChannels);
    plan.sourceAlpha = source.alpha;
    plan.targetAlpha = source.alpha && holdsAlpha;
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
void describePixels(VipsImage* image, const Profile* to) {
    if (to != nullptr) {
        vips_image_set_blob_copy(image, VIPS_META_ICC_NAME, to->bytes().data(), to->bytes().size());
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

void convertFile(const ConvertArguments& arguments, const FileName& name,
                 const OutputFormat& format, SourceImage source, const PixelPlan& plan,
                 const Profile* to) {
    OutputFile file(name.path);
    ImageHandle image = convertPixels(source.image.get(), plan,
                                      interpretationOf(plan.conversion->desc.outSpace,
                                                       plan.targetColours, plan.targetSixteenBits));
    if (!image) throw InputError(arguments.input + ": " + takeVipsError());
    describePixels(image.get(), to);
    followProgress(image.get(), arguments.quiet);
    const int code = writeImage(image.get(), file.temporaryName(), name, format);
    throwIfInterrupted();
    if (code != 0) {
        throw InputError(arguments.input + ": can't be converted into " + name.path + " (" +
                         writeError(file.temporaryName(), name.path) +
                         "); check the image and the room on the disk");
    }
    image.reset();
    source.image.reset();  // closes the input, which may be the file to replace
    file.commit();
}

void printReport(const ConvertArguments& arguments, const FileName& name,
                 const Conversion& conversion, const PixelPlan& plan, int width, int height,
                 double seconds) {
    static constexpr const char* kParts[] = {"  from      ", "  to        "};
    const double megapixels = 1e-6 * width * height;
    const auto bits = [](bool sixteen) { return sixteen ? "16" : "8"; };
    std::cout << std::fixed << arguments.input << " -> " << name.path << '\n';
    for (size_t i = 0; i < conversion.links.size(); ++i) {
        const ChainLink& link = conversion.links[i];
        std::cout << (arguments.link.empty() ? kParts[i] : "  link      ") << link.description
                  << ": " << link.describe() << '\n';
    }
    const bool combinedNow = conversion.table.xform && arguments.link.empty();
    std::cout << (combinedNow ? "  combined  " : "  applied   ") << conversion.describe() << ", "
              << intentText(conversion.desc.intent) << '\n'
              << "  size      " << width << " x " << height << ", " << bits(plan.sourceSixteenBits)
              << " to " << bits(plan.targetSixteenBits) << " bits"
              << (plan.targetAlpha ? ", with alpha" : "") << '\n'
              << "  time      " << std::setprecision(2) << seconds << " s, " << std::setprecision(1)
              << megapixels / seconds << " megapixels per second" << std::endl;
}

void printNotices(const ConvertArguments& arguments, const SourceImage& source,
                  const Conversion& conversion, const PixelPlan& plan, const OutputFormat& format,
                  bool print) {
    for (const ChainLink& link : conversion.links) {
        if (!link.notice.empty()) printMessage(link.notice);
    }
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
    if (plan.sourceAlpha && !plan.targetAlpha) {
        printNote(arguments, arguments.output + ": " + (print ? "a print file" : format.name) +
                                 " holds no transparency, which is dropped");
    }
}

// What the output will hold, and what has the last word on its pixels.
struct Target {
    std::optional<Profile> link;
    std::optional<Profile> profile;  // to embed; the target of the conversion where no link is
    uint32_t space = 0;
    bool print = false;  // three channels of a gray device

    // Other software would take the profile's one tone curve for what the three channels are.
    const Profile* embedded() const { return profile && !print ? &*profile : nullptr; }
};

Target openTarget(const ConvertArguments& arguments) {
    Target target;
    if (!arguments.to.empty()) target.profile = Profile::open(arguments.to);
    if (arguments.link.empty()) {
        if (!target.profile) throw UsageError("--to or --link is required; see lumoxa --help");
        target.space = target.profile->space();
        target.print = isGrayDevice(*target.profile, icPcsToDevice);
        return target;
    }
    target.link = Profile::open(arguments.link);
    requireStoredLink(*target.link);
    target.space = target.link->header().pcs;
    if (target.profile && target.profile->space() != target.space) {
        throw InputError(arguments.to + ": is for " + spaceText(target.profile->space()) +
                             ", but " + arguments.link + " gives " + spaceText(target.space),
                         "name a profile of the link's target");
    }
    return target;
}

Conversion chosenConversion(const ConvertArguments& arguments, const SourceImage& source,
                            const Target& target) {
    if (target.link) {
        requireFit(arguments.input, source, *target.link, kOtherLink);
        watchForInterrupt();
        return makeLinkConversion(*target.link);
    }
    const Profile from = sourceProfile(arguments, source);
    requireFit(arguments.input, source, from);
    watchForInterrupt();  // not before: there is nothing to clean up yet
    return makeConversion(from, *target.profile, arguments.request);
}

}  // namespace

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
    const Conversion conversion = chosenConversion(arguments, source, target);
    const PixelPlan plan = makePlan(conversion, source, format.alpha && !target.print, sixteenBits);
    printNotices(arguments, source, conversion, plan, format, target.print);
    const int width = vips_image_get_width(source.image.get());
    const int height = vips_image_get_height(source.image.get());
    convertFile(arguments, name, format, std::move(source), plan, target.embedded());
    if (arguments.quiet) return;
    printReport(arguments, name, conversion, plan, width, height, secondsSince(start));
}

}  // namespace lumoxa_tool
