// SPDX-License-Identifier: Apache-2.0
//
// Which tags ICC.1 demands of a profile class.
#include <string_view>

#include "inspect/icc_rules.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

constexpr size_t kSignatureLength = 4;

enum class Model { kGray, kMatrix, kLut };

// One way in which a class may describe its colour; `tags` are signatures, one after the other.
struct RequiredTags {
    uint32_t deviceClass;
    Model model;
    const char* words;
    std::string_view tags;
    Clause clause;
};

constexpr std::string_view kMatrixTags = "rXYZgXYZbXYZrTRCgTRCbTRC";

// Of one class, those that serve equally well come in the order of preference.
constexpr RequiredTags kRequired[] = {
    {fourcc("scnr"), Model::kGray, "a gray input profile", "kTRC", {"6.3.1", "8.3"}},
    {fourcc("scnr"), Model::kMatrix, "a matrix input profile", kMatrixTags, {"6.3.1", "8.3"}},
    {fourcc("scnr"), Model::kLut, "a LUT input profile", "A2B0", {"6.3.1", "8.3"}},
    {fourcc("mntr"), Model::kGray, "a gray display profile", "kTRC", {"6.3.2", "8.4"}},
    {fourcc("mntr"), Model::kMatrix, "a matrix display profile", kMatrixTags, {"6.3.2", "8.4"}},
    {fourcc("mntr"), Model::kLut, "a LUT display profile", "A2B0B2A0", {"6.3.2", "8.4"}},
    {fourcc("prtr"), Model::kGray, "a gray output profile", "kTRC", {"6.3.3", "8.5"}},
    {fourcc("prtr"),
     Model::kLut,
     "a colour output profile",
     "A2B0A2B1A2B2B2A0B2A1B2A2gamt",
     {"6.3.3", "8.5"}},
    {fourcc("link"), Model::kLut, "a device link", "A2B0pseq", {"6.3.4", "8.6"}},
    {fourcc("spac"), Model::kLut, "a colour space profile", "A2B0B2A0", {"6.3.4", "8.7"}},
    {fourcc("abst"), Model::kLut, "an abstract profile", "A2B0", {"6.3.4", "8.8"}},
    {fourcc("nmcl"), Model::kLut, "a named colour profile", "ncl2", {"6.3.4", "8.9"}},
};

uint32_t signatureAt(std::string_view tags, size_t i) {
    uint32_t signature = 0;
    for (const char character : tags.substr(i * kSignatureLength, kSignatureLength))
        signature = signature << 8 | static_cast<unsigned char>(character);
    return signature;
}

template <class Visit>
void forEachTag(std::string_view tags, Visit visit) {
    for (size_t i = 0; i < tags.size() / kSignatureLength; ++i)
        visit(signatureAt(tags, i));
}

size_t tagsPresent(const ProfileFile& file, std::string_view tags) {
    size_t present = 0;
    forEachTag(tags, [&](uint32_t signature) { present += file.find(signature) != nullptr; });
    return present;
}

void demand(const ProfileFile& file, const char* words, std::string_view tags, Clause clause,
            ViolationList& list) {
    forEachTag(tags, [&](uint32_t signature) {
        if (file.find(signature) != nullptr) return;
        list.add(signatureText(signature), kTagCountAt,
                 std::string(words) + " has a tag " + quoted(signature), clause,
                 "this one has none");
    });
}

bool suits(const ProfileFile& file, Model model) {
    if (model == Model::kGray) return file.space() == kSpaceGray;
    return model != Model::kMatrix || channelsOf(file.space()) == 3;
}

// The description that the file completes, else the one that it has most tags of.
const RequiredTags* intended(const ProfileFile& file) {
    const RequiredTags* best = nullptr;
    size_t most = 0;
    for (const RequiredTags& required : kRequired) {
        if (required.deviceClass != file.deviceClass() || !suits(file, required.model)) continue;
        const size_t present = tagsPresent(file, required.tags);
        if (present == required.tags.size() / kSignatureLength) return &required;
        if (best == nullptr || present > most) {
            best = &required;
            most = present;
        }
    }
    return best;
}

bool isNamedByCount(uint32_t space) {
    return (space & 0xFFFFFF) == (fourcc("?CLR") & 0xFFFFFF);
}

void demandColorantNames(const ProfileFile& file, ViolationList& list) {
    const bool link = file.deviceClass() == fourcc("link");
    const bool output = file.deviceClass() == fourcc("prtr");
    const Clause clause = {nullptr, link ? "8.6" : "8.5"};
    if ((link || output) && isNamedByCount(file.space()))
        demand(file, "a profile from nCLR colorants", "clrt", clause, list);
    if (link && isNamedByCount(file.pcs()))
        demand(file, "a link to nCLR colorants", "clot", clause, list);
}

}  // namespace

void checkRequiredTags(const ProfileFile& file, ViolationList& list) {
    const uint32_t major = file.majorVersion();
    // What is missing may be in the rows that a cut file has lost.
    const bool wholeTable =
        file.bytes().size() >= kTableAt && file.entries().size() == file.declaredTags();
    const RequiredTags* const required = intended(file);
    if (!wholeTable || required == nullptr || (major != 2 && major != 4)) return;
    const bool link = file.deviceClass() == fourcc("link");
    demand(file, "a profile", link ? "desccprt" : "desccprtwtpt", {"6.3", link ? "8.6" : "8.2"},
           list);
    demand(file, required->words, required->tags, required->clause, list);
    if (major == 4) demandColorantNames(file, list);
    if (required->model == Model::kMatrix && file.find(fourcc("A2B0")) == nullptr &&
        file.pcs() != kSpaceXyz) {
        list.add("", header_at::kPcs, "curves and matrix lead to the connection space 'XYZ '",
                 required->clause, "it is " + quoted(file.pcs()));
    }
}

}  // namespace lumoxa::inspection
