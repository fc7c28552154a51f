#include "mxbook/error.h"

namespace mxbook {

ConversionError::ConversionError(std::string text, std::string_view what)
    : Error("'" + text + "' is not a valid " + std::string(what)), text_(std::move(text)) {}

}  // namespace mxbook
