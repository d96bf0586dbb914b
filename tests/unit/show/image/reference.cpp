#include "tests/unit/show/image/reference.h"

#include <cmath>
#include <functional>
#include <initializer_list>

namespace reference {

namespace {

const double kPi = 3.14159265358979323846;

bool has_color(const Picture& p) { return (p.flags & 3) == 2; }

std::size_t index(std::int32_t x, std::int32_t y, std::int32_t width) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
}

// A coordinate beyond the border, brought back by whole sizes or to the border.
std::int32_t neighbour(std::int32_t i, std::int32_t n, bool wraps) {
    if (!wraps) return i < 0 ? 0 : i >= n ? n - 1 : i;
    while (i < 0) i += n;
    while (i >= n) i -= n;
    return i;
}

std::int32_t trunc_32(double v) {
    if (std::isnan(v) || std::trunc(v) < -2147483648.0 || std::trunc(v) > 2147483647.0) return INT32_MIN;
    return static_cast<std::int32_t>(std::trunc(v));
}

std::uint32_t bits(std::int32_t v) { return static_cast<std::uint32_t>(v); }
std::int32_t value(std::uint32_t v) { return static_cast<std::int32_t>(v); }
std::int32_t times(std::int32_t a, std::int32_t b) { return value(bits(a) * bits(b)); }
std::int32_t plus(std::int32_t a, std::int32_t b) { return value(bits(a) + bits(b)); }
std::int32_t minus(std::int32_t a, std::int32_t b) { return value(bits(a) - bits(b)); }

// Applies a function of (plane, x, y) to every value of the colour planes.
using PixelFunction = std::function<std::int32_t(const Values&, std::int32_t, std::int32_t)>;
Picture map_color(const Picture& p, const PixelFunction& f) {
    Picture result = p;
    for (auto plane : {&Picture::red, &Picture::green, &Picture::blue}) {
        if ((p.*plane).empty()) continue;
        for (std::int32_t y = 0; y < p.height; ++y) {
            for (std::int32_t x = 0; x < p.width; ++x)
                (result.*plane)[index(x, y, p.width)] = f(p.*plane, x, y);
        }
    }
    return result;
}

Picture convolve_along(const Picture& p, bool rows, const Values& kernel, std::int32_t r, double divisor,
                       std::int32_t bias) {
    return map_color(p, [&](const Values& v, std::int32_t x, std::int32_t y) {
        std::int32_t total = 0;
        for (std::int32_t k = -r; k <= r; ++k) {
            const std::int32_t xx = rows ? neighbour(x + k, p.width, p.wraps()) : x;
            const std::int32_t yy = rows ? y : neighbour(y + k, p.height, p.wraps());
            total = plus(total, times(v[index(xx, yy, p.width)], kernel[static_cast<std::size_t>(k + r)]));
        }
        return trunc_32(bias + total / divisor);
    });
}

std::int32_t mix(int mode, std::int32_t d, std::int32_t s) {
    switch (mode) {
    case 1:
        return plus(d, s);
    case 2:
        return minus(d, s);
    case 3:
        return minus(d, s) < 0 ? minus(0, minus(d, s)) : minus(d, s);
    case 4:
        return times(d >> 2, s >> 2) >> 12;
    case 5:
        return (times((d ^ 0xFFFF) >> 2, (s ^ 0xFFFF) >> 2) >> 12) ^ 0xFFFF;
    case 6:
        if (s < 32769) return times(s >> 3, d) >> 12;
        return minus(minus(times(plus(s, d), 2), times(d >> 2, s >> 2) >> 11), 65536);
    default:
        return s;
    }
}

struct PlasmaPlane {
    Values values;
    std::int32_t width, height;
    double roughness;
    BitSerialGenerator& random;

    std::int32_t& at(std::int32_t x, std::int32_t y) {
        if (x >= width) x -= width;
        if (y >= height) y -= height;
        return values[index(x, y, width)];
    }

    struct Point {
        std::int32_t x, y;
    };

