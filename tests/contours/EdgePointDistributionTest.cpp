#include "contours/EdgePointDistribution.h"
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/DistributionCorrectingSliceEdgePointExtractor.h"
#include "contours/LegacyRandom.h"
#include "tests/contours/EdgePointDistributionVolumes.h"
#include "tests/support/CapturedOutput.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <sstream>
#include <vector>

namespace {

const DiscKind oblong{20.0, 0.0, 0.0, 0.5f, 0.25f};

struct Run
{
    std::unique_ptr<DistributionCorrectingSliceEdgePointExtractor> extractor;
    QString report;
};

Run runOn(MervImageObject *volume)
{
    const CapturedOutput output;
    auto extractor = std::make_unique<DistributionCorrectingSliceEdgePointExtractor>(volume);
    return {std::move(extractor), output.standardOutput()};
}

// The simulation of a generator in state 1.
const SimulatedDistribution &simulation()
{
    static const SimulatedDistribution made = [] {
        LegacyRandom::seed(1);
        return simulateDistribution();
    }();
    return made;
}

// Discs, their plain points, and the corrected ones with the simulation from state 1.
struct Scene
{
    DiscVolume discs = makeDiscs(oblong, 12);
    ConventionalSliceEdgePointExtractor plain{discs.volume.get()};
    Run corrected;

    Scene()
    {
        LegacyRandom::seed(1);
        corrected = runOn(discs.volume.get());
    }
};

const Scene &scene()
{
    static const Scene made;
    return made;
}

double inPixel(float coordinate, float spacing)
{
    const double pixels = static_cast<double>(coordinate) / static_cast<double>(spacing);
    return pixels - std::floor(pixels);
}

float strongest(const BasicSliceEdgePointExtractor &extractor)
{
    float result = 0.0f;
    for (int k = 0; k < extractor.sliceCount(); ++k)
        for (const EdgePoint &point : extractor.slicePoints(k))
            result = std::max(result, point.strength);
    return result;
}

void forEachStrong(const BasicSliceEdgePointExtractor &extractor, float limit,
                   const std::function<void(const EdgePoint &)> &take)
{
    for (int k = 0; k < extractor.sliceCount(); ++k)
        for (const EdgePoint &point : extractor.slicePoints(k))
            if (point.strength > limit)
                take(point);
}

Histogram counted(const BasicSliceEdgePointExtractor &extractor, float limit, float EdgePoint::*coordinate,
                  float spacing)
{
    Histogram result{};
    forEachStrong(extractor, limit, [&](const EdgePoint &point) {
        ++result[static_cast<std::size_t>(inPixel(point.*coordinate, spacing) * 50.0)];
    });
    return result;
}

// The correction of positions made another way: all ends of bins of both histograms on one scale, exact in
// integers, where a position is the share of points below it. Needs histograms without empty bins.
class ExactCorrection
{
public:
    ExactCorrection(const Histogram &measuredCounts, const Histogram &simulatedCounts)
        : measured(measuredCounts, total(simulatedCounts))
        , simulated(simulatedCounts, total(measuredCounts))
    {
        levels = measured.ends;
        levels.insert(levels.end(), simulated.ends.begin(), simulated.ends.end());
        std::sort(levels.begin(), levels.end());
        levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
        levels.pop_back(); // all points: the end of the last piece, not the start of one
    }

    // As applied: the first entry at or beyond the position, with the slope of the piece behind it.
    double applied(double position) const
    {
        std::size_t k = 0;
        while (k + 1 < levels.size() && measured.positionAt(levels[k]) < position)
            ++k;
        const double slope = simulated.densityBehind(levels[k]) / measured.densityBehind(levels[k]);
        return simulated.positionAt(levels[k]) + (position - measured.positionAt(levels[k])) / slope;
    }
    // The monotonic map of shares.
    double monotonic(double position) const
    {
        const std::size_t bin = std::min<std::size_t>(49, static_cast<std::size_t>(position * 50.0));
        const double inBin = position * 50.0 - static_cast<double>(bin);
        const double low = static_cast<double>(measured.ends[bin]);
        const double high = static_cast<double>(measured.ends[bin + 1]);
        return simulated.positionAt(static_cast<std::int64_t>(low + inBin * (high - low)));
    }
    std::size_t size() const { return levels.size(); }

private:
    static std::int64_t total(const Histogram &counts)
    {
        return std::accumulate(counts.begin(), counts.end(), std::int64_t{0});
    }

