#include <gtest/gtest.h>

#include <atomic>
#include <iostream>
#include <sstream>
#include <thread>
#include <vector>

#include "fake_host.h"
#include "mxbook/host.h"

namespace mxbook {
namespace {

TEST(UserDirs, ReadsTheNamedFolderWithHomeExpanded) {
    const std::string file =
        "# written by xdg-user-dirs-update\n"
        "XDG_DESKTOP_DIR=\"$HOME/Рабочий стол\"\n"
        "XDG_DOCUMENTS_DIR=\"$HOME/Документы\"\n"
        "XDG_MUSIC_DIR=\"/srv/music/\"\n";
    EXPECT_EQ(xdgUserDir(file, "DOCUMENTS", "/home/ivan"), "/home/ivan/Документы");
    EXPECT_EQ(xdgUserDir(file, "DESKTOP", "/home/ivan"), "/home/ivan/Рабочий стол");
    EXPECT_EQ(xdgUserDir(file, "MUSIC", "/home/ivan"), "/srv/music");
    EXPECT_EQ(xdgUserDir(file, "PICTURES", "/home/ivan"), "");
    EXPECT_EQ(xdgUserDir("", "DOCUMENTS", "/home/ivan"), "");
}

TEST(HostRegistry, ScopedHostInstallsAndRestores) {
    Host& before = host();
    auto fake = std::make_shared<testing::FakeHost>();
    {
        ScopedHost scope(fake);
        EXPECT_EQ(&host(), fake.get());
        EXPECT_EQ(host().today(), Date::fromYmd(2024, 3, 15));
    }
    EXPECT_EQ(&host(), &before);
}

// One thread swaps two hosts while others use whichever is installed: each
// call reaches a whole host (under a race detector, no unsynchronised access
// to the installed pointer). The test keeps both hosts alive, as the
// installer must.
TEST(HostRegistry, InstallingWhileOtherThreadsReadIsSafe) {
    auto first = std::make_shared<testing::FakeHost>();
    auto second = std::make_shared<testing::FakeHost>();
    second->todayDate = Date::fromYmd(2025, 6, 1);
    ScopedHost scope(first);
    constexpr int swaps = 2000, readers = 3, reads = 5000;
    std::atomic<int> strangers = 0;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < readers; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < reads; ++i) {
                    const Date today = host().today();
                    if (today != first->todayDate && today != second->todayDate) ++strangers;
                }
            });
        threads.emplace_back([&] {
            for (int i = 0; i < swaps; ++i) installHost(i % 2 == 0 ? second : first);
        });
    }
    EXPECT_EQ(strangers, 0);
    EXPECT_EQ(&host(), first.get());  // the last swap put the first back
}

// Captures what the console host writes to standard error.
class ConsoleHostTest : public ::testing::Test {
protected:
    void SetUp() override { saved_ = std::cerr.rdbuf(captured_.rdbuf()); }
    void TearDown() override { std::cerr.rdbuf(saved_); }
    std::string written() const { return captured_.str(); }

    ConsoleHost console;

private:
    std::ostringstream captured_;
    std::streambuf* saved_ = nullptr;
};

TEST_F(ConsoleHostTest, MessageIsOneLineWithItsCaption) {
    const Answer answer = console.messageBox(console.foregroundWindow(), "Поле не заполнено!\r\nПроверьте ввод.",
                                             "Внимание!", box::iconWarning);
    EXPECT_EQ(answer, Answer::ok);
    EXPECT_EQ(written(), "Внимание!: Поле не заполнено! Проверьте ввод.\n");
}

TEST_F(ConsoleHostTest, QuestionsFollowThePolicy) {
    console.setQuestionPolicy(ConsoleHost::QuestionPolicy::alwaysYes);
    EXPECT_EQ(console.messageBox({}, "Учесть?", "Внимание!", box::yesNo | box::iconQuestion), Answer::yes);
    console.setQuestionPolicy(ConsoleHost::QuestionPolicy::alwaysNo);
    EXPECT_EQ(console.messageBox({}, "Учесть?", "Внимание!", box::yesNo | box::iconQuestion), Answer::no);
    EXPECT_EQ(written(), "Внимание!: Учесть? [yes]\nВнимание!: Учесть? [no]\n");
}

TEST_F(ConsoleHostTest, TodayCanBePinned) {
    console.setToday(Date::fromYmd(2025, 1, 31));
    EXPECT_EQ(console.today(), Date::fromYmd(2025, 1, 31));
    EXPECT_EQ(console.now().date, Date::fromYmd(2025, 1, 31));
}

TEST_F(ConsoleHostTest, KnowsItsExecutableAndWindow) {
    EXPECT_NE(console.executablePath().find("mxbook_tests"), std::string::npos);
    EXPECT_EQ(console.windowTitle(console.foregroundWindow()), "mxbook_tests");
    console.setWindowTitle("Формуляр");
    EXPECT_EQ(console.windowTitle(console.foregroundWindow()), "Формуляр");
    EXPECT_EQ(console.windowTitle(Window{999}), "");
    EXPECT_EQ(console.formatSettings().shortDateFormat, "dd.mm.yyyy");
    EXPECT_EQ(console.formatSettings().decimalSeparator, ",");
}

}  // namespace
}  // namespace mxbook
