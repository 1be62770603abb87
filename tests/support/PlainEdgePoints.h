#pragma once

#include "contours/EdgePoint.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

// The plain way to find the edge points of one 8-bit slice, step by step and pixel by pixel: what the fast
// detection must reproduce bit for bit. Each point is allocated by itself; the caller deletes them.

struct PlainSlice
{
    const unsigned char *bytes;
    int width;
    int height;
    int rowPitch;

    int operator()(int x, int y) const { return bytes[static_cast<std::ptrdiff_t>(y) * rowPitch + x]; }
};

inline int plainGradientX(const PlainSlice &i, int x, int y)
{
    return (i(x - 1, y - 1) + 2 * i(x - 1, y) + i(x - 1, y + 1) - i(x + 1, y - 1) - 2 * i(x + 1, y) -
            i(x + 1, y + 1)) /
           4;
}

inline int plainGradientY(const PlainSlice &i, int x, int y)
{
    return (i(x - 1, y - 1) + 2 * i(x, y - 1) + i(x + 1, y - 1) - i(x - 1, y + 1) - 2 * i(x, y + 1) -
            i(x + 1, y + 1)) /
           4;
}

// Weights of the least-squares quadratic for the neighbours (x-1, y+1), (x, y+1), (x+1, y+1), (x-1, y), (x,
// y), (x+1, y), (x-1, y-1), (x, y-1), (x+1, y-1), times 9, 6, 6, 6, 6 and 4.
inline constexpr int plainWeights[6][9] = {{-1, 2, -1, 2, 5, 2, -1, 2, -1}, {-1, 0, 1, -1, 0, 1, -1, 0, 1},
                                           {1, 1, 1, 0, 0, 0, -1, -1, -1},  {1, -2, 1, 1, -2, 1, 1, -2, 1},
                                           {1, 1, 1, -2, -2, -2, 1, 1, 1},  {-1, 0, 1, 0, 0, 0, 1, 0, -1}};

inline std::vector<EdgePoint *> plainEdgePoints(const PlainSlice &slice, float spacingX, float spacingY,
                                                float z)
{
    const int width = slice.width;
    const int height = slice.height;
    std::vector<unsigned char> magnitudes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                                          0);
    for (int x = 1; x < width - 1; ++x)
        for (int y = 1; y < height - 1; ++y) {
            const int gx = plainGradientX(slice, x, y);
            const int gy = plainGradientY(slice, x, y);
            const int magnitude = static_cast<int>(std::sqrt(static_cast<double>(gx * gx + gy * gy)));
            magnitudes[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(x)] =
                static_cast<unsigned char>(magnitude > 255 ? 255 : magnitude);
        }
    const PlainSlice m{magnitudes.data(), width, height, width};
    std::vector<EdgePoint *> points;
    for (int x = 1; x < width - 1; ++x)
        for (int y = 1; y < height - 1; ++y) {
            if (m(x, y) <= 5)
                continue;
            int n[6] = {};
            for (int k = 0; k < 6; ++k)
                for (int i = 0; i < 9; ++i)
                    n[k] += plainWeights[k][i] * m(x - 1 + i % 3, y + 1 - i / 3);
            const int gx = plainGradientX(slice, x, y);
            const int gy = plainGradientY(slice, x, y);
            const int denominator = 2 * gx * gx * n[3] + 3 * gx * gy * n[5] + 2 * gy * gy * n[4];
            if (denominator >= 0)
                continue;
            const int px = -gx * (2 * gx * n[1] + 2 * gy * n[2]);
            const int py = -gy * (2 * gx * n[1] + 2 * gy * n[2]);
            if (std::abs(px) > -denominator || std::abs(py) > -denominator || n[0] < 23)
                continue;
            auto *point = new EdgePoint;
            const auto shift = [&](int p) {
                return p == 0 ? 0.0f
                              : static_cast<float>(static_cast<double>(p) /
                                                   (2.0 * static_cast<double>(denominator)));
            };
            point->xS = shift(px);
            point->yS = shift(py);
            point->x = (static_cast<float>(x) + 0.5f + point->xS) * spacingX;
            point->y = (static_cast<float>(y) + 0.5f + point->yS) * spacingY;
            point->z = z;
            point->strength = std::sqrt(static_cast<float>(gx * gx + gy * gy)) / 255.0f;
            point->gx = static_cast<float>(gx) / 255.0f;
            point->gy = static_cast<float>(gy) / 255.0f;
            points.push_back(point);
        }
    return points;
}

inline std::array<std::uint32_t, 10> bitsOf(const EdgePoint &p)
{
    const std::array<float, 10> numbers{p.x, p.y, p.z, p.xS, p.yS, p.zS, p.strength, p.gx, p.gy, p.gz};
    return std::bit_cast<std::array<std::uint32_t, 10>>(numbers);
}

inline bool bitEqual(const EdgePoint &a, const EdgePoint &b)
{
    return bitsOf(a) == bitsOf(b) && a.excluded == b.excluded;
}
