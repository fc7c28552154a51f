#include "registry.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "mxbook/conventions.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/format.h"
#include "mxbook/forms.h"
#include "mxbook/host.h"
#include "mxbook/movements.h"
#include "mxbook/oil.h"
#include "mxbook/remaining_life.h"
#include "mxbook/report.h"
#include "mxbook/text.h"

namespace mxbook::cli {

std::optional<Date> isoDate(std::string_view text) {
    const auto digits = [&](std::size_t from, std::size_t count) {
        return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(from),
                           text.begin() + static_cast<std::ptrdiff_t>(from + count),
                           [](char c) { return c >= '0' && c <= '9'; });
    };
    if (text.size() != 10 || text[4] != '-' || text[7] != '-' || !digits(0, 4) || !digits(5, 2) || !digits(8, 2))
        return std::nullopt;
    const int year = parseInt(text.substr(0, 4)), month = parseInt(text.substr(5, 2)), day = parseInt(text.substr(8, 2));
    if (!Date::isValid(year, month, day)) return std::nullopt;
    return Date::fromYmd(year, month, day);
}

namespace {

Date dateArgument(const std::string& text) {
    // "2024-03-15", or the short date format ("15.03.2024").
    if (const auto date = isoDate(text)) return *date;
    return parseShortDate(text, host().formatSettings());
}

bool isName(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '$';
    });
}

// The statement a row argument stands for.
std::string rowQuery(const std::string& argument) {
    if (argument.starts_with("@sql:")) return argument.substr(5);
    const auto colon = argument.find(':');
    if (!argument.starts_with("@") || colon == std::string::npos)
        throw UsageError("a row is written @TABLE:ID or @sql:SELECT ..., not '" + argument + "'");
    const std::string table = argument.substr(1, colon - 1), id = argument.substr(colon + 1);
    if (!isName(table)) throw UsageError("'" + table + "' is not a table name");
    if (id.empty() || id.size() > 18 || !std::all_of(id.begin(), id.end(), [](char c) { return c >= '0' && c <= '9'; }))
        throw UsageError("'" + id + "' is not a row's ID");
    return "select * from " + table + " where ID = " + id;
}

