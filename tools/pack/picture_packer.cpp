#include "tools/pack/picture_packer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <set>
#include <stdexcept>
#include <string>

#include "show/stage/packed_picture.h"
#include "tools/pack/bit_writer.h"
#include "tools/pack/coefficient_search.h"

namespace {

// Beginnings kept after each block, and AC choices that each of them tries for the next.
constexpr std::size_t kBeamWidth = 24;
constexpr std::size_t kAcChoices = 6;

// Effect of a squared error of one sample on the squared error of the RGB picture, relative to luma's. A chroma
// sample covers four pixels.
constexpr double kLumaGain = 3 * 298.0 * 298.0;
constexpr double kCbWeight = 4 * (100.0 * 100.0 + 516.0 * 516.0) / kLumaGain;
constexpr double kCrWeight = 4 * (409.0 * 409.0 + 208.0 * 208.0) / kLumaGain;

// The wanted value of a sample. Every decoded value in low..high counts as exact.
struct Sample {
    double value;
    double low;
    double high;
    double weight;
};

// The samples in the order of the stream: luma rows, then chroma rows with Cb left and Cr right.
struct Sheet {
    int width;
    int rows; // of blocks
    std::vector<Sample> samples;

    const Sample& at(int x, int y) const {
        return samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(x)];
    }
};

struct Yuv {
    double y, u, v;
};

// The samples that the decoder turns into this colour, from its three colour equations.
Yuv yuv_of(double r, double g, double b) {
    // g = luma - (100 u + 208 v) / 256 with u = (b - luma) 256 / 516, v = (r - luma) 256 / 409
    const double share_b = 100.0 / 516.0;
    const double share_r = 208.0 / 409.0;
    const double luma = (g + share_b * b + share_r * r) / (1.0 + share_b + share_r);
    return {luma * 256.0 / 298.0 + 16.0, (b - luma) * 256.0 / 516.0 + 128.0,
            (r - luma) * 256.0 / 409.0 + 128.0};
}

// The decoder clamps beyond white and black. Pixels of pure white want a slightly higher luma, so that they stay
// white when the chroma samples are slightly off.
constexpr double kWhiteHeadroom = 3.0;

// The wanted luma of a pixel; for pure white and black, values beyond count as exact.
Sample luma_sample(double y, const std::uint8_t* rgb) {
    if (rgb[0] == 255 && rgb[1] == 255 && rgb[2] == 255)
        return {y + kWhiteHeadroom, y + kWhiteHeadroom, 255.0, 1.0};
    if (rgb[0] == 0 && rgb[1] == 0 && rgb[2] == 0) return {y, 0.0, y, 1.0};
    return {y, y, y, 1.0};
}

Sheet make_sheet(const Picture& picture) {
    const int w = picture.width;
    const int h = picture.height;
    Sheet sheet = {w, (h / 4) + (h / 4) / 2, {}};
    sheet.samples.reserve(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 3 / 2);
    std::vector<Yuv> yuv;
    yuv.reserve(static_cast<std::size_t>(w) * static_cast<std::size_t>(h));
    for (std::size_t i = 0; i < picture.rgb.size(); i += 3) {
        const std::uint8_t* rgb = &picture.rgb[i];
        yuv.push_back(yuv_of(rgb[0], rgb[1], rgb[2]));
        sheet.samples.push_back(luma_sample(yuv.back().y, rgb));
    }
    // One chroma sample stands for 2 by 2 pixels; their mean has the smallest error.
    const auto mean = [&](double Yuv::*part, int x, int y) {
        const auto pixel = [&](int px, int py) {
            return yuv[static_cast<std::size_t>(py) * static_cast<std::size_t>(w) +
                       static_cast<std::size_t>(px)].*
                   part;
        };
        return (pixel(x, y) + pixel(x + 1, y) + pixel(x, y + 1) + pixel(x + 1, y + 1)) / 4.0;
    };
    for (int y = 0; y < h; y += 2) {
        for (int x = 0; x < w; x += 2) {
            const double u = mean(&Yuv::u, x, y);
            sheet.samples.push_back({u, u, u, kCbWeight});
        }
        for (int x = 0; x < w; x += 2) {
            const double v = mean(&Yuv::v, x, y);
            sheet.samples.push_back({v, v, v, kCrWeight});
        }
    }
    return sheet;
}

// A block as it is written to the stream.
struct CodedBlock {
    int dc_change;
    std::array<int, 16> levels; // levels[0] is not used
};

// A beginning of the stream: the decoder's state after it, and its cost.
struct Beginning {
    double cost = 0.0;
    int dc = 0;
    int last_block = -1; // in the history
    std::array<unsigned char, 255> pred;
};

