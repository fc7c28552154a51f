#include "registry.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

#include "mxbook/conventions.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/format.h"
#include "mxbook/host.h"
#include "mxbook/remaining_life.h"
#include "mxbook/text.h"

namespace mxbook::cli {

namespace {

Date dateArgument(const std::string& text) {
    // "2024-03-15", or the short date format ("15.03.2024").
    if (text.size() == 10 && text[4] == '-' && text[7] == '-')
        return Date::fromYmd(parseInt(text.substr(0, 4)), parseInt(text.substr(5, 2)), parseInt(text.substr(8, 2)));
    return parseShortDate(text, host().formatSettings());
}

bool isName(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '$';
    });
}

// How each parameter type is given on the command line.
template <typename T>
struct Parameter;
template <>
struct Parameter<db::Connection&> {
    static constexpr const char* kind = nullptr;  // implicit
    static db::Connection& get(CallContext& context, const std::string*) { return context.connection(); }
};
template <>
struct Parameter<db::DataSet&> {
    static constexpr const char* kind = "@TABLE:ID|@sql:SELECT...";
    static db::DataSet& get(CallContext& context, const std::string* text) { return context.dataSet(*text); }
};
template <>
struct Parameter<const std::string&> {
    static constexpr const char* kind = "text";
    static const std::string& get(CallContext&, const std::string* text) { return *text; }
};
template <>
struct Parameter<int> {
    static constexpr const char* kind = "integer";
    static int get(CallContext&, const std::string* text) { return parseInt(*text); }
};
template <>
struct Parameter<Date> {
    static constexpr const char* kind = "date";
    static Date get(CallContext&, const std::string* text) { return dateArgument(*text); }
};
template <>
struct Parameter<char32_t&> {
    static constexpr const char* kind = "key";
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

template <typename R, typename... P, std::size_t... I>
std::string invoke(R (*function)(P...), CallContext& context, const std::vector<std::string>& arguments,
                   std::index_sequence<I...>) {
    // Which text argument each parameter takes: the implicit connection takes none.
    constexpr std::array<bool, sizeof...(P)> fromText = {(Parameter<P>::kind != nullptr)...};
    std::array<std::size_t, sizeof...(P) + 1> textIndex{};
    for (std::size_t i = 0; i < sizeof...(P); ++i) textIndex[i + 1] = textIndex[i] + (fromText[i] ? 1 : 0);
    if (arguments.size() != textIndex.back())
        throw ArgumentError(std::to_string(textIndex.back()) + " arguments wanted, " +
                            std::to_string(arguments.size()) + " given");
    const auto text = [&](std::size_t i) { return fromText[i] ? &arguments[textIndex[i]] : nullptr; };
    if constexpr (std::is_void_v<R>) {
        function(Parameter<P>::get(context, text(I))...);
        return {};
    } else {
        return resultText(function(Parameter<P>::get(context, text(I))...));
    }
}

template <typename R, typename... P>
Callable callable(const char* name, R (*function)(P...)) {
    Callable entry;
    entry.name = name;
    (
        [&] {
            if (Parameter<P>::kind) entry.parameters.emplace_back(Parameter<P>::kind);
        }(),
        ...);
    entry.returnsNothing = std::is_void_v<R>;
    entry.invoke = [function](CallContext& context, const std::vector<std::string>& arguments) {
        return invoke(function, context, arguments, std::index_sequence_for<P...>{});
    };
    return entry;
}

}  // namespace

db::Connection& CallContext::connection() {
    if (!connection_) {
        connection_ = std::make_unique<db::Connection>();
        openMainDatabase(*connection_, options_);
    }
    return *connection_;
}

