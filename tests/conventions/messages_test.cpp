#include <gtest/gtest.h>

#include <memory>

#include "fake_host.h"
#include "mxbook/conventions.h"
#include "mxbook/host.h"

namespace mxbook {
namespace {

class MessagesTest : public ::testing::Test {
protected:
    std::shared_ptr<testing::FakeHost> host_ = std::make_shared<testing::FakeHost>();
    ScopedHost installed_{host_};
};

// Every entry as the catalogue writes it, built with the text "Налёт".
TEST_F(MessagesTest, EveryEntryReadsExactlyAsTheCatalogueHasIt) {
    host_->todayDate = Date::fromYmd(2024, 3, 5);
    const std::string t = "Налёт";
    const std::string expected[] = {
        /* 0 */ "Заполните поле «Налёт» в формате ЧАСЫ:МИНУТЫ \r\n  или оставьте это поле пустым.",
        /* 1 */ "Заполните поле «Налёт».",
        /* 2 */ "Введите число в поле «Налёт».",
        /* 3 */ "А разве в часе не 60 минут?",
        /* 4 */ "Заполните поле «Налёт» в формате ЧАСЫ:МИНУТЫ.",
        /* 5 */ "Введите число в поле «Налёт»\r\nили оставьте это поле пустым.",
        /* 6 */ "Выберите Налёт в раскрывающемся списке.",
        /* 7 */ "Введите дату в поле «Налёт».",
        /* 8 */ "Выберите место установки в раскрывающемся списке",
        /* 9 */ "Введите дату в поле «Налёт»\r\nили оставьте это поле пустым.",
        /* 10 */ "Выберите тип масла в раскрывающемся списке.",
        /* 11 */ "Добавьте еще Налёт место установки.",
        /* 12 */ "В реестре нет данных по ВС.\r\nДля внесения данных воспользуйтесь окном «Реестр».",
        /* 13 */ "Налёт редуктор на самолёт не установлен.\r\nДля установки воспользуйтесь окном «Налёт редуктор».",
        /* 14 */ "Налёт\r\nДля установки воспользуйтесь окном «Двигатели».",
        /* 15 */ "Налёт\r\nНаработка будет посчитана только для него.",
        /* 16 */ "ВСУ на самолёт не установлена.\r\nДля установки воспользуйтесь окном «ВСУ».",
        /* 17 */ "Введите время в поле «Налёт».",
        /* 18 */ "Введите фамилию в поле «Налёт».",
        /* 19 */ "Введите время в поле «Налёт»\r\nили оставьте это поле пустым.",
        /* 20 */ "Ошибка модуля FunOK,\r\n сообщите об этом разработчику.",
        /* 21 */ "Заполните поле «Налёт» в формате ГГ г. ММ м.",
        /* 22 */ "Налётв раскрывающемся списке.",
        /* 23 */ "Выберите событие в раскрывающемся списке, или добавьте новое.",
        /* 24 */ "Сегодня только 05.03.24. Продолжение невозможно.",
        /* 25 */ "Дата исправности не может быть раньше даты отвода на ТО.\r\nПродолжение невозможно.",
        /* 26 */ "Добавьте хотя бы один пункт к программае КИП.",
        /* 27 */ "Заполните поле «Налёт» в формате ГГ г. ММ м.\r\n или оставьте это поле пустым.",
        /* 28 */ "Добавьте хотя бы один период формы.",
        /* 29 */ "Укажите хотя бы один тип документации.",
        /* 30 */ "Укажите номер панели.",
        /* 31 */ "Межремонтный ресурс не должен быть больше назначенного.",
    };
    for (int number = 0; number < 32; ++number) {
        SCOPED_TRACE(number);
        host_->shown.clear();
        FunMsg(t, number);
        ASSERT_EQ(host_->shown.size(), 1u);
        EXPECT_EQ(host_->shown[0].text, expected[number]);
        EXPECT_EQ(host_->shown[0].caption, "Внимание!");
        EXPECT_EQ(host_->shown[0].flags, 0x30u);
        EXPECT_EQ(host_->shown[0].owner, host_->foreground);
    }
}

TEST_F(MessagesTest, NumbersOutsideTheCatalogueShowTheFallback) {
    for (int number : {32, -1, 1000}) {
        host_->shown.clear();
        FunMsg("Налёт", number);
        ASSERT_EQ(host_->shown.size(), 1u);
        EXPECT_EQ(host_->shown[0].text, "Сообщение не найдено, известите об этом разработчика.");
    }
}

TEST_F(MessagesTest, TheLibrarysOwnCallsReadAsTheCardsShowThem) {
    EXPECT_EQ(messageText("Главный", 13),
              "Главный редуктор на самолёт не установлен.\r\nДля установки воспользуйтесь окном «Главный редуктор».");
    EXPECT_EQ(messageText("", 3), "А разве в часе не 60 минут?");
    EXPECT_EQ(messageText("", 16), "ВСУ на самолёт не установлена.\r\nДля установки воспользуйтесь окном «ВСУ».");
    host_->todayDate = Date::fromYmd(2031, 12, 31);
    EXPECT_EQ(messageText("ignored", 24), "Сегодня только 31.12.31. Продолжение невозможно.");
}

TEST_F(MessagesTest, ActiveWindowTitleLosesTrailingBlanks) {
    host_->titles[42] = "Формуляр агрегата  \t\r\n";
    EXPECT_EQ(GetActiveWindowTitle(), "Формуляр агрегата");
    host_->titles[42] = "  Реестр ВС";
    EXPECT_EQ(GetActiveWindowTitle(), "  Реестр ВС");
    host_->foreground = Window{};
    EXPECT_EQ(GetActiveWindowTitle(), "");
}

}  // namespace
}  // namespace mxbook
