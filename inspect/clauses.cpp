// SPDX-License-Identifier: Apache-2.0
#include "inspect/clauses.h"

#include <algorithm>
#include <iterator>

#include "profile/signatures.h"

namespace lumoxa::inspection {
namespace {

struct TypeClause {
    uint32_t type;
    Clause clause;
};

constexpr TypeClause kTypeClauses[] = {
    {fourcc("chrm"), {"6.5.1", "10.2"}},   {fourcc("crdi"), {"6.5.2", nullptr}},
    {fourcc("clro"), {nullptr, "10.3"}},   {fourcc("clrt"), {nullptr, "10.4"}},
    {fourcc("curv"), {"6.5.3", "10.5"}},   {fourcc("data"), {"6.5.4", "10.6"}},
    {fourcc("dtim"), {"6.5.5", "10.7"}},   {fourcc("devs"), {"6.5.6", nullptr}},
    {fourcc("mft2"), {"6.5.7", "10.8"}},   {fourcc("mft1"), {"6.5.8", "10.9"}},
    {fourcc("mAB "), {nullptr, "10.10"}},  {fourcc("mBA "), {nullptr, "10.11"}},
    {fourcc("meas"), {"6.5.9", "10.12"}},  {fourcc("ncol"), {"6.5.10", nullptr}},
    {fourcc("mluc"), {nullptr, "10.13"}},  {fourcc("mpet"), {nullptr, "10.14"}},
    {fourcc("ncl2"), {"6.5.11", "10.15"}}, {fourcc("para"), {nullptr, "10.16"}},
    {fourcc("pseq"), {"6.5.12", "10.17"}}, {fourcc("psid"), {nullptr, "10.18"}},
    {fourcc("rcs2"), {"6.5.13", "10.19"}}, {fourcc("sf32"), {"6.5.14", "10.20"}},
    {fourcc("scrn"), {"6.5.15", nullptr}}, {fourcc("sig "), {"6.5.16", "10.21"}},
    {fourcc("desc"), {"6.5.17", nullptr}}, {fourcc("text"), {"6.5.18", "10.22"}},
    {fourcc("uf32"), {"6.5.19", "10.23"}}, {fourcc("bfd "), {"6.5.20", nullptr}},
    {fourcc("ui16"), {"6.5.21", "10.24"}}, {fourcc("ui32"), {"6.5.22", "10.25"}},
    {fourcc("ui64"), {"6.5.23", "10.26"}}, {fourcc("ui08"), {"6.5.24", "10.27"}},
    {fourcc("view"), {"6.5.25", "10.28"}}, {fourcc("XYZ "), {"6.5.26", "10.29"}},
};

const TypeClause* find(uint32_t type) {
    const auto* const found =
        std::find_if(std::begin(kTypeClauses), std::end(kTypeClauses),
                     [=](const TypeClause& entry) { return entry.type == type; });
    return found == std::end(kTypeClauses) ? nullptr : found;
}

}  // namespace

Clause clauseOfType(uint32_t type) {
    const TypeClause* const entry = find(type);
    return entry == nullptr ? kTypeClause : entry->clause;
}

bool isKnownType(uint32_t type) {
    return find(type) != nullptr;
}

std::string clauseText(const Clause& clause, bool version2) {
    const bool first = clause.v4 == nullptr || (version2 && clause.v2 != nullptr);
    const char* const number = first ? clause.v2 : clause.v4;
    if (number == nullptr) return {};
    return std::string(first ? "ICC.1:2001-04, " : "ICC.1:2010, ") + number;
}

}  // namespace lumoxa::inspection
