#include <gtest/gtest.h>

#include <fstream>

#include "mxbook/environment.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

const std::string fixtures = MXBOOK_TEST_DATA_DIR "/fixtures/pe/";

TEST(FileVersion, ReadsTheFirstTranslationThatHasAStringTable) {
    const struct {
        std::string file;
        std::string expected;
    } cases[] = {
        {fixtures + "version.dll", "3.7.12.405"},         // PE32+, the second translation matches
        {fixtures + "cyrillic32.dll", "2.0 (сборка 7)"},  // PE32, the table keyed in capitals
        {fixtures + "mismatch.dll", ""},                  // no table for its only translation
        {fixtures + "noversion.dll", ""},                 // resources, but no version
        {fixtures + "version.rc", ""},                    // a text file
        {"/proc/self/exe", ""},                           // an ELF executable
        {fixtures + "missing.dll", ""},
        {fixtures, ""},  // a folder
        {"", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        EXPECT_EQ(GetFileVersion(c.file), c.expected);
    }
}

// Every cut of a real DLL, and every byte of it spoiled in turn, reads as
// "no version" or as the version, and never reads past the file.
TEST(FileVersion, DamagedFilesGiveNoVersionAndNeverFail) {
    std::ifstream in(fixtures + "version.dll", std::ios::binary);
    const std::string original((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    ASSERT_GT(original.size(), 1000u);
    testing::TempFolder folder;
    const std::string damaged = (folder.path() / "damaged.dll").string();
    int versions = 0;
    int cutShort = 0;
    for (std::size_t length = 0; length < original.size(); length += 7) {
        std::ofstream(damaged, std::ios::binary | std::ios::trunc) << original.substr(0, length);
        const std::string version = GetFileVersion(damaged);
        // A cut after the version data leaves it readable; one before it, never.
        EXPECT_TRUE(version.empty() || version == "3.7.12.405") << "cut at " << length;
        if (version.empty()) ++cutShort;
    }
    EXPECT_GT(cutShort, 100);
    for (std::size_t at = 0; at < original.size(); ++at) {
        std::string spoiled = original;
        spoiled[at] = static_cast<char>(spoiled[at] ^ 0xFF);
        std::ofstream(damaged, std::ios::binary | std::ios::trunc) << spoiled;
        const std::string version = GetFileVersion(damaged);
        EXPECT_LT(version.size(), 64u) << "spoiled at " << at;
        if (version == "3.7.12.405") ++versions;
    }
    EXPECT_GT(versions, 0);  // bytes the reader never looks at leave the version readable
}

}  // namespace
}  // namespace mxbook
