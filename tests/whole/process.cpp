#include "tests/whole/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <system_error>

namespace {

std::string read_file(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

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
    // The programs end without freeing anything, on purpose, and so do the graphics drivers.
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

TemporaryDirectory::TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "skav-display-XXXXXX").string();
    if (!mkdtemp(name.data())) throw_errno("mkdtemp");
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

Process::Process(const Command& command) {
    std::vector<std::string> words = command.words;
    std::vector<std::string> environment = changed_environment(command);
    const std::vector<char*> arguments = pointers(words);
    const std::vector<char*> variables = pointers(environment);
    const std::string output_path = directory_.path() / "output";
    const std::string errors_path = directory_.path() / "errors";
    int input[2];
    if (pipe2(input, O_CLOEXEC) != 0) throw_errno("pipe");

    id_ = fork();
    if (id_ < 0) throw_errno("fork");
    if (id_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (const int number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
        dup2(input[0], STDIN_FILENO);
        redirect(STDOUT_FILENO, output_path, O_WRONLY | O_CREAT);
        redirect(STDERR_FILENO, errors_path, O_WRONLY | O_CREAT);
        if (!command.directory.empty() && chdir(command.directory.c_str()) != 0) _exit(126);
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

std::string Process::output() const { return read_file(directory_.path() / "output"); }

std::string Process::errors() const { return read_file(directory_.path() / "errors"); }
