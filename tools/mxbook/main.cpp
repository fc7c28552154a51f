// mxbook: the command-line face of the library.
#include <iostream>
#include <string_view>

#include "demo.h"
#include "mxbook/error.h"

namespace {

constexpr const char* usage = "usage: mxbook demo\n";

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 || std::string_view(argv[1]) != "demo") {
        std::cerr << usage;
        return 1;
    }
    try {
        return mxbook::cli::runDemo(std::cout);
    } catch (const mxbook::Error& error) {
        std::cerr << "mxbook: " << error.what() << "\n";
        return 2;
    }
}
