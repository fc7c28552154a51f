// Connection strings: any text parses or raises db::Error, and the error's
// message is made of the parser's own words and an item number only: never
// of the string's text, which may hold a password.
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
        const std::string prefix = "malformed connection string: item ";
        if (message.rfind(prefix, 0) != 0) std::abort();
        const std::size_t words = message.find_first_not_of("0123456789", prefix.size());
        static const std::string known[] = {" is not True or False", " has no '='", " has no name",
                                            " has an unclosed quote", " has text after its closing quote"};
        bool ours = false;
        for (const std::string& each : known) ours = ours || message.compare(words, std::string::npos, each) == 0;
        if (!ours) std::abort();
    }
    return 0;
}
