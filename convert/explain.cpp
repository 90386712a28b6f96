// SPDX-License-Identifier: Apache-2.0
//
// A conversion in words: the JSON of explain(), whose members docs/conversions.md describes.
#include "base/json.h"
#include "convert/conversion.h"

namespace lumoxa::engine {
namespace {

const char* intentName(icRenderingIntent intent) {
    static constexpr const char* kNames[] = {"perceptual", "relative", "saturation", "absolute"};
    return kNames[intent & 3];
}

const char* planName(PlanKind kind) {
    static constexpr const char* kNames[] = {"stages", "shaper", "table"};
    return kNames[static_cast<size_t>(kind)];
}

uint64_t bytesOf(const TableForm& table) {
    uint64_t samples = table.grid.nodes.size();
    for (const auto* curves : {&table.inCurves, &table.outCurves}) {
        for (const auto& curve : *curves)
            samples += curve.size();
    }
    return samples * sizeof(uint16_t);
}

void addFigures(JsonObject& json, const char* name, const ErrorFigures& figures) {
    json.object(name, [&](JsonObject& entry) {
        entry.add("mean", figures.mean);
        entry.add("percentile99", figures.percentile);
        entry.add("largest", figures.largest);
    });
}

void addError(JsonObject& json, const MeasuredError& error, bool within) {
    json.object("error", [&](JsonObject& entry) {
        entry.add("unit", error.deltaE ? "Delta E*ab" : "percent");
        entry.add("largest", error.largest());
        addFigures(entry, "whole", error.whole);
        addFigures(entry, "shadows", error.shadows);
        addFigures(entry, "betweenNodes", error.between);
        entry.add("withinLimits", within);
    });
}

void addTable(JsonObject& json, const TableForm& table, const std::string& curves) {
    json.object("table", [&](JsonObject& entry) {
        entry.array("grid", [&](JsonArray& grid) {
            for (const int points : table.grid.points)
                grid.add(points);
        });
        entry.add("bytes", bytesOf(table));
        if (!curves.empty()) entry.add("curves", curves);
    });
}

void addSteps(JsonObject& json, const std::vector<StepReport>& steps) {
    json.array("steps", [&](JsonArray& list) {
        for (const StepReport& step : steps) {
            list.object([&](JsonObject& entry) {
                entry.add("from", step.from);
                entry.add("to", step.to);
                entry.add("intent", intentName(step.intent));
                entry.add("blackPointCompensation", step.compensated);
                if (!step.note.empty()) entry.add("note", step.note);
                if (!step.compensated) return;
                const auto addBlack = [&](const char* name, const BlackPoint& black) {
                    entry.object(name, [&](JsonObject& point) {
                        point.add("L", black.L);
                        point.add("found", black.origin);
                    });
                };
                addBlack("sourceBlack", step.sourceBlack);
                addBlack("destinationBlack", step.destinationBlack);
            });
        }
    });
}

void addStages(JsonObject& json, const StageList& stages) {
    json.array("stages", [&](JsonArray& list) {
        for (const PlacedStage& placed : stages.stages()) {
            list.object([&](JsonObject& entry) {
                entry.add("stage", placed.stage->describe());
                if (!placed.origin.empty()) entry.add("origin", placed.origin);
            });
        }
    });
}

void addPrint(JsonObject& json, const PrintReport& print) {
    if (print.gamutLimit) {
        json.object("gamutMark", [&](JsonObject& entry) {
            entry.add("by", print.gamutByTag ? "tag 'gamt'" : "Lab to device and back");
            if (!print.gamutByTag) entry.add("limit", *print.gamutLimit);
        });
    }
    if (print.blackInk) {
        json.object("preservedBlack", [&](JsonObject& entry) {
            entry.add("largestErrorOfL", print.blackInk->largestError);
            entry.array("curve", [&](JsonArray& curve) {
                constexpr size_t kShown = 16;
                const auto& ink = print.blackInk->ink;
                for (size_t i = 0; i <= kShown; ++i)
                    curve.add(static_cast<double>(ink[i * (ink.size() - 1) / kShown]));
            });
        });
    }
    if (print.inkLimit > 0) json.add("inkLimit", static_cast<double>(print.inkLimit));
}

}  // namespace

std::string ReadyConversion::explain() const {
    return jsonObject([&](JsonObject& json) {
        json.add("plan", planName(kind_));
        json.add("reason", reason_);
        json.array("profiles", [&](JsonArray& list) {
            for (const std::string& name : names_)
                list.add(name);
        });
        const auto addSide = [&](const char* name, uint32_t space, int channels) {
            json.object(name, [&](JsonObject& side) {
                side.add("space", spaceName(space));
                side.add("channels", channels);
            });
        };
        addSide("input", chain_.inSpace, inputs());
        addSide("output", chain_.outSpace, outputs());
        if (table_) addTable(json, *table_, curves_);
        if (error_) addError(json, *error_, withinLimits_);
        if (kind_ == PlanKind::kShaper) {
            json.object("error", [&](JsonObject& entry) {
                entry.add("unit", "steps of 255");
                entry.add("largest", largestSteps_);
            });
        }
        addSteps(json, chain_.steps);
        addPrint(json, chain_.print);
        addStages(json, chain_.stages);
        json.array("notes", [&](JsonArray& list) {
            for (const std::string& note : chain_.notes)
                list.add(note);
        });
    });
}

}  // namespace lumoxa::engine