    struct Shares
    {
        Shares(const Histogram &counts, std::int64_t weight)
        {
            for (const std::int32_t count : counts)
                ends.push_back(ends.back() + count * weight);
        }
        std::size_t binBehind(std::int64_t level) const
        {
            return static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end() - 1, level) -
                                            ends.begin()) -
                   1;
        }
        double positionAt(std::int64_t level) const
        {
            const std::size_t bin = std::min<std::size_t>(49, binBehind(level));
            return (static_cast<double>(bin) +
                    static_cast<double>(level - ends[bin]) / static_cast<double>(ends[bin + 1] - ends[bin])) /
                   50.0;
        }
        double densityBehind(std::int64_t level) const
        {
            const std::size_t bin = binBehind(level);
            return static_cast<double>(ends[bin + 1] - ends[bin]);
        }

        std::vector<std::int64_t> ends{0}; // of the bins, in points times the other total
    };

    Shares measured;
    Shares simulated;
    std::vector<std::int64_t> levels;
};

ExactCorrection exactCorrection(float EdgePoint::*coordinate, float spacing)
{
    const auto &plain = scene().plain;
    return {counted(plain, strongest(plain) * 0.5f, coordinate, spacing), simulation().simulatedX};
}

// The report, read line by line from its start.
class ReportReader
{
public:
    explicit ReportReader(const QString &report)
        : lines(report.split('\n'))
    {}

    QString line() { return next < lines.size() ? lines[next++] : QString("(end)"); }
    QStringList lineCells() { return line().split(' ', Qt::SkipEmptyParts); }
    // Only the empty text behind the last line is left.
    bool atEnd() const { return next == lines.size() - 1 && lines.back().isEmpty(); }
    bool atNumbers() const
    {
        return next < lines.size() && !lines[next].isEmpty() && (lines[next][0].isDigit());
    }

private:
    QStringList lines;
    qsizetype next = 0;
};

struct BarRows
{
    Histogram measured{};
    Histogram simulated{};
};

// A heading and fifty rows of bars, whose lengths are checked against the counts and the scale.
BarRows readBars(ReportReader &reader, const QString &heading, int scale)
{
    static const QRegularExpression row(R"(^(\**) *(-*) +([0-9.]+) (\d+) (\d+)$)");
    BarRows result;
    [&] {
        QCOMPARE(reader.line(), heading);
        for (std::size_t i = 0; i < 50; ++i) {
            const QString line = reader.line();
            const QRegularExpressionMatch match = row.match(line);
            QVERIFY2(match.hasMatch(), qPrintable(line));
            QCOMPARE(match.captured(3), QString::number(static_cast<double>(i) / 50.0));
            result.measured[i] = match.captured(4).toInt();
            result.simulated[i] = match.captured(5).toInt();
            QCOMPARE(match.capturedLength(1),
                     static_cast<qsizetype>(std::min<qint64>(58, 58LL * result.measured[i] / scale)));
            QCOMPARE(match.capturedLength(2),
                     static_cast<qsizetype>(std::min<qint64>(58, 58LL * result.simulated[i] / scale)));
        }
    }();
    return result;
}

// A heading and twenty rows of twenty numbers; their sum.
double readTable(ReportReader &reader, const QString &heading)
{
    double sum = 0.0;
    [&] {
        QCOMPARE(reader.line(), heading);
        for (int row = 0; row < 20; ++row) {
            const QStringList cells = reader.lineCells();
            QCOMPARE(cells.size(), 20);
            for (const QString &cell : cells) {
                bool isNumber = false;
                sum += cell.toDouble(&isNumber);
                QVERIFY2(isNumber, qPrintable(cell));
            }
        }
    }();
    return sum;
}

