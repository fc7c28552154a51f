// Running the built mxbook program as a user runs it, for the command-line tests.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "mxbook/data/connection.h"

namespace mxbook::testing {

struct Outcome {
    int exitCode;  // -1 when the program did not exit by itself
    std::string out;
    std::string err;
};

struct RunOptions {
    std::vector<std::string> environment;  // "NAME=value" set for the program alone
    std::optional<std::chrono::milliseconds> interruptAfter;  // then SIGINT (and SIGKILL 10 s later)
};

// Runs the program with `arguments`, no shell between and nothing on its
// standard input; its output passes through files in `folder`.
Outcome runMxbook(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                  const RunOptions& options = {});

// The main database `mxbook init --root ROOT` created, opened.
db::Connection openMainDatabase(const std::string& root);

}  // namespace mxbook::testing
