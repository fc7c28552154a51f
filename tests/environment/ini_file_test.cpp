#include "environment/ini_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "mxbook/error.h"
#include "temp_folder.h"

namespace mxbook::environment {
namespace {

class IniFileTest : public ::testing::Test {
protected:
    std::filesystem::path write(const std::string& text) {
        std::ofstream(path_, std::ios::binary) << text;
        return path_;
    }
    std::string contents() const {
        std::ifstream in(path_, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
    testing::TempFolder folder_;
    std::filesystem::path path_ = folder_.path() / "VelmoValues.ini";
};

TEST_F(IniFileTest, FindsSectionsAndKeysWithoutRegardToCase) {
    IniFile file(
        write("; settings\n[Application]\n  Program_Root = ВЕЛМО  \nINIFILE=\"my values.ini\"\n"
              "[BASE]\nCONNECTED=1\nEMPTY=\n[base]\nCONNECTED=0\n[Пути]\nпуть=есть\n"));
    const struct {
        const char* section;
        const char* key;
        std::string expected;
    } cases[] = {
        {"APPLICATION", "PROGRAM_ROOT", "ВЕЛМО"},
        {"application", "program_root", "ВЕЛМО"},
        {"APPLICATION", "INIFILE", "my values.ini"},  // enclosing quotes go
        {"BASE", "CONNECTED", "1"},                   // the first section of a name counts
        {"BASE", "EMPTY", ""},
        {"BASE", "MISSING", "fallback"},
        {"NOWHERE", "CONNECTED", "fallback"},
        {"ПУТИ", "ПУТЬ", "есть"},  // Cyrillic names too
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.section) + "." + c.key);
        EXPECT_EQ(file.readString(c.section, c.key, "fallback"), c.expected);
    }
}

TEST_F(IniFileTest, BooleansAreNonZeroIntegers) {
    IniFile file(write("[S]\nONE=1\nZERO=0\nSEVEN= 7 \nWORD=yes\nBLANK=\n"));
    EXPECT_TRUE(file.readBool("S", "ONE", false));
    EXPECT_FALSE(file.readBool("S", "ZERO", true));
    EXPECT_TRUE(file.readBool("S", "SEVEN", false));
    EXPECT_FALSE(file.readBool("S", "WORD", false));  // not a number: the fallback
    EXPECT_TRUE(file.readBool("S", "WORD", true));
    EXPECT_FALSE(file.readBool("S", "BLANK", false));
    EXPECT_TRUE(file.readBool("S", "ABSENT", true));
    EXPECT_EQ(file.readInteger("S", "SEVEN", 0), 7);
}

TEST_F(IniFileTest, AMissingFileReadsAsEmptyAndIsCreatedByTheFirstWrite) {
    IniFile file(path_);
    EXPECT_EQ(file.readString("BASE", "CONNECTION_STRING", "ERROR!!!"), "ERROR!!!");
    file.writeBool("BASE", "CONNECTED", true);
    file.writeString("BASE", "CONNECTION_STRING", "/HOME/X/VELMO/NALET.FDB");
    EXPECT_EQ(contents(), "[BASE]\nCONNECTED=1\nCONNECTION_STRING=/HOME/X/VELMO/NALET.FDB\n");
    // Another reader sees it at once.
    EXPECT_EQ(IniFile(path_).readString("base", "connection_string", ""), "/HOME/X/VELMO/NALET.FDB");
}

TEST_F(IniFileTest, WritesKeepEveryOtherLineAsItWas) {
    IniFile file(
        write("\xEF\xBB\xBF; кто правил: Иванов\r\n[BASE]\r\nconnected=0\r\n; a comment\r\n\r\n"
              "[PTD]\r\nCONNECTED=1\r\nCONNECTION_STRING=srv:/data/PTD.FDB\r\n"));
    file.writeBool("Base", "CONNECTED", true);                      // the key keeps its spelling
    file.writeString("BASE", "CONNECTION_STRING", "/X/NALET.FDB");  // added after the section's last entry
    file.writeString("REPORT", "CONNECTED", "1");                   // a new section at the end
    EXPECT_EQ(contents(),
              "\xEF\xBB\xBF; кто правил: Иванов\r\n[BASE]\r\nconnected=1\r\nCONNECTION_STRING=/X/NALET.FDB\r\n"
              "; a comment\r\n\r\n[PTD]\r\nCONNECTED=1\r\nCONNECTION_STRING=srv:/data/PTD.FDB\r\n\r\n"
              "[REPORT]\r\nCONNECTED=1\r\n");
}

TEST_F(IniFileTest, AFileThatCannotBeWrittenRaisesAndStaysAsItWas) {
    IniFile nowhere(folder_.path() / "no such folder" / "VelmoValues.ini");
    EXPECT_THROW(nowhere.writeBool("BASE", "CONNECTED", true), Error);
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "no such folder"));
    EXPECT_FALSE(nowhere.readBool("BASE", "CONNECTED", false));
}

}  // namespace
}  // namespace mxbook::environment
