#include "contours/SegmentGuess.h"
#include "contours/SlicedContoursSegment.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

namespace {

// Points in memory, found by a plain walk. Remembers how often it was asked.
class PointsInMemory : public EdgePointSource
{
public:
    std::vector<EdgePoint> points;
    float voxelSize = 1.0f;
    int queries = 0;
    float lastRadius = 0.0f;

    EdgePointList *edgePointsNear(float x, float y, float z, float radius) override
    {
        ++queries;
        lastRadius = radius;
        auto found = std::make_unique<EdgePointList>();
        for (EdgePoint &point : points)
            if (std::abs(point.x - x) <= radius && std::abs(point.y - y) <= radius &&
                std::abs(point.z - z) <= radius)
                found->append(&point);
        return found.release();
    }
    float analyzedGranularity() const override { return voxelSize; }
};

double norm(const Vector3 &v)
{
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

Vector3 difference(const Vector3 &a, const Vector3 &b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

// The cosine of the angle between two vectors; 0 if one of them has no length.
double cosine(const Vector3 &a, const Vector3 &b)
{
    const double lengths = norm(a) * norm(b);
    return lengths > 0.0 ? (a.x * b.x + a.y * b.y + a.z * b.z) / lengths : 0.0;
}

// The walk in one piece: what guessSegment() is to do for paths of ordinary size.
void guessPlainly(SlicedContoursSegment &target, const QList<Vector3> &path, PointsInMemory &source)
{
    const double voxel = static_cast<double>(source.voxelSize);
    Vector3 walker = path[0];
    Vector3 edge = path[0];
    for (int i = 0; i < path.size() - 1;) {
        const Vector3 before = walker;
        const Vector3 ahead = difference(path[i + 1], walker);
        if (norm(ahead) > 0.1)
            walker = {walker.x + 0.1 * ahead.x / norm(ahead), walker.y + 0.1 * ahead.y / norm(ahead),
                      walker.z + 0.1 * ahead.z / norm(ahead)};
        else
            walker = path[++i];
        const double frac = i < path.size() - 1
                                ? norm(difference(walker, path[i])) / norm(difference(path[i + 1], path[i]))
                                : 1.0;
        const std::unique_ptr<EdgePointList> candidates(
            source.edgePointsNear(static_cast<float>(edge.x), static_cast<float>(edge.y),
                                  static_cast<float>(edge.z), 5.0f * source.voxelSize));
        const int count = target.pointCount();
        const EdgePoint *best = nullptr;
        double bestScore = 0.0;
        for (const EdgePoint *candidate : *candidates) {
            const Vector3 position{candidate->x, candidate->y, candidate->z};
            const Vector3 v = difference(position, edge);
            const double farther = norm(difference(position, walker)) - norm(difference(edge, walker));
            double score = 2.0 * static_cast<double>(candidate->strength);
            if (norm(v) == 0.0) {
                score += 1.0 + 0.5 + (count >= 2 ? 1.0 : 0.0);
            } else {
                score += 4.0 * std::pow(2.0, -std::pow(norm(v) / voxel - 1.0, 2.0));
                score += 0.5 * cosine(v, difference(walker, before));
                if (count >= 2) {
                    const QPointF last = target.point(count - 2);
                    score += std::pow(cosine(v, difference(edge, {last.x(), last.y(), edge.z})), 2.0);
                }
            }
            if (farther > 0.0)
                score -= farther + 4.0 * frac * frac + 0.5;
            if (best == nullptr || score > bestScore) {
                best = candidate;
                bestScore = score;
            }
        }
        if (best != nullptr) {
            target.addPointBack({best->x, best->y});
            edge.x = best->x;
            edge.y = best->y;
        }
    }
}

} // namespace

class SegmentGuessTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingNearLeavesTheTargetAlone()
    {
        PointsInMemory source;
        SlicedContoursSegment target({0, 0}, 1.0f);
        QCOMPARE(guessSegment(&target, {{0, 0, 1}, {1, 0, 1}}, source), &target);
        QCOMPARE(target.pointCount(), 1);
        QVERIFY(source.queries >= 10); // a step is 0.1 mm
        QVERIFY(source.queries <= 12);
        QCOMPARE(source.lastRadius, 5.0f);
    }

    void emptyAndSinglePointPathsAreNoWalk()
    {
        PointsInMemory source;
        SlicedContoursSegment target;
        QCOMPARE(guessSegment(&target, {}, source), &target);
        QCOMPARE(guessSegment(&target, {{1, 1, 1}}, source), &target);
        QCOMPARE(source.queries, 0);
    }

    // Strong points one voxel apart along y = 0.2: the edge position hops from each to the next and the line
    // keeps to them, in order, for the whole path.
    void followsARowOfEdgePoints()
    {
        PointsInMemory source;
        for (int i = 0; i <= 20; ++i)
            source.points.emplace_back(static_cast<float>(i), 0.2f * static_cast<float>(i % 2), 2.0f, 0.8f);
        SlicedContoursSegment target({0, 0}, 2.0f);
        guessSegment(&target, {{0, 0, 2}, {20, 0, 2}}, source);
        const std::vector<QPointF> line = target.snapshot().points;
        QVERIFY(line.size() >= 15);
        for (std::size_t i = 1; i < line.size(); ++i)
            QVERIFY(line[i].x() > line[i - 1].x());
        QVERIFY(line.back().x() >= 18.0);
    }

    // Two candidates at the same distance of one voxel: the path's direction decides. After the first step of
    // 0.1 the candidate ahead is nearer to the walker, and its hop runs with the walk (+0.5 against -0.5).
    void directionOfThePathDecides()
    {
        PointsInMemory source;
        source.points.emplace_back(-1.0f, 0.0f, 0.0f, 0.5f);
        source.points.emplace_back(1.0f, 0.0f, 0.0f, 0.5f);
        SlicedContoursSegment target;
        guessSegment(&target, {{0, 0, 0}, {0.15, 0, 0}}, source);
        QVERIFY(target.pointCount() >= 1);
        QCOMPARE(target.point(0), QPointF(1, 0));
    }

    // One step, walker at (0.1, 0), edge position at (0, 0), voxel size 1, w = (1, 0). Both candidates lie
    // farther from the walker than the edge position (0.1), so both lose the excess and 4 frac^2 + 0.5 alike.
    // (0, 1), strength 0.6: 1.2 + 4 + 0 + (0.1 - sqrt 1.01) = 4.295.
    // (0, 2), strength 1.0: 2.0 + 4 / 2 + 0 + (0.1 - sqrt 4.01) = 2.098. The favourite distance is one voxel.
    void favouriteDistanceIsOneVoxel()
    {
        PointsInMemory source;
        source.points.emplace_back(0.0f, 2.0f, 0.0f, 1.0f);
        source.points.emplace_back(0.0f, 1.0f, 0.0f, 0.6f);
        SlicedContoursSegment target;
        guessSegment(&target, {{0, 0, 0}, {0.1, 0, 0}}, source);
        QCOMPARE(target.snapshot().points, (std::vector<QPointF>{{0, 1}}));
    }

    void firstCandidateWinsOnTies()
    {
        PointsInMemory source;
        source.points.emplace_back(0.0f, 1.0f, 0.0f, 0.6f);
        source.points.emplace_back(0.0f, -1.0f, 0.0f, 0.6f);
        SlicedContoursSegment target;
        guessSegment(&target, {{0, 0, 0}, {0.1, 0, 0}}, source);
        QCOMPARE(target.point(0), QPointF(0, 1));
    }

    // Scattered points along bent paths: the line is that of the walk written down plainly.
    void lineIsThatOfThePlainWalk()
    {
        std::mt19937 random(11);
        const auto number = [&](double range) {
            return range * static_cast<double>(random() % 10007) / 10007.0;
        };
        int points = 0;
        for (int round = 0; round < 60; ++round) {
            PointsInMemory source;
            source.voxelSize = round % 2 == 0 ? 1.0f : 0.35f;
            for (int i = 0; i < 150; ++i)
                source.points.emplace_back(static_cast<float>(number(12.0)), static_cast<float>(number(6.0)),
                                           2.0f + static_cast<float>(number(0.2)),
                                           static_cast<float>(number(1.2)));
            QList<Vector3> path;
            for (int i = 0; i < 4; ++i)
                path.append({3.5 * i + number(1.0), number(6.0), 2.0});
            SlicedContoursSegment guessed({path[0].x, path[0].y}, 2.0f);
            SlicedContoursSegment plain({path[0].x, path[0].y}, 2.0f);
            guessSegment(&guessed, path, source);
            guessPlainly(plain, path, source);
            QVERIFY(guessed.snapshot().points == plain.snapshot().points);
            points += plain.pointCount();
        }
        QVERIFY(points > 300);
    }

    // The edge position keeps the z of the path's start; the points' own z only counts as distance.
    void zStaysThatOfThePath()
    {
        PointsInMemory source;
        for (int i = 0; i < 6; ++i)
            source.points.emplace_back(static_cast<float>(i), 0.0f, 3.5f, 0.5f);
        SlicedContoursSegment target({0, 0}, 3.0f);
        guessSegment(&target, {{0, 0, 3}, {5, 0, 3}}, source);
        QCOMPARE(target.z(), 3.0f);
        QVERIFY(target.pointCount() >= 2);
    }

    // Repeated points of a path are pieces of no length.
    void repeatedPathPointsAreHarmless()
    {
        PointsInMemory source;
        source.points.emplace_back(1.0f, 0.0f, 0.0f, 0.5f);
        SlicedContoursSegment target;
        guessSegment(&target, {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {1, 0, 0}}, source);
        for (const QPointF &point : target.snapshot().points)
            QVERIFY(std::isfinite(point.x()) && std::isfinite(point.y()));
        QVERIFY(target.pointCount() >= 1);
    }

    void wildPathsComeToAnEnd_data()
    {
        QTest::addColumn<QList<Vector3>>("path");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("not a number") << QList<Vector3>{{0, 0, 0}, {nan, 0, 0}, {1, 0, 0}};
        QTest::newRow("starts nowhere") << QList<Vector3>{{nan, nan, nan}, {1, 0, 0}};
        QTest::newRow("infinite") << QList<Vector3>{{0, 0, 0}, {infinity, 0, 0}, {1, 0, 0}};
        QTest::newRow("too far for the step to count") << QList<Vector3>{{1e17, 0, 0}, {1e17 + 64, 0, 0}};
        QTest::newRow("a jump of a thousand kilometres") << QList<Vector3>{{0, 0, 0}, {1e9, 0, 0}, {0, 0, 0}};
    }
    void wildPathsComeToAnEnd()
    {
        QFETCH(QList<Vector3>, path);
        PointsInMemory source;
        source.points.emplace_back(1.0f, 0.0f, 0.0f, 0.5f);
        SlicedContoursSegment target;
        guessSegment(&target, path, source);
        QVERIFY(source.queries < 100);
    }
};

QTEST_GUILESS_MAIN(SegmentGuessTest)
#include "SegmentGuessTest.moc"
