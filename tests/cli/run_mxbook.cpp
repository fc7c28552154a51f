#include "run_mxbook.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <thread>

namespace mxbook::testing {

namespace {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

Outcome runMxbook(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                  const RunOptions& options) {
    const auto out = folder / "stdout.txt", err = folder / "stderr.txt";
    std::vector<std::string> environment = options.environment;  // copied before forking
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
        dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        for (std::string& variable : environment) putenv(variable.data());
        std::vector<char*> argv = {const_cast<char*>(MXBOOK_CLI)};
        for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        execv(MXBOOK_CLI, argv.data());
        _exit(127);
    }
    int status = 0;
    if (options.interruptAfter) {
        std::this_thread::sleep_for(*options.interruptAfter);
        kill(child, SIGINT);
        // A program that ignores the interrupt is not left running.
        for (int waited = 0; waitpid(child, &status, WNOHANG) == 0; ++waited) {
            if (waited == 100) kill(child, SIGKILL);
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    } else {
        waitpid(child, &status, 0);
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
}

db::Connection openMainDatabase(const std::string& root) {
    db::Connection connection("Provider=LCPI.IBProvider.5.Free;User ID=SYSDBA;Location=" + root + "/VELMO/NALET.FDB");
    connection.open();
    return connection;
}

}  // namespace mxbook::testing
