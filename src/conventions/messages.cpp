#include <array>

#include "mxbook/conventions.h"
#include "mxbook/format.h"
#include "mxbook/host.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

constexpr const char* crlf = "\r\n";

// The catalogue: `before` + Text + `after`, or the fixed `before` alone when
// the message takes no text.
struct Message {
    const char* before;
    const char* after = nullptr;  // null: Text is not used
};

const std::array<Message, 32> catalogue = {{
    /* 0 */ {"Заполните поле «", "» в формате ЧАСЫ:МИНУТЫ \r\n  или оставьте это поле пустым."},
    /* 1 */ {"Заполните поле «", "»."},
    /* 2 */ {"Введите число в поле «", "»."},
    /* 3 */ {"А разве в часе не 60 минут?"},
    /* 4 */ {"Заполните поле «", "» в формате ЧАСЫ:МИНУТЫ."},
    /* 5 */ {"Введите число в поле «", "»\r\nили оставьте это поле пустым."},
    /* 6 */ {"Выберите ", " в раскрывающемся списке."},
    /* 7 */ {"Введите дату в поле «", "»."},
    /* 8 */ {"Выберите место установки в раскрывающемся списке"},
    /* 9 */ {"Введите дату в поле «", "»\r\nили оставьте это поле пустым."},
    /* 10 */ {"Выберите тип масла в раскрывающемся списке."},
    /* 11 */ {"Добавьте еще ", " место установки."},
    /* 12 */ {"В реестре нет данных по ВС.\r\nДля внесения данных воспользуйтесь окном «Реестр»."},
    /* 13 */ {"", nullptr},  // built below: Text appears twice
    /* 14 */ {"", "\r\nДля установки воспользуйтесь окном «Двигатели»."},
    /* 15 */ {"", "\r\nНаработка будет посчитана только для него."},
    /* 16 */ {"ВСУ на самолёт не установлена.\r\nДля установки воспользуйтесь окном «ВСУ»."},
    /* 17 */ {"Введите время в поле «", "»."},
    /* 18 */ {"Введите фамилию в поле «", "»."},
    /* 19 */ {"Введите время в поле «", "»\r\nили оставьте это поле пустым."},
    /* 20 */ {"Ошибка модуля FunOK,\r\n сообщите об этом разработчику."},
    /* 21 */ {"Заполните поле «", "» в формате ГГ г. ММ м."},
    /* 22 */ {"", "в раскрывающемся списке."},
    /* 23 */ {"Выберите событие в раскрывающемся списке, или добавьте новое."},
    /* 24 */ {"", nullptr},  // built below: today's date
    /* 25 */ {"Дата исправности не может быть раньше даты отвода на ТО.\r\nПродолжение невозможно."},
    /* 26 */ {"Добавьте хотя бы один пункт к программае КИП."},
    /* 27 */ {"Заполните поле «", "» в формате ГГ г. ММ м.\r\n или оставьте это поле пустым."},
    /* 28 */ {"Добавьте хотя бы один период формы."},
    /* 29 */ {"Укажите хотя бы один тип документации."},
    /* 30 */ {"Укажите номер панели."},
    /* 31 */ {"Межремонтный ресурс не должен быть больше назначенного."},
}};

constexpr const char* notFound = "Сообщение не найдено, известите об этом разработчика.";

}  // namespace

std::string messageText(const std::string& text, int number) {
    if (number < 0 || number >= static_cast<int>(catalogue.size())) return notFound;
    switch (number) {
    case 13:
        return text + " редуктор на самолёт не установлен." + crlf + "Для установки воспользуйтесь окном «" + text +
               " редуктор».";
    case 24: return "Сегодня только " + formatDate(host().today(), "dd.mm.yy") + ". Продолжение невозможно.";
    default: break;
    }
    const Message& message = catalogue[static_cast<std::size_t>(number)];
    return message.after ? message.before + text + message.after : message.before;
}

void FunMsg(const std::string& text, int number) {
    const Window owner = host().foregroundWindow();
    host().messageBox(owner, messageText(text, number), "Внимание!", box::ok | box::iconWarning);
}

std::string GetActiveWindowTitle() {
    const Window window = host().foregroundWindow();
    return window ? trimRight(host().windowTitle(window)) : std::string();
}

}  // namespace mxbook
