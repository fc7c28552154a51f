// The "FileVersion" string of a Windows PE file's version resource, read
// from the file itself: the resource directory leads to the VS_VERSIONINFO
// block, whose translation table names the string tables to try in turn.
// Every offset is checked against the file; anything amiss gives no version.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mxbook/environment.h"
#include "mxbook/text.h"

namespace mxbook {

namespace {

// Version resources are small; a file this large is not worth reading for one.
constexpr std::uintmax_t largestFile = 256u * 1024 * 1024;
constexpr std::uint32_t versionResourceType = 16;  // RT_VERSION

class Bytes {
public:
    explicit Bytes(std::vector<unsigned char> data) : data_(std::move(data)) {}

    std::size_t size() const { return data_.size(); }
    bool has(std::size_t offset, std::size_t length) const {
        return offset <= data_.size() && length <= data_.size() - offset;
    }
    std::optional<std::uint16_t> u16(std::size_t offset) const {
        if (!has(offset, 2)) return std::nullopt;
        return static_cast<std::uint16_t>(data_[offset] | data_[offset + 1] << 8);
    }
    std::optional<std::uint32_t> u32(std::size_t offset) const {
        if (!has(offset, 4)) return std::nullopt;
        return static_cast<std::uint32_t>(data_[offset] | data_[offset + 1] << 8 | data_[offset + 2] << 16 |
                                          static_cast<std::uint32_t>(data_[offset + 3]) << 24);
    }

private:
    std::vector<unsigned char> data_;
};

struct Section {
    std::uint32_t virtualAddress, virtualSize, rawOffset, rawSize;
};

// Where the data of a relative virtual address lies in the file.
std::optional<std::size_t> fileOffset(const std::vector<Section>& sections, std::uint32_t rva) {
    for (const Section& s : sections) {
        const std::uint32_t extent = std::max(s.virtualSize, s.rawSize);
        if (rva >= s.virtualAddress && rva - s.virtualAddress < extent && rva - s.virtualAddress < s.rawSize)
            return static_cast<std::size_t>(s.rawOffset) + (rva - s.virtualAddress);
    }
    return std::nullopt;
}

// The offset and size of the version resource's data in the file.
std::optional<std::pair<std::size_t, std::size_t>> versionResource(const Bytes& file) {
    if (file.u16(0) != 0x5A4D) return std::nullopt;  // "MZ"
    const auto pe = file.u32(0x3C);
    if (!pe || file.u32(*pe) != 0x00004550) return std::nullopt;  // "PE\0\0"
    const std::size_t coff = *pe + 4;
    const auto sectionCount = file.u16(coff + 2);
    const auto optionalSize = file.u16(coff + 16);
    if (!sectionCount || !optionalSize) return std::nullopt;
    const std::size_t optional = coff + 20;
    const auto magic = file.u16(optional);
    if (magic != 0x10B && magic != 0x20B) return std::nullopt;
    const std::size_t directories = optional + (magic == 0x10B ? 96 : 112);
    const auto directoryCount = file.u32(directories - 4);
    if (!directoryCount || *directoryCount < 3) return std::nullopt;
    const auto resourceRva = file.u32(directories + 2 * 8);
    if (!resourceRva || *resourceRva == 0) return std::nullopt;

    std::vector<Section> sections;
    for (std::size_t i = 0, at = optional + *optionalSize; i < *sectionCount; ++i, at += 40) {
        const auto va = file.u32(at + 12), vsize = file.u32(at + 8), rsize = file.u32(at + 16),
                   roffset = file.u32(at + 20);
        if (!va || !vsize || !rsize || !roffset) return std::nullopt;
        sections.push_back({*va, *vsize, *roffset, *rsize});
    }
    const auto root = fileOffset(sections, *resourceRva);
    if (!root) return std::nullopt;

    // Three levels: type, name, language. The version resource's type is 16;
    // below it the first name and the first language are taken.
    std::size_t directory = *root;
    for (int level = 0; level < 3; ++level) {
        const auto named = file.u16(directory + 12), numbered = file.u16(directory + 14);
        if (!named || !numbered) return std::nullopt;
        const std::size_t entries = static_cast<std::size_t>(*named) + *numbered;
        std::optional<std::uint32_t> target;
        for (std::size_t i = 0; i < entries && !target; ++i) {
            const std::size_t entry = directory + 16 + 8 * i;
            const auto id = file.u32(entry), offset = file.u32(entry + 4);
            if (!id || !offset) return std::nullopt;
            if (level > 0 || (i >= *named && *id == versionResourceType)) target = *offset;
        }
        if (!target) return std::nullopt;
        const bool subdirectory = (*target & 0x80000000u) != 0;
        if (subdirectory != (level < 2)) return std::nullopt;
        directory = *root + (*target & 0x7FFFFFFFu);
    }
    const auto dataRva = file.u32(directory), dataSize = file.u32(directory + 4);
    if (!dataRva || !dataSize) return std::nullopt;
    const auto data = fileOffset(sections, *dataRva);
    if (!data || !file.has(*data, *dataSize)) return std::nullopt;
    return std::make_pair(*data, static_cast<std::size_t>(*dataSize));
}

// One block of VS_VERSIONINFO: a length, a value length, a type (1 text),
// a zero-ended UTF-16 key, then the value and the child blocks, each
// starting on a 4-byte boundary.
struct Block {
    std::size_t start = 0, end = 0;
    std::u16string key;
    std::size_t value = 0, valueLength = 0;  // bytes
    bool text = false;
    std::size_t children = 0;
};

std::size_t aligned(std::size_t offset, std::size_t base) { return base + ((offset - base + 3) & ~std::size_t{3}); }

std::optional<Block> readBlock(const Bytes& file, std::size_t start, std::size_t limit, std::size_t base) {
    Block block;
    const auto length = file.u16(start), valueLength = file.u16(start + 2), type = file.u16(start + 4);
    if (!length || !valueLength || !type || *length < 6 || start + *length > limit) return std::nullopt;
    block.start = start;
    block.end = start + *length;
    std::size_t at = start + 6;
    for (;; at += 2) {
        const auto unit = file.u16(at);
        if (!unit || at + 2 > block.end) return std::nullopt;
        if (*unit == 0) break;
        block.key += static_cast<char16_t>(*unit);
    }
    block.text = *type == 1;
    block.value = std::min(aligned(at + 2, base), block.end);
    block.valueLength = std::min<std::size_t>(*valueLength * (block.text ? 2u : 1u), block.end - block.value);
    block.children = std::min(aligned(block.value + block.valueLength, base), block.end);
    return block;
}

bool sameKey(const std::u16string& a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char32_t c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; };
        if (lower(a[i]) != lower(static_cast<unsigned char>(b[i]))) return false;
    }
    return true;
}

