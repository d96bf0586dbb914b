// The desktop's sounds play in real time.
#include <chrono>
#include <thread>

#include "tests/sound/hosts/let_pass.h"

void let_pass(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }
