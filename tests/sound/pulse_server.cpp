#include "tests/sound/pulse_server.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/sound/urgent.h"
#include "tests/support/process.h"

namespace {

bool answers(const std::string& socket_path) {
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return false;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socket_path.c_str(), sizeof(address.sun_path) - 1);
    const bool connected =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    close(descriptor);
    return connected;
}

} // namespace

void hide_sound_devices(const TestFolder& folder) {
    const std::string& path = folder.path();
    for (const char* name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "PULSE_RUNTIME_PATH",
                             "PULSE_STATE_PATH", "PULSE_CONFIG_PATH"})
        setenv(name, path.c_str(), 1);
    setenv("PULSE_COOKIE", (folder / "cookie").c_str(), 1);
    setenv("PULSE_SERVER", ("unix:" + (folder / "server")).c_str(), 1);
    setenv("ALSA_CONFIG_PATH", (folder / "no-alsa").c_str(), 1);
    setenv("JACK_NO_START_SERVER", "1", 1);
    unsetenv("DISPLAY"); // a desktop's sound server is announced there too
}

PulseServer::PulseServer() {
    hide_sound_devices(folder_);
    start();
}

void PulseServer::start() {
    const std::string socket_path = folder_ / "server";
    const std::string protocol =
        "module-native-protocol-unix socket=" + socket_path + " auth-anonymous=1 auth-cookie-enabled=0";

    process_ = fork();
    if (process_ < 0) throw std::runtime_error("cannot start a process");
    if (process_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int nothing = open("/dev/null", O_RDWR);
        for (int descriptor = 0; descriptor < 3; ++descriptor) dup2(nothing, descriptor);
        // The device is loaded before the socket opens: whoever can connect finds it.
        execl(PULSEAUDIO_PROGRAM, "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
              "--use-pid-file=no", "--disable-shm=yes", "--system=false", "-L",
              "module-null-sink rate=44100 channels=2 sink_name=nothing norewinds=1", "-L", protocol.c_str(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    for (int tries = 0; !answers(socket_path); ++tries) {
        if (tries == 1000 || waitpid(process_, nullptr, WNOHANG) != 0)
            throw std::runtime_error("the test's sound server does not start");
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    make_urgent(true, process_); // the server itself sees to its device's thread only
}

PulseServer::~PulseServer() { kill(); }

void PulseServer::kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

void PulseServer::restart() {
    kill();
    start();
}

void PulseServer::freeze() { ::kill(process_, SIGSTOP); }
void PulseServer::thaw() { ::kill(process_, SIGCONT); }

void PulseServer::suspend(bool suspended) {
    run_program({{"pactl", "suspend-sink", "nothing", suspended ? "1" : "0"}});
}

void PulseServer::remove_device() { run_program({{"pactl", "unload-module", "module-null-sink"}}); }
void PulseServer::add_device() {
    run_program({{"pactl", "load-module", "module-null-sink", "rate=44100", "channels=2", "sink_name=nothing",
                  "norewinds=1"}});
}
