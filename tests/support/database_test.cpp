#include "database_test.h"

namespace mxbook::testing {

std::string connectionStringFor(const std::filesystem::path& database, const std::string& password) {
    return "Provider=LCPI.IBProvider.5.Free;Password=" + password +
           ";Persist Security Info=True;User ID=SYSDBA;Location=" + database.string() +
           ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb.direct";
}

void DatabaseTest::SetUp() {
    installed_ = std::make_unique<ScopedHost>(host_);
    connection_.create(connectionStringFor(databasePath()));
    connection_.executeScript(ddl_);
}

void DatabaseTest::TearDown() {
    connection_.close();
    installed_.reset();
}

db::Connection DatabaseTest::openAnother() const {
    db::Connection other(connectionStringFor(databasePath()));
    other.open();
    return other;
}

db::Value DatabaseTest::scalar(const std::string& sql) const {
    db::Connection other = openAnother();
    db::DataSet query(other, sql);
    query.open();
    return query.field(0).value();
}

}  // namespace mxbook::testing
