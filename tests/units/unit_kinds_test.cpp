// The kinds of unit name each column twice, by position and by name: both
// must point at the same column of the schema, or the status reads one
// column while the generator writes another.
#include <gtest/gtest.h>

#include "database_test.h"
#include "mxbook/schema.h"
#include "units/unit_kinds.h"

namespace mxbook {
namespace {

class UnitKindsTest : public testing::DatabaseTest {
protected:
    UnitKindsTest() : DatabaseTest(std::string(schema::ddl(schema::Database::main))) {}
};

TEST_F(UnitKindsTest, EachNamedColumnStandsAtItsPosition) {
    for (const units::UnitKind& kind : units::unitKinds()) {
        db::DataSet rows(connection(), "select * from " + std::string(kind.table));
        rows.open();
        std::vector<units::Column> columns = {kind.name, kind.serial, kind.location, kind.manufactured};
        if (kind.flag) columns.push_back(*kind.flag);
        if (kind.installReading) columns.push_back(*kind.installReading);
        if (kind.keepsComponentColumns) {
            const auto& component = units::componentColumns;
            columns.insert(columns.end(), {component.counterKind, component.carrierKind, component.carrierSerial});
        }
        for (const units::Column& column : columns) {
            SCOPED_TRACE(std::string(kind.table) + "." + std::string(column.name));
            ASSERT_LT(column.position, rows.fieldCount());
            EXPECT_EQ(rows.fieldInfo(column.position).name, column.name);
        }
    }
}

}  // namespace
}  // namespace mxbook
