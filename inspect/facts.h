// SPDX-License-Identifier: Apache-2.0
//
// The parts of a report on a profile, each of which adds its members to the JSON document
// (docs/inspect.md lists them).
#pragma once

#include <string>
#include <vector>

#include "base/json.h"
#include "inspect/subject.h"
#include "inspect/transform_facts.h"

namespace lumoxa::inspection {

/// header
void writeHeader(JsonObject& report, const ProfileFile& file);
/// mediaWhitePoint, mediaBlackPoint, chromaticAdaptation
void writePoints(JsonObject& report, const ProfileFile& file);
/// curves, luts, grayDevice
void writeShapes(JsonObject& report, const ProfileFile& file);
/// tags, tagsNotListed
void writeTags(JsonObject& report, const ProfileFile& file);
/// transforms, gamutTest
void writeTransforms(JsonObject& report, const Subject& subject,
                     const std::vector<TransformFact>& transforms);
/// blackPoints
void writeBlackPoints(JsonObject& report, const Subject& subject);
/// totalInk
void writeTotalInk(JsonObject& report, const Subject& subject);
/// technology, viewingConditions, measurement, cicp, videoCardCurves
void writeConditions(JsonObject& report, const ProfileFile& file);
/// metadata, metadataNotListed
void writeMetadata(JsonObject& report, const ProfileFile& file);
/// description, descriptionsNotListed, copyright, texts
void writeTexts(JsonObject& report, const ProfileFile& file);

/// The description in one language, null for none.
void writeTitle(JsonObject& report, const ProfileFile& file);

/// A fault as an object.
void writeFault(JsonObject& object, const char* name, const Fault& fault);

/// Numbers as an array.
template <class Numbers>
void writeNumbers(JsonObject& object, const char* name, const Numbers& numbers) {
    object.array(name, [&](JsonArray& list) {
        for (const auto number : numbers)
            list.add(number);
    });
}

/// `text`, or null where it is empty or null.
void writeText(JsonObject& object, const char* name, const std::string& text);
void writeWord(JsonObject& object, const char* name, const char* word);

/// A text on one line and without what a terminal might obey: controls become blanks.
std::string cleanText(std::string text);

}  // namespace lumoxa::inspection
