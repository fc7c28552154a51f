#include "output.h"

#include <algorithm>
#include <cstdio>

namespace mxbook::cli {

namespace {

std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

}  // namespace

std::size_t displayWidth(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string jsonString(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
                out += escaped;
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    return out + "\"";
}

void Listing::print(std::ostream& out, Format format) const {
    if (format == Format::csv) {
        for (std::size_t i = 0; i < columns_.size(); ++i) out << (i ? "," : "") << csvField(columns_[i].title);
        out << "\n";
        for (const auto& row : rows_) {
            for (std::size_t i = 0; i < row.size(); ++i) out << (i ? "," : "") << csvField(row[i].text);
            out << "\n";
        }
        return;
    }
    if (format == Format::json) {
        out << "[";
        for (std::size_t r = 0; r < rows_.size(); ++r) {
            out << (r ? ",\n " : "") << "{";
            for (std::size_t i = 0; i < columns_.size() && i < rows_[r].size(); ++i) {
                const Cell& cell = rows_[r][i];
                out << (i ? ", " : "") << jsonString(columns_[i].title) << ": "
                    << (cell.number ? std::to_string(*cell.number) : jsonString(cell.text));
            }
            out << "}";
        }
        out << "]\n";
        return;
    }
    std::vector<std::size_t> widths;
    for (const auto& column : columns_) widths.push_back(displayWidth(column.title));
    for (const auto& row : rows_)
        for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i)
            widths[i] = std::max(widths[i], displayWidth(row[i].text));
    const auto line = [&](const std::vector<Cell>& cells) {
        std::string text;
        for (std::size_t i = 0; i < cells.size() && i < widths.size(); ++i) {
            const std::string& cell = cells[i].text;
            const std::string padding(widths[i] - displayWidth(cell), ' ');
            if (i) text += "  ";
            text += columns_[i].number ? padding + cell : cell + padding;
        }
        while (!text.empty() && text.back() == ' ') text.pop_back();
        out << text << "\n";
    };
    std::vector<Cell> titles;
    for (const auto& column : columns_) titles.emplace_back(column.title);
    line(titles);
    for (const auto& row : rows_) line(row);
}

std::string alertMark(double shareLeft) {
    if (shareLeft <= 0) return "!!";
    return shareLeft < 0.1 ? "!" : "";
}

}  // namespace mxbook::cli
