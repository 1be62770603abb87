#include "contours/SliceEdgeDetection.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace {

constexpr int magnitudeThreshold = 5;
// The fitted magnitude at the pixel's centre must exceed 0.01 of the full range: its integer form is nine
// times 255 times that, above 22.95.
constexpr int leastCentreWeight = 23;

// The weighted sums of a least-squares quadratic c0 + c1 u + c2 v + c3 u^2 + c4 v^2 + c5 u v over the 3 x 3
// magnitudes around a pixel, each multiplied by the common denominator of its weights: c0 = n0 / 9,
// c1 = n1 / 6, c2 = n2 / 6, c3 = n3 / 6, c4 = n4 / 6, c5 = n5 / 4.
// All fit into 16 bits.
struct QuadraticFit
{
    std::int16_t n0, n1, n2, n3, n4, n5;

    // The three columns around the pixel, each pointing to the pixel's row.
    QuadraticFit(const std::uint8_t *left, const std::uint8_t *middle, const std::uint8_t *right)
    {
        const int above = left[1] + middle[1] + right[1];
        const int below = left[-1] + middle[-1] + right[-1];
        const int leftSum = left[-1] + left[0] + left[1];
        const int rightSum = right[-1] + right[0] + right[1];
        const int centre = middle[-1] + middle[0] + middle[1];
        const int corners = left[1] + right[1] + left[-1] + right[-1];
        const int sides = middle[1] + left[0] + right[0] + middle[-1];
        n0 = static_cast<std::int16_t>(5 * middle[0] + 2 * sides - corners);
        n1 = static_cast<std::int16_t>(rightSum - leftSum);
        n2 = static_cast<std::int16_t>(above - below);
        n3 = static_cast<std::int16_t>(leftSum + rightSum - 2 * centre);
        n4 = static_cast<std::int16_t>(above + below - 2 * (left[0] + middle[0] + right[0]));
        n5 = static_cast<std::int16_t>(right[1] - left[1] + left[-1] - right[-1]);
    }

    // Along the unit gradient the fit has the slope d1 and the curvature d2; its extremum lies at
    // -d1 / d2 / 2, a maximum if d2 < 0. Here 12 d1 times the length of the gradient, and 12 d2 times its
    // square: the length cancels out of the shift.
    int curvature(int gx, int gy) const
    {
        return gx * (2 * (gx * n3) + 3 * (gy * n5)) + gy * (2 * (gy * n4));
    }
    int slope(int gx, int gy) const { return 2 * (gx * n1 + gy * n2); }
};

} // namespace

void SliceEdgeDetector::detect(const ByteSlice &slice, const SlicePlacement &placement,
                               std::vector<EdgePoint> &points)
{
    points.clear();
    if (slice.width < 3 || slice.height < 3)
        return;
    transpose(slice);
    for (int x = 1; x < width - 1; ++x)
        computeColumn(x);
    for (int x = 1; x < width - 1; ++x) {
        markColumn(x);
        listColumn(x, placement, points);
    }
}

// Points are listed column by column: with y fastest all passes run along memory.
void SliceEdgeDetector::transpose(const ByteSlice &slice)
{
    width = slice.width;
    height = slice.height;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    pixels.resize(count);
    gradientsX.resize(count);
    gradientsY.resize(count);
    magnitudes.assign(count, 0);
    marks.resize(static_cast<std::size_t>(height));
    constexpr int tile = 16;
    for (int y0 = 0; y0 < height; y0 += tile)
        for (int x0 = 0; x0 < width; x0 += tile)
            for (int x = x0; x < std::min(x0 + tile, width); ++x)
                for (int y = y0; y < std::min(y0 + tile, height); ++y)
                    pixels[static_cast<std::size_t>(x) * static_cast<std::size_t>(height) +
                           static_cast<std::size_t>(y)] =
                        slice.bytes[static_cast<std::ptrdiff_t>(y) * slice.rowPitch + x];
}

