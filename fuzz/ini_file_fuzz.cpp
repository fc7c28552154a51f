// Settings files: any content reads, a value written reads back as written,
// and every other section keeps its values.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "environment/ini_file.h"

using namespace mxbook::environment;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("mxbook-fuzz-" + std::to_string(getpid()) + ".ini");
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    IniFile file(path);
    const std::string before = file.readString("PTD", "CONNECTION_STRING", "none");
    file.readBool("BASE", "CONNECTED", false);
    file.readInteger("APPLICATION", "PROGRAM_ROOT", 0);
    file.writeString("BASE", "CONNECTION_STRING", "/HOME/ANNA/VELMO/NALET.FDB");
    const IniFile reread(path);
    if (reread.readString("BASE", "CONNECTION_STRING", "") != "/HOME/ANNA/VELMO/NALET.FDB") std::abort();
    if (reread.readString("PTD", "CONNECTION_STRING", "none") != before) std::abort();
    return 0;
}
