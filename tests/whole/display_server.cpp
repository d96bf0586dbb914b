#include "tests/whole/display_server.h"

#include <signal.h>

#include <fstream>
#include <stdexcept>

namespace {

constexpr const char* kXorgConfiguration = R"(
Section "Device"
    Identifier "device"
    Driver "dummy"
    VideoRam 16384
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
    Modeline "desktop" 108.00 1280 1376 1488 1800 960 961 964 1000
    Modeline "other" 108.00 800 896 1008 1320 600 601 604 640
    Modeline "show" 64.512 1024 1048 1184 1344 768 771 777 800
EndSection
Section "Screen"
    Identifier "screen"
    Device "device"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "desktop" "show" "other"
    EndSubSection
EndSection
)";

} // namespace

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
    const TestFolder& folder = server->folder_;
    std::ofstream(folder / "xorg.conf") << kXorgConfiguration;
    const bool started =
        server->start({"Xorg", "-displayfd", "1", "-config", folder / "xorg.conf", "-logfile",
                       folder / "xorg.log", "-noreset", "-nolisten", "tcp", "-novtswitch", "-sharevts"});
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

void DisplayServer::end() {
    process_->send(SIGTERM);
    process_->wait();
}
