// Looks at the screen of $DISPLAY, and does what a user does there, for the faults.
//
//   screen mode            prints the size of the first monitor's mode, "1024x768"
//   screen set-mode SIZE   brings it into that mode
//   screen colors          prints how many colors are on the screen
//   screen sum             prints a number that another picture does not have
//   screen close CLASS     asks the window of that class to close
//   screen destroy CLASS   destroys it
//   screen kill CLASS      ends the connection of its program
#include <cstdlib>
#include <iostream>
#include <set>
#include <string>

#include "tests/whole/viewer.h"

namespace {

int number_of(const Color& color) { return color.red << 16 | color.green << 8 | color.blue; }

std::size_t count_colors(const Pixels& pixels) {
    std::set<int> colors;
    for (int y = 0; y < pixels.height(); ++y)
        for (int x = 0; x < pixels.width(); ++x) colors.insert(number_of(pixels.at(x, y)));
    return colors.size();
}

// FNV-1a, of the colors as numbers.
unsigned long long sum(const Pixels& pixels) {
    unsigned long long sum = 14695981039346656037ull;
    for (int y = 0; y < pixels.height(); ++y)
        for (int x = 0; x < pixels.width(); ++x)
            sum = (sum ^ static_cast<unsigned>(number_of(pixels.at(x, y)))) * 1099511628211ull;
    return sum;
}

} // namespace

int main(int argc, char** argv) {
    const char* const name = std::getenv("DISPLAY");
    if (argc < 2 || !name) return 2;
    const std::string action = argv[1], what = argc > 2 ? argv[2] : "";
    try {
        const Viewer viewer(name);
        if (action == "mode") {
            std::cout << viewer.mode() << "\n";
        } else if (action == "set-mode") {
            viewer.set_mode(what);
        } else if (action == "colors") {
            std::cout << count_colors(viewer.picture()) << "\n";
        } else if (action == "sum") {
            std::cout << sum(viewer.picture()) << "\n";
        } else if (action == "close" || action == "destroy" || action == "kill") {
            const Window window = viewer.find_window(what);
            if (window == None) return 1;
            if (action == "close") viewer.ask_to_close(window);
            if (action == "destroy") viewer.destroy(window);
            if (action == "kill") viewer.kill_client_of(window);
        } else {
            return 2;
        }
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
