// A settings file in the INI format: "[section]" lines and "key=value"
// lines below them. Sections and keys are found without regard to case; a
// missing file, section or key gives the default. A write reaches the disk
// at once and keeps every other line of the file as it was.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace mxbook::environment {

class IniFile {
public:
    explicit IniFile(std::filesystem::path path);

    // The value with its surrounding blanks (and a pair of enclosing quotes) removed.
    std::string readString(std::string_view section, std::string_view key, std::string_view fallback) const;
    // The value as a decimal integer; `fallback` when it is missing or not a number.
    int readInteger(std::string_view section, std::string_view key, int fallback) const;
    // True when the value is a non-zero integer, as the application writes "1".
    bool readBool(std::string_view section, std::string_view key, bool fallback) const;

    // Throws mxbook::Error naming the file when it cannot be written (its
    // folder missing, say); the file is then as it was.
    void writeString(std::string_view section, std::string_view key, std::string_view value);
    void writeBool(std::string_view section, std::string_view key, bool value);

    const std::filesystem::path& path() const { return path_; }

private:
    struct Found {
        std::size_t section = npos;  // the line of the section's header
        std::size_t key = npos;      // the line of the key
        std::size_t end = npos;      // one past the section's last line with content
    };
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    Found find(std::string_view section, std::string_view key) const;
    void save() const;

    std::filesystem::path path_;
    std::vector<std::string> lines_;
    std::string newline_ = "\n";
    bool byteOrderMark_ = false;
};

}  // namespace mxbook::environment
