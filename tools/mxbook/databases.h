// The four databases as init settles, creates and checks them, shared by
// init and demo.
#pragma once

#include <string>
#include <vector>

#include "commands.h"
#include "mxbook/data/connection.h"
#include "mxbook/schema.h"

namespace mxbook::cli {

struct DatabaseRow {
    schema::Database database;
    std::string path;     // as opened: the path on disk, or "host:path"
    std::string state;    // "created", "exists", "incomplete", ...
    std::string problem;  // what is wrong and what to do, for the error line; empty when all is well
};

// Each database's location settled, the missing databases created, the
// existing ones opened and checked to be whole (completed or rebuilt with
// --repair). With `leaveMissingMain` a missing main database is not created
// but left with the state "missing", for the demo to build.
std::vector<DatabaseRow> prepareDatabases(const Options& options, bool leaveMissingMain);
// The rows as a listing: database, location, state.
Listing databaseListing(const std::vector<DatabaseRow>& rows);
// Raises mxbook::Error with the rows' problems in one line, if any.
void raiseProblems(const std::vector<DatabaseRow>& rows);

// A new database built under a temporary name beside its place and moved
// there when whole, so that an interrupted init or demo leaves no half-built
// database under the real name. A server's database is built in place.
class NewDatabase {
public:
    NewDatabase(schema::Database database, std::string path);
    ~NewDatabase();  // not published: the temporary file goes
    NewDatabase(const NewDatabase&) = delete;
    NewDatabase& operator=(const NewDatabase&) = delete;

    db::Connection& connection() { return connection_; }
    // Closes the database and moves it to its place; raises mxbook::Error
    // when a file has appeared there meanwhile.
    void publish();

private:
    std::string path_, building_;
    db::Connection connection_;
    bool published_ = false;
};

}  // namespace mxbook::cli
