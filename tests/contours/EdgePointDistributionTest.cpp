#include "contours/EdgePointDistribution.h"
#include "Common/Image.h"
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/DistributionCorrectingSliceEdgePointExtractor.h"
#include "contours/LegacyRandom.h"
#include "objects/MervImageObject.h"

#include <QTest>

#include <cmath>
#include <functional>
#include <iostream>
#include <memory>
#include <numeric>
#include <random>
#include <sstream>

namespace {

// Takes what is written to standard output for as long as it lives.
class CapturedOutput
{
public:
    CapturedOutput()
        : before(std::cout.rdbuf(text.rdbuf()))
    {}
    ~CapturedOutput() { std::cout.rdbuf(before); }
    std::string str() const { return text.str(); }

private:
    std::ostringstream text;
    std::streambuf *before;
};

std::unique_ptr<MervImageObject> makeVolume(int size, int depth,
                                            const std::function<double(int, int, int)> &value)
{
    MERV::Image *image = MERV::createImage(MERV::TypeUChar);
    image->setDimensions(size, size, depth, 1, 1);
    image->setSpacing(0.5f, 0.25f, 2.0f, 1.0f);
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                image->setVoxel(static_cast<float>(value(x, y, z)), x, y, z, 0, 0);
    image->setWindowRange(0.0f, 255.0f, 0);
    return std::make_unique<MervImageObject>(image, QString("knee"));
}

// Discs with soft rims at places that differ from slice to slice.
std::unique_ptr<MervImageObject> makeDiscs()
{
    std::mt19937 random(4);
    std::vector<std::array<double, 3>> discs;
    for (int i = 0; i < 12; ++i)
        discs.push_back({28 + static_cast<double>(random() % 800) / 100,
                         28 + static_cast<double>(random() % 800) / 100,
                         14 + static_cast<double>(random() % 900) / 100});
    return makeVolume(64, 12, [&](int x, int y, int z) {
        const auto &[cx, cy, r] = discs[static_cast<std::size_t>(z)];
        const double outside = std::hypot(x + 0.5 - cx, y + 0.5 - cy) - r;
        return 30.0 + 200.0 * std::clamp(0.5 - outside, 0.0, 1.0);
    });
}

Histogram positions(const BasicSliceEdgePointExtractor &extractor)
{
    Histogram result{};
    for (int k = 0; k < extractor.sliceCount(); ++k)
        for (const EdgePoint &point : extractor.slicePoints(k)) {
            const double bin = positionInPixel(point.x, 0.5f) * histogramBins;
            ++result[static_cast<std::size_t>(std::clamp(bin, 0.0, histogramBins - 1.0))];
        }
    return result;
}

// Largest difference of the cumulative shares.
double distributionDistance(const Histogram &a, const Histogram &b)
{
    const double totalA = std::accumulate(a.begin(), a.end(), 0.0);
    const double totalB = std::accumulate(b.begin(), b.end(), 0.0);
    double difference = 0.0;
    double largest = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        difference += a[i] / totalA - b[i] / totalB;
        largest = std::max(largest, std::abs(difference));
    }
    return largest;
}

