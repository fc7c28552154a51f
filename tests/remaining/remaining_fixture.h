// A main database built from the schema, with rows made for each case.
#pragma once

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "database_test.h"
#include "mxbook/data.h"
#include "mxbook/schema.h"

namespace mxbook::testing {

// Column names and values of a row to insert.
using Columns = std::vector<std::pair<std::string, db::Value>>;

class RemainingLifeTest : public DatabaseTest {
protected:
    RemainingLifeTest() : DatabaseTest(std::string(schema::ddl(schema::Database::main))) {}

    // Inserts a row and returns its ID.
    int insert(const std::string& table, const Columns& columns) {
        std::string names, params;
        int n = 0;
        for (const auto& column : columns) {
            names += (n ? ", " : "") + column.first;
            params += (n ? ", :p" : ":p") + std::to_string(n);
            ++n;
        }
        db::DataSet inserting(connection(), "insert into " + table + " (" + names + ") values (" + params + ")");
        n = 0;
        for (const auto& column : columns) inserting.setParam("p" + std::to_string(n++), column.second);
        inserting.execute();
        return scalar("select max(ID) from " + table).asInt();
    }

    // The unit's row as a form holds it: all columns, positioned on the row.
    db::DataSet& row(const std::string& table, int id) {
        rows_.emplace_back(connection(), "select * from " + table + " where ID = " + std::to_string(id));
        rows_.back().open();
        return rows_.back();
    }

    // An aircraft in the register with its counters since overhaul.
    void aircraft(const std::string& tail, const char* hours, int landings = 0, Date overhauled = Date()) {
        insert("REESTR", {{"TIP_VS", "Ми-8МТВ-1"},
                          {"BORTOVOI_NOMER", tail},
                          {"NARABOTKA_PPR_CHASOV", hours ? db::Value(hours) : db::Value()},
                          {"NARABOTKA_PPR_POSADKI", landings},
                          {"DATA_REMONTA", overhauled.serial() ? db::Value(overhauled) : db::Value()}});
    }

private:
    std::list<db::DataSet> rows_;
};

}  // namespace mxbook::testing