struct HistoryEntry {
    int before; // index of the block before this one, or -1
    CodedBlock block;
};

// Lengths of the codes, in bits.
int gamma_bits(unsigned value) {
    int k = 0;
    while ((value + 1) >> (k + 1)) ++k;
    return 2 * k + 1;
}

int dc_change_bits(int change) {
    return change == 0 ? 1 : 2 + gamma_bits(static_cast<unsigned>(std::abs(change)) - 1);
}

// The residual to aim at before the decoder's division by 16, which rounds to the nearest above zero, but up
// below it.
double before_rounding(double residual) { return residual <= -0.5 ? residual - 15.0 / 16.0 : residual; }

// The beam search over the blocks of a picture.
class Packer {
public:
    Packer(const Picture& picture, int quant, double lambda)
        : sheet_(make_sheet(picture)), quant_(quant), lambda_(lambda), blocks_x_(picture.width / 4),
          blocks_y_(picture.height / 4) {}

    std::vector<CodedBlock> run() {
        beam_.assign(1, Beginning());
        for (int row = 0; row < sheet_.rows; ++row) {
            if (row == 0 || row == blocks_y_)
                for (Beginning& beginning : beam_) beginning.pred.fill(kFirstPredictor);
            for (int column = 0; column < blocks_x_; ++column) code_block(row, column);
        }
        return trace_back();
    }

private:
    // A beginning extended by one way to code the next block.
    struct Extension {
        double cost;
        std::size_t from; // index of the beginning
        std::size_t ac;   // index of the AC choice
        int dc;
        unsigned char predictor;
    };

    // Extends the beam by the block in a row and column of blocks.
    void code_block(int row, int column) {
        Sample wanted[16];
        for (int i = 0; i < 16; ++i) wanted[i] = sheet_.at(4 * column + i % 4, 4 * row + i / 4);
        const bool has_left = block_has_left(column, blocks_x_, row >= blocks_y_);

        const int likely = predict_block(beam_[0].pred.data(), column, has_left);
        double residual[16];
        double weight = 0.0;
        for (int i = 0; i < 16; ++i) {
            residual[i] = before_rounding(wanted[i].value - likely);
            weight += wanted[i].weight / 16.0;
        }
        const std::vector<AcChoice> choices =
            search_coefficients(residual, weight, quant_, lambda_, kAcChoices);

        std::vector<Extension> extensions;
        for (std::size_t i = 0; i < beam_.size(); ++i) {
            const int prediction = predict_block(beam_[i].pred.data(), column, has_left);
            for (const int dc : dc_candidates(wanted, prediction, beam_[i].dc))
                for (std::size_t ac = 0; ac < choices.size(); ++ac)
                    extensions.push_back(extend(i, choices[ac], ac, dc, prediction, wanted));
        }
        keep_best(extensions, choices, column);
    }

    // DC levels to try: those around the nearest one, the unchanged one, and the nearest change with a shorter code.
    std::vector<int> dc_candidates(const Sample wanted[16], int prediction, int before) const {
        double mean = 0.0;
        for (int i = 0; i < 16; ++i) mean += before_rounding(wanted[i].value - prediction) / 16.0;
        const int right = nearest_dc(mean, quant_);
        std::set<int> candidates = {right - 1, right, right + 1, before};
        const int change = right - before;
        int shorter = 1;
        while (2 * shorter <= std::abs(change)) shorter *= 2;
        candidates.insert(before + (change < 0 ? 1 - shorter : shorter - 1));
        return {candidates.begin(), candidates.end()};
    }

    // Decodes the block as coded, and adds up error and bits.
    Extension extend(std::size_t from, const AcChoice& choice, std::size_t ac, int dc, int prediction,
                     const Sample wanted[16]) const {
        std::array<int, 16> coef = choice.levels;
        coef[0] = dc;
        unsigned char decoded[16];
        reconstruct_block(coef.data(), quant_, prediction, decoded);
        double error = 0.0;
        for (int i = 0; i < 16; ++i) {
            const double miss = decoded[i] - std::clamp<double>(decoded[i], wanted[i].low, wanted[i].high);
            error += wanted[i].weight * miss * miss;
        }
        const int bits = dc_change_bits(dc - beam_[from].dc) + choice.bits;
        return {beam_[from].cost + error + lambda_ * bits, from, ac, dc, block_predictor(decoded)};
    }

