// The frame every card runs in: the report table emptied first and for
// good, the rows computed, then stored together.
#include <algorithm>

#include "card.h"
#include "mxbook/data/unit_of_work.h"

namespace mxbook::report {

namespace {

using RowCells = std::vector<Cell>;

RowCells cellsOf(Card& card, const CardKind& kind, std::size_t width) {
    RowCells cells(width);
    for (const Fill& fill : kind.fills)
        if (Cell value = fill.value(card)) cells.at(static_cast<std::size_t>(fill.column)) = std::move(value);
    return cells;
}

std::size_t widthOf(const CardKind& kind) {
    int widest = 0;
    for (const Fill& fill : kind.fills) widest = std::max(widest, fill.column);
    return static_cast<std::size_t>(widest) + 1;
}

}  // namespace

void build(db::Connection& connection, const CardKind& kind, const Parameters& parameters,
           const std::vector<std::string>& arguments) {
    // Emptied and stored before anything is computed: an old card of another
    // unit must never stay behind to print as the one asked for.
    connection.execute("delete from " + std::string(kind.table));

    // The rows are read and stored in one transaction: one snapshot for all
    // the card's queries rather than one taken after the deletion, and the
    // rows stored by its commit. Left uncommitted (a failure, no unit found),
    // it stores nothing.
    db::UnitOfWork work(connection);
    const std::size_t width = widthOf(kind);
    std::vector<RowCells> rows;
    db::DataSet source(connection, std::string(kind.source), db::DataSet::Traversal::forwardOnly);
    for (const auto& [name, value] : parameters) source.setParam(name, value);
    source.open();
    for (; !source.eof(); source.next()) {
        Card card(connection, source, kind, arguments);
        rows.push_back(cellsOf(card, kind, width));
        if (kind.rows == Rows::first) break;
    }
    source.close();
    if (rows.empty()) return;

    db::DataSet report(connection, "select * from " + std::string(kind.table) + " order by ID");
    report.open();
    for (const RowCells& cells : rows) {
        report.append();
        // Column 0, the table's own key, is generated unless a card fills it.
        for (std::size_t column = 0; column < cells.size(); ++column)
            if (cells[column]) report.setValue(static_cast<int>(column), *cells[column]);
        report.post();
    }
    report.updateBatch();
    work.commit();
}

}  // namespace mxbook::report
