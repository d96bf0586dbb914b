#include "tests/support/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <initializer_list>
#include <system_error>

namespace {

[[noreturn]] void throw_errno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::vector<std::string> changed_environment(const Command& command) {
    std::map<std::string, std::string> values;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        const auto equals = text.find('=');
        values[text.substr(0, equals)] = text.substr(equals + 1);
    }
    values["ASAN_OPTIONS"] = "detect_leaks=0";
    for (const auto& [name, value] : command.environment) {
        if (value) {
            values[name] = *value;
        } else {
            values.erase(name);
        }
    }
    std::vector<std::string> entries;
    for (const auto& [name, value] : values) entries.push_back(name + "=" + value);
    return entries;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

void redirect(int descriptor, const std::string& path, int flags) {
    const int file = open(path.c_str(), flags, 0600);
    dup2(file, descriptor);
    close(file);
}

} // namespace

Process::Process(const Command& command) {
    std::vector<std::string> words = command.arguments;
    std::vector<std::string> environment = changed_environment(command);
    const std::vector<char*> arguments = pointers(words);
    const std::vector<char*> variables = pointers(environment);
    const std::string output_path = folder_ / "output";
    const std::string errors_path = folder_ / "errors";
    int input[2];
    if (pipe2(input, O_CLOEXEC) != 0) throw_errno("pipe");
    const auto size = static_cast<ssize_t>(command.input.size());
    if (write(input[1], command.input.data(), command.input.size()) != size)
        throw_errno("write"); // fits into a pipe

    id_ = fork();
    if (id_ < 0) throw_errno("fork");
    if (id_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (const int number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
        dup2(input[0], STDIN_FILENO);
        redirect(STDOUT_FILENO, output_path, O_WRONLY | O_CREAT);
        redirect(STDERR_FILENO, errors_path, O_WRONLY | O_CREAT);
        if (!command.folder.empty() && chdir(command.folder.c_str()) != 0) _exit(126);
        execvpe(arguments[0], arguments.data(), variables.data());
        _exit(127);
    }
    close(input[0]);
    if (command.input_stays_open) {
        input_ = input[1];
    } else {
        close(input[1]);
    }
}

Process::~Process() {
    if (running()) {
        kill(id_, SIGKILL);
        wait();
    }
    if (input_ >= 0) close(input_);
}

std::optional<int> Process::wait(std::chrono::milliseconds patience) {
    if (status_) return status_;
    eventually(
        [this] {
            int status = 0;
            if (waitpid(id_, &status, WNOHANG) != id_) return false;
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return true;
        },
        patience);
    return status_;
}

void Process::send(int signal_number) const { kill(id_, signal_number); }

std::string Process::output() const { return file_bytes(folder_ / "output"); }

std::string Process::errors() const { return file_bytes(folder_ / "errors"); }

Finished run_program(const Command& command) {
    Process process(command);
    std::optional<int> status;
    while (!status) status = process.wait();
    return {*status, process.output(), process.errors()};
}
