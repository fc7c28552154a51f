// Operating-time text by each parse rule: any text either parses or raises
// ConversionError, and what parses formats back to a text that parses to
// the same minutes.
#include <cstdlib>
#include <string_view>

#include "mxbook/error.h"
#include "mxbook/operating_time.h"

using namespace mxbook;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (auto parse : {&operating_time::parseHoursUpToColon, &operating_time::parseHoursBeforeLastThree,
                       &operating_time::parseHoursColonTwoDigits}) {
        try {
            const Minutes minutes = parse(text);
            if (minutes.count() < 0) continue;
            const std::string written = operating_time::format(minutes);
            if (operating_time::parseHoursUpToColon(written) != minutes) std::abort();
            if (operating_time::parseHoursColonTwoDigits(written) != minutes) std::abort();
        } catch (const ConversionError&) {
        }
    }
    return 0;
}
