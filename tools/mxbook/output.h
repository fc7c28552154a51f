// Rows of text printed as an aligned table for people, or as CSV or JSON
// for programs.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace mxbook::cli {

enum class Format { table, csv, json };

struct Column {
    std::string title;
    bool number = false;  // right-aligned in a table
};

class Listing {
public:
    explicit Listing(std::vector<Column> columns) : columns_(std::move(columns)) {}
    void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
    bool empty() const { return rows_.empty(); }
    void print(std::ostream& out, Format format) const;

private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

// Characters on screen, counting each UTF-8 sequence as one.
std::size_t displayWidth(const std::string& text);
std::string jsonString(const std::string& text);

}  // namespace mxbook::cli
