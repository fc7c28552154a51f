// Rows of text printed as an aligned table for people, or as CSV or JSON
// for programs.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace mxbook::cli {

enum class Format { table, csv, json };

struct Column {
    std::string title;
    bool number = false;  // right-aligned in a table
};

// A cell's text, and the number it stands for where it is one: JSON writes
// that as a number, a table and CSV the text ("12%" is 12).
struct Cell {
    Cell(std::string shown) : text(std::move(shown)) {}
    Cell(const char* shown) : text(shown) {}
    Cell(std::string shown, long long value) : text(std::move(shown)), number(value) {}

    std::string text;
    std::optional<long long> number;
};

class Listing {
public:
    explicit Listing(std::vector<Column> columns) : columns_(std::move(columns)) {}
    void add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
    bool empty() const { return rows_.empty(); }
    void print(std::ostream& out, Format format) const;

private:
    std::vector<Column> columns_;
    std::vector<std::vector<Cell>> rows_;
};

// Before an overdue amount: a minus sign, not a hyphen.
inline const std::string minusSign = "\u2212";
// The mark of a limit by the share of it left: "!!" overdue or used up, "!"
// under a tenth left.
std::string alertMark(double shareLeft);

// Characters on screen, counting each UTF-8 sequence as one.
std::size_t displayWidth(const std::string& text);
std::string jsonString(const std::string& text);

}  // namespace mxbook::cli
