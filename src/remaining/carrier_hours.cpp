// The exported derivations: one algorithm over the table of kinds.
#include "indirect_kinds.h"
#include "mxbook/remaining_life.h"

namespace mxbook {

namespace {

std::string derive(db::Connection& connection, db::DataSet& row, std::string_view table, int ownColumn) {
    return remaining::derivedOperatingTime(remaining::Queries(connection), row, remaining::indirectKind(table),
                                           ownColumn);
}

}  // namespace

std::string FunNepNarAgr(db::Connection& connection, db::DataSet& row, int ownColumn) {
    return derive(connection, row, "AGREGAT", ownColumn);
}
std::string FunNepNarLopast(db::Connection& connection, db::DataSet& row, int ownColumn) {
    return derive(connection, row, "LOPAST", ownColumn);
}
std::string FunNepNarZCU(db::Connection& connection, db::DataSet& row, int ownColumn) {
    return derive(connection, row, "ZCU", ownColumn);
}
std::string FunNepNarShlang(db::Connection& connection, db::DataSet& row) {
    return derive(connection, row, "SHLANG", -1);
}
std::string FunNepNarHvostVint(db::Connection& connection, db::DataSet& row, int ownColumn) {
    return derive(connection, row, "HVOSTOVOY_VINT", ownColumn);
}
std::string FunNepNarLebedka(db::Connection& connection, db::DataSet& row, int ownColumn) {
    return derive(connection, row, "LEBEDKA", ownColumn);
}

}  // namespace mxbook
