#include "tests/whole/display_server.h"

#include <signal.h>

#include <stdexcept>

std::unique_ptr<DisplayServer> DisplayServer::virtual_screen(int width, int height,
                                                             const std::vector<std::string>& arguments) {
    std::unique_ptr<DisplayServer> server(new DisplayServer);
    const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
    std::vector<std::string> words = {"Xvfb", "-displayfd", "1", "-screen", "0", screen, "-nolisten", "tcp"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    if (!server->start(words)) throw std::runtime_error("Xvfb does not start: install the package xvfb");
    return server;
}

std::unique_ptr<DisplayServer> DisplayServer::with_modes() {
    std::unique_ptr<DisplayServer> server(new DisplayServer);
    const bool started = server->start({"Xorg", "-displayfd", "1", "-config", XORG_CONFIGURATION, "-logfile",
                                        server->folder_ / "xorg.log", "-noreset", "-nolisten", "tcp",
                                        "-novtswitch", "-sharevts"});
    if (!started) {
        throw std::runtime_error("Xorg does not start: install the packages xserver-xorg-core and "
                                 "xserver-xorg-video-dummy\n" +
                                 server->process_->errors());
    }
    return server;
}

bool DisplayServer::start(std::vector<std::string> words) {
    process_ = std::make_unique<Process>(Command{std::move(words)});
    eventually([this] {
        const std::string number = process_->output();
        const bool whole = !number.empty() && number.back() == '\n';
        if (whole) name_ = ":" + number.substr(0, number.size() - 1);
        return whole || !process_->running();
    });
    return !name_.empty() && process_->running();
}

void DisplayServer::freeze() { process_->send(SIGSTOP); }

void DisplayServer::end() {
    process_->send(SIGTERM);
    process_->wait();
}
