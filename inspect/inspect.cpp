// SPDX-License-Identifier: Apache-2.0
#include "inspect/inspect.h"

#include <algorithm>

#include "inspect/facts.h"
#include "inspect/icc_rules.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

void writeViolations(JsonObject& report, const ViolationList& list) {
    report.array("violations", [&](JsonArray& out) {
        for (const Violation& violation : list.violations()) {
            out.object([&](JsonObject& entry) {
                writeText(entry, "tag", violation.tag);
                entry.add("offset", violation.offset);
                entry.add("rule", violation.rule);
                writeText(entry, "clause", violation.clause);
            });
        }
    });
    report.add("violationsNotListed", list.more());
}

// Why the profile can't be loaded, else the first transform that it has tags for and can't be made.
void writeFirstFault(JsonObject& report, const Subject& subject,
                     const std::vector<TransformFact>& transforms) {
    const auto faulty = std::find_if(
        transforms.begin(), transforms.end(),
        [](const TransformFact& transform) { return transform.offered && transform.fault; });
    if (subject.fault()) {
        writeFault(report, "fault", *subject.fault());
    } else if (faulty != transforms.end()) {
        writeFault(report, "fault", *faulty->fault);
    } else {
        report.add("fault", nullptr);
    }
}

}  // namespace

void writeFault(JsonObject& object, const char* name, const Fault& fault) {
    object.object(name, [&](JsonObject& out) {
        out.add("sentence", cleanText(fault.sentence));
        out.add("code", fault.code);
        writeText(out, "tag", fault.tag == 0 ? std::string() : signatureText(fault.tag));
        if (fault.offset < 0) {
            out.add("offset", nullptr);
        } else {
            out.add("offset", fault.offset);
        }
    });
}

void writeText(JsonObject& object, const char* name, const std::string& text) {
    if (text.empty()) return object.add(name, nullptr);
    object.add(name, text);
}

void writeWord(JsonObject& object, const char* name, const char* word) {
    writeText(object, name, word == nullptr ? std::string() : word);
}

std::string inspectProfile(std::span<const uint8_t> bytes) {
    const Subject subject(bytes);
    const ProfileFile& file = subject.file();
    const std::vector<TransformFact> transforms = transformFacts(subject);
    return jsonObject([&](JsonObject& report) {
        report.add("fileSize", bytes.size());
        writeTitle(report, file);
        writeHeader(report, file);
        writePoints(report, file);
        writeShapes(report, file);
        writeTags(report, file);
        writeTransforms(report, subject, transforms);
        writeBlackPoints(report, subject);
        writeTotalInk(report, subject);
        writeConditions(report, file);
        writeViolations(report, findViolations(subject, transforms));
        writeFirstFault(report, subject, transforms);
        writeTexts(report, file);
        writeMetadata(report, file);
    });
}

}  // namespace lumoxa::inspection