    // Makes the next beam from the cheapest extensions, only one of those with the same DC and predictor.
    void keep_best(std::vector<Extension>& extensions, const std::vector<AcChoice>& choices, int column) {
        std::sort(extensions.begin(), extensions.end(),
                  [](const Extension& a, const Extension& b) { return a.cost < b.cost; });
        std::vector<Beginning> next;
        std::set<std::pair<int, int>> seen;
        for (const Extension& extension : extensions) {
            if (!seen.insert({extension.dc, extension.predictor}).second) continue;
            const Beginning& before = beam_[extension.from];
            history_.push_back({before.last_block, {extension.dc - before.dc, choices[extension.ac].levels}});
            next.push_back(before);
            next.back().cost = extension.cost;
            next.back().dc = extension.dc;
            next.back().last_block = static_cast<int>(history_.size()) - 1;
            next.back().pred[static_cast<std::size_t>(column)] = extension.predictor;
            if (next.size() == kBeamWidth) break;
        }
        beam_ = std::move(next);
    }

    // The blocks of the cheapest beginning, in order.
    std::vector<CodedBlock> trace_back() const {
        std::vector<CodedBlock> blocks;
        for (int i = beam_[0].last_block; i >= 0; i = history_[static_cast<std::size_t>(i)].before)
            blocks.push_back(history_[static_cast<std::size_t>(i)].block);
        std::reverse(blocks.begin(), blocks.end());
        return blocks;
    }

    Sheet sheet_;
    int quant_;
    double lambda_;
    int blocks_x_;
    int blocks_y_;
    std::vector<Beginning> beam_; // cheapest first
    std::vector<HistoryEntry> history_;
};

void write_dc_change(BitWriter& writer, int change) {
    writer.write(change != 0, 1);
    if (change == 0) return;
    writer.write(change < 0, 1);
    writer.write_gamma(static_cast<unsigned>(std::abs(change)) - 1);
}

void write_coefficients(BitWriter& writer, const std::array<int, 16>& levels) {
    int last = 15;
    while (last > 0 && levels[static_cast<std::size_t>(last)] == 0) --last;
    writer.write(static_cast<unsigned>(last), 4);
    if (last == 0) return;
    int zeros = static_cast<int>(std::count(levels.begin() + 1, levels.begin() + last, 0));
    writer.write(static_cast<unsigned>(zeros), bit_length(last - 1));
    int length = 0;
    for (;;) {
        const int level = levels[static_cast<std::size_t>(last)];
        writer.write(level < 0, 1);
        const int more = std::abs(level) - 1;
        for (; bit_length(more) > length; ++length) writer.write(0, 1);
        writer.write(1, 1);
        writer.write(static_cast<unsigned>(more), length);
        if (last - zeros == 1) return;
        int run = 0;
        while (levels[static_cast<std::size_t>(last - run - 1)] == 0) ++run;
        writer.write(static_cast<unsigned>(run), bit_length(zeros));
        zeros -= run;
        last -= run + 1;
    }
}

void check_side(const char* name, int side) {
    if (side >= 4 && side <= kMaxPackedSide && side % 4 == 0) return;
    throw std::runtime_error(std::string("the picture's ") + name + " is " + std::to_string(side) +
                             " pixels; it has to be a multiple of 4, from 4 to " +
                             std::to_string(kMaxPackedSide));
}

} // namespace

double default_lambda(int quant) {
    // The value of a bit at high rates: one more bit per coefficient divides the squared error by four (6 dB), so
    // D = step^2 / 12, the error of a uniform distribution over the DC's step, falls by 2 ln(2) D per bit.
    const double step = quant / 4.0; // of the orthonormal transform
    return 2.0 * std::log(2.0) * step * step / 12.0;
}

PackedPicture pack_picture(const Picture& picture, const PackOptions& options) {
    check_side("width", picture.width);
    check_side("height", picture.height);
    if (options.quant < 1 || options.quant > 255)
        throw std::runtime_error("the quantiser is " + std::to_string(options.quant) +
                                 "; it has to be from 1 to 255");
    if (!(options.lambda >= 0.0)) throw std::runtime_error("lambda has to be 0 or more");

    const double lambda = options.lambda > 0.0 ? options.lambda : default_lambda(options.quant);
    BitWriter writer;
    writer.write(static_cast<unsigned>(picture.width / 4), 8);
    writer.write(static_cast<unsigned>(picture.height / 4), 8);
    writer.write(static_cast<unsigned>(options.quant), 8);
    for (const CodedBlock& block : Packer(picture, options.quant, lambda).run()) {
        write_dc_change(writer, block.dc_change);
        write_coefficients(writer, block.levels);
    }
    return {writer.bytes(), writer.bit_count()};
}
