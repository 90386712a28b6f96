// SPDX-License-Identifier: Apache-2.0
#include "tools/info_json.h"

#include <nlohmann/json.hpp>

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

Json textsJson(const LocalizedTexts& texts) {
    Json list = Json::array();
    for (const LocalizedText& text : texts.texts) {
        Json item = Json::object();
        if (!text.language.empty()) item["language"] = text.language;
        item["text"] = text.text;
        list.push_back(item);
    }
    return list;
}

Json headerJson(const std::vector<HeaderFact>& header) {
    if (header.empty()) return nullptr;
    Json fields = Json::object();
    for (const HeaderFact& field : header) {
        const auto* const words = std::get_if<std::string>(&field.value);
        const bool none = words != nullptr && words->empty();
        fields[field.key] =
            none ? Json(nullptr)
                 : std::visit([](const auto& value) { return Json(value); }, field.value);
    }
    return fields;
}

Json pointJson(const std::optional<Xyz>& point) {
    return point ? Json(*point) : Json(nullptr);
}

Json curveJson(const CurveFact& curve) {
    static constexpr const char* kForms[] = {"identity", "gamma", "table", "parametric", nullptr};
    Json item = Json::object();
    for (const uint32_t tag : curve.tags)
        item["tags"].push_back(signatureText(tag));
    const char* form = kForms[curve.form.kind];
    item["form"] = form != nullptr ? Json(form) : Json(nullptr);
    if (curve.form.kind == CurveForm::kGamma) item["gamma"] = curve.form.numbers.at(0);
    if (curve.form.kind == CurveForm::kTable) item["entries"] = curve.form.entries;
    if (curve.form.kind == CurveForm::kParametric) {
        item["function"] = curve.form.function;
        for (size_t i = 0; i < curve.form.numbers.size(); ++i)
            item["parameters"][std::string(1, parameterName(i))] = curve.form.numbers[i];
    }
    return item;
}

Json lutJson(const LutFact& lut) {
    const LutShape& shape = lut.shape;
    Json item = {{"tag", signatureText(lut.tag)}, {"type", signatureText(shape.type)}};
    if (!shape.known) return item;
    item["inputs"] = shape.inputs;
    item["outputs"] = shape.outputs;
    item["grid"] = shape.grid;
    item["bits"] = shape.precision;
    if (shape.isAB()) {
        item["elements"] = Json::array();
        for (const LutElement& element : shape.elements) {
            if (element.at != 0) item["elements"].push_back(element.name);
        }
    } else {
        item["inputEntries"] = shape.inputEntries;
        item["outputEntries"] = shape.outputEntries;
        item["matrix"] = shape.matrixActs;
    }
    return item;
}

Json grayDeviceJson(const std::optional<GrayDeviceFact>& device) {
    if (!device) return nullptr;
    return {{"points", device->points}, {"steps", device->steps}, {"layout", device->layout}};
}

Json tagJson(const TagFact& tag) {
    return {{"signature", signatureText(tag.entry.signature)},
            {"type", tag.type == 0 ? Json(nullptr) : Json(signatureText(tag.type))},
            {"offset", tag.entry.offset},
            {"size", tag.entry.size}};
}

Json transformJson(const TransformFact& transform) {
    Json item = {{"direction", transform.direction},
                 {"intent", transform.intent},
                 {"offered", transform.offered}};
    if (!transform.fault.empty()) item["fault"] = transform.fault;
    if (!transform.offered || !transform.fault.empty()) return item;
    item["tag"] = transform.tag == 0 ? Json(nullptr) : Json(signatureText(transform.tag));
    item["kind"] = kindText(transform.desc.kind);
    item["from"] = spaceText(transform.desc.inSpace);
    item["to"] = spaceText(transform.desc.outSpace);
    item["inputs"] = transform.desc.inChannels;
    item["outputs"] = transform.desc.outChannels;
    if (transform.grid != 0) item["grid"] = transform.grid;
    if (!transform.leftOut.empty()) item["withoutIts"] = transform.leftOut;
    return item;
}

Json violationJson(const Violation& violation) {
    return {{"tag", violation.tag.empty() ? Json(nullptr) : Json(violation.tag)},
            {"offset", violation.offset},
            {"rule", violation.rule}};
}

template <class Item>
Json listJson(const std::vector<Item>& items, Json (*itemJson)(const Item&)) {
    Json list = Json::array();
    for (const Item& item : items)
        list.push_back(itemJson(item));
    return list;
}

}  // namespace

std::string jsonText(const ProfileFacts& facts) {
    Json document = {{"profile", facts.name}, {"fileSize", facts.fileSize}};
    document["description"] = textsJson(facts.description);
    document["copyright"] = textsJson(facts.copyright);
    document["header"] = headerJson(facts.header);
    document["mediaWhitePoint"] = pointJson(facts.mediaWhite);
    document["mediaBlackPoint"] = pointJson(facts.mediaBlack);
    document["curves"] = listJson(facts.curves, curveJson);
    document["luts"] = listJson(facts.luts, lutJson);
    document["grayDevice"] = grayDeviceJson(facts.grayDevice);
    document["tags"] = listJson(facts.tags, tagJson);
    document["tagsNotListed"] = facts.moreTags;
    document["transforms"] = listJson(facts.transforms, transformJson);
    document["gamutTest"] = facts.gamutTest ? Json(*facts.gamutTest) : Json(nullptr);
    document["violations"] = listJson(facts.violations, violationJson);
    document["violationsNotListed"] = facts.moreViolations;
    document["fault"] = facts.fault.empty() ? Json(nullptr) : Json(facts.fault);
    return document.dump(kIndent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace lumoxa_tool
