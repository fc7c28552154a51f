// Errors raised by the library. Everything it throws derives from mxbook::Error,
// so a host can catch all of it in one place.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace mxbook {

class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A text is not the number, time or date it should be.
class ConversionError : public Error {
public:
    // `what` names the expected kind of value, e.g. "integer" or "date".
    ConversionError(std::string text, std::string_view what);

    const std::string& text() const noexcept { return text_; }

private:
    std::string text_;
};

// A caller's argument the function cannot use: a column number outside the
// row, a parameter the statement does not have, a value of the wrong shape.
class ArgumentError : public Error {
public:
    using Error::Error;
};

// Stored data that a rule cannot use: a row that should be there and is not,
// a column holding what no rule allows.
class DataError : public Error {
public:
    using Error::Error;
};

}  // namespace mxbook