// A key argument: one character, or "#code" for a control key ("8" is the
// digit, "#8" Backspace).
char32_t keyValue(const std::string& argument) {
    if (argument.size() > 1 && argument.size() <= 8 && argument.starts_with("#") &&
        std::all_of(argument.begin() + 1, argument.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return static_cast<char32_t>(parseInt(argument.substr(1)));
    std::u32string decoded;
    for (std::size_t i = 0; i < argument.size();) {
        const unsigned char c = static_cast<unsigned char>(argument[i]);
        const int length = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
        char32_t code = length == 1 ? c : c & (0x7F >> length);
        for (int k = 1; k < length && i + static_cast<std::size_t>(k) < argument.size(); ++k)
            code = (code << 6) | (static_cast<unsigned char>(argument[i + static_cast<std::size_t>(k)]) & 0x3F);
        decoded += code;
        i += static_cast<std::size_t>(length);
    }
    if (decoded.size() != 1) throw UsageError("a key is one character, or #code, not '" + argument + "'");
    return decoded[0];
}

// A text that must convert: the conversion's own complaint becomes a plain
// "'x' is not an integer".
template <typename F>
void mustConvert(const std::string& text, const char* what, F convert) {
    try {
        convert(text);
    } catch (const ConversionError&) {
        throw UsageError("'" + text + "' is not " + what);
    }
}

// How each parameter type is given on the command line: `kind` for the help
// (none for the implicit connection), `check` the text before anything runs,
// `get` the value for the call.
template <typename T>
struct Argument;
template <>
struct Argument<db::Connection&> {
    static constexpr const char* kind = nullptr;
    static void check(const std::string&) {}
    static db::Connection& get(CallContext& context, const std::string*) { return context.connection(); }
};
template <>
struct Argument<db::DataSet&> {
    static constexpr const char* kind = "a row: @TABLE:ID or @sql:SELECT ...";
    static void check(const std::string& text) { rowQuery(text); }
    static db::DataSet& get(CallContext& context, const std::string* text) { return context.dataSet(*text); }
};
template <>
struct Argument<const std::string&> {
    static constexpr const char* kind = "text";
    static void check(const std::string&) {}
    static const std::string& get(CallContext&, const std::string* text) { return *text; }
};
template <>
struct Argument<int> {
    static constexpr const char* kind = "an integer";
    static void check(const std::string& text) { mustConvert(text, "an integer", parseInt); }
    static int get(CallContext&, const std::string* text) { return parseInt(*text); }
};
template <>
struct Argument<Date> {
    static constexpr const char* kind = "a date: YYYY-MM-DD, or as the short date format writes it";
    static void check(const std::string& text) { mustConvert(text, "a date", dateArgument); }
    static Date get(CallContext&, const std::string* text) { return dateArgument(*text); }
};
template <>
struct Argument<char32_t&> {
    static constexpr const char* kind = "a key: one character, or #code for a control key";
    static void check(const std::string& text) { keyValue(text); }
    static char32_t& get(CallContext& context, const std::string* text) { return context.key(*text); }
};

template <typename R>
std::string resultText(R value) {
    if constexpr (std::is_same_v<R, std::string>) {
        return value;
    } else {
        return std::to_string(value);
    }
}

// Which text argument each parameter takes: the implicit connection takes none.
template <typename... P>
std::array<std::size_t, sizeof...(P)> textPositions() {
    constexpr std::array<bool, sizeof...(P)> fromText = {(Argument<P>::kind != nullptr)...};
    std::array<std::size_t, sizeof...(P)> position{};
    std::size_t next = 0;
    for (std::size_t i = 0; i < sizeof...(P); ++i) position[i] = fromText[i] ? next++ : next;
    return position;
}

template <typename R, typename... P, std::size_t... I>
std::string invoke(R (*function)(P...), CallContext& context, const std::vector<std::string>& arguments,
                   std::index_sequence<I...>) {
    [[maybe_unused]] const auto position = textPositions<P...>();
    // Braces convert the arguments left to right, so the first bad row is the one reported.
    std::tuple<P...> values{Argument<P>::get(context, Argument<P>::kind ? &arguments[position[I]] : nullptr)...};
    if constexpr (std::is_void_v<R>) {
        std::apply(function, values);
        return {};
    } else {
        return resultText(std::apply(function, values));
    }
}

template <typename P>
void checkArgument(const std::vector<Parameter>& parameters, const std::vector<std::string>& arguments, std::size_t at) {
    if constexpr (Argument<P>::kind != nullptr) {
        try {
            Argument<P>::check(arguments[at]);
        } catch (const UsageError& wrong) {
            throw UsageError("argument " + std::to_string(at + 1) + " (" + parameters[at].name + "): " + wrong.what());
        }
    }
}

template <typename... P, std::size_t... I>
void checkArguments(const std::vector<Parameter>& parameters, const std::vector<std::string>& arguments,
                    std::index_sequence<I...>) {
    [[maybe_unused]] const auto position = textPositions<P...>();
    (checkArgument<P>(parameters, arguments, position[I]), ...);
}

template <typename R, typename... P>
Callable callable(R (*function)(P...), std::string_view name, std::string_view parameterNames,
                  std::string returns) {
    const std::string signature = std::string(name) + (parameterNames.empty() ? "" : " ") + std::string(parameterNames);
    std::vector<std::string> words;
    for (std::size_t at = 0; at < signature.size();) {
        const std::size_t end = std::min(signature.find(' ', at), signature.size());
        words.emplace_back(signature.substr(at, end - at));
        at = end + 1;
    }
    Callable entry;
    entry.name = words.front();
    std::size_t next = 1;
    (
        [&] {
            if (Argument<P>::kind) {
                if (next == words.size()) throw Error("the signature " + signature + " names too few arguments");
                entry.parameters.push_back({words[next++], Argument<P>::kind});
            }
        }(),
        ...);
    if (next != words.size()) throw Error("the signature " + signature + " names too many arguments");
    entry.returns = std::move(returns);
    entry.returnsNothing = std::is_void_v<R>;
    entry.check = [parameters = entry.parameters](const std::vector<std::string>& arguments) {
        checkArguments<P...>(parameters, arguments, std::index_sequence_for<P...>{});
    };
    entry.invoke = [function](CallContext& context, const std::vector<std::string>& arguments) {
        return invoke(function, context, arguments, std::index_sequence_for<P...>{});
    };
    return entry;
}

}  // namespace

std::string Callable::signature() const {
    std::string text = name;
    for (const Parameter& parameter : parameters) text += " " + parameter.name;
    return text;
}

std::string Callable::help() const {
    std::string text = "usage: mxbook call " + signature() + "\n" + returns + "\n";
    std::size_t width = 0;
    for (const Parameter& parameter : parameters) width = std::max(width, parameter.name.size());
    for (const Parameter& parameter : parameters)
        text += "  " + parameter.name + std::string(width - parameter.name.size() + 2, ' ') + parameter.kind + "\n";
    return text;
}

const Callable* findCallable(std::string_view name) {
    const auto& all = callables();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Callable& c) { return c.name == name; });
    return found == all.end() ? nullptr : &*found;
}

