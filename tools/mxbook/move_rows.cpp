#include "move_rows.h"

#include "commands.h"
#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook::cli {

int rowId(db::Connection& connection, const NamedRows& rows, const std::string& named) {
    const std::string prefix = std::string("@") + rows.table + ":";
    if (named.starts_with(prefix)) {
        const std::optional<int> id = [&]() -> std::optional<int> {
            try {
                return static_cast<int>(parseInt(named.substr(prefix.size())));
            } catch (const ConversionError&) {
                return std::nullopt;
            }
        }();
        if (!id)
            throw UsageError(std::string(rows.argument) + ": '" + named + "' is not " + prefix +
                             "ID or a factory number");
        return *id;
    }
    db::DataSet found(connection,
                      std::string("select ID from ") + rows.table + " where ZAVODSKOI_NOMER = :pSERIAL order by ID");
    found.setParam("pSERIAL", named);
    std::vector<int> ids;
    for (found.open(); !found.eof(); found.next()) ids.push_back(found.field(0).asInt());
    if (ids.empty()) throw ArgumentError(std::string("no ") + rows.noun + " with factory number " + named);
    if (ids.size() > 1) {
        std::string list;
        for (int id : ids) list += (list.empty() ? "" : ", ") + prefix + std::to_string(id);
        throw ArgumentError("factory number " + named + " names " + std::to_string(ids.size()) + " " + rows.nouns +
                            ": " + list + "; name one of them");
    }
    return ids.front();
}

std::optional<std::string> aircraftTypeOf(db::Connection& connection, const std::string& tail) {
    db::DataSet aircraft(connection, "select TIP_VS from REESTR where BORTOVOI_NOMER = :pTAIL order by ID");
    aircraft.setParam("pTAIL", tail);
    aircraft.open();
    if (aircraft.eof()) return std::nullopt;
    return aircraft.field(0).asText();
}

std::vector<std::string> rowValues(db::DataSet& row) {
    std::vector<std::string> values;
    for (int i = 0; i < row.fieldCount(); ++i) values.push_back(row.field(i).asText());
    return values;
}

std::vector<std::string> columnNames(db::DataSet& row) {
    std::vector<std::string> names;
    for (int i = 0; i < row.fieldCount(); ++i) names.push_back(row.fieldInfo(i).name);
    return names;
}

MoveChanges::MoveChanges(bool rowsNamed)
    : rowsNamed_(rowsNamed),
      listing_(rowsNamed ? std::vector<Column>{{"row"}, {"column"}, {"before"}, {"after"}}
                         : std::vector<Column>{{"column"}, {"before"}, {"after"}}) {}

void MoveChanges::add(const std::string& row, const std::vector<std::string>& columns,
                      const std::vector<std::string>& before, const std::vector<std::string>& after) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (before[i] == after[i]) continue;
        if (rowsNamed_)
            listing_.add({row, columns[i], before[i], after[i]});
        else
            listing_.add({columns[i], before[i], after[i]});
    }
}

void MoveChanges::print(std::ostream& out, Format format, bool dryRun) const {
    listing_.print(out, format);
    if (dryRun && format == Format::table) out << "(a dry run: nothing was stored)\n";
}

}  // namespace mxbook::cli
