#include "contours/EdgePointDistribution.h"

#include "contours/LegacyRandom.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <numbers>
#include <numeric>

namespace {

constexpr double pi = std::numbers::pi;
constexpr int barLength = 58;

// Index of the bin for a value of 0 .. 1; values at and beyond the ends count in the outermost bins.
std::size_t binOf(double value, int bins)
{
    const double index = value * bins;
    return index > 0.0 ? static_cast<std::size_t>(std::min(index, bins - 1.0)) : 0;
}

// The shift (x, y) from the pixel's centre along a gradient of the given slope, in units of the longest one
// possible.
double scaledShift(double x, double y, double alpha)
{
    if (x == 0.0 && y == 0.0)
        return 0.0;
    const double along = std::abs(x) > std::abs(y) ? x / std::cos(alpha) : y / std::sin(alpha);
    const double shift = along / std::min(std::abs(1.0 / std::sin(alpha)), std::abs(1.0 / std::cos(alpha)));
    return std::isfinite(shift) ? shift : 0.0;
}

void addSample(SimulatedDistribution &result, double angle, double distance, double shift)
{
    const int indAlpha = static_cast<int>((angle / pi + 0.5) * jointNumBins);
    const int indT = static_cast<int>((shift + 0.5) * jointNumBins);
    if (!(0 <= indAlpha && indAlpha < jointNumBins && 0 <= indT && indT < jointNumBins)) {
        std::cerr << "Assertion failed: 0 <= indAlpha && indAlpha < jointNumBins && 0 <= indT && "
                     "indT < jointNumBins"
                  << std::endl;
        std::abort();
    }
    ++result.simulatedX[binOf(std::cos(angle) * distance + 0.5, histogramBins)];
    ++result.simulatedT[binOf(shift + 0.5, histogramBins)];
    ++result.simulatedJointAlphaT[static_cast<std::size_t>(indAlpha)][static_cast<std::size_t>(indT)];
    ++result.simulatedCount;
}

// A straight line that marches through the grid of pixels from crossing to crossing.
class LineWalk
{
public:
    LineWalk()
        : a(LegacyRandom::next() / 32768.0 * pi / 2.0)
        , b(pi / 2.0 - a)
    {
        vertical = cosA < LegacyRandom::next() / 32767.0 * (cosA + sinA);
        u = LegacyRandom::next() / 32768.0;
    }

    void run(SimulatedDistribution &result)
    {
        double remaining = 2000.0;
        while (remaining > 0.0) {
            sample(result);
            remaining -= cross();
        }
    }

private:
    void sample(SimulatedDistribution &result) const
    {
        const double w = ((vertical ? -u : u) + tanDiagonal * (1.0 - u)) / std::numbers::sqrt2;
        const double distance = w * cosDiagonal;
        const double shift = distance / longestShift;
        if (std::abs(shift) < 0.5) {
            addSample(result, a, distance, shift);
            addSample(result, -a, distance, shift);
        }
    }

    // Goes on to the next crossing; the length of the way there, in pixels.
    double cross()
    {
        const double v = 1.0 - u;
        const bool low = b <= (vertical ? std::atan(v) : pi / 2.0 - std::atan(v));
        const double tangent = low ? tanB : tanA;
        // Straight on to the opposite side, or round the corner to a neighbouring one.
        const bool straight = vertical == low;
        u = straight ? u + tangent : v * tangent;
        if (u >= 1.0)
            u -= 1.0;
        vertical = low;
        return (straight ? 1.0 : v) / (low ? cosB : cosA);
    }

    const double a;
    const double b;
    const double cosA = std::cos(a);
    const double sinA = std::sin(a);
    const double tanA = std::tan(a);
    const double cosB = std::cos(b);
    const double tanB = std::tan(b);
    const double cosDiagonal = std::cos(a - pi / 4.0);
    const double tanDiagonal = std::tan(a - pi / 4.0);
    const double longestShift = std::min(std::abs(1.0 / sinA), std::abs(1.0 / cosA));
    bool vertical = false; // which sides of the pixel the present crossing lies on
    double u = 0.0;
};

// One line per row of the table; printCell gets a count and the sum of its row.
template <class PrintCell>
void printTable(std::ostream &stream, const std::string &heading, const JointHistogram &joint,
                PrintCell printCell)
{
    stream << heading << '\n';
    for (const auto &row : joint) {
        const double sum = std::accumulate(row.begin(), row.end(), 0.0);
        for (const std::int32_t count : row) {
            printCell(count, sum);
            stream << ' ';
        }
        stream << '\n';
    }
}

// Counts as densities, 1 on average; all 0 if there are none. Raw counts do not compare: there are far more
// simulated points than measured ones. One entry more, which is read but never used.
std::array<double, histogramBins + 1> densities(const Histogram &counts)
{
    std::array<double, histogramBins + 1> result{};
    const double total = std::accumulate(counts.begin(), counts.end(), 0.0);
    if (total > 0.0)
        for (std::size_t i = 0; i < counts.size(); ++i)
            result[i] = counts[i] * static_cast<double>(histogramBins) / total;
    return result;
}

} // namespace

double positionInPixel(float coordinate, float spacing)
{
    const double pixels = static_cast<double>(coordinate) / static_cast<double>(spacing);
    return pixels - std::trunc(pixels);
}

float largestStrength(const EdgePointSlices &slices)
{
    float largest = 0.0f;
    for (const std::vector<EdgePoint> &slice : slices)
        for (const EdgePoint &point : slice)
            largest = std::max(largest, point.strength);
    return largest;
}

MeasuredDistribution measureDistribution(const EdgePointSlices &slices, float spacingX, float spacingY,
                                         float limit)
{
    MeasuredDistribution result;
    for (const std::vector<EdgePoint> &slice : slices)
        for (const EdgePoint &point : slice) {
            if (!(point.strength > limit))
                continue;
            const double x = positionInPixel(point.x, spacingX) - 0.5;
            const double y = positionInPixel(point.y, spacingY) - 0.5;
            const double alpha = point.alpha();
            const double shift = scaledShift(x, y, alpha);
            ++result.measuredX[binOf(x + 0.5, histogramBins)];
            ++result.measuredY[binOf(y + 0.5, histogramBins)];
            ++result.measuredT[binOf(shift + 0.5, histogramBins)];
            ++result.jointXY[binOf(x + 0.5, jointNumBins)][binOf(y + 0.5, jointNumBins)];
            ++result.jointAlphaT[binOf(alpha / pi + 0.5, jointNumBins)][binOf(shift + 0.5, jointNumBins)];
            ++result.jointThetaT[binOf(point.theta() / 2.0 / pi + 0.5, jointNumBins)]
                                [binOf(point.t() / std::numbers::sqrt2 + 0.5, jointNumBins)];
            ++result.measuredCount;
        }
    return result;
}

SimulatedDistribution simulateDistribution()
{
    constexpr int walks = 10000;
    SimulatedDistribution result;
    for (int i = 0; i < walks; ++i)
        LineWalk().run(result);
    return result;
}

Histogram simulateDisc(int count)
{
    LegacyRandom::seed(static_cast<unsigned>(count));
    Histogram result{};
    for (int i = 0; i < count; ++i) {
        const double angle = LegacyRandom::next() / 32767.0 * 2.0 * pi;
        const double radius =
            LegacyRandom::next() / 32767.0 / std::numbers::sqrt2; // not uniform over the area
        const double x = std::cos(angle) * radius + 0.5;
        const double y = std::sin(angle) * radius + 0.5;
        if (x >= 0.0 && x <= 1.0 && y >= 0.0 && y <= 1.0)
            ++result[binOf(x, histogramBins)];
    }
    return result;
}

