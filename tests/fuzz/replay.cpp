// Runs a fuzz target without a fuzzer: on the files that it is given, or on a fixed number of random inputs
// that are the same in every run.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void run_file(const char* path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s: cannot be read\n", path);
        std::exit(2);
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

void run_random_inputs(unsigned count) {
    for (unsigned seed = 0; seed < count; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> input(random() % 600);
        for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random());
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        run_random_inputs(1500);
        return 0;
    }
    for (int i = 1; i < argc; ++i) run_file(argv[i]);
}