// The same where each row is divided by its sum; the number of rows with points.
int readRowTable(ReportReader &reader, const QString &heading)
{
    static const QRegularExpression row(R"(^([01]\.\d{4} ){20}$)"); // six characters and a blank
    int filled = 0;
    [&] {
        QCOMPARE(reader.line(), heading);
        for (int i = 0; i < 20; ++i) {
            const QString line = reader.line();
            QVERIFY2(row.match(line).hasMatch(), qPrintable(line));
            double sum = 0.0;
            for (const QString &cell : line.split(' ', Qt::SkipEmptyParts))
                sum += cell.toDouble();
            QVERIFY2(sum == 0.0 || std::abs(sum - 1.0) <= 20 * 0.00005 + 1e-9, qPrintable(line));
            filled += sum > 0.0 ? 1 : 0;
        }
    }();
    return filled;
}

// A heading and rows of three numbers; the number of rows.
std::size_t readCorrection(ReportReader &reader, const QString &axis)
{
    if (reader.line() != "edge point position correction function (" + axis +
                             "): measured, corrected, slope till next data point")
        return 0;
    std::size_t rows = 0;
    for (; reader.atNumbers(); ++rows)
        if (reader.lineCells().size() != 3)
            return 0;
    return rows;
}

int largestBin(const Histogram &x, const Histogram &y, const Histogram &simulated)
{
    int largest = 1;
    for (std::size_t i = 1; i < 50; ++i)
        largest = std::max({largest, x[i], y[i], simulated[i]});
    return largest;
}

// The positions of the check at the end of the report: the disc's, from the generator seeded with the count.
Histogram discPositions(int count)
{
    LegacyRandom::seed(static_cast<unsigned>(count));
    Histogram result{};
    for (int i = 0; i < count; ++i) {
        const double angle = LegacyRandom::next() / 32767.0 * 2.0 * std::acos(-1.0);
        const double r = LegacyRandom::next() / 32767.0 / std::sqrt(2.0);
        const double x = std::cos(angle) * r + 0.5;
        const double y = std::sin(angle) * r + 0.5;
        if (x >= 0.0 && x <= 1.0 && y >= 0.0 && y <= 1.0)
            ++result[std::min<std::size_t>(49, static_cast<std::size_t>(x * 50.0))];
    }
    return result;
}

int pointCount(const BasicSliceEdgePointExtractor &extractor)
{
    int count = 0;
    forEachStrong(extractor, -1.0f, [&](const EdgePoint &) { ++count; });
    return count;
}

} // namespace

class EdgePointDistributionTest : public QObject
{
    Q_OBJECT

private slots:
    // From state 1: 214013 + 2531011 = 2745024, which is 41 times 65536 and a rest. The number after it is
    // worked out in 64 bits.
    void randomNumbersHaveFifteenBits()
    {
        LegacyRandom::seed(1);
        QCOMPARE(LegacyRandom::next(), 41);
        const std::uint64_t second = (2745024ULL * 214013ULL + 2531011ULL) % 4294967296ULL;
        QCOMPARE(LegacyRandom::next(), static_cast<int>(second / 65536 % 32768));
        for (int i = 0; i < 10000; ++i) {
            const int number = LegacyRandom::next();
            QVERIFY(number >= 0 && number <= LegacyRandom::largest);
        }
    }

    void positionsInPixels()
    {
        QCOMPARE(positionInPixel(1.75f, 0.5f), 0.5);
        QCOMPARE(positionInPixel(2.0f, 0.5f), 0.0);
    }

