// Keeping the screen awake.
#include <dbus/dbus.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "tests/whole/display_test.h"

namespace {

TEST(ScreenSaver, OfTheServerStaysAwayWhileTheShowPlays) {
    const auto server = DisplayServer::virtual_screen(640, 480);
    const Viewer screen(server->name());
    Process show(test_show(*server));
    ASSERT_TRUE(eventually([&] { return shows_test_picture(screen.picture(), {0, 0, 640, 480}); }));
    screen.blank_after(1);
    EXPECT_FALSE(eventually([&] { return screen.is_blanked(); }, std::chrono::seconds(4)));
    show.send(SIGTERM);
    show.wait();
    EXPECT_TRUE(eventually([&] { return screen.is_blanked(); })) << "the control: without the show it comes";
}

// A session bus of the test's own, on which the test is the session's screen saver.
class SessionBus {
public:
    SessionBus()
        : daemon_(Command{{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
                           "--address=unix:dir=" + folder_.path()}}) {
        eventually([this] { return count_lines(daemon_.output()) == 1 || !daemon_.running(); });
        address_ = daemon_.output();
        if (!address_.empty()) address_.pop_back();
        connection_ = dbus_connection_open_private(address_.c_str(), nullptr);
        if (!connection_) return;
        dbus_connection_set_exit_on_disconnect(connection_, FALSE);
        dbus_bus_register(connection_, nullptr);
        dbus_bus_request_name(connection_, "org.freedesktop.ScreenSaver", 0, nullptr);
    }
    ~SessionBus() {
        if (!connection_) return;
        dbus_connection_close(connection_);
        dbus_connection_unref(connection_);
    }
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    bool running() const { return connection_ != nullptr; }
    const std::string& address() const { return address_; }

    // The next request to keep away that has come, answered: who asks, or nothing.
    std::string take_request() {
        dbus_connection_read_write(connection_, 0);
        DBusMessage* message = dbus_connection_pop_message(connection_);
        if (!message) return {};
        const char *who = "", *why = "";
        const bool is_request =
            dbus_message_is_method_call(message, "org.freedesktop.ScreenSaver", "Inhibit") &&
            dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &who, DBUS_TYPE_STRING, &why,
                                  DBUS_TYPE_INVALID);
        const std::string result = is_request ? who : "";
        if (is_request) answer(message);
        dbus_message_unref(message);
        return result;
    }

private:
    void answer(DBusMessage* request) {
        const dbus_uint32_t cookie = 1;
        DBusMessage* message = dbus_message_new_method_return(request);
        dbus_message_append_args(message, DBUS_TYPE_UINT32, &cookie, DBUS_TYPE_INVALID);
        dbus_connection_send(connection_, message, nullptr);
        dbus_connection_flush(connection_);
        dbus_message_unref(message);
    }

    TestFolder folder_;
    Process daemon_;
    std::string address_;
    DBusConnection* connection_ = nullptr;
};

TEST(ScreenSaver, OfTheSessionIsAskedToStayAway) {
    SessionBus bus;
    ASSERT_TRUE(bus.running()) << "install the package dbus";
    const auto server = DisplayServer::virtual_screen(640, 480);
    Command command = test_show(*server);
    command.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
    Process show(command);
    EXPECT_TRUE(eventually([&] { return bus.take_request() == "test-show"; }));
    EXPECT_TRUE(eventually([&] { return count_lines(show.output()) == 2; }));
}

// A socket that accepts connections, by its backlog, and never answers.
class SilentSocket {
public:
    SilentSocket() : descriptor_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().c_str(), sizeof address.sun_path - 1);
        usable_ = bind(descriptor_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                  listen(descriptor_, 8) == 0;
    }
    ~SilentSocket() { close(descriptor_); }
    SilentSocket(const SilentSocket&) = delete;
    SilentSocket& operator=(const SilentSocket&) = delete;

    bool usable() const { return usable_; }
    std::string path() const { return folder_ / "bus"; }

private:
    TestFolder folder_;
    int descriptor_;
    bool usable_;
};

TEST(ScreenSaver, OfASessionThatHangsIsNotWaitedFor) {
    const SilentSocket bus;
    ASSERT_TRUE(bus.usable());
    const auto server = DisplayServer::virtual_screen(640, 480);
    const Viewer screen(server->name());
    Command command = test_show(*server);
    command.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + bus.path();
    Process show(command);
    EXPECT_TRUE(eventually(
        [&] {
            return shows_test_picture(screen.picture(), {0, 0, 640, 480});
        },
        std::chrono::seconds(20))); // libdbus itself would wait for 25
}

} // namespace
