// A test on a database of its own: created empty in a temporary folder, built
// from the test's DDL, with a FakeHost installed; all of it gone afterwards.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "fake_host.h"
#include "mxbook/data.h"
#include "temp_folder.h"

namespace mxbook::testing {

// A connection string of the kind the application composes, for a database file.
std::string connectionStringFor(const std::filesystem::path& database, const std::string& password = {});

class DatabaseTest : public ::testing::Test {
protected:
    explicit DatabaseTest(std::string ddl) : ddl_(std::move(ddl)) {}

    void SetUp() override;
    void TearDown() override;

    db::Connection& connection() { return connection_; }
    FakeHost& host() { return *host_; }
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::filesystem::path databasePath() const { return folder_.path() / "test.fdb"; }
    // A second connection to the same database, as another user of it would have.
    db::Connection openAnother() const;
    // The single value of a query, read on a connection of its own.
    db::Value scalar(const std::string& sql) const;

private:
    std::string ddl_;
    TempFolder folder_;
    std::shared_ptr<FakeHost> host_ = std::make_shared<FakeHost>();
    std::unique_ptr<ScopedHost> installed_;
    db::Connection connection_;
};

}  // namespace mxbook::testing