    // A line of length 2000 at the angle a passes 2000 / max(cos a, sin a) centres of pixels within half a
    // pixel along the nearer axis, each counted twice. Over all angles of 10000 walks that is 4e7 times
    // 2 asinh(1) / (pi / 2), and a little for the last steps, which overshoot. Shifts along the gradient are
    // even. Positions have the density asinh(1 / u) / (2 asinh 1), u = 2 |x|.
    void simulationIsThatOfStraightLines()
    {
        const SimulatedDistribution &made = simulation();
        const double whole = std::asinh(1.0);
        const double expected = 4e7 * 2.0 * whole / (std::acos(-1.0) / 2.0);
        const double count = static_cast<double>(made.simulatedCount);
        QVERIFY(count > expected && count < 1.003 * expected);
        const double perBin = count / 50.0;
        const auto below = [&](double u) {
            return u == 0.0 ? 0.0 : (u * std::asinh(1.0 / u) + std::asinh(u)) / (2.0 * whole);
        };
        for (std::size_t i = 0; i < 50; ++i) {
            QVERIFY(std::abs(made.simulatedT[i] / perBin - 1.0) < 0.01);
            const double left = std::abs(static_cast<double>(i) / 25.0 - 1.0);
            const double right = std::abs(static_cast<double>(i + 1) / 25.0 - 1.0);
            const double share = std::abs(below(right) - below(left)) * 25.0;
            QVERIFY2(
                std::abs(made.simulatedX[i] / perBin - share) < 0.03 * share,
                qPrintable(QString("bin %1: %2, not %3").arg(i).arg(made.simulatedX[i] / perBin).arg(share)));
        }
        // Bins of alpha cover 9 degrees each: the share of an angle is 1 / max(cos, sin).
        std::int64_t all = 0;
        for (std::size_t i = 0; i < 20; ++i) {
            const auto &row = made.simulatedJointAlphaT[i];
            const std::int64_t sum = std::accumulate(row.begin(), row.end(), std::int64_t{0});
            const double degrees = std::abs(static_cast<double>(i) + 0.5 - 10.0) * 9.0;
            const double fromAxis = std::min(degrees, 90.0 - degrees) * std::acos(-1.0) / 180.0;
            const double share = std::acos(-1.0) / 20.0 / std::cos(fromAxis) / (4.0 * whole);
            QVERIFY(std::abs(static_cast<double>(sum) / static_cast<double>(made.simulatedCount) / share -
                             1.0) < 0.05);
            all += sum;
        }
        QCOMPARE(all, made.simulatedCount);
    }

    // The number counted by another program after the same rules, up to the rounding of the mathematical
    // library.
    void simulationHasTheKnownCount() { QVERIFY(std::abs(simulation().simulatedCount - 44957098) < 5000); }

    // Measured: all in the lower half; simulated: even. Position p below 0.5 becomes 2 p.
    void correctionSpreadsOneHalfOverTheWhole()
    {
        Histogram lower{};
        std::fill(lower.begin(), lower.begin() + 25, 8);
        Histogram even{};
        even.fill(3);
        const CorrectionFunction function = makeCorrection(lower, even);
        QCOMPARE(function.measured.size(), function.corrected.size());
        QCOMPARE(function.measured.size(), function.slope.size());
        QCOMPARE(function.measured.front(), 0.0);
        QCOMPARE(function.corrected.front(), 0.0);
        for (const double position : {0.0, 0.1, 0.25, 0.333, 0.48})
            QVERIFY(std::abs(function(position) - 2 * position) < 1e-9);
    }

    // However different the counts are: only shares compare, so corrected positions run from 0 to 1.
    void correctedPositionsRunFromZeroToOne()
    {
        Histogram few{};
        few.fill(2);
        few[20] = 30;
        const CorrectionFunction function = makeCorrection(few, simulation().simulatedX);
        QCOMPARE(function(0.0), 0.0);
        const double last = function(std::nextafter(1.0, 0.0));
        QVERIFY(last <= 1.0 && last > 1.0 - 1e-9);
        QVERIFY(function.corrected.back() > 0.9 && function.corrected.back() < 1.0);
    }

    void equalDistributionsChangeNothing()
    {
        Histogram some{};
        for (std::size_t i = 0; i < some.size(); ++i)
            some[i] = static_cast<int>(5 + i % 7);
        const CorrectionFunction function = makeCorrection(some, some);
        QCOMPARE(function.measured.size(), std::size_t{50});
        for (int i = 0; i <= 100; ++i)
            QVERIFY(std::abs(function(i / 100.0) - i / 100.0) < 1e-9);
    }

    // The lists are built from zeros: bins end at once, and no piece has a finite slope.
    void withoutMeasuredPoints_theListHasFiftyEntries()
    {
        const CorrectionFunction function = makeCorrection({}, simulation().simulatedX);
        QCOMPARE(function.measured.size(), std::size_t{50});
        for (std::size_t i = 0; i < 50; ++i) {
            QCOMPARE(function.measured[i], static_cast<double>(i) / 50.0);
            QCOMPARE(function.corrected[i], 0.0);
            QVERIFY(std::isinf(function.slope[i]));
        }
        const CorrectionFunction nothing = makeCorrection({}, {});
        QCOMPARE(nothing.measured.size(), std::size_t{50});
        QCOMPARE(nothing(0.0), 0.0); // an entry itself
        QVERIFY(!std::isfinite(nothing(0.505)));
    }

    void measuredBarsShareTheScaleOfTheSimulation()
    {
        Histogram few{};
        few[0] = 5000; // the first bin does not set the scale
        few[1] = 10;
        Histogram many{};
        many[49] = 1000;
        QCOMPARE(histogramScale(few, {}, {}), 10);
        QCOMPARE(histogramScale(few, {}, many), 1000);
        QCOMPARE(histogramScale({}, {}, {}), 1);
        std::ostringstream stream;
        printHistograms(stream, "heading", few, many, 1000);
        ReportReader reader(QString::fromStdString(stream.str()));
        const BarRows rows = readBars(reader, "heading", 1000);
        QVERIFY(reader.atEnd());
        QCOMPARE(rows.measured, few);
        QCOMPARE(rows.simulated, many);
    }

    void labelNamesTheImage()
    {
        QCOMPARE(scene().corrected.extractor->label(), QString("distribution corrected edge points in knee"));
        const Run without = runOn(nullptr);
        QCOMPARE(without.extractor->label(), QString("distribution corrected edge points in "));
        QCOMPARE(without.extractor->sliceCount(), 0);
    }

    void onlyPositionsInsideTheSliceChange()
    {
        const auto &corrected = *scene().corrected.extractor;
        int moved = 0;
        for (int k = 0; k < scene().plain.sliceCount(); ++k) {
            const auto &before = scene().plain.slicePoints(k);
            const auto &after = corrected.slicePoints(k);
            QCOMPARE(after.size(), before.size());
            for (std::size_t i = 0; i < before.size(); ++i) {
                EdgePoint expected = before[i];
                expected.x = after[i].x;
                expected.y = after[i].y;
                QCOMPARE(std::memcmp(&expected, &after[i], offsetof(EdgePoint, excluded)), 0);
                QVERIFY(!after[i].excluded);
                // Every point stays in its pixel, up to what the slope behind the entry makes of it.
                const double column = after[i].x / 0.5f - std::floor(before[i].x / 0.5f);
                const double row = after[i].y / 0.25f - std::floor(before[i].y / 0.25f);
                QVERIFY(column > -0.003 && column <= 1.0 + 1e-5);
                QVERIFY(row > -0.003 && row <= 1.0 + 1e-5);
                moved += after[i].x != before[i].x || after[i].y != before[i].y ? 1 : 0;
            }
        }
        QVERIFY(moved > pointCount(scene().plain) / 2);
    }

    void positionsAreThoseOfTheExactCorrection()
    {
        const ExactCorrection alongX = exactCorrection(&EdgePoint::x, 0.5f);
        const ExactCorrection alongY = exactCorrection(&EdgePoint::y, 0.25f);
        const auto &corrected = *scene().corrected.extractor;
        const auto check = [](float before, float after, float spacing, const ExactCorrection &correction) {
            const double position = inPixel(before, spacing);
            const double pixel = std::floor(static_cast<double>(before) / static_cast<double>(spacing));
            const double expected = (pixel + correction.applied(position)) * static_cast<double>(spacing);
            // Coordinates up to 64 mm in single precision.
            QVERIFY(std::abs(static_cast<double>(after) - expected) < 4e-6);
            // The slope behind the entry, not the one before it: up to half a bin's noise beside the map of
            // shares.
            QVERIFY(std::abs(correction.applied(position) - correction.monotonic(position)) < 0.01);
        };
        int checked = 0;
        for (int k = 0; k < corrected.sliceCount(); ++k)
            for (std::size_t i = 0; i < corrected.slicePoints(k).size(); ++i) {
                const EdgePoint &before = scene().plain.slicePoints(k)[i];
                const EdgePoint &after = corrected.slicePoints(k)[i];
                check(before.x, after.x, 0.5f, alongX);
                check(before.y, after.y, 0.25f, alongY);
                if (QTest::currentTestFailed())
                    return;
                ++checked;
            }
        QVERIFY(checked > 1000);
    }

    void reportIsComplete()
    {
        const Scene &made = scene();
        const float limit = strongest(made.plain) * 0.5f;
        const Histogram x = counted(made.plain, limit, &EdgePoint::x, 0.5f);
        const Histogram y = counted(made.plain, limit, &EdgePoint::y, 0.25f);
        const double count = std::accumulate(x.begin(), x.end(), 0.0);
        const int scale = largestBin(x, y, simulation().simulatedX);

        ReportReader reader(made.corrected.report);
        const QString bars = "Measured (***) and simulated (---) edge point ";
        const BarRows rowsX = readBars(reader, bars + "x positions", scale);
        const BarRows rowsY = readBars(reader, bars + "y positions", scale);
        const BarRows rowsT = readBars(reader, bars + "t positions", scale);
        QCOMPARE(rowsX.measured, x);
        QCOMPARE(rowsY.measured, y);
        QCOMPARE(rowsX.simulated, simulation().simulatedX);
        QCOMPARE(rowsY.simulated, simulation().simulatedX);
        QCOMPARE(rowsT.simulated, simulation().simulatedT);
        QCOMPARE(std::accumulate(rowsT.measured.begin(), rowsT.measured.end(), 0.0), count);

        QCOMPARE(readTable(reader, "Measured distribution of edge point x and y positions"), count);
        QCOMPARE(readTable(reader, "Measured distribution of edge point alpha and t positions"), count);
        QCOMPARE(readTable(reader, "Measured distribution of edge point theta and t positions"), count);
        QVERIFY(readRowTable(reader, "Per-angle normalized measured distribution of edge point alpha and t "
                                     "positions") > 15);
        // Scaled to as many points as were measured; printed with six digits.
        const double scaled = readTable(reader, "Simulated distribution of edge point alpha and t positions");
        QVERIFY(std::abs(scaled / count - 1.0) < 1e-5);
        QCOMPARE(readRowTable(reader, "Per-angle normalized simulated distribution of edge point alpha and t "
                                      "positions"),
                 20);
        QCOMPARE(readCorrection(reader, "x"), exactCorrection(&EdgePoint::x, 0.5f).size());
        QCOMPARE(readCorrection(reader, "y"), exactCorrection(&EdgePoint::y, 0.25f).size());

        const auto &corrected = *made.corrected.extractor;
        const float strongLimit = strongest(made.plain) / 4.0f * 3.0f;
        const Histogram afterX = counted(corrected, strongLimit, &EdgePoint::x, 0.5f);
        const Histogram afterY = counted(corrected, strongLimit, &EdgePoint::y, 0.25f);
        const Histogram disc = discPositions(std::accumulate(afterX.begin(), afterX.end(), 0));
        const int scaleAfter = largestBin(afterX, afterY, disc);
        const QString corrections = "Measured corrected (***) and simulated (---) edge point ";
        const BarRows correctedX = readBars(reader, corrections + "x positions", scaleAfter);
        const BarRows correctedY = readBars(reader, corrections + "y positions", scaleAfter);
        QCOMPARE(correctedX.measured, afterX);
        QCOMPARE(correctedY.measured, afterY);
        QCOMPARE(correctedX.simulated, disc);
        QCOMPARE(correctedY.simulated, disc);
        QVERIFY(reader.atEnd());
    }

