# Writes a C++ source that holds the text of INPUT as a string_view named
# SYMBOL in namespace NAMESPACE. Run as: cmake -DINPUT=.. -DOUTPUT=.. -DSYMBOL=.. -DNAMESPACE=.. -P EmbedText.cmake
file(READ "${INPUT}" content)
set(delimiter "mxbook_text")
string(FIND "${content}" ")${delimiter}\"" clash)
if(NOT clash EQUAL -1)
    message(FATAL_ERROR "${INPUT} contains the raw-string delimiter )${delimiter}\"")
endif()
file(WRITE "${OUTPUT}.tmp"
"// Generated from ${INPUT} at build time; edit that file instead.
#include <string_view>

namespace ${NAMESPACE} {
extern const std::string_view ${SYMBOL};
const std::string_view ${SYMBOL} = R\"${delimiter}(${content})${delimiter}\";
}
")
# Only a changed text touches the output, so an unchanged file costs no rebuild.
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.tmp")
