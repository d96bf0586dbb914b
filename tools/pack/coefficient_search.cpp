#include "tools/pack/coefficient_search.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "show/stage/packed_picture.h"

namespace {

// One dimension of the inverse transform: the shares of its four inputs (rows) in the four outputs.
constexpr double kBasis[4][4] = {
    {1.0, 1.0, 1.0, 1.0}, {1.0, 0.5, -0.5, -1.0}, {1.0, -1.0, -1.0, 1.0}, {0.5, -1.0, 1.0, -0.5}};
constexpr double kNorm[4] = {4.0, 2.5, 4.0, 2.5};

constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr int kMaxMagnitudeBits = 13; // 255 levels at the smallest step, 1 / 16, take 12

// A coefficient before quantisation.
struct Coefficient {
    double magnitude; // in steps
    bool negative;
    double step_error; // weighted squared error per squared step
};

// The error of coding a coefficient with magnitude `level`.
double error_at(const Coefficient& coefficient, double level) {
    const double miss = coefficient.magnitude - level;
    return coefficient.step_error * miss * miss;
}

// Coefficients are coded from the highest position down to the first, and each magnitude takes at least as many bits
// as the one before. So the best continuation depends on three numbers only: the position of a coefficient that is
// kept, the number of zeros below it, and the magnitude length so far. This is dynamic programming over those.
class Trellis {
public:
    Trellis(const double target[16], double weight, int quant, double lambda) : lambda_(lambda) {
        transform(target, weight, quant);
        zeros_error_[0] = 0.0;
        for (int i = 1; i < 16; ++i) zeros_error_[i] = zeros_error_[i - 1] + error_at(coefficients_[i], 0.0);
        for (int position = 1; position < 16; ++position)
            for (int zeros = 0; zeros < position; ++zeros) solve(position, zeros);
    }

    double all_zero_cost() const { return zeros_error_[15] + lambda_ * 4; }

    // The cost of a block whose last coefficient is at position `last`, with `zeros` zeros below it.
    double cost(int last, int zeros) const {
        return step_[last][zeros][0].cost + zeros_error_[15] - zeros_error_[last] +
               lambda_ * header_bits(last);
    }

    // The levels that have this cost.
    AcChoice choice(int last, int zeros) const {
        AcChoice result = {{}, header_bits(last), cost(last, zeros)};
        int position = last;
        int length = 0;
        for (;;) {
            const Step& step = step_[position][zeros][length];
            result.levels[static_cast<std::size_t>(position)] =
                coefficients_[position].negative ? -step.level : step.level;
            result.bits += 2 + (step.length - length) + step.length;
            length = step.length;
            if (position - zeros == 1) return result;
            const int run = run_[position][zeros][length];
            result.bits += bit_length(zeros);
            position -= run + 1;
            zeros -= run;
        }
    }

private:
    struct Step {
        double cost; // of this position and all below it
        int level;   // magnitude, from 1
        int length;  // magnitude length from here on
    };

    static int header_bits(int last) { return 4 + bit_length(last - 1); }

    // Computes the coefficients of the samples, in quantiser steps.
    void transform(const double target[16], double weight, int quant) {
        for (int i = 1; i < 16; ++i) {
            const int v = kZigzag[i] / 4;
            const int u = kZigzag[i] % 4;
            double product = 0.0;
            for (int y = 0; y < 4; ++y)
                for (int x = 0; x < 4; ++x) product += target[4 * y + x] * kBasis[v][y] * kBasis[u][x];
            const double norm = kNorm[v] * kNorm[u];
            const double step = (quant + i) / 16.0;
            const double level = product / norm / step;
            coefficients_[i] = {std::fabs(level), level < 0, weight * norm * step * step};
        }
    }

    // Finds the best continuation at a position for every magnitude length; those of lower positions are known.
    void solve(int position, int zeros) {
        const bool lowest = position - zeros == 1;
        for (int length = 0; length <= kMaxMagnitudeBits; ++length) {
            if (lowest) {
                run_[position][zeros][length] = 0;
                below_[length] = zeros_error_[position - 1];
            } else {
                best_run(position, zeros, length);
            }
        }
        for (int length = 0; length <= kMaxMagnitudeBits; ++length) best_level(position, zeros, length);
    }

    // Finds the best run of zeros below a position.
    void best_run(int position, int zeros, int length) {
        below_[length] = kNever;
        for (int run = 0; run <= zeros; ++run) {
            const int next = position - run - 1;
            const double cost = zeros_error_[position - 1] - zeros_error_[next] +
                                lambda_ * bit_length(zeros) + step_[next][zeros - run][length].cost;
            if (cost >= below_[length]) continue;
            below_[length] = cost;
            run_[position][zeros][length] = run;
        }
    }

    // Finds the best level at a position, and the magnitude length that it takes.
    void best_level(int position, int zeros, int length) {
        const Coefficient& coefficient = coefficients_[position];
        const int wanted = std::max(1, static_cast<int>(std::lround(coefficient.magnitude)));
        const int enough = std::clamp(bit_length(wanted - 1), length, kMaxMagnitudeBits);
        Step& best = step_[position][zeros][length];
        best.cost = kNever;
        for (int longer = length; longer <= enough; ++longer) {
            const int level = std::min(wanted, 1 << longer);
            const double cost =
                error_at(coefficient, level) + lambda_ * (2 + (longer - length) + longer) + below_[longer];
            if (cost < best.cost) best = {cost, level, longer};
        }
    }

    double lambda_;
    Coefficient coefficients_[16];
    double zeros_error_[16];              // of positions 1..i, all zero
    double below_[kMaxMagnitudeBits + 1]; // best cost below the position being solved, by magnitude length
    Step step_[16][15][kMaxMagnitudeBits + 1];
    int run_[16][15][kMaxMagnitudeBits + 1];
};

} // namespace

std::vector<AcChoice> search_coefficients(const double target[16], double weight, int quant, double lambda,
                                          std::size_t limit) {
    const Trellis trellis(target, weight, quant, lambda);
    struct Candidate {
        double cost;
        int last;
        int zeros;
    };
    std::vector<Candidate> candidates = {{trellis.all_zero_cost(), 0, 0}};
    for (int last = 1; last < 16; ++last)
        for (int zeros = 0; zeros < last; ++zeros)
            candidates.push_back({trellis.cost(last, zeros), last, zeros});
    const std::size_t count = std::clamp<std::size_t>(limit, 1, candidates.size());
    std::partial_sort(candidates.begin(), candidates.begin() + static_cast<std::ptrdiff_t>(count),
                      candidates.end(),
                      [](const Candidate& a, const Candidate& b) { return a.cost < b.cost; });
    std::vector<AcChoice> choices;
    for (std::size_t i = 0; i < count; ++i) {
        const Candidate& candidate = candidates[i];
        if (candidate.last == 0)
            choices.push_back({{}, 4, candidate.cost});
        else
            choices.push_back(trellis.choice(candidate.last, candidate.zeros));
    }
    return choices;
}

int nearest_dc(double mean, int quant) { return static_cast<int>(std::lround(mean * 16.0 / quant)); }
