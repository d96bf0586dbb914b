#include "hosts/desktop/display/screensaver.h"

#include <X11/extensions/scrnsaver.h>
#include <dbus/dbus.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>

namespace desktop {
namespace {

constexpr std::chrono::milliseconds kBusPatience(250);

void suspend_x_screensaver(Display* display) {
    int event_base = 0, error_base = 0;
    if (!XScreenSaverQueryExtension(display, &event_base, &error_base)) return;
    XScreenSaverSuspend(display, True);
    XFlush(display);
}

struct CloseConnection {
    void operator()(DBusConnection* connection) const {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};
using Connection = std::unique_ptr<DBusConnection, CloseConnection>;

struct UnrefMessage {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, UnrefMessage>;

// Only a bus that is there: libdbus's own look-up would start one.
std::string session_bus_address() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address && *address) return address;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || !*runtime) return {};
    const std::string socket = std::string(runtime) + "/bus";
    return access(socket.c_str(), R_OK | W_OK) == 0 ? "unix:path=" + socket : std::string();
}

Message hello() {
    return Message(
        dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"));
}

Message inhibit() {
    const char* service = "org.freedesktop.ScreenSaver";
    Message message(
        dbus_message_new_method_call(service, "/org/freedesktop/ScreenSaver", service, "Inhibit"));
    if (!message) return message;
    const char* application = program_invocation_short_name;
    const char* reason = "Playing";
    dbus_message_set_auto_start(message.get(), FALSE);
    dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &application, DBUS_TYPE_STRING, &reason,
                             DBUS_TYPE_INVALID);
    return message;
}

// Sends both calls without waiting for the first one's answer, and pumps the connection until they are out
// and the second is answered: no call here can wait for a bus that hangs.
void inhibit_session_screensaver() {
    static Connection connection; // the request ends when this closes
    const std::string address = session_bus_address();
    if (address.empty()) return;
    connection.reset(dbus_connection_open_private(address.c_str(), nullptr));
    if (!connection) return;
    dbus_connection_set_exit_on_disconnect(connection.get(), FALSE);

    const Message first = hello(), second = inhibit();
    dbus_uint32_t serial = 0;
    if (!first || !second) return;
    if (!dbus_connection_send(connection.get(), first.get(), nullptr)) return;
    if (!dbus_connection_send(connection.get(), second.get(), &serial)) return;

    const auto give_up = std::chrono::steady_clock::now() + kBusPatience;
    while (std::chrono::steady_clock::now() < give_up) {
        if (!dbus_connection_read_write(connection.get(), 20)) return;
        while (const Message answer{dbus_connection_pop_message(connection.get())}) {
            if (dbus_message_get_reply_serial(answer.get()) == serial) return;
        }
    }
}

} // namespace

void keep_screen_awake(Display* display) {
    suspend_x_screensaver(display);
    inhibit_session_screensaver();
}

} // namespace desktop
