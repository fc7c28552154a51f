#include <gtest/gtest.h>

#include <functional>

#include "environment_fixture.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook {
namespace {

using FoldersTest = testing::EnvironmentTest;

TEST_F(FoldersTest, FoldersAreTheHostsWithTheApplicationFolder) {
    EXPECT_EQ(GetUserRoot(), documents().string() + "/VELMO/");
    EXPECT_EQ(GetCommonRoot(), (folder() / "shared").string() + "/VELMO/");
    EXPECT_EQ(GetUserDesktop(), (folder() / "Рабочий стол").string());
    writeSettings("[APPLICATION]\nPROGRAM_ROOT=Велмо Тест\n");
    EXPECT_EQ(GetUserRoot(), documents().string() + "/Велмо Тест/");
    EXPECT_EQ(GetCommonRoot(), (folder() / "shared").string() + "/Велмо Тест/");
    host().documents.clear();  // no documents folder known
    EXPECT_EQ(GetUserRoot(), "/Велмо Тест/");
}

struct DatabaseCase {
    const char* name;
    std::function<std::string()> location;
    const char* section;
    const char* file;
};

const DatabaseCase databases[] = {
    {"main", GetUserBase, "BASE", "NALET.FDB"},
    {"documentation", GetBaseDocTO, "PTD", "PTD.FDB"},
    {"report", GetBaseReport, "REPORT", "REPORT.FDB"},
    {"picture", GetUserPhoto, "PICTURE", "PICTURE.FDB"},
};

// The first call settles the location, upper-cased, in the values file and
// returns it as composed; the second returns what the file holds.
TEST_F(FoldersTest, FirstUseSettlesEachLocationAndLaterCallsReadIt) {
    std::filesystem::create_directories(userRoot());
    for (const auto& database : databases) {
        SCOPED_TRACE(database.name);
        const std::string composed = userRoot().string() + "/" + database.file;
        EXPECT_EQ(database.location(), composed);
        const std::string values = contents(userRoot() / "VelmoValues.ini");
        EXPECT_NE(values.find(std::string("[") + database.section +
                              "]\nCONNECTED=1\nCONNECTION_STRING=" + upperCase(composed) + "\n"),
                  std::string::npos)
            << values;
        EXPECT_EQ(database.location(), upperCase(composed));
    }
    // The Cyrillic folder name is upper-cased too.
    EXPECT_NE(GetUserBase().find("/ДОКУМЕНТЫ/VELMO/NALET.FDB"), std::string::npos);
}

TEST_F(FoldersTest, TheValuesFileRulesOnceSettled) {
    writeSettings("[Application]\nProgram_Root=AVIA\nIniFile=Мои значения.ini\n");
    std::filesystem::create_directories(userRoot("AVIA"));
    std::ofstream(userRoot("AVIA") / "Мои значения.ini")
        << "[BASE]\nCONNECTED=1\nCONNECTION_STRING=db.example.org:/data/NALET.FDB\n"
        << "[PTD]\nCONNECTED=1\n"
        << "[REPORT]\nCONNECTED=0\nCONNECTION_STRING=old:/REPORT.FDB\n";
    EXPECT_EQ(GetUserBase(), "db.example.org:/data/NALET.FDB");             // edited by hand
    EXPECT_EQ(GetBaseDocTO(), "ERROR!!!");                                  // connected without a location
    EXPECT_EQ(GetBaseReport(), userRoot("AVIA").string() + "/REPORT.FDB");  // not connected: settled anew
    EXPECT_EQ(GetBaseReport(), upperCase(userRoot("AVIA").string() + "/REPORT.FDB"));
}

TEST_F(FoldersTest, SettlingWithoutTheUserFolderRaisesAndWritesNothing) {
    EXPECT_THROW(GetUserBase(), Error);
    EXPECT_FALSE(std::filesystem::exists(userRoot()));
}

}  // namespace
}  // namespace mxbook