    void edge(Point a, Point target, Point b, std::int32_t amplitude) {
        if (at(target.x, target.y) >= 0) return;
        const std::int32_t draw = value(random.next() % bits(plus(times(4, amplitude), 1)));
        const std::int32_t total = plus(plus(at(a.x, a.y), at(b.x, b.y)), minus(draw, times(2, amplitude)));
        at(target.x, target.y) = std::min(65535, std::max(0, total >> 1));
    }

    void centre(Point target, std::initializer_list<Point> neighbours, std::int32_t amplitude) {
        if (at(target.x, target.y) >= 0) return;
        const std::int32_t draw = value(random.next() % bits(plus(times(8, amplitude), 1)));
        std::int32_t total = minus(draw, times(4, amplitude));
        for (const Point& n : neighbours) total = plus(total, at(n.x, n.y));
        at(target.x, target.y) = std::min(65535, std::max(0, total >> 2));
    }

    void subdivide(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1, std::int32_t a) {
        const std::int32_t mx = (x0 + x1) >> 1, my = (y0 + y1) >> 1;
        if (x0 >= mx && y0 >= my) return;
        edge({x0, y0}, {mx, y0}, {x1, y0}, a);
        edge({x0, y1}, {mx, y1}, {x1, y1}, a);
        edge({x0, y0}, {x0, my}, {x0, y1}, a);
        edge({x1, y0}, {x1, my}, {x1, y1}, a);
        centre({mx, my}, {{mx, y1}, {mx, y0}, {x0, my}, {x1, my}}, a);
        const std::int32_t next = trunc_32(a * roughness);
        subdivide(x0, y0, mx, my, next);
        subdivide(mx, y0, x1, my, next);
        subdivide(x0, my, mx, y1, next);
        subdivide(mx, my, x1, y1, next);
    }
};

} // namespace

BitSerialGenerator::BitSerialGenerator(std::uint32_t s1, std::uint32_t s2, std::uint32_t s3)
    : registers_{{31, 13, 12, {}}, {29, 2, 4, {}}, {28, 3, 17, {}}} {
    const std::uint32_t seeds[] = {s1, s2, s3};
    for (int i = 0; i < 3; ++i) {
        // The k highest bits of a word are the first k bits of its sequence; the rest plays no part.
        for (int j = 0; j < registers_[i].k; ++j) registers_[i].bits.push_back(seeds[i] >> (31 - j) & 1);
    }
}

std::uint32_t BitSerialGenerator::Register::next() {
    const std::size_t first = static_cast<std::size_t>(s), length = static_cast<std::size_t>(k);
    while (bits.size() < first + 32) {
        const std::size_t j = bits.size() - length;
        bits.push_back(bits[j + static_cast<std::size_t>(q)] != bits[j]);
    }
    bits.erase(bits.begin(), bits.begin() + s);
    std::uint32_t word = 0;
    for (std::size_t j = 0; j < 32; ++j) word = word << 1 | static_cast<std::uint32_t>(bits[j]);
    return word;
}

std::uint32_t BitSerialGenerator::next() {
    return registers_[0].next() ^ registers_[1].next() ^ registers_[2].next();
}

Picture noise(Picture p, std::int32_t amplitude, BitSerialGenerator& random) {
    const bool per_plane = amplitude < 0 && has_color(p);
    const std::int32_t a = per_plane ? -amplitude : amplitude;
    const auto draw = [&] { return minus(value(random.next() % bits(plus(times(2, a), 1))), a); };
    for (std::size_t i = p.green.size(); i-- > 0;) {
        if (per_plane) {
            p.red[i] = plus(p.red[i], draw());
            p.green[i] = plus(p.green[i], draw());
            p.blue[i] = plus(p.blue[i], draw());
            continue;
        }
        const std::int32_t d = draw();
        p.green[i] = plus(p.green[i], d);
        if (!has_color(p)) continue;
        p.red[i] = plus(p.red[i], d);
        p.blue[i] = plus(p.blue[i], d);
    }
    return p;
}