db::DataSet& CallContext::dataSet(const std::string& argument) {
    std::string sql;
    if (argument.starts_with("@sql:")) {
        sql = argument.substr(5);
    } else if (argument.starts_with("@") && argument.find(':') != std::string::npos) {
        const auto colon = argument.find(':');
        const std::string table = argument.substr(1, colon - 1);
        if (!isName(table)) throw Error("'" + table + "' is not a table name");
        sql = "select * from " + table + " where ID = " + std::to_string(parseInt64(argument.substr(colon + 1)));
    } else {
        throw Error("a row is written @TABLE:ID or @sql:SELECT ..., not '" + argument + "'");
    }
    auto rows = std::make_unique<db::DataSet>(connection(), sql);
    rows->open();
    if (rows->eof()) throw Error("no row: " + argument);
    Row row{std::move(rows), {}};
    for (int i = 0; i < row.dataSet->fieldCount(); ++i) row.before.push_back(row.dataSet->field(i).asText());
    rows_.push_back(std::move(row));
    return *rows_.back().dataSet;
}

char32_t& CallContext::key(const std::string& argument) {
    const std::u32string keys = [&] {
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
        return decoded;
    }();
    // A number stands for a control key ("8" is Backspace only when written "#8").
    char32_t value = keys.size() == 1 ? keys[0] : 0;
    if (argument.starts_with("#"))
        value = static_cast<char32_t>(parseInt(argument.substr(1)));
    else if (keys.size() != 1)
        throw Error("a key is one character, or #code, not '" + argument + "'");
    keys_.push_back(std::make_unique<char32_t>(value));
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

const std::vector<Callable>& callables() {
    static const std::vector<Callable> all = {
        // Folders, settings, connections and identifiers.
        callable("GetUserRoot", &GetUserRoot),
        callable("GetCommonRoot", &GetCommonRoot),
        callable("GetUserDesktop", &GetUserDesktop),
        callable("GetUserBase", &GetUserBase),
        callable("GetBaseDocTO", &GetBaseDocTO),
        callable("GetBaseReport", &GetBaseReport),
        callable("GetUserPhoto", &GetUserPhoto),
        callable("GetFileVersion", &GetFileVersion),
        callable("GetProviderExits", &GetProviderExits),
        callable("FunConnection", &FunConnection),
        callable("FunConnectDocTO", &FunConnectDocTO),
        callable("FunConnectReport", &FunConnectReport),
        callable("FunConPhoto", &FunConPhoto),
        callable("GetID", &GetID),
        callable("FunMaxDvigExp", &FunMaxDvigExp),
        // Conventions.
        callable("FunHourCorrectFromVS", &FunHourCorrectFromVS),
        callable("FunHourCorrectToVS", &FunHourCorrectToVS),
        callable("FunIntegerCorrectFromVS", &FunIntegerCorrectFromVS),
        callable("FunIntegerCorrectToVS", &FunIntegerCorrectToVS),
        callable("FunChageToColon", &FunChageToColon),
        callable("FunChageToPoint", &FunChageToPoint),
        callable("FunMsg", &FunMsg),
        callable("GetActiveWindowTitle", &GetActiveWindowTitle),
        // Remaining life.
        callable("FunNepNarAgr", &FunNepNarAgr),
        callable("FunNepNarLopast", &FunNepNarLopast),
        callable("FunNepNarZCU", &FunNepNarZCU),
        callable("FunNepNarShlang", &FunNepNarShlang),
        callable("FunNepNarHvostVint", &FunNepNarHvostVint),
        callable("FunNepNarLebedka", &FunNepNarLebedka),
        callable("FunNepNarTros", &FunNepNarTros),
        callable("FunOstatTros", &FunOstatTros),
        callable("FunOstatChas", &FunOstatChas),
        callable("FunOstatInteger", &FunOstatInteger),
        callable("FunOstatLet", &FunOstatLet),
        callable("FunNarabLet", &FunNarabLet),
        callable("FunBookYear", &FunBookYear),
        callable("FunDataSniatia", &FunDataSniatia),
    };
    return all;
}

}  // namespace mxbook::cli
