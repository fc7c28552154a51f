// Writes a row to a new embedded database and reads it back.
#include <mxbook/mxbook.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) return 1;
    const std::filesystem::path database = std::filesystem::path(argv[1]) / "consumer.fdb";
    mxbook::db::Connection connection;
    connection.create("Provider=LCPI.IBProvider.5.Free;User ID=SYSDBA;Location=" + database.string());
    connection.execute("create table T (ID integer not null primary key, NAME varchar(20))");
    connection.execute("insert into T values (1, 'Ремфонд')");
    mxbook::db::DataSet rows(connection, "select NAME from T where ID = :pID");
    rows.setParam("pID", 1);
    rows.open();
    const std::string name = rows.field("NAME").asText();
    std::cout << name << " " << mxbook::sqlDate(mxbook::Date::fromYmd(2024, 3, 3)) << "\n";
    return name == "Ремфонд" ? EXIT_SUCCESS : EXIT_FAILURE;
}
