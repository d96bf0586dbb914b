#include "tests/hosts/recording/recording.h"

#include <cmath>
#include <cstdlib>
#include <ostream>

#include "tests/hosts/recording/record.h"

template class std::vector<recording::Argument>;
template class std::vector<recording::Call>;

namespace recording {

bool g_logging = true;
GlModel g_gl;

namespace {

bool same(const Argument& a, const Argument& b) {
    if (a.index() != b.index()) return false;
    if (std::holds_alternative<std::string>(a)) return a == b;
    const double x = std::get<double>(a);
    const double y = std::get<double>(b);
    return x == y && std::signbit(x) == std::signbit(y);
}

} // namespace

bool operator==(const Call& a, const Call& b) {
    if (a.name != b.name || a.arguments.size() != b.arguments.size()) return false;
    for (size_t i = 0; i < a.arguments.size(); ++i) {
        if (!same(a.arguments[i], b.arguments[i])) return false;
    }
    return true;
}

std::ostream& operator<<(std::ostream& out, const Call& call) {
    const auto precision = out.precision(17);
    out << call.name << '(';
    const char* separator = "";
    for (const Argument& value : call.arguments) {
        out << separator;
        std::visit([&out](const auto& v) { out << v; }, value);
        separator = ", ";
    }
    out.precision(precision);
    return out << ')';
}

Log& log() {
    static Log calls;
    return calls;
}

std::function<void(const Call&)>& observer() {
    static std::function<void(const Call&)> function;
    return function;
}

void write(const Call& call) {
    log().push_back(call);
    if (observer()) observer()(call);
}

void set_logging(bool on) { g_logging = on; }

Log calls_of(const std::function<void()>& body) {
    Log before;
    before.swap(log());
    body();
    Log calls;
    calls.swap(log());
    log().swap(before);
    return calls;
}

Log only(const Log& calls, const std::string& name) {
    Log found;
    for (const Call& call : calls) {
        if (call.name == name) found.push_back(call);
    }
    return found;
}

int count(const Log& calls, const std::string& name) { return static_cast<int>(only(calls, name).size()); }

unsigned pending_error() { return g_gl.error; }
Log& errors() { return g_gl.errors; }
int modelview_depth() { return g_gl.modelview_depth; }
int projection_depth() { return g_gl.projection_depth; }
const std::vector<Upload>& uploads() { return g_gl.uploads; }
GlModel save_gl() { return g_gl; }
void restore_gl(const GlModel& model) { g_gl = model; }

Script& script() {
    static Script instance;
    return instance;
}

} // namespace recording

// The programs of this host are linked with --wrap=exit: what the show ends is the run, not the test.
[[noreturn]] void end_run(int status) asm("__wrap_exit");
void end_run(int status) { throw recording::Exited{status}; }
