// What stands on an X screen, as the server has it.
#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct Color {
    int red, green, blue; // 0..255

    bool operator==(const Color& other) const {
        return red == other.red && green == other.green && blue == other.blue;
    }
    bool operator!=(const Color& other) const { return !(*this == other); }
};
std::ostream& operator<<(std::ostream& stream, const Color& color);

// A picture, the first row on top.
class Pixels {
public:
    Pixels(int width, int height, std::vector<Color> pixels)
        : width_(width), height_(height), pixels_(std::move(pixels)) {}
    int width() const { return width_; }
    int height() const { return height_; }
    Color at(int x, int y) const { return pixels_[static_cast<std::size_t>(y) * width_ + x]; }

private:
    int width_, height_;
    std::vector<Color> pixels_;
};

// Looks at a server's screen and what is on it, and does what a user or a window manager does there.
class Viewer {
public:
    explicit Viewer(const std::string& display_name);

    Display* display() const { return display_.get(); }

    // All of the root window with what is on it.
    Pixels picture() const;

    // Size of a monitor's mode, as "1024x768"; empty while it is off.
    std::string mode(int monitor = 0) const;

    // Does what a user's settings program does: brings a monitor into the mode of that size, written as above, with
    // the upper left corner at (x, 0), or switches it off.
    void set_mode(const std::string& size, int monitor = 0, int x = 0) const;
    void switch_off(int monitor = 0) const;

    // The program's window: a visible one of that class. None where there is none.
    Window find_window(const std::string& class_name) const;

    // The pointer's opaque pixels: 0 while it is hidden.
    int visible_pointer_pixels() const;

    void move_pointer(int x, int y) const;
    void resize(Window window, int width, int height) const;
    void unmap(Window window) const;
    void destroy(Window window) const;

    // Ends the connection of the client that made the window.
    void kill_client_of(Window window) const;

    // Asks the window to close, as a window manager does.
    void ask_to_close(Window window) const;

    // The server's screen saver: sets its time to start, and whether it has.
    void blank_after(int seconds) const;
    bool is_blanked() const;

    // Whether a window manager is running and ready.
    bool is_managed() const;

    // Leaves on the root window what a window manager leaves that is killed: the number of a window that is no more.
    void leave_mark_of_dead_window_manager() const;

private:
    struct Close {
        void operator()(Display* display) const { XCloseDisplay(display); }
    };
    std::unique_ptr<Display, Close> display_;
};