db::Connection& CallContext::connection() {
    if (!connection_) {
        connection_ = std::make_unique<db::Connection>();
        openMainDatabase(*connection_, options_);
    }
    return *connection_;
}

db::DataSet& CallContext::dataSet(const std::string& argument) {
    auto rows = std::make_unique<db::DataSet>(connection(), rowQuery(argument));
    rows->open();
    if (rows->eof()) throw Error("no row: " + argument);
    Row row{std::move(rows), {}};
    for (int i = 0; i < row.dataSet->fieldCount(); ++i) row.before.push_back(row.dataSet->field(i).asText());
    rows_.push_back(std::move(row));
    return *rows_.back().dataSet;
}

char32_t& CallContext::key(const std::string& argument) {
    keys_.push_back(std::make_unique<char32_t>(keyValue(argument)));
    return *keys_.back();
}

std::vector<std::string> CallContext::keys() const {
    std::vector<std::string> texts;
    for (const auto& key : keys_) {
        std::string text;
        if (*key < 0x20)
            text = "#" + std::to_string(static_cast<unsigned>(*key));
        else
            appendUtf8(text, *key);
        texts.push_back(text);
    }
    return texts;
}

std::vector<std::string> CallContext::storeChangedRows() {
    std::vector<std::string> changes;
    for (Row& row : rows_) {
        db::DataSet& rows = *row.dataSet;
        if (rows.state() == db::DataSet::State::edit || rows.state() == db::DataSet::State::insert) rows.post();
        if (!rows.hasPendingChanges()) continue;
        for (int i = 0; i < rows.fieldCount(); ++i) {
            const std::string now = rows.field(i).asText();
            if (now != row.before[static_cast<std::size_t>(i)]) changes.push_back("c" + std::to_string(i) + "=" + now);
        }
        rows.updateBatch();
    }
    return changes;
}