std::optional<Block> child(const Bytes& file, const Block& parent, std::string_view key, std::size_t base) {
    for (std::size_t at = parent.children; at + 6 <= parent.end;) {
        const auto block = readBlock(file, at, parent.end, base);
        if (!block) return std::nullopt;
        if (sameKey(block->key, key)) return block;
        at = aligned(block->end, base);
    }
    return std::nullopt;
}

std::optional<Block> path(const Bytes& file, Block block, std::initializer_list<std::string_view> keys,
                          std::size_t base) {
    for (std::string_view key : keys) {
        auto next = child(file, block, key, base);
        if (!next) return std::nullopt;
        block = *next;
    }
    return block;
}

std::string utf8(const Bytes& file, std::size_t start, std::size_t bytes) {
    std::string out;
    for (std::size_t at = start; at + 2 <= start + bytes; at += 2) {
        char32_t c = *file.u16(at);
        if (c == 0) break;
        if (c >= 0xD800 && c < 0xDC00 && at + 4 <= start + bytes) {
            const char32_t low = *file.u16(at + 2);
            if (low >= 0xDC00 && low < 0xE000) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                at += 2;
            }
        }
        appendUtf8(out, c);
    }
    return out;
}

std::optional<Bytes> readFile(const std::string& name) {
    std::error_code error;
    const auto size = std::filesystem::file_size(name, error);
    if (error || size == 0 || size > largestFile || !std::filesystem::is_regular_file(name, error)) return std::nullopt;
    std::ifstream in(name, std::ios::binary);
    std::vector<unsigned char> data(static_cast<std::size_t>(size));
    if (!in.read(reinterpret_cast<char*>(data.data()), static_cast<std::streamsize>(data.size()))) return std::nullopt;
    return Bytes(std::move(data));
}

}  // namespace

std::string GetFileVersion(const std::string& fileName) {
    if (fileName.empty()) return {};
    const auto file = readFile(fileName);
    if (!file) return {};
    const auto resource = versionResource(*file);
    if (!resource) return {};
    const auto [base, size] = *resource;
    const auto root = readBlock(*file, base, base + size, base);
    if (!root) return {};
    const auto translations = path(*file, *root, {"VarFileInfo", "Translation"}, base);
    if (!translations) return {};
    // Each entry is a language and a code page; the first whose string table
    // holds a FileVersion gives it.
    for (std::size_t at = translations->value; at + 4 <= translations->value + translations->valueLength; at += 4) {
        char table[32];
        std::snprintf(table, sizeof table, "0%x0%x", static_cast<unsigned>(*file->u16(at)),
                      static_cast<unsigned>(*file->u16(at + 2)));
        const auto version = path(*file, *root, {"StringFileInfo", table, "FileVersion"}, base);
        if (version) return utf8(*file, version->value, version->valueLength);
    }
    return {};
}

}  // namespace mxbook