Values plasma(std::int32_t width, std::int32_t height, bool tileable, std::int32_t amplitude,
              double roughness, BitSerialGenerator& random) {
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    PlasmaPlane p{Values(count, -1), width, height, roughness, random};
    if (tileable) {
        const std::uint32_t draw = random.next();
        const double s = amplitude * roughness;
        const std::uint32_t m = bits(plus(times(2, trunc_32(s)), 1));
        p.at(0, 0) = plus(trunc_32(draw % m - s), 32768);
        p.subdivide(0, 0, width, height, amplitude);
    } else {
        p.at(0, 0) = value(random.next() & 0xFFFF);
        p.at(width - 1, 0) = value(random.next() & 0xFFFF);
        p.at(0, height - 1) = value(random.next() & 0xFFFF);
        p.at(width - 1, height - 1) = value(random.next() & 0xFFFF);
        p.subdivide(0, 0, width - 1, height - 1, amplitude);
    }
    return p.values;
}

Picture convolve(const Picture& p, const Values& kernel, std::int32_t r, double divisor, std::int32_t bias) {
    return map_color(p, [&](const Values& v, std::int32_t x, std::int32_t y) {
        std::int32_t total = 0;
        std::size_t k = 0;
        for (std::int32_t dy = -r; dy <= r; ++dy) {
            for (std::int32_t dx = -r; dx <= r; ++dx) {
                const std::int32_t xx = neighbour(x + dx, p.width, p.wraps());
                const std::int32_t yy = neighbour(y + dy, p.height, p.wraps());
                total = plus(total, times(v[index(xx, yy, p.width)] >> 8, kernel[k++]));
            }
        }
        return trunc_32(bias + total / divisor);
    });
}

Picture convolve_h(const Picture& p, const Values& kernel, std::int32_t r, double divisor,
                   std::int32_t bias) {
    return convolve_along(p, true, kernel, r, divisor, bias);
}

Picture convolve_v(const Picture& p, const Values& kernel, std::int32_t r, double divisor,
                   std::int32_t bias) {
    return convolve_along(p, false, kernel, r, divisor, bias);
}

Values blur_weights(std::int32_t r) {
    Values weights;
    for (std::int32_t i = -r; i <= r; ++i) {
        weights.push_back(
            static_cast<std::int32_t>(std::cos(static_cast<double>(i) / (r + 1) * kPi) * 128 + 128));
    }
    return weights;
}

Values directional_weights(std::int32_t r, double angle, double aspect) {
    Values weights;
    for (std::int32_t dy = -r; dy <= r; ++dy) {
        for (std::int32_t dx = -r; dx <= r; ++dx) {
            const double u = static_cast<double>(dx) / (r + 1), v = static_cast<double>(dy) / (r + 1);
            double d = std::hypot(v, u), nu = 0, nv = 0;
            if (d > 0) {
                nu = u / d;
                nv = v / d;
            }
            double t = std::fabs(std::sin(angle) * nu + std::cos(angle) * nv);
            if (t < 1) {
                t = aspect + (1 - aspect) * (1 - t);
                d = d / t;
            }
            weights.push_back(d <= 1 ? trunc_32(std::cos(d * kPi) * 128 + 128) : 0);
        }
    }
    return weights;
}

std::int32_t sum(const Values& weights) {
    std::int32_t total = 0;
    for (std::int32_t w : weights) total += w;
    return total;
}

Picture levels(Picture p, std::uint32_t mask, std::int32_t in_lo, std::int32_t in_hi, std::int32_t out_lo,
               std::int32_t out_hi) {
    if (in_lo == in_hi) return p;
    if (in_lo > in_hi) {
        std::swap(in_lo, in_hi);
        std::swap(out_lo, out_hi);
    }
    const double from = in_lo, scale = (static_cast<double>(out_hi) - out_lo) / (in_hi - from);
    const auto map = [&](Values& values) {
        for (std::int32_t& v : values) {
            if (v < in_lo) v = in_lo;
            if (v > in_hi) v = in_hi;
            v = trunc_32((v - from) * scale + out_lo);
        }
    };
    if (mask & 1) map(p.red);
    if (mask & 2) map(p.green);
    if (mask & 4) map(p.blue);
    return p;
}

