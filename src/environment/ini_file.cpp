#include "ini_file.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <system_error>

#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook::environment {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool sameName(std::string_view a, std::string_view b) { return upperCase(trim(a)) == upperCase(trim(b)); }

// The name of a "[section]" line, or nothing for any other line.
bool sectionName(std::string_view line, std::string& name) {
    const std::string text = trim(line);
    if (text.size() < 2 || text.front() != '[') return false;
    const auto close = text.find(']');
    if (close == std::string::npos) return false;
    name = text.substr(1, close - 1);
    return true;
}

bool isComment(std::string_view line) {
    const std::string text = trim(line);
    return text.empty() || text.front() == ';' || text.front() == '#';
}

}  // namespace

IniFile::IniFile(std::filesystem::path path) : path_(std::move(path)) {
    std::ifstream in(path_, std::ios::binary);
    if (!in) return;
    std::stringstream buffer;
    buffer << in.rdbuf();
    std::string text = buffer.str();
    if (text.starts_with(byteOrderMark)) {
        byteOrderMark_ = true;
        text.erase(0, byteOrderMark.size());
    }
    if (text.find("\r\n") != std::string::npos) newline_ = "\r\n";
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines_.push_back(std::move(line));
        start = end + 1;
    }
}

IniFile::Found IniFile::find(std::string_view section, std::string_view key) const {
    Found found;
    std::string name;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (sectionName(lines_[i], name)) {
            if (found.section != npos) break;  // the section ended; the first of that name counts
            if (sameName(name, section)) {
                found.section = i;
                found.end = i + 1;
            }
            continue;
        }
        if (found.section == npos || isComment(lines_[i])) continue;
        found.end = i + 1;
        const auto equals = lines_[i].find('=');
        if (found.key == npos && equals != std::string::npos && sameName(lines_[i].substr(0, equals), key))
            found.key = i;
    }
    return found;
}

std::string IniFile::readString(std::string_view section, std::string_view key, std::string_view fallback) const {
    const Found found = find(section, key);
    if (found.key == npos) return std::string(fallback);
    const std::string& line = lines_[found.key];
    std::string value = trim(std::string_view(line).substr(line.find('=') + 1));
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        value = value.substr(1, value.size() - 2);
    return value;
}

int IniFile::readInteger(std::string_view section, std::string_view key, int fallback) const {
    const std::string value = readString(section, key, "");
    try {
        return value.empty() ? fallback : parseInt(value);
    } catch (const ConversionError&) {
        return fallback;
    }
}

bool IniFile::readBool(std::string_view section, std::string_view key, bool fallback) const {
    return readInteger(section, key, fallback ? 1 : 0) != 0;
}

void IniFile::writeString(std::string_view section, std::string_view key, std::string_view value) {
    const auto before = lines_;
    const Found found = find(section, key);
    if (found.key != npos) {
        const std::string& line = lines_[found.key];
        lines_[found.key] = line.substr(0, line.find('=') + 1) + std::string(value);
    } else if (found.section != npos) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(found.end),
                      std::string(key) + "=" + std::string(value));
    } else {
        if (!lines_.empty() && !trim(lines_.back()).empty()) lines_.emplace_back();
        lines_.push_back("[" + std::string(section) + "]");
        lines_.push_back(std::string(key) + "=" + std::string(value));
    }
    try {
        save();
    } catch (...) {
        lines_ = before;
        throw;
    }
}

void IniFile::writeBool(std::string_view section, std::string_view key, bool value) {
    writeString(section, key, value ? "1" : "0");
}

// Written beside the file and renamed over it: a reader sees the old file or
// the new one, never half of it.
void IniFile::save() const {
    std::filesystem::path temporary = path_;
    temporary += ".tmp" + std::to_string(getpid());
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (out) {
            if (byteOrderMark_) out << byteOrderMark;
            for (const std::string& line : lines_) out << line << newline_;
            out.flush();
        }
        if (!out) {
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            throw Error("cannot write the settings file " + path_.string());
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, path_, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        throw Error("cannot write the settings file " + path_.string());
    }
}

}  // namespace mxbook::environment
