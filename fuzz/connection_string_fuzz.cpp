// Connection strings: any text parses or raises db::Error, and the error's
// message never carries the text of the string (it may hold a password).
#include <cstdlib>
#include <string>

#include "mxbook/data/connection_string.h"
#include "mxbook/data/error.h"

using namespace mxbook;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        const db::ConnectionString parsed = db::ConnectionString::parse(text);
        if (parsed.location.size() > text.size()) std::abort();
    } catch (const db::Error& error) {
        const std::string message = error.what();
        if (text.size() >= 12 && message.find(text) != std::string::npos) std::abort();
    }
    return 0;
}
