// The version-resource reader on any bytes: a text or nothing, never a
// crash or a read outside the file.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "mxbook/environment.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("mxbook-fuzz-" + std::to_string(getpid()) + ".dll");
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const std::string version = mxbook::GetFileVersion(path.string());
    return version.size() > size ? 1 : 0;
}
