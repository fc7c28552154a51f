#include "catalogue.h"

namespace mxbook::fleet {

namespace {

constexpr GroundRule none{};
constexpr GroundRule half{true, 0.5};
constexpr GroundRule full{true, 1.0};
constexpr GroundRule third{true, 0.3};

// clang-format off
constexpr AircraftProfile profiles[] = {
    {.type = "Ми-8МТВ-1", .typeCode = 8, .tailPrefix = "RA-2", .engines = 2, .engineModel = "ТВ3-117ВМ",
     .gearboxModel = "ВР-14", .apuModel = "АИ-9В", .mainBlades = 5, .tailBlades = 3, .winch = true, .sling = true,
     .hoses = 6, .zcuUnits = 3, .shortestFlight = 30, .longestFlight = 200, .mostFlightsPerDay = 3,
     .airframe = half, .engine = full, .gearbox = full, .blades = half, .propellerRule = none, .hosesRule = half,
     .zcu = half, .lightFormHours = 50, .periodicFormHours = 100, .formSteps = 6},
    {.type = "Ми-171А2", .typeCode = 171, .tailPrefix = "RA-2", .engines = 2, .engineModel = "ВК-2500ПС-03",
     .gearboxModel = "ВР-14Н", .apuModel = "ТА-14-130", .mainBlades = 5, .tailBlades = 3, .winch = true,
     .sling = true, .hoses = 6, .zcuUnits = 3, .shortestFlight = 30, .longestFlight = 220, .mostFlightsPerDay = 3,
     .airframe = half, .engine = full, .gearbox = full, .blades = half, .propellerRule = none, .hosesRule = half,
     .zcu = half, .lightFormHours = 50, .periodicFormHours = 100, .formSteps = 6},
    {.type = "Ка-32А11ВС", .typeCode = 32, .tailPrefix = "RA-3", .engines = 2, .engineModel = "ТВ3-117ВМА",
     .gearboxModel = "ВР-252", .apuModel = "АИ-9", .mainBlades = 6, .tailBlades = 0, .winch = true, .sling = true,
     .hoses = 4, .zcuUnits = 2, .shortestFlight = 20, .longestFlight = 150, .mostFlightsPerDay = 4,
     .airframe = third, .engine = full, .gearbox = full, .blades = third, .propellerRule = none, .hosesRule = third,
     .zcu = third, .lightFormHours = 25, .periodicFormHours = 100, .formSteps = 4},
    {.type = "Ми-2", .typeCode = 2, .tailPrefix = "RA-1", .engines = 2, .engineModel = "ГТД-350",
     .gearboxModel = "ВР-2", .mainBlades = 3, .tailBlades = 2, .hoses = 3, .zcuUnits = 1, .shortestFlight = 15,
     .longestFlight = 120, .mostFlightsPerDay = 4, .airframe = none, .engine = half, .gearbox = half, .blades = none,
     .propellerRule = none, .hosesRule = none, .zcu = none, .lightFormHours = 25, .periodicFormHours = 50,
     .formSteps = 4},
    {.type = "Ан-2", .typeCode = 20, .helicopter = false, .tailPrefix = "RA-4", .engines = 1,
     .engineModel = "АШ-62ИР", .propeller = true, .hoses = 2, .shortestFlight = 40, .longestFlight = 240,
     .mostFlightsPerDay = 2, .airframe = none, .engine = full, .gearbox = none, .blades = none,
     .propellerRule = full, .hosesRule = none, .zcu = none, .lightFormHours = 50, .periodicFormHours = 100,
     .formSteps = 4},
    {.type = "Як-40", .typeCode = 40, .helicopter = false, .tailPrefix = "RA-8", .engines = 3, .engineModel = "АИ-25",
     .apuModel = "АИ-9", .hoses = 4, .shortestFlight = 50, .longestFlight = 240, .mostFlightsPerDay = 2,
     .airframe = none, .engine = full, .gearbox = none, .blades = none, .propellerRule = none, .hosesRule = none,
     .zcu = none, .lightFormHours = 50, .periodicFormHours = 100, .formSteps = 4},
    {.type = "Robinson R44", .typeCode = 44, .tailPrefix = "RA-0", .engines = 1, .engineModel = "IO-540-AE1A5",
     .gearboxModel = "C006-4", .mainBlades = 2, .tailBlades = 2, .hoses = 2, .shortestFlight = 20,
     .longestFlight = 110, .mostFlightsPerDay = 3, .airframe = none, .engine = none, .gearbox = none, .blades = none,
     .propellerRule = none, .hosesRule = none, .zcu = none, .lightFormHours = 50, .periodicFormHours = 100,
     .formSteps = 2},
};
// clang-format on

constexpr ComponentModel airframeModels[] = {
    {"Гидроусилитель", "КАУ-30Б", false, 6000, 2000, false},
    {"Гидроусилитель", "РА-60Б", false, 6000, 2000, false},
    {"Генератор", "ГТ40ПЧ8", false, 4000, 1500, false},
    {"Стартер-генератор", "СТГ-3", false, 4500, 1500, false},
    {"Насос гидравлический", "НШ-39М", false, 3000, 1000, false},
    {"Насос топливный подкачивающий", "ЭЦН-91Б", false, 3000, 1000, false},
    {"Аккумуляторная батарея", "20НКБН-25", false, 2000, 500, false},
    {"Агрегат управления", "АУ-1", false, 5000, 1800, false},
    {"Автомат перекоса", "8-1950-000", false, 7000, 2000, true},
    {"Промежуточный редуктор", "8А-6816-00", false, 6000, 2000, true},
    {"Хвостовой редуктор", "246-1517-000", false, 6000, 2000, true},
    {"Демпфер лопасти", "8-1930-00", false, 5000, 1500, false},
    {"Амортизатор шасси основной", "8-4101-000", true, 12000, 4000, false},
    {"Амортизатор шасси передний", "8-4201-000", true, 12000, 4000, false},
    {"Колесо тормозное", "КТ-97", true, 3000, 1000, false},
    {"Авиагоризонт", "АГБ-3К", false, 3000, 1000, false},
    {"Радиовысотомер", "А-037", false, 4000, 1500, false},
    {"Гирокомпас", "ГМК-1А", false, 4000, 1200, false},
    {"Указатель скорости", "УС-450К", false, 5000, 1500, false},
    {"Вентилятор", "ВП-2", false, 5000, 1500, true},
    {"Клапан электромагнитный", "ГА-192", false, 4000, 1000, false},
    {"Фильтр топливный", "8Д2.966.064", false, 2000, 600, false},
    {"Огнетушитель", "УБШ-2-1", false, 6000, 2000, false},
    {"Радиостанция", "Баклан-20", false, 5000, 2000, false},
    {"Преобразователь", "ПО-500А", false, 4000, 1200, false},
    {"Выпрямительное устройство", "ВУ-6Б", false, 4000, 1200, false},
    {"Замок внешней подвески", "ДГ-65", true, 8000, 3000, false},
    {"Обогреватель", "КО-50", false, 3000, 1000, false},
};

constexpr ComponentModel engineModels[] = {
    {"Топливный насос-регулятор", "НР-3ВМ", false, 4000, 1500, false},
    {"Регулятор температуры", "РТ-12-6", false, 4000, 1500, false},
    {"Датчик частоты вращения", "Д-2М", false, 5000, 2000, false},
    {"Стартер воздушный", "СВ-78БА", true, 3000, 1000, false},
    {"Маслоагрегат", "МА-78", false, 4000, 1500, true},
    {"Генератор тахометра", "ДТЭ-6Т", false, 5000, 2000, false},
    {"Свеча зажигания", "СП-18УА", true, 2000, 500, false},
    {"Агрегат зажигания", "СКНА-22-2А", true, 3000, 1000, false},
};

constexpr ComponentModel apuModels[] = {
    {"Стартер-генератор ВСУ", "СТГ-3", false, 3000, 1000, false},
    {"Топливный насос ВСУ", "НП-84", false, 2500, 800, false},
    {"Агрегат зажигания ВСУ", "СКНА-11", true, 3000, 1000, false},
    {"Маслонасос ВСУ", "МН-9", false, 2500, 800, true},
};

constexpr Owner ownerRows[] = {
    {"АО «Ютэйр-Вертолетные услуги»", "1", 1, false},
    {"ООО «Авиалиния»", "2", 1, false},
    {"ГТЛК", "3", 2, true},
    {"ООО «Сбербанк Лизинг»", "4", 3, true},
};

constexpr std::string_view oilTypeNames[] = {"Б-3В", "ИПМ-10", "ЛЗ-240", "МС-20", "Turbonycoil 98"};

constexpr std::string_view routeNames[] = {
    "Сургут - Нефтеюганск - Сургут", "Сургут - Когалым",  "Ханты-Мансийск - Нягань",
    "Сургут - м/р Приобское",        "Тюмень - Тобольск", "Нижневартовск - Радужный",
    "Сургут - Сургут (тренировка)",  "Салехард - Надым",
};

constexpr std::string_view commanderNames[] = {"Иванов А.П.",   "Петров С.В.",  "Сидоров И.Н.",
                                               "Кузнецов Д.А.", "Смирнов О.Л.", "Васильев Е.М."};

}  // namespace

std::span<const AircraftProfile> aircraftProfiles() { return profiles; }
std::span<const ComponentModel> airframeComponents() { return airframeModels; }
std::span<const ComponentModel> engineComponents() { return engineModels; }
std::span<const ComponentModel> apuComponents() { return apuModels; }
std::span<const Owner> owners() { return ownerRows; }
std::span<const std::string_view> oilTypes() { return oilTypeNames; }
std::span<const std::string_view> routes() { return routeNames; }
std::span<const std::string_view> commanders() { return commanderNames; }

}  // namespace mxbook::fleet