    // The seed is the number of strong points; two numbers are drawn for each of them.
    void generatorIsSeededWithTheCountOfStrongPoints()
    {
        const Run run = runOn(scene().discs.volume.get());
        const int drawn = LegacyRandom::next();
        int count = 0;
        forEachStrong(*run.extractor, strongest(*run.extractor) / 4.0f * 3.0f,
                      [&](const EdgePoint &) { ++count; });
        QVERIFY(count > 1000);
        LegacyRandom::seed(static_cast<unsigned>(count));
        for (int i = 0; i < 2 * count; ++i)
            LegacyRandom::next();
        QCOMPARE(drawn, LegacyRandom::next());
    }

    // The generator goes on, so the second simulation differs a little from the first, and with it positions.
    void secondConstructionEndsToo()
    {
        const Run second = runOn(scene().discs.volume.get());
        QCOMPARE(pointCount(*second.extractor), pointCount(scene().plain));
        QVERIFY(second.report != scene().corrected.report);
        for (int k = 0; k < second.extractor->sliceCount(); ++k)
            for (std::size_t i = 0; i < second.extractor->slicePoints(k).size(); ++i) {
                const EdgePoint &first = scene().corrected.extractor->slicePoints(k)[i];
                const EdgePoint &again = second.extractor->slicePoints(k)[i];
                QVERIFY(std::abs(again.x - first.x) < 0.01f && std::abs(again.y - first.y) < 0.01f);
            }
    }

    // Exact halves and edges along the axes lie on the outermost limits of the histograms. A point on the
    // border of two pixels has the position 0, takes the first entry, and stays.
    void pointsOnTheBordersOfPixelsStay()
    {
        auto image = newVolume(MERV::TypeUChar, {16, 16, 2},
                               [](int x, int y, int z) { return (z == 0 ? x : y) / 4 % 2 * 255; });
        image->setSpacing(0.5f, 0.25f, 2.0f, 1.0f);
        MervImageObject steps(image.release(), "steps");
        const ConventionalSliceEdgePointExtractor plain(&steps);
        const Run run = runOn(&steps);
        int onBorder = 0;
        for (int k = 0; k < 2; ++k)
            for (std::size_t i = 0; i < plain.slicePoints(k).size(); ++i) {
                const EdgePoint &before = plain.slicePoints(k)[i];
                const EdgePoint &after = run.extractor->slicePoints(k)[i];
                QVERIFY(std::isfinite(after.x) && std::isfinite(after.y));
                if (inPixel(before.x, 0.5f) == 0.0) {
                    QCOMPARE(after.x, before.x);
                    ++onBorder;
                }
                if (inPixel(before.y, 0.25f) == 0.0) {
                    QCOMPARE(after.y, before.y);
                    ++onBorder;
                }
            }
        QVERIFY(onBorder > 20);
    }

    void withoutEdges_theReportIsWhole()
    {
        MervImageObject flat(newVolume(MERV::TypeUChar, {8, 8, 2}).release(), "flat");
        const Run run = runOn(&flat);
        QCOMPARE(run.extractor->sliceCount(), 2);
        QCOMPARE(pointCount(*run.extractor), 0);
        QVERIFY(run.report.contains("\n0 0 inf\n"));
        QVERIFY(run.report.endsWith("\n" + QString(118, ' ') + "0.98 0 0\n"));
    }
};

QTEST_GUILESS_MAIN(EdgePointDistributionTest)
#include "EdgePointDistributionTest.moc"