Picture blend(Picture dst, const Picture& src, int mode, std::int32_t opacity) {
    if (dst.width != src.width || dst.height != src.height || (!has_color(dst) && has_color(src))) return dst;
    const auto combine = [&](Values& d, const Values& s) {
        for (std::size_t i = 0; i < d.size(); ++i) {
            d[i] = plus(times(mix(mode, d[i], s[i]), opacity), times(d[i], 256 - opacity)) >> 8;
        }
    };
    combine(dst.green, src.green);
    if (has_color(dst)) {
        combine(dst.red, has_color(src) ? src.red : src.green);
        combine(dst.blue, has_color(src) ? src.blue : src.green);
    }
    return dst;
}

Picture rank(const Picture& p, int which) {
    return map_color(p, [&](const Values& v, std::int32_t x, std::int32_t y) {
        std::int32_t result = which ? 0 : 65535;
        for (std::int32_t dy = -1; dy <= 1; ++dy) {
            for (std::int32_t dx = -1; dx <= 1; ++dx) {
                const std::int32_t xx = neighbour(x + dx, p.width, p.wraps());
                const std::int32_t n = v[index(xx, neighbour(y + dy, p.height, p.wraps()), p.width)];
                if (which ? n > result : n < result) result = n;
            }
        }
        return result;
    });
}

Picture shift(const Picture& p, std::int32_t dx, std::int32_t dy) {
    return map_color(p, [&](const Values& v, std::int32_t x, std::int32_t y) {
        return v[index(neighbour(x - dx, p.width, true), neighbour(y - dy, p.height, true), p.width)];
    });
}

Picture shrink(const Picture& p, std::int32_t fx, std::int32_t fy) {
    Picture result{p.width / fx, p.height / fy, p.flags, {}, {}, {}, {}};
    for (auto plane : {&Picture::red, &Picture::green, &Picture::blue, &Picture::alpha}) {
        if ((p.*plane).empty()) continue;
        for (std::int32_t y = 0; y < result.height; ++y) {
            for (std::int32_t x = 0; x < result.width; ++x) {
                std::int64_t total = 0;
                for (std::int32_t k = 0; k < fx * fy; ++k) {
                    total += (p.*plane)[index(x * fx + k % fx, y * fy + k / fx, p.width)];
                }
                (result.*plane).push_back(static_cast<std::int32_t>((total + fx * fy / 2) / (fx * fy)));
            }
        }
    }
    return result;
}

Picture enlarge(const Picture& p, std::int32_t fx, std::int32_t fy) {
    Picture result{p.width * fx, p.height * fy, p.flags, {}, {}, {}, {}};
    for (auto plane : {&Picture::red, &Picture::green, &Picture::blue, &Picture::alpha}) {
        if ((p.*plane).empty()) continue;
        for (std::int32_t y = 0; y < result.height; ++y) {
            for (std::int32_t x = 0; x < result.width; ++x) {
                (result.*plane).push_back((p.*plane)[index(x / fx, y / fy, p.width)]);
            }
        }
    }
    return result;
}

Picture displace(const Picture& p, const Picture& map, std::int32_t sx, std::int32_t sy, bool two_planes) {
    const Values& across = two_planes ? map.red : map.green;
    return map_color(p, [&](const Values& v, std::int32_t x, std::int32_t y) {
        const std::int32_t ox = std::max(0, times(across[index(x, y, p.width)], sx) >> 10);
        const std::int32_t oy = std::max(0, times(map.green[index(x, y, p.width)], sy) >> 10);
        const std::int32_t fx = ox % 64, fy = oy % 64;
        std::int32_t total = 0;
        for (int corner = 0; corner < 4; ++corner) {
            const std::int64_t xx = (std::int64_t{x} + ox / 64 + corner % 2) % p.width;
            const std::int64_t yy = (std::int64_t{y} + oy / 64 + corner / 2) % p.height;
            const std::int32_t weight = (corner % 2 ? fx : 63 - fx) * (corner / 2 ? fy : 63 - fy);
            const std::size_t i =
                index(static_cast<std::int32_t>(xx), static_cast<std::int32_t>(yy), p.width);
            total = plus(total, times(v[i], weight));
        }
        return total >> 12;
    });
}

} // namespace reference
