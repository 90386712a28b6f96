// SPDX-License-Identifier: Apache-2.0
//
// The same bytes from every compiler and on every system: what conversions give is compared, as
// hashes, with a table that holds for all. `--update=FILE` writes the table anew.
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>

#include "tests/bytes/rows.h"
#include "tests/support/real_profiles.h"

namespace lumoxa_test {
namespace {

struct Group {
    const char* name;
    Rows (*rows)();
};
void PrintTo(const Group& group, std::ostream* out) {
    *out << group.name;
}
constexpr Group kGroups[] = {
    {"lut", lutRows},       {"lutAB", lutABRows},         {"intent", intentRows},
    {"curve", curveRows},   {"gray", grayRows},           {"LabXYZ", labXyzRows},
    {"chain", chainRows},   {"stored", storedRows},       {"installed", installedRows},
    {"engine", engineRows}, {"engineRun", engineRunRows}, {"engineProfile", engineProfileRows},
    {"made", madeRows}};

/// The hashes of a row as the table has them: of the result, and of the files that it is made from.
struct Hashes {
    std::string result, files;
};

Hashes hashesOf(const Row& row) {
    const auto inHex = [](const Hash& hash) {
        std::ostringstream text;
        text << std::hex << std::setw(16) << std::setfill('0') << hash.value();
        return text.str();
    };
    Hash files;
    for (const Bytes& file : row.installed)
        files.add(file);
    return {inHex(row.hash), row.installed.empty() ? "" : inHex(files)};
}

/// A group's rows of the table, by name.
std::map<std::string, Hashes> recorded(const std::string& group) {
    std::map<std::string, Hashes> rows;
    std::istringstream table(kRecordedHashes);
    for (std::string line; std::getline(table, line);) {
        std::istringstream words(line);
        std::string name;
        Hashes hashes;
        words >> name >> hashes.result >> hashes.files;
        if (name.find(group + "/") == 0) rows[name.substr(group.size() + 1)] = hashes;
    }
    return rows;
}

class SameBytes : public testing::TestWithParam<Group> {};

// Another release of a package has other files: their rows are skipped, and say so. But where a
// machine has profiles, and not even half of the table's among them, skipping would hide
// everything.
TEST_P(SameBytes, DependOnTheSystem) {
    const std::string group = GetParam().name;
    std::map<std::string, Hashes> table = recorded(group);
    const size_t listed = table.size();
    size_t compared = 0;
    for (const Row& row : GetParam().rows()) {
        const Hashes hashes = hashesOf(row);
        const auto known = table.find(row.name);
        if (known == table.end()) {
            EXPECT_FALSE(row.installed.empty()) << row.name << " is not in the table";
            continue;
        }
        if (known->second.files != hashes.files) continue;
        ++compared;
        EXPECT_EQ(hashes.result, known->second.result) << group << "/" << row.name;
        table.erase(known);
    }
    for (const auto& [name, hashes] : table) {
        EXPECT_FALSE(hashes.files.empty()) << name << " is in the table and no longer made";
        std::cout << "skipped " << group << "/" << name << ": no such file, or another one\n";
    }
    if (compared == 0 && realProfilePaths().empty()) GTEST_SKIP() << "no profiles are installed";
    EXPECT_GE(2 * compared, listed);
}

INSTANTIATE_TEST_SUITE_P(Groups, SameBytes, testing::ValuesIn(kGroups),
                         [](const auto& group) { return group.param.name; });

int update(const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    file << "# Made by ./dev update-bytes: row, hash, hash of the installed profiles it uses\n";
    for (const Group& group : kGroups) {
        for (const Row& row : group.rows()) {
            const Hashes hashes = hashesOf(row);
            file << std::left << std::setw(60) << std::string(group.name) + "/" + row.name;
            file << ' ' << hashes.result << (hashes.files.empty() ? "" : " ") << hashes.files
                 << '\n';
        }
    }
    return file.flush().good() ? 0 : 1;
}

}  // namespace
}  // namespace lumoxa_test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const std::string option = "--update=", argument = argc > 1 ? argv[1] : "";
    if (argument.find(option) != 0) return RUN_ALL_TESTS();
    const int code = lumoxa_test::update(argument.substr(option.size()));
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : code;
}