void SliceEdgeDetector::computeColumn(int x)
{
    const std::size_t column = static_cast<std::size_t>(x) * static_cast<std::size_t>(height);
    const std::uint8_t *middle = pixels.data() + column;
    const std::uint8_t *left = middle - height;
    const std::uint8_t *right = middle + height;
    std::int16_t *outX = gradientsX.data() + column;
    std::int16_t *outY = gradientsY.data() + column;
    std::uint8_t *out = magnitudes.data() + column;
    const int end = height - 1; // a local one, so that the writes below cannot be taken to change it
    for (int y = 1; y < end; ++y) {
        const int gx =
            (left[y - 1] + 2 * left[y] + left[y + 1] - right[y - 1] - 2 * right[y] - right[y + 1]) / 4;
        const int gy = (left[y - 1] + 2 * middle[y - 1] + right[y - 1] - left[y + 1] - 2 * middle[y + 1] -
                        right[y + 1]) /
                       4;
        outX[y] = static_cast<std::int16_t>(gx);
        outY[y] = static_cast<std::int16_t>(gy);
    }
    for (int y = 1; y < end; ++y) {
        // On bright corners the magnitude exceeds a byte: it then counts as 255.
        const float square = static_cast<float>(outX[y] * outX[y] + outY[y] * outY[y]);
        out[y] = static_cast<std::uint8_t>(static_cast<int>(std::min(std::sqrt(square), 255.0f)));
    }
}

// Judges every pixel alike, so that several are judged by one instruction.
void SliceEdgeDetector::markColumn(int x)
{
    const std::size_t column = static_cast<std::size_t>(x) * static_cast<std::size_t>(height);
    const std::uint8_t *middle = magnitudes.data() + column;
    const std::uint8_t *left = middle - height;
    const std::uint8_t *right = middle + height;
    const std::int16_t *columnX = gradientsX.data() + column;
    const std::int16_t *columnY = gradientsY.data() + column;
    std::uint8_t *out = marks.data();
    const int end = height - 1;
    for (int y = 1; y < end; ++y) {
        const QuadraticFit fit(left + y, middle + y, right + y);
        const std::int16_t gx = columnX[y];
        const std::int16_t gy = columnY[y];
        const int curvature = fit.curvature(gx, gy);
        // The extremum is in the pixel if the longer one of its shifts is one half at most.
        const int shift = std::max(std::abs(gx), std::abs(gy)) * std::abs(fit.slope(gx, gy));
        const bool isPoint = (middle[y] > magnitudeThreshold) & (fit.n0 >= leastCentreWeight) &
                             (curvature < 0) & (shift <= -curvature);
        out[y] = isPoint ? 1 : 0;
    }
}

void SliceEdgeDetector::listColumn(int x, const SlicePlacement &placement,
                                   std::vector<EdgePoint> &points) const
{
    const std::size_t column = static_cast<std::size_t>(x) * static_cast<std::size_t>(height);
    const std::uint8_t *middle = magnitudes.data() + column;
    const auto last = marks.end() - 1;
    for (auto mark = std::find(marks.begin() + 1, last, 1); mark != last;
         mark = std::find(mark + 1, last, 1)) {
        const auto y = mark - marks.begin();
        const QuadraticFit fit(middle - height + y, middle + y, middle + height + y);
        const int gx = gradientsX[column + static_cast<std::size_t>(y)];
        const int gy = gradientsY[column + static_cast<std::size_t>(y)];
        const int curvature = fit.curvature(gx, gy);
        const int slope = fit.slope(gx, gy);
        EdgePoint &point = points.emplace_back();
        // Adding zero turns a negative zero into a plain one, which is how it shall read in lists.
        point.xS = static_cast<float>(-gx * slope / (2.0 * curvature)) + 0.0f;
        point.yS = static_cast<float>(-gy * slope / (2.0 * curvature)) + 0.0f;
        point.x = (static_cast<float>(x) + 0.5f + point.xS) * placement.spacingX;
        point.y = (static_cast<float>(y) + 0.5f + point.yS) * placement.spacingY;
        point.z = placement.z;
        point.strength = std::sqrt(static_cast<float>(gx * gx + gy * gy)) / 255.0f;
        point.gx = static_cast<float>(gx) / 255.0f;
        point.gy = static_cast<float>(gy) / 255.0f;
    }
}