// Each function's signature names its text arguments (the connection is
// implicit); the line after it says what it returns.
const std::vector<Callable>& callables() {
    // clang-format off
    static const std::vector<Callable> all = {
        // Folders, settings, connections and identifiers.
        callable(&GetUserRoot, "GetUserRoot", "", "the per-user application folder: the documents folder, /, PROGRAM_ROOT, /"),
        callable(&GetCommonRoot, "GetCommonRoot", "", "the shared application folder: the shared documents folder, /, PROGRAM_ROOT, /"),
        callable(&GetUserDesktop, "GetUserDesktop", "", "the user's desktop folder"),
        callable(&GetUserBase, "GetUserBase", "", "the main database's location (a path or host:path), settled in the values file by the first call"),
        callable(&GetBaseDocTO, "GetBaseDocTO", "", "the documentation database's location, settled as GetUserBase settles the main one"),
        callable(&GetBaseReport, "GetBaseReport", "", "the report database's location, settled as GetUserBase settles the main one"),
        callable(&GetUserPhoto, "GetUserPhoto", "", "the picture database's location, settled as GetUserBase settles the main one"),
        callable(&GetFileVersion, "GetFileVersion", "FILE", "the FileVersion of a Windows executable or DLL; empty for any other file"),
        callable(&GetProviderExits, "GetProviderExits", "", "the provider family on the machine: 1 for LCPI version 5, 2 for version 3, 3 for none"),
        callable(&FunConnection, "FunConnection", "", "nothing: opens the main database, or shows why it cannot"),
        callable(&FunConnectDocTO, "FunConnectDocTO", "", "nothing: opens the documentation database, or shows why it cannot"),
        callable(&FunConnectReport, "FunConnectReport", "", "nothing: opens the report database, or shows why it cannot"),
        callable(&FunConPhoto, "FunConPhoto", "", "nothing: opens the picture database, or shows why it cannot"),
        callable(&GetID, "GetID", "GENERATOR", "the generator's next value; every call advances it by one"),
        callable(&FunMaxDvigExp, "FunMaxDvigExp", "", "the next free movement number: the highest in DVIGENIE_V_EKSPLUATACII plus one, or 1"),
        // Conventions.
        callable(&FunHourCorrectFromVS, "FunHourCorrectFromVS", "ROW HOURS_COLUMN MINUTES", "the operating time in HOURS_COLUMN less MINUTES (a unit leaving), never below 0:00; the row is not changed"),
        callable(&FunHourCorrectToVS, "FunHourCorrectToVS", "ROW HOURS_COLUMN MINUTES", "the operating time in HOURS_COLUMN plus MINUTES (a unit arriving); the row is not changed"),
        callable(&FunIntegerCorrectFromVS, "FunIntegerCorrectFromVS", "ROW COUNT_COLUMN COUNT", "the counter in COUNT_COLUMN less COUNT, never below 0; the row is not changed"),
        callable(&FunIntegerCorrectToVS, "FunIntegerCorrectToVS", "ROW COUNT_COLUMN COUNT", "the counter in COUNT_COLUMN plus COUNT; the row is not changed"),
        callable(&FunChageToColon, "FunChageToColon", "KEY", "the key an hour entry keeps: digits, Backspace, Enter and Escape pass, any other becomes :"),
        callable(&FunChageToPoint, "FunChageToPoint", "KEY", "the key a number entry keeps: digits, Backspace, Enter and Escape pass, any other becomes ."),
        callable(&FunMsg, "FunMsg", "TEXT NUMBER", "nothing: shows message NUMBER (0 to 31) of the catalogue, built with TEXT, in a warning box"),
        callable(&GetActiveWindowTitle, "GetActiveWindowTitle", "", "the foreground window's title; empty without one"),
        // Remaining life: ROW is a unit's row of all columns; columns count from 0.
        callable(&FunNepNarAgr, "FunNepNarAgr", "ROW OWN_COLUMN", "a component's operating time: its own (OWN_COLUMN) plus what its carrier ran since it was installed"),
        callable(&FunNepNarLopast, "FunNepNarLopast", "ROW OWN_COLUMN", "a blade's operating time: its own (OWN_COLUMN) plus what its carrier ran since it was installed"),
        callable(&FunNepNarZCU, "FunNepNarZCU", "ROW OWN_COLUMN", "a ZCU unit's operating time: its own (OWN_COLUMN) plus what its carrier ran since it was installed"),
        callable(&FunNepNarShlang, "FunNepNarShlang", "ROW", "a hose's operating time: its own (column 12) plus what its carrier ran since it was installed"),
        callable(&FunNepNarHvostVint, "FunNepNarHvostVint", "ROW OWN_COLUMN", "a tail rotor's operating time: its own (OWN_COLUMN) plus what its carrier ran since it was installed"),
        callable(&FunNepNarLebedka, "FunNepNarLebedka", "ROW OWN_COLUMN", "a winch's operating time: its own (OWN_COLUMN) plus what its carrier ran since it was installed"),
        callable(&FunNepNarTros, "FunNepNarTros", "ROW TAIL CYCLES_COLUMN END_DATE", "a winch cable's hoists: its own (CYCLES_COLUMN; 29 counts people, any other cargo) plus TAIL's flights up to END_DATE"),
        callable(&FunOstatTros, "FunOstatTros", "ROW USED_COLUMN LIMIT_COLUMN END_DATE", "the hoists left of the cable's limit (LIMIT_COLUMN) after those used (USED_COLUMN, derived up to END_DATE)"),
        callable(&FunOstatChas, "FunOstatChas", "ROW LIMIT_COLUMN USED_COLUMN", "the hours left of the limit (whole hours in LIMIT_COLUMN) after those used (USED_COLUMN): H:MM, or 00:00"),
        callable(&FunOstatInteger, "FunOstatInteger", "ROW LIMIT_COLUMN USED_COLUMN", "the count left of the limit (LIMIT_COLUMN) after the count used (USED_COLUMN), or 0"),
        callable(&FunOstatLet, "FunOstatLet", "ROW LIMIT_COLUMN START_DATE_COLUMN", "the calendar life left of the limit (YY.MM in LIMIT_COLUMN) counted from START_DATE_COLUMN: 1г. 8м., or 0"),
        callable(&FunNarabLet, "FunNarabLet", "ROW START_DATE_COLUMN", "the calendar time run since the date in START_DATE_COLUMN: 2г. 6м., or 0"),
        callable(&FunBookYear, "FunBookYear", "MONTHS", "the word for the whole years in MONTHS months: г. or л."),
        callable(&FunDataSniatia, "FunDataSniatia", "ROW OVERHAUL_DATE_COLUMN OVERHAUL_COUNT_COLUMN MANUFACTURE_DATE_COLUMN INTERVAL_LIMIT_COLUMN TOTAL_LIMIT_COLUMN", "the date (dd.mm.yy) the unit must come off by its calendar limits from manufacture and last overhaul; empty without limits"),
        callable(&FunOstatChasMin, "FunOstatChasMin", "ROW LIMIT_A USED_A LIMIT_B USED_B", "the hours left of the tighter limit of two (limit and used columns of each; -1 for no second pair): H:MM, or 00:00"),
        callable(&FunOstatIntegerMin, "FunOstatIntegerMin", "ROW LIMIT_A USED_A LIMIT_B USED_B", "the count left of the tighter limit of two (limit and used columns of each, both pairs always read), or 0"),
        callable(&FunOstatLetMin, "FunOstatLetMin", "ROW LIMIT_A START_DATE_A LIMIT_B START_DATE_B", "the calendar life left of the tighter limit of two (YY.MM and start-date columns of each; -1 for no second pair): 1г. 8м., or 0"),
        callable(&FunPerNarAgrVSU, "FunPerNarAgrVSU", "ROW APU_SERIAL OWN_COLUMN KIND", "an APU unit's operating time: its own (OWN_COLUMN) plus what the APU ran since it was installed; KIND 0 hours, 1 starts, 2 air bleeds"),
        callable(&FunOstatChasAgrVSU, "FunOstatChasAgrVSU", "ROW APU_SERIAL LIMIT_COLUMN USED_COLUMN DERIVE", "the hours left of an APU unit's limit, the used hours taken from the APU when DERIVE is not 0: H:MM, or 00:00"),
        callable(&FunOstatIntegerAgrVSU, "FunOstatIntegerAgrVSU", "ROW APU_SERIAL LIMIT_COLUMN USED_COLUMN KIND DERIVE", "the starts (KIND 1) or air bleeds (KIND 2) left of an APU unit's limit, taken from the APU when DERIVE is not 0, or 0"),
        callable(&FunPerNarAgrDvig, "FunPerNarAgrDvig", "ROW ENGINE_SERIAL OWN_COLUMN KIND", "an engine-mounted unit's operating time: its own (OWN_COLUMN) plus what the engine ran since it was installed; KIND 0 hours, 1 starts"),
        // Removal planning: the reading of TAIL's counter since overhaul at which the unit comes off.
        callable(&FunPPRPlanDliaSniat, "FunPPRPlanDliaSniat", "ROW AIRCRAFT_TYPE TAIL", "a component's (AGREGAT) planned removal: TAIL's hours (or landings) since overhaul plus what the unit has left; 0:00 (or 0) below zero, empty without a register row or on a null"),
        callable(&FunPPRPlanDliaSniatVtNV, "FunPPRPlanDliaSniatVtNV", "ROW AIRCRAFT_TYPE TAIL", "a main-rotor hub's planned removal: TAIL's hours since overhaul plus what the hub has left; empty without a register row or on a null"),
        callable(&FunPPRPlanDliaSniatZCU, "FunPPRPlanDliaSniatZCU", "ROW AIRCRAFT_TYPE TAIL", "a ZCU unit's planned removal: TAIL's hours since overhaul plus what the unit has left; empty without a register row"),
        callable(&FunPPRPlanDliaSniatDvigRed, "FunPPRPlanDliaSniatDvigRed", "ROW AIRCRAFT_TYPE TAIL", "an engine's or gearbox's planned removal: TAIL's hours since overhaul plus what it has left; 0:00 without a register row"),
        callable(&FunPPRPlanDliaSniatHvostVint, "FunPPRPlanDliaSniatHvostVint", "ROW AIRCRAFT_TYPE TAIL", "a tail rotor's planned removal: TAIL's hours since overhaul plus what the rotor has left; empty without a register row"),
        callable(&FunPPRPlanDliaSniatLopast, "FunPPRPlanDliaSniatLopast", "ROW AIRCRAFT_TYPE TAIL", "a blade's planned removal: TAIL's hours since overhaul plus what the blade has left; empty without a register row or on a null"),
        callable(&FunPPRPlanDliaSniatLebedka, "FunPPRPlanDliaSniatLebedka", "ROW AIRCRAFT_TYPE TAIL", "a winch's planned removal: TAIL's hours since overhaul plus what the winch has left; empty without a register row"),
        callable(&FunPPRPlanDliaSniatVint, "FunPPRPlanDliaSniatVint", "ROW AIRCRAFT_TYPE TAIL", "a propeller's planned removal: TAIL's hours since overhaul plus what the propeller has left; 0:00 without a register row"),
        callable(&FunPPRPlanDliaSniatShlang, "FunPPRPlanDliaSniatShlang", "ROW AIRCRAFT_TYPE TAIL", "a hose's planned removal: TAIL's hours since overhaul plus what the hose has left; empty without a register row"),
        callable(&FunNarPlanSniatDvig, "FunNarPlanSniatDvig", "ROW USED_COLUMN LIMIT_COLUMN CARRIER_COUNTER", "the carrier's reading (from CARRIER_COUNTER, H:MM) at which the unit comes off: the limit (whole hours in LIMIT_COLUMN) less the hours used (USED_COLUMN); 0:00 below zero"),
        // Forms due: ROW is a register row (@REESTR:ID; an engine's for the engine form); columns count from 0.
        callable(&GetOstatTO, "GetOstatTO", "ROW HOURS_COLUMN TYPE_COLUMN COUNT_COLUMN", "the time to the next periodic form: H:MM, +H:MM of the tolerance once due, or 00:00"),
        callable(&GetOstatF1, "GetOstatF1", "ROW HOURS_COLUMN TYPE_COLUMN COUNT_COLUMN", "the time to the next \"Ф-1\" form, or to the overhaul (18, 22) when that comes first: H:MM, +H:MM, or 00:00"),
        callable(&GetOstatTODv, "GetOstatTODv", "ROW HOURS_COLUMN TYPE_COLUMN COUNT_COLUMN", "the time to the next engine form (PTO_FORMY_DVIG): H:MM, +H:MM of the tolerance once due, or 00:00"),
        callable(&GetSledTO, "GetSledTO", "ROW HOURS_COLUMN TYPE_COLUMN", "the whole periodic intervals completed by the hours in HOURS_COLUMN"),
        callable(&GetSledTODv, "GetSledTODv", "ROW HOURS_COLUMN TYPE_COLUMN", "the whole engine-form intervals completed by the hours in HOURS_COLUMN"),
        callable(&GetNameF1, "GetNameF1", "AIRCRAFT_TYPE HOURS", "the name of the form of the cycle step that holds HOURS"),
        callable(&GetNameSledF1, "GetNameSledF1", "AIRCRAFT_TYPE TAIL", "the name of TAIL's next form, from the periodic forms it has had"),
        callable(&GetOstatTOPos, "GetOstatTOPos", "AIRCRAFT_TYPE TAIL SINCE", "the landings left until the landing-counted form (every 50, 5 of tolerance), counting TAIL's flights after SINCE up to today: 3, +3 or 0"),
        callable(&GetOstatTOCalendar, "GetOstatTOCalendar", "ROW", "the days left until the calendar form, four months after the date in column 77: N дн., or 0 дн."),
        // Oil time: TAIL's flights since the oil change; limits in whole hours.
        callable(&FunNarMaslo, "FunNarMaslo", "TAIL KIND CHANGE_DATE ENGINE_POSITION", "the oil time of a kind of unit (ZEMLIA_AGREGATY, ZEMLIA_AGR_DVIG, ZEMLIA_DVIGATEL or ZEMLIA_REDUCTOR; engines at ENGINE_POSITION 0 to 2) from CHANGE_DATE to today"),
        callable(&FunNarMasloVSUChas, "FunNarMasloVSUChas", "TAIL CHANGE_DATE", "the APU's running time from CHANGE_DATE to today (with generator mode for the ТА-14-130)"),
        callable(&FunNarMasloVSUZapusk, "FunNarMasloVSUZapusk", "TAIL CHANGE_DATE", "the APU's starts from CHANGE_DATE to today, counted again from 0 after a flight without a count"),
        callable(&FunNarMasloAgregat, "FunNarMasloAgregat", "ROW TAIL END_DATE", "a component's oil time: its stored oil time (21) plus TAIL's flights from the later of its oil change (22) and installation (26) to END_DATE"),
        callable(&FunNarMasloVtNV, "FunNarMasloVtNV", "ROW TAIL BASE_COLUMN DATE_COLUMN END_DATE", "a hub's oil time: the stored time (BASE_COLUMN) plus TAIL's flights from the later of DATE_COLUMN and installation (26) to END_DATE"),
        callable(&FunNarMasloHvostVint, "FunNarMasloHvostVint", "ROW TAIL END_DATE", "a tail rotor's oil time: its stored oil time (39) plus TAIL's flights from the later of its oil change (40) and installation (17) to END_DATE"),
        callable(&FunOstatMaslo, "FunOstatMaslo", "ROW COLUMN LIMIT_HOURS", "the oil time left of LIMIT_HOURS after the oil time in COLUMN: H:MM, or 00:00"),
        callable(&FunOstatMasloAgregat, "FunOstatMasloAgregat", "ROW TAIL LIMIT_HOURS END_DATE", "the oil time left of LIMIT_HOURS after FunNarMasloAgregat's: H:MM, or 0:00"),
        callable(&FunOstatMasloVtNV, "FunOstatMasloVtNV", "ROW TAIL LIMIT_HOURS BASE_COLUMN DATE_COLUMN END_DATE", "the oil time left of LIMIT_HOURS after FunNarMasloVtNV's: H:MM, or 0:00"),
        callable(&FunOstatMasloHvostVint, "FunOstatMasloHvostVint", "ROW TAIL LIMIT_HOURS END_DATE", "the oil time left of LIMIT_HOURS after FunNarMasloHvostVint's: H:MM, or 0:00"),
        callable(&FunNarPlanSniatMaslo, "FunNarPlanSniatMaslo", "ROW COLUMN CURRENT_TIME LIMIT_HOURS", "the operating time at which the oil is due: CURRENT_TIME plus what LIMIT_HOURS leaves after the oil time in COLUMN; empty when COLUMN is"),
        callable(&FunNarPlanSniatMasloAgregat, "FunNarPlanSniatMasloAgregat", "OIL_TIME CURRENT_TIME LIMIT_HOURS", "the operating time at which the oil is due: CURRENT_TIME plus what LIMIT_HOURS leaves after OIL_TIME; 0:00 below zero"),
        callable(&FunNarPlanSniatMasloHvostVint, "FunNarPlanSniatMasloHvostVint", "OIL_TIME CURRENT_TIME LIMIT_HOURS", "the same as FunNarPlanSniatMasloAgregat, for a tail rotor"),
        // Movements: ROW is an AGREGAT row; its changed counters are stored.
        callable(&FunMoveAgregatToVS, "FunMoveAgregatToVS", "ROW TAIL DATE", "nothing: the unit's reading at installation (16), counters (17, 18) and oil time (21) brought to DATE on aircraft TAIL"),
        callable(&FunMoveAgregatFromVS, "FunMoveAgregatFromVS", "ROW AIRCRAFT_TYPE TAIL DATE", "nothing: what TAIL flew since DATE taken off the unit's counters (17, 18) and oil time (21)"),
        // Engines: ENGINE is a DVIGATEL row, whose location (13) names the aircraft; ROW an AGREGAT row.
        callable(&FunDvigatelMoveToVS, "FunDvigatelMoveToVS", "ENGINE AIRCRAFT_TYPE TAIL DATE", "nothing: what the engine's place on its aircraft (13) flew since DATE (or TAIL's overhaul) added to its hours (11, 12, 28), ratings (25, 26, 39), cycles (27, 31) and starts (42, 43)"),
        callable(&FunDvigatelMoveFromVS, "FunDvigatelMoveFromVS", "ENGINE AIRCRAFT_TYPE DATE", "nothing: what the engine's place on its aircraft (13) flew since DATE taken off its counters"),
        callable(&FunMoveAgregatToDvig, "FunMoveAgregatToDvig", "ROW TAIL ENGINE_SERIAL DATE", "nothing: the unit onto the engine at TAIL: the engine's reading at installation (16), counters (17, 18) and oil time (21) brought to DATE"),
        callable(&FunMoveAgregatFromDvig, "FunMoveAgregatFromDvig", "ROW AIRCRAFT_TYPE TAIL DATE", "nothing: what the unit's engine (29) at TAIL flew since DATE taken off its counters (17, 18) and oil time (21)"),
        callable(&FunCorrectAgrDvigFromVS, "FunCorrectAgrDvigFromVS", "ENGINE ROW AIRCRAFT_TYPE DATE", "nothing: what ENGINE flew on its aircraft since DATE taken off the unit's counters (17, 18) and oil time (21)"),
        callable(&FunAgregatMoveDvigatel, "FunAgregatMoveDvigatel", "ENGINE AIRCRAFT_TYPE DATE NEW_LOCATION REMOVAL_FLAG", "nothing: the engine's units moved with it to NEW_LOCATION as of DATE; with REMOVAL_FLAG not 0 what the engine flew since DATE taken off those counted directly; stored together"),
        callable(&FunAgregatCorrectTipNumVSDvigatel, "FunAgregatCorrectTipNumVSDvigatel", "AIRCRAFT_TYPE ENGINE_SERIAL DATE TAIL", "nothing: every AGREGAT unit of engine ENGINE_SERIAL re-pointed to TAIL: the ETAAGREGAT entry of AIRCRAFT_TYPE for its drawing number where there is one (34), TAIL's owner where the owner groups differ (37), type (1), location (27) and date (26); stored together"),
        callable(&FunAgregatCorrectScladDvigatel, "FunAgregatCorrectScladDvigatel", "ENGINE_SERIAL DATE OLD_LOCATION NEW_LOCATION", "nothing: the units mounted on engine ENGINE_SERIAL at OLD_LOCATION moved to NEW_LOCATION as of DATE (27, 26); stored together"),
        callable(&FunAgregatDeleteDvigatel, "FunAgregatDeleteDvigatel", "ENGINE_SERIAL", "nothing: the units mounted on engine ENGINE_SERIAL at \"Ремфонд\" deleted; stored together"),
        callable(&FunAddIDNameAgregat, "FunAddIDNameAgregat", "ROW", "nothing: a new ETAAGREGAT entry for the AGREGAT units like ROW (name, drawing number, reference key, aircraft type), all pointed at it; stored at once, ROW itself unchanged"),
        // Report cards: each empties its report table, then fills it (mxbook report prints it).
        callable(&FunMainReportAgregatPodrobno, "FunMainReportAgregatPodrobno", "ID", "nothing: REPORT_AGREGAT_PODROBNO holds the card of the general component ID"),
        callable(&FunMainReportVtulkaNVPodrobno, "FunMainReportVtulkaNVPodrobno", "ID", "nothing: REPORT_AGREGAT_PODROBNO holds the card of the main-rotor hub ID"),
        callable(&FunMainReportPodveskaPodrobno, "FunMainReportPodveskaPodrobno", "ID", "nothing: REPORT_PODVESKA_PODROBNO holds the card of the sling ID"),
        callable(&FunMainReportLebedkaPodrobno, "FunMainReportLebedkaPodrobno", "ID", "nothing: REPORT_LEBEDKA_PODROBNO holds the card of the winch ID"),
        callable(&FunMainReportAgrVSUPodrobno, "FunMainReportAgrVSUPodrobno", "ID", "nothing: REPORT_AGR_VSU_PODROBNO holds the card of the APU unit ID (decimal)"),
        callable(&FunMainReportAgrZCUPodrobno, "FunMainReportAgrZCUPodrobno", "ID", "nothing: REPORT_ZCU_PODROBNO holds the card of the ZCU unit ID (decimal)"),
        callable(&FunMainReportVSUPodrobno, "FunMainReportVSUPodrobno", "AIRCRAFT_TYPE PLACE SERIAL", "nothing: REPORT_VSU_PODROBNO holds a card for each APU of the type at PLACE with the serial number"),
        callable(&FunMainReportVozdVintPodrobno, "FunMainReportVozdVintPodrobno", "AIRCRAFT_TYPE SERIAL LOCATION", "nothing: REPORT_VTULKA_VV_PODR holds the card of the propeller"),
        callable(&FunMainReportReductorPodrobno, "FunMainReportReductorPodrobno", "AIRCRAFT_TYPE SERIAL LOCATION", "nothing: REPORT_REDUCTOR_PODROBNO holds a card for each gearbox with the serial number at LOCATION"),
        callable(&FunMainReportDvigatelPodrobno, "FunMainReportDvigatelPodrobno", "AIRCRAFT_TYPE SERIAL LOCATION", "nothing: REPORT_DVIGATEL_PODROBNO holds the card of the engine"),
        callable(&FunMainReportHvostVintPodrobno, "FunMainReportHvostVintPodrobno", "AIRCRAFT_TYPE HUB_SERIAL LOCATION", "nothing: REPORT_HVOST_VINT_PODR holds the card of the tail rotor whose hub has the serial number"),
        callable(&FunReportReestrPodrobno, "FunReportReestrPodrobno", "AIRCRAFT_TYPE TAIL WITH_FORMS", "nothing: REPORT_REESTR_PODROBNO holds the register card of the aircraft; with WITH_FORMS not 0 its state and maintenance forms too"),
    };
    // clang-format on
    return all;
}

}  // namespace mxbook::cli
