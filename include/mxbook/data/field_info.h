#pragma once

#include <string>

namespace mxbook::db {

enum class FieldType { text, integer, numeric, floating, date, time, timestamp, boolean, blob, textBlob };

// A column of a data set's rows.
struct FieldInfo {
    std::string name;    // the name the query gives the column
    FieldType type = FieldType::text;
    std::string table;   // the table it comes from; empty for an expression
    std::string column;  // its name in that table
    bool nullable = true;
};

}  // namespace mxbook::db