const SimulatedDistribution &simulation()
{
    static const SimulatedDistribution made = [] {
        LegacyRandom::seed(1);
        return simulateDistribution();
    }();
    return made;
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

    // All samples twice, for both signs of the angle, so the angles are symmetric. Shares of positions are
    // symmetric about the middle up to chance.
    void simulationIsSymmetric()
    {
        const SimulatedDistribution &made = simulation();
        // As counted by another program after the same rules, up to the rounding of the mathematical library.
        QVERIFY(std::abs(made.count - 44957098) < 5000);
        std::int64_t x = 0;
        std::int64_t joint = 0;
        for (std::size_t i = 0; i < made.x.size(); ++i) {
            x += made.x[i];
            const double mirrored = made.x[made.x.size() - 1 - i];
            QVERIFY(std::abs(made.x[i] - mirrored) < 0.1 * mirrored);
        }
        for (const auto &row : made.alphaT)
            joint = std::accumulate(row.begin(), row.end(), joint);
        QCOMPARE(x, made.count);
        QCOMPARE(joint, made.count);
    }

    // Measured: all in the lower half; simulated: even. Position p below 0.5 becomes 2 p.
    void correctionSpreadsOneHalfOverTheWhole()
    {
        Histogram lower{};
        std::fill(lower.begin(), lower.begin() + 25, 8);
        Histogram even{};
        even.fill(3);
        const CorrectionFunction function = makeCorrection(lower, even);
        QCOMPARE(function.measured.size(), function.corrected.size());
        QCOMPARE(function.measured.front(), 0.0);
        QCOMPARE(function.corrected.front(), 0.0);
        for (const double position : {0.0, 0.1, 0.25, 0.333, 0.48})
            QVERIFY(std::abs(function(position) - 2 * position) < 1e-9);
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

    void emptyHistogramsGiveNoFiniteSlope()
    {
        const CorrectionFunction function = makeCorrection({}, {});
        QCOMPARE(function.measured.size(), std::size_t{50});
        QCOMPARE(function(0.0), 0.0); // an entry itself
        QVERIFY(!std::isfinite(function(0.505)));
    }

    void reportHasFiftyRowsAndBoundedBars()
    {
        Histogram some{};
        some[0] = 1000; // left out of the scale
        some[1] = 10;
        std::ostringstream stream;
        printHistograms(stream, "heading", some, some, histogramScale(some, {}, {}));
        std::istringstream lines(stream.str());
        std::string line;
        std::getline(lines, line);
        QCOMPARE(QString::fromStdString(line), QString("heading"));
        int count = 0;
        while (std::getline(lines, line)) {
            ++count;
            QVERIFY(std::count(line.begin(), line.end(), '*') <= 58);
            QVERIFY(std::count(line.begin(), line.end(), '-') <= 58);
        }
        QCOMPARE(count, 100);
        QCOMPARE(histogramScale({}, {}, {}), 1);
    }

    void correctedPointsAreSpreadAsSimulated()
    {
        const auto volume = makeDiscs();
        const ConventionalSliceEdgePointExtractor plain(volume.get());
        std::unique_ptr<DistributionCorrectingSliceEdgePointExtractor> corrected;
        QString report;
        {
            const CapturedOutput output;
            corrected = std::make_unique<DistributionCorrectingSliceEdgePointExtractor>(volume.get());
            report = QString::fromStdString(output.str());
        }
        QCOMPARE(corrected->label(), QString("distribution corrected edge points in knee"));
        for (const char *heading :
             {"Measured (***) and simulated (---) edge point x positions",
              "Measured (***) and simulated (---) edge point y positions",
              "Measured (***) and simulated (---) edge point t positions",
              "Measured distribution of edge point x and y positions",
              "Measured distribution of edge point alpha and t positions",
              "Measured distribution of edge point theta and t positions",
              "Per-angle normalized measured distribution of edge point alpha and t positions",
              "Simulated distribution of edge point alpha and t positions",
              "Per-angle normalized simulated distribution of edge point alpha and t positions",
              "edge point position correction function (x): measured, corrected, slope till next data point",
              "edge point position correction function (y): measured, corrected, slope till next data point",
              "Measured corrected (***) and simulated (---) edge point x positions",
              "Measured corrected (***) and simulated (---) edge point y positions"})
            QVERIFY2(report.contains(heading), heading);
        QVERIFY(distributionDistance(positions(*corrected), simulation().x) <
                0.5 * distributionDistance(positions(plain), simulation().x));
        for (int k = 0; k < plain.sliceCount(); ++k) {
            const auto &before = plain.slicePoints(k);
            const auto &after = corrected->slicePoints(k);
            QCOMPARE(before.size(), after.size());
            for (std::size_t i = 0; i < before.size(); ++i) {
                // Every point stays in its pixel, all else as it was.
                const double pixel = std::trunc(before[i].x / 0.5);
                QVERIFY(after[i].x / 0.5 - pixel > -0.01 && after[i].x / 0.5 - pixel < 1.01);
                QVERIFY(after[i].z == before[i].z && after[i].xS == before[i].xS &&
                        after[i].yS == before[i].yS);
                QVERIFY(after[i].gx == before[i].gx && after[i].strength == before[i].strength);
            }
        }
    }

    // Exact halves and horizontal edges lie on the outermost limits of the histograms.
    void stepEdgesAndFlatVolumesAreHarmless()
    {
        const CapturedOutput output;
        const auto steps =
            makeVolume(16, 2, [](int x, int y, int z) { return (z == 0 ? x : y) / 4 % 2 * 255.0; });
        const DistributionCorrectingSliceEdgePointExtractor edges(steps.get());
        QVERIFY(edges.slicePoints(1).size() > 20);
        for (const EdgePoint &point : edges.slicePoints(1))
            QVERIFY(std::isfinite(point.x) && std::isfinite(point.y));
        const auto flat = makeVolume(8, 1, [](int, int, int) { return 9.0; });
        const DistributionCorrectingSliceEdgePointExtractor none(flat.get());
        QVERIFY(none.slicePoints(0).empty());
        QVERIFY(output.str().find("y positions") != std::string::npos);
    }
};

QTEST_GUILESS_MAIN(EdgePointDistributionTest)
#include "EdgePointDistributionTest.moc"