// Walks both distributions at once, always to the nearer end of a bin, so that equal shares lie below.
CorrectionFunction makeCorrection(const Histogram &measuredCounts, const Histogram &simulatedCounts)
{
    const auto measured = densities(measuredCounts);
    const auto simulated = densities(simulatedCounts);
    constexpr double bins = histogramBins;
    CorrectionFunction result;
    std::size_t i = 0;
    std::size_t j = 0;
    double positionMeasured = 0.0;
    double positionCorrected = 0.0;
    double restMeasured = measured[0] / bins;
    double restSimulated = simulated[0] / bins;
    const auto nextMeasured = [&] {
        ++i;
        positionMeasured = static_cast<double>(i) / bins;
        restMeasured = measured[i] / bins;
    };
    const auto nextSimulated = [&] {
        ++j;
        positionCorrected = static_cast<double>(j) / bins;
        restSimulated = simulated[j] / bins;
    };
    while (i < histogramBins && j < histogramBins) {
        result.corrected.push_back(positionCorrected);
        result.measured.push_back(positionMeasured);
        result.slope.push_back(simulated[j] / measured[i]);
        if (restMeasured == restSimulated) {
            nextSimulated();
            nextMeasured();
        } else if (restSimulated <= restMeasured) {
            restMeasured -= restSimulated;
            positionMeasured += restSimulated / measured[i];
            nextSimulated();
        } else {
            positionCorrected += restMeasured / simulated[j];
            restSimulated -= restMeasured;
            nextMeasured();
        }
    }
    return result;
}

double CorrectionFunction::operator()(double position) const
{
    // The slope is that of the piece behind the entry, as is required: the map is not quite monotonic.
    const auto found =
        std::find_if(measured.begin(), measured.end(), [&](double value) { return position <= value; });
    const auto k = std::min(static_cast<std::size_t>(found - measured.begin()), measured.size() - 1);
    return position == measured[k] ? corrected[k] : corrected[k] + (position - measured[k]) / slope[k];
}

int histogramScale(const Histogram &a, const Histogram &b, const Histogram &c)
{
    int scale = 1;
    for (const Histogram *histogram : {&a, &b, &c})
        scale = std::max(scale, *std::max_element(histogram->begin() + 1, histogram->end()));
    return scale;
}

void printHistograms(std::ostream &stream, const std::string &heading, const Histogram &measured,
                     const Histogram &simulated, int scale)
{
    const auto bar = [&](std::int32_t count, char mark) {
        const std::int64_t length =
            std::min<std::int64_t>(barLength, std::int64_t{barLength} * count / scale);
        std::string text(static_cast<std::size_t>(length), mark);
        text.resize(barLength, ' ');
        return text;
    };
    stream << heading << '\n';
    for (std::size_t i = 0; i < measured.size(); ++i)
        stream << bar(measured[i], '*') << ' ' << bar(simulated[i], '-') << ' '
               << static_cast<double>(i) / histogramBins << ' ' << measured[i] << ' ' << simulated[i] << '\n';
}

void printJoint(std::ostream &stream, const std::string &heading, const JointHistogram &joint)
{
    printTable(stream, heading, joint, [&](std::int32_t count, double) { stream << count; });
}

void printJointScaled(std::ostream &stream, const std::string &heading, const JointHistogram &joint,
                      double factor)
{
    printTable(stream, heading, joint, [&](std::int32_t count, double) { stream << count * factor; });
}

void printJointPerRow(std::ostream &stream, const std::string &heading, const JointHistogram &joint)
{
    const std::ios_base::fmtflags flags = stream.flags();
    const std::streamsize precision = stream.precision();
    stream << std::fixed << std::setprecision(4);
    printTable(stream, heading, joint, [&](std::int32_t count, double rowSum) {
        stream << std::setw(6) << count / std::max(1.0, rowSum);
    });
    stream.flags(flags);
    stream.precision(precision);
}

void printCorrection(std::ostream &stream, const std::string &heading, const CorrectionFunction &function)
{
    stream << heading << '\n';
    for (std::size_t i = 0; i < function.measured.size(); ++i)
        stream << function.measured[i] << ' ' << function.corrected[i] << ' ' << function.slope[i] << '\n';
}
