// skav-pack: packs a picture into the format of the loading picture, or unpacks one.
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/pack/picture.h"
#include "tools/pack/picture_packer.h"

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

constexpr char kHelp[] =
    "Usage: skav-pack [OPTION]... PICTURE OUTPUT\n"
    "       skav-pack --decode PACKED OUTPUT\n"
    "\n"
    "Packs PICTURE, a PNG or a binary PPM (P6), into OUTPUT and prints the size, the bits per pixel and the\n"
    "PSNR of what the program will show. Width and height are multiples of 8 pixels, up to 1016; other\n"
    "multiples of 4, up to 1020, work too, but the format has no colour for the lowest four rows of a "
    "height\n"
    "that is not a multiple of 8. With --decode, writes what PACKED holds into OUTPUT, a PNG.\n"
    "\n"
    "  -q, --quant N      quantiser, 1 (nearly lossless) to 255 (coarse); 20 if not given\n"
    "  -l, --lambda X     squared error that one bit is worth: more makes a smaller file; chosen by the\n"
    "                     quantiser if not given\n"
    "  -s, --source NAME  write a C++ source file that defines the packed bytes as NAME and their number as\n"
    "                     NAMESize\n"
    "  -d, --decode       decode\n"
    "  -h, --help         print this and end\n"
    "\n"
    "Ends with status 0; 1 if a file cannot be read, packed or written; 2 if the command line is wrong.\n";

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Arguments {
    PackOptions options;
    std::string source_name; // empty: write the bytes themselves
    bool decode = false;
    bool help = false;
    std::vector<std::string> files;
};

int parse_quant(const std::string& text) {
    int quant = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), quant);
    if (error != std::errc() || end != text.data() + text.size() || quant < 1 || quant > 255)
        throw UsageError("the quantiser has to be a whole number from 1 to 255, not '" + text + "'");
    return quant;
}

double parse_lambda(const std::string& text) {
    double lambda = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), lambda);
    if (error != std::errc() || end != text.data() + text.size() || !(lambda > 0) || lambda > 1e9)
        throw UsageError("lambda has to be a number above 0 and up to 1e9, not '" + text + "'");
    return lambda;
}

std::string parse_name(const std::string& text) {
    const char* const first = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
    const std::string rest = std::string(first) + "0123456789";
    if (text.empty() || !std::strchr(first, text[0]) || text.find_first_not_of(rest) != std::string::npos)
        throw UsageError("the name in the source has to be an identifier, not '" + text + "'");
    return text;
}

Arguments parse(const std::vector<std::string>& words) {
    Arguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == words.size()) throw UsageError(word + " needs a value");
            return words[++i];
        };
        if (word == "-h" || word == "--help") {
            arguments.help = true;
            return arguments;
        }
        if (word == "-q" || word == "--quant")
            arguments.options.quant = parse_quant(value());
        else if (word == "-l" || word == "--lambda")
            arguments.options.lambda = parse_lambda(value());
        else if (word == "-s" || word == "--source")
            arguments.source_name = parse_name(value());
        else if (word == "-d" || word == "--decode")
            arguments.decode = true;
        else if (word.size() > 1 && word[0] == '-')
            throw UsageError("unknown option '" + word + "'");
        else
            arguments.files.push_back(word);
    }
    if (arguments.files.size() != 2) throw UsageError("two files are needed: what to read and what to write");
    if (arguments.decode && words.size() != 3) throw UsageError("--decode takes no other option");
    return arguments;
}

std::vector<std::uint8_t> read_bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error(path + ": " + std::strerror(errno));
    std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad()) throw std::runtime_error(path + ": it cannot be read");
    return bytes;
}

void write_file(const std::string& path, const std::string& content) {
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    file << content << std::flush;
    if (!file)
        throw std::runtime_error(path + ": " + (errno ? std::strerror(errno) : "it cannot be written"));
}

// C++ source that defines the bytes as NAME and their number as NAMESize.
std::string as_source(const std::string& name, const std::vector<std::uint8_t>& bytes) {
    std::ostringstream out;
    out << "// Written by skav-pack; change the picture and pack it again.\n"
        << "// clang-format off\n\n"
        << "#include <cstddef>\n\n"
        << "extern const unsigned char " << name << "[];\n"
        << "extern const std::size_t " << name << "Size;\n\n"
        << "const unsigned char " << name << "[" << bytes.size() << "] = {\n";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool ends_line = i % 20 == 19 || i + 1 == bytes.size();
        out << (i % 20 == 0 ? "    " : "") << static_cast<int>(bytes[i]) << (ends_line ? ",\n" : ", ");
    }
    out << "};\n\nconst std::size_t " << name << "Size = sizeof " << name << ";\n";
    return out.str();
}

void decode(const Arguments& arguments) {
    const std::vector<std::uint8_t> bytes = read_bytes(arguments.files[0]);
    Picture picture;
    try {
        picture = decode_picture(bytes);
    } catch (const std::exception& error) {
        throw std::runtime_error(arguments.files[0] + ": " + error.what());
    }
    write_png(arguments.files[1], picture);
}

void pack(const Arguments& arguments) {
    const Picture picture = read_picture(arguments.files[0], kMaxPackedSide);
    PackedPicture packed;
    try {
        packed = pack_picture(picture, arguments.options);
    } catch (const std::exception& error) {
        throw std::runtime_error(arguments.files[0] + ": " + error.what());
    }
    if (picture.height % 8 != 0)
        std::fprintf(
            stderr, "skav-pack: %s: the height is no multiple of 8: the lowest four rows lose their colour\n",
            arguments.files[0].c_str());
    const std::string raw(packed.bytes.begin(), packed.bytes.end());
    write_file(arguments.files[1],
               arguments.source_name.empty() ? raw : as_source(arguments.source_name, packed.bytes));
    std::printf("%d x %d pixels, quantiser %d: %zu bytes, %.3f bits per pixel, PSNR %.2f dB\n", picture.width,
                picture.height, arguments.options.quant, packed.bytes.size(),
                static_cast<double>(packed.bits) / (picture.width * picture.height),
                psnr(picture, decode_picture(packed.bytes)));
}

} // namespace

int main(int argc, char** argv) {
    try {
        const Arguments arguments = parse({argv + 1, argv + argc});
        if (arguments.help) {
            std::fputs(kHelp, stdout);
            return 0;
        }
        if (arguments.decode)
            decode(arguments);
        else
            pack(arguments);
        return 0;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "skav-pack: %s\nTry 'skav-pack --help'.\n", error.what());
        return kUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "skav-pack: %s\n", error.what());
        return kFailed;
    }
}
