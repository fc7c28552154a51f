#pragma once

#include <string>
#include <string_view>

namespace mxbook::db {

// The properties of a connection string "Key=Value;Key=Value;...". Keys are
// matched without regard to case; a value may be quoted with '"' or '\''
// (a doubled quote inside stands for one); unknown keys are ignored.
struct ConnectionString {
    std::string provider;
    std::string userId;
    std::string password;
    // The Firebird database: a file path attaches in embedded mode,
    // "host:path" (or "host/port:path") reaches a Firebird server.
    std::string location;
    // The character set the database keeps its text in.
    std::string ctype;
    bool autoCommit = true;
    std::string dbclientLibrary;
    std::string dbclientType;

    // Throws db::Error on a malformed string. The message names the item's
    // position, never its text, so a password cannot leak into it.
    static ConnectionString parse(std::string_view text);
};

}  // namespace mxbook::db
