// Dates in the short format: any text parses or raises ConversionError, and
// a date that parses is written back to a text that parses to it again.
#include <cstdlib>
#include <string_view>

#include "mxbook/error.h"
#include "mxbook/format.h"

using namespace mxbook;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const char* pattern : {"dd.mm.yyyy", "dd.mm.yy", "yyyy-mm-dd", "m/d/yyyy"}) {
        FormatSettings settings;
        settings.shortDateFormat = pattern;
        try {
            const Date date = parseShortDate(text, settings);
            FormatSettings full = settings;
            full.shortDateFormat = "dd.mm.yyyy";
            if (parseShortDate(formatDate(date, "dd.mm.yyyy"), full) != date) std::abort();
        } catch (const ConversionError&) {
        }
    }
    return 0;
}
