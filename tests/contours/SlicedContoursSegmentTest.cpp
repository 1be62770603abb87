#include "contours/SlicedContoursSegment.h"
#include "contours/SlicedContoursFragment.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

namespace {

using Points = std::vector<QPointF>;
using Segment = SlicedContoursSegment;

Points pointsOf(const Segment &segment)
{
    return segment.snapshot().points;
}

// Appended from the front, which keeps all points as they are as long as none repeats.
void fill(Segment &segment, const Points &points)
{
    segment.beginUpdates();
    for (auto point = points.rbegin(); point != points.rend(); ++point)
        segment.addPointFront(*point);
    segment.endUpdates();
    QCOMPARE(pointsOf(segment), points);
}

auto updatedSignal()
{
    return qOverload<QObject *>(&Segment::updated);
}

// What a point at the back does to a line, by a walk over all points.
void addPlainly(Points &line, const QPointF &point)
{
    const auto same = [&](const QPointF &other) {
        return std::abs(other.x() - point.x()) <= 1e-12 && std::abs(other.y() - point.y()) <= 1e-12;
    };
    const std::size_t count = line.size();
    if (count >= 1 && same(line.back()))
        return;
    const auto met = std::find_if(line.begin(), line.end(), same);
    if (count >= 2 && same(line[count - 2])) {
        line.pop_back();
    } else if (met != line.end() && met != line.begin()) {
        line.erase(met + 1, line.end());
    } else {
        if (count >= 2) {
            const QPointF ab = line[count - 2] - line[count - 1];
            const QPointF bp = line[count - 1] - point;
            if (ab.x() / bp.x() == ab.y() / bp.y() || (ab.x() == 0 && bp.x() == 0) ||
                (ab.y() == 0 && bp.y() == 0))
                line.pop_back();
        }
        line.push_back(point);
    }
}

bool identical(const Points &left, const Points &right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const QPointF &a, const QPointF &b) { return a.x() == b.x() && a.y() == b.y(); });
}

// n points with y = 0 and x = 0, 10, 20, ...
Points row(int n)
{
    Points points;
    for (int i = 0; i < n; ++i)
        points.emplace_back(10.0 * i, 0.0);
    return points;
}

} // namespace

class SlicedContoursSegmentTest : public QObject
{
    Q_OBJECT

private slots:
    void readsPointsFromBothEnds()
    {
        Segment segment({1, 2}, 3.5f);
        segment.addPointFront({3, 4});
        segment.addPointFront({5, 6});
        QCOMPARE(segment.pointCount(), 3);
        QCOMPARE(segment.z(), 3.5f);
        QCOMPARE(segment.point(0), QPointF(5, 6));
        QCOMPARE(segment.point(-1), QPointF(1, 2));
        QCOMPARE(segment.point(-3), QPointF(5, 6));
        QCOMPARE(segment.point(3), QPointF());
        QCOMPARE(segment.point(-4), QPointF());
        QCOMPARE(segment.lastPoint(), QPointF(1, 2));
        QCOMPARE(segment.pointWalked(0, 1), QPointF(5, 6));
        QCOMPARE(segment.pointWalked(0, 0), QPointF(5, 6));
        QCOMPARE(segment.pointWalked(0, -1), QPointF(1, 2));
        QCOMPARE(segment.pointWalked(2, -1), QPointF(5, 6));
        QCOMPARE(segment.pointWalked(3, -1), QPointF());
        QCOMPARE(Segment().lastPoint(), QPointF());
        QCOMPARE(Segment().z(), 0.0f);
        QCOMPARE(segment.graphicsType(), 5);
        QCOMPARE(segment.displayName(), QString("some graphics object"));
        QCOMPARE(segment.parentGraphicsObject(), static_cast<GraphicsObject *>(nullptr));
    }

    void lengthsClampTheirIndex()
    {
        Segment segment;
        fill(segment, {{0, 0}, {3, 4}, {3, 10}, {4, 10}}); // 5, 6, 1
        QCOMPARE(segment.length(), 12.0f);
        QCOMPARE(segment.lengthUpTo(-1), 0.0f);
        QCOMPARE(segment.lengthUpTo(0), 0.0f);
        QCOMPARE(segment.lengthUpTo(2), 11.0f);
        QCOMPARE(segment.lengthUpTo(99), 12.0f);
        QCOMPARE(segment.lengthFrom(-5), 12.0f);
        QCOMPARE(segment.lengthFrom(1), 7.0f);
        QCOMPARE(segment.lengthFrom(3), 0.0f);
        QCOMPARE(segment.lengthFrom(4), 0.0f);
        QCOMPARE(Segment().length(), 0.0f);
        QCOMPARE(Segment().lengthUpTo(0), 0.0f);
        QCOMPARE(Segment({1, 1}, 0.0f).length(), 0.0f);
    }

    void addPointBack_data()
    {
        QTest::addColumn<Points>("before");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<Points>("after");
        const Points corner{{0, 0}, {1, 0}, {1, 1}};
        const Points zigzag{{0, 0}, {1, 0}, {1, 1}, {2, 1}, {2, 3}};
        QTest::newRow("empty") << Points{} << QPointF(1, 1) << Points{{1, 1}};
        QTest::newRow("second") << Points{{0, 0}} << QPointF(1, 1) << Points{{0, 0}, {1, 1}};
        QTest::newRow("steps back") << corner << QPointF(1, 0) << Points{{0, 0}, {1, 0}};
        QTest::newRow("steps back within tolerance")
            << corner << QPointF(1 + 5e-13, 0) << Points{{0, 0}, {1, 0}};
        QTest::newRow("steps back to the start") << Points{{0, 0}, {1, 0}} << QPointF(0, 0) << Points{{0, 0}};
        QTest::newRow("cuts off the loop") << zigzag << QPointF(1, 0) << Points{{0, 0}, {1, 0}};
        QTest::newRow("closes at the first point")
            << corner << QPointF(0, 0) << Points{{0, 0}, {1, 0}, {1, 1}, {0, 0}};
        QTest::newRow("corner stays")
            << Points{{0, 0}, {1, 0}} << QPointF(2, 1) << Points{{0, 0}, {1, 0}, {2, 1}};
        QTest::newRow("straight along x")
            << Points{{0, 0}, {1, 0}} << QPointF(2, 0) << Points{{0, 0}, {2, 0}};
        QTest::newRow("straight along y")
            << Points{{3, 0}, {3, 1}} << QPointF(3, 5) << Points{{3, 0}, {3, 5}};
        // (-1 / -2) == (-2 / -4)
        QTest::newRow("straight and oblique")
            << Points{{0, 0}, {1, 2}} << QPointF(3, 6) << Points{{0, 0}, {3, 6}};
        QTest::newRow("straight but by rounding") << Points{{0, 0}, {0.1, 0.3}} << QPointF(0.2, 0.60000001)
                                                  << Points{{0, 0}, {0.1, 0.3}, {0.2, 0.60000001}};
        // A point further back on the same line: the line becomes shorter, and only one point goes.
        QTest::newRow("straight backwards")
            << Points{{0, 0}, {4, 0}} << QPointF(2, 0) << Points{{0, 0}, {2, 0}};
    }
    void addPointBack()
    {
        QFETCH(Points, before);
        QFETCH(QPointF, point);
        QFETCH(Points, after);
        Segment segment;
        fill(segment, before);
        QSignalSpy spy(&segment, updatedSignal());
        segment.addPointBack(point);
        QCOMPARE(pointsOf(segment), after);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy[0][0].value<QObject *>(), static_cast<QObject *>(&segment));
    }

    void addPointFront_data()
    {
        QTest::addColumn<Points>("before");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<Points>("after");
        const Points corner{{1, 1}, {1, 0}, {0, 0}};
        QTest::newRow("empty") << Points{} << QPointF(1, 1) << Points{{1, 1}};
        QTest::newRow("steps back") << corner << QPointF(1, 0) << Points{{1, 0}, {0, 0}};
        QTest::newRow("cuts off the loop")
            << Points{{2, 3}, {2, 1}, {1, 1}, {1, 0}, {0, 0}} << QPointF(1, 0) << Points{{1, 0}, {0, 0}};
        QTest::newRow("closes at the last point")
            << corner << QPointF(0, 0) << Points{{0, 0}, {1, 1}, {1, 0}, {0, 0}};
        QTest::newRow("collinear points stay")
            << Points{{1, 0}, {2, 0}} << QPointF(0, 0) << Points{{0, 0}, {1, 0}, {2, 0}};
    }
    void addPointFront()
    {
        QFETCH(Points, before);
        QFETCH(QPointF, point);
        QFETCH(Points, after);
        Segment segment;
        fill(segment, before);
        QSignalSpy spy(&segment, updatedSignal());
        segment.addPointFront(point);
        QCOMPARE(pointsOf(segment), after);
        QCOMPARE(spy.count(), 1);
    }

    // A patch that touches one vertex with both ends goes in backwards and repeats the vertex (10, 0).
    void firstOfSeveralOccurrencesCounts()
    {
        const auto withRepeatedVertex = [](Segment &segment) {
            fill(segment, {{0, 0}, {10, 0}, {20, 20}, {50, 50}, {60, 10}});
            auto *patch = new Segment;
            fill(*patch, {{20, 20.5}, {10, 0}, {20, 19.5}});
            QVERIFY(segment.replaceWith(patch, nullptr));
            const Points expected{{0, 0}, {10, 0}, {20, 19.5}, {10, 0}, {20, 20.5}, {50, 50}, {60, 10}};
            QCOMPARE(pointsOf(segment), expected);
        };
        Segment back;
        withRepeatedVertex(back);
        back.addPointBack({10, 0});
        QCOMPARE(pointsOf(back), (Points{{0, 0}, {10, 0}}));
        Segment front;
        withRepeatedVertex(front);
        front.addPointFront({10, 0});
        QCOMPARE(pointsOf(front), (Points{{10, 0}, {20, 19.5}, {10, 0}, {20, 20.5}, {50, 50}, {60, 10}}));
    }

    // Long lines are not searched point by point: that must show nowhere.
    void longLinesGrowLikeShortOnes()
    {
        std::mt19937 random(1);
        const auto below = [&](unsigned limit) { return static_cast<double>(random() % limit); };
        Segment segment;
        Points plain;
        std::size_t longest = 0;
        int cuts = 0;
        for (int i = 0; i < 30000; ++i) {
            QPointF point(below(400) / 7.0, below(400) / 3.0);
            if (i % 50 == 49 && !plain.empty()) // near a point that is there, the first among them
                point = plain[random() % (i % 100 == 99 ? 2 : plain.size())] +
                        QPointF((below(5) - 2.0) * 6e-13, (below(5) - 2.0) * 6e-13);
            const std::size_t before = plain.size();
            addPlainly(plain, point);
            segment.addPointBack(point);
            QVERIFY(identical(pointsOf(segment), plain));
            longest = std::max(longest, plain.size());
            cuts += plain.size() + 20 < before ? 1 : 0;
            if (i % 1000 == 999) { // other edits in between
                segment.addPointFront({-1.0, i / 3.0});
                plain.insert(plain.begin(), {-1.0, i / 3.0});
            }
        }
        QVERIFY(longest > 600);
        QVERIFY(cuts > 10);
    }

    void addPointFrontKeepsCollinearPoints()
    {
        Segment back({0, 0}, 0.0f);
        Segment front({0, 0}, 0.0f);
        for (const double x : {1.0, 2.0}) {
            back.addPointBack({x, 0});
            front.addPointFront({x, 0});
        }
        QCOMPARE(back.pointCount(), 2);
        QCOMPARE(front.pointCount(), 3);
    }

    void equalPointAtTheEndChangesNothing()
    {
        Segment segment;
        fill(segment, {{0, 0}, {1, 0}});
        QSignalSpy spy(&segment, updatedSignal());
        segment.addPointBack({1 + 5e-13, 0});
        segment.addPointFront({0, -5e-13});
        QCOMPARE(spy.count(), 0);
        QCOMPARE(pointsOf(segment), (Points{{0, 0}, {1, 0}}));
    }

    void emissionsCanBeHeldBack()
    {
        Segment segment;
        QSignalSpy spy(&segment, updatedSignal());
        segment.beginUpdates();
        segment.addPointBack({1, 1});
        segment.addPointFront({0, 1});
        segment.setZ(4.0f);
        QCOMPARE(spy.count(), 0);
        segment.endUpdates();
        QCOMPARE(spy.count(), 1);
        segment.setZ(5.0f);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(segment.z(), 5.0f);
    }

    void mutexIsFreeWhileEmitting()
    {
        Segment segment;
        int calls = 0;
        connect(&segment, updatedSignal(), this, [&] {
            ++calls;
            QVERIFY(segment.length() >= 0.0f);
            QVERIFY(segment.pointCount() > 0);
        });
        segment.addPointBack({0, 0});
        segment.addPointFront({1, 0});
        segment.setZ(1.0f);
        auto *patch = new Segment;
        fill(*patch, {{0, 0}, {5, 5}});
        QVERIFY(segment.replaceWith(patch, nullptr));
        QCOMPARE(calls, 4);
    }

    // The segment: x = 0, 10, .. 50 on y = 0, so n = 6 and each edge is 10 long. Near a vertex means 0.5 off.
    void replaceWith_data()
    {
        QTest::addColumn<Points>("segment");
        QTest::addColumn<Points>("patch");
        QTest::addColumn<bool>("replaced");
        QTest::addColumn<Points>("after");
        QTest::addColumn<float>("lost");
        const Points six = row(6);
        QTest::newRow("both ends, in order")
            << six << Points{{10, 0.5}, {20, 9}, {30, 0.5}} << true
            << Points{{0, 0}, {10, 0.5}, {20, 9}, {30, 0.5}, {40, 0}, {50, 0}} << 50.0f - 0.0f - 10.0f;
        QTest::newRow("both ends, reversed")
            << six << Points{{30, 0.5}, {20, 9}, {10, 0.5}} << true
            << Points{{0, 0}, {10, 0.5}, {20, 9}, {30, 0.5}, {40, 0}, {50, 0}} << 40.0f;
        // 50 - lengthUpTo(1) - lengthFrom(3): the two edges at the vertex.
        QTest::newRow("both ends on one vertex")
            << six << Points{{20, 0.5}, {25, 9}, {20, -0.5}} << true
            << Points{{0, 0}, {10, 0}, {20, -0.5}, {25, 9}, {20, 0.5}, {30, 0}, {40, 0}, {50, 0}} << 20.0f;
        QTest::newRow("both ends on the first vertex")
            << six << Points{{0, 0.5}, {-5, 9}, {0, -0.5}} << true
            << Points{{0, -0.5}, {-5, 9}, {0, 0.5}, {10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}} << 10.0f;
        QTest::newRow("start touches the first vertex, leaves")
            << six << Points{{0, 0.5}, {-5, 3}, {-9, 8}} << true
            << Points{{-9, 8}, {-5, 3}, {0, 0.5}, {0, 0}, {10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}}
            << 0.0f;
        QTest::newRow("start touches the last vertex, leaves")
            << six << Points{{50, 0.5}, {55, 3}, {59, 8}} << true
            << Points{{0, 0}, {10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}, {50, 0.5}, {55, 3}, {59, 8}}
            << 0.0f;
        // The second point is nearest to x = 30: s = 2 < 3. Point s stays.
        QTest::newRow("start touches, leaves towards the end")
            << six << Points{{20, 0.5}, {28, 5}, {28, 20}} << true
            << Points{{0, 0}, {10, 0}, {20, 0}, {20, 0.5}, {28, 5}, {28, 20}} << 30.0f;
        // The second point is nearest to x = 10: s = 2 > 1. Point s goes as well.
        QTest::newRow("start touches, leaves towards the start")
            << six << Points{{20, 0.5}, {12, 5}, {12, 20}} << true
            << Points{{12, 20}, {12, 5}, {20, 0.5}, {30, 0}, {40, 0}, {50, 0}} << 20.0f;
        // The second point is nearest to the vertex itself, in the middle: counts as towards the start.
        QTest::newRow("start touches in the middle, leaves straight up")
            << six << Points{{20, 0.5}, {20, 5}, {20, 20}} << true
            << Points{{20, 20}, {20, 5}, {20, 0.5}, {30, 0}, {40, 0}, {50, 0}} << 20.0f;
        QTest::newRow("end touches the first vertex")
            << six << Points{{-9, 8}, {-5, 3}, {0, 0.5}} << true
            << Points{{-9, 8}, {-5, 3}, {0, 0.5}, {0, 0}, {10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}}
            << 0.0f;
        QTest::newRow("end touches the last vertex")
            << six << Points{{59, 8}, {55, 3}, {50, 0.5}} << true
            << Points{{0, 0}, {10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}, {50, 0.5}, {55, 3}, {59, 8}}
            << 0.0f;
        QTest::newRow("end touches, comes from the end")
            << six << Points{{28, 20}, {28, 5}, {20, 0.5}} << true
            << Points{{0, 0}, {10, 0}, {20, 0}, {20, 0.5}, {28, 5}, {28, 20}} << 30.0f;
        QTest::newRow("end touches, comes from the start")
            << six << Points{{12, 20}, {12, 5}, {20, 0.5}} << true
            << Points{{12, 20}, {12, 5}, {20, 0.5}, {30, 0}, {40, 0}, {50, 0}} << 20.0f;
        QTest::newRow("exactly 1 mm away is too far")
            << six << Points{{20, 1.0}, {28, 5}, {28, 20}} << false << six << 0.0f;
        QTest::newRow("touches nowhere") << six << Points{{20, 5}, {30, 5}} << false << six << 0.0f;
        QTest::newRow("one point is no patch") << six << Points{{20, 0.5}} << false << six << 0.0f;
        QTest::newRow("empty segment") << Points{} << Points{{20, 0.5}, {30, 0}} << false << Points{} << 0.0f;
        // With a single point the rule for the first vertex comes before the one for the last.
        QTest::newRow("segment of one point")
            << Points{{0, 0}} << Points{{0, 0.5}, {5, 5}} << true << Points{{5, 5}, {0, 0.5}, {0, 0}} << 0.0f;
        // x = 10 and 11 are both 0.5 from 10.5: the lower index wins.
        QTest::newRow("lowest index wins ties")
            << Points{{0, 0}, {10, 0}, {11, 0}, {20, 0}} << Points{{10.5, 0}, {12, 8}, {20, 0.5}} << true
            << Points{{0, 0}, {10.5, 0}, {12, 8}, {20, 0.5}} << 20.0f;
    }
    void replaceWith()
    {
        QFETCH(Points, segment);
        QFETCH(Points, patch);
        QFETCH(bool, replaced);
        QFETCH(Points, after);
        QFETCH(float, lost);
        Segment target;
        fill(target, segment);
        QPointer<Segment> piece = new Segment;
        fill(*piece, patch);
        QSignalSpy spy(&target, updatedSignal());

        float length = 1.0f; // what is lost is added
        QVERIFY(!target.replaceWith(piece, &length));
        QCOMPARE(length, 1.0f + lost);
        QCOMPARE(pointsOf(target), segment);
        QCOMPARE(spy.count(), 0);
        QVERIFY(piece);

        QCOMPARE(target.replaceWith(piece, nullptr), replaced);
        QCOMPARE(pointsOf(target), after);
        QCOMPARE(spy.count(), replaced ? 1 : 0);
        QCOMPARE(piece.isNull(), replaced);
        delete piece;
    }

    void replaceWithItselfOrNothingIsRefused()
    {
        Segment segment;
        fill(segment, row(3));
        QVERIFY(!segment.replaceWith(&segment, nullptr));
        QVERIFY(!segment.replaceWith(nullptr, nullptr));
        QCOMPARE(segment.pointCount(), 3);
    }

    void replaceWithoutAutoUpdateIsSilent()
    {
        Segment segment;
        fill(segment, row(3));
        QPointer<Segment> patch = new Segment;
        fill(*patch, {{0, 0.5}, {-5, 5}});
        QSignalSpy spy(&segment, updatedSignal());
        segment.beginUpdates();
        QVERIFY(segment.replaceWith(patch, nullptr));
        QVERIFY(patch.isNull());
        QCOMPARE(spy.count(), 0);
    }

    // The fragment hears of the patch's end first; a listener may then delete the segment that took it over.
    void segmentDeletedWhileItTakesAPatchOver()
    {
        SlicedContoursFragment fragment;
        QPointer<Segment> segment = fragment.newSegment({0, 0}, 1.0f);
        segment->addPointBack({10, 0});
        Segment *patch = fragment.newSegment({0, 0.5}, 1.0f);
        patch->addPointBack({-5, 5});
        bool armed = true;
        connect(&fragment, qOverload<QObject *>(&SlicedContoursFragment::updated), this, [&] {
            if (std::exchange(armed, false))
                delete segment;
        });
        QVERIFY(segment->replaceWith(patch, nullptr));
        QVERIFY(segment.isNull());
        QCOMPARE(fragment.segmentCount(), 0);
    }

    void nearnessIsHalfOpenForSegmentsAndClosedForPoints()
    {
        Segment segment({10, 20}, 5.0f);
        // The point is at the upper limit of x, then of y, then the segment at that of z.
        QVERIFY(!segment.isNear(9, 20, 5, 1));
        QVERIFY(!segment.isNear(10, 19, 5, 1));
        QVERIFY(!segment.isNear(10, 20, 4, 1));
        // At the lower limits.
        QVERIFY(segment.isNear(11, 20, 5, 1));
        QVERIFY(segment.isNear(10, 21, 5, 1));
        QVERIFY(segment.isNear(10, 20, 6, 1));
        QVERIFY(!segment.isNear(10, 20, 5, 0));
        QVERIFY(!Segment().isNear(0, 0, 0, 1));

        for (const Vector3 &at :
             {Vector3{9, 20, 5}, {11, 20, 5}, {10, 19, 5}, {10, 21, 5}, {10, 20, 4}, {10, 20, 6}}) {
            QList<Vector3> points;
            segment.appendPointsNear(at, 1.0, points);
            segment.appendEndPointsNear(at, 1.0, points);
            QCOMPARE(points.size(), 2);
            QCOMPARE(points[0].x, 10.0);
            QCOMPARE(points[0].y, 20.0);
            QCOMPARE(points[0].z, 5.0);
        }
        QList<Vector3> none;
        segment.appendPointsNear({11.001, 20, 5}, 1.0, none);
        segment.appendPointsNear({10, 20, 6.001}, 1.0, none);
        segment.appendEndPointsNear({11.001, 20, 5}, 1.0, none);
        segment.appendEndPointsNear({10, 18.999, 5}, 1.0, none);
        QVERIFY(none.isEmpty());
    }

    void endPointsAreTheFirstAndTheLast()
    {
        Segment segment;
        fill(segment, {{0, 0}, {1, 1}, {2, 0}});
        QList<Vector3> ends;
        segment.appendEndPointsNear({1, 0, 0}, 5.0, ends);
        QCOMPARE(ends.size(), 2);
        QCOMPARE(ends[0].x, 0.0);
        QCOMPARE(ends[1].x, 2.0);
        QList<Vector3> all;
        segment.appendPointsNear({1, 0, 0}, 5.0, all);
        QCOMPARE(all.size(), 3);
    }

    // A freehand point of double precision comes back as it is: single precision would break closed lines.
    void nearPointsKeepDoublePrecision()
    {
        const QPointF point(1.0 / 3.0, 2.0 / 3.0);
        Segment segment(point, 0.1f);
        QList<Vector3> found;
        segment.appendEndPointsNear({0, 0, 0}, 1.0, found);
        QCOMPARE(found.size(), 1);
        QVERIFY(found[0].x == point.x() && found[0].y == point.y());
        QVERIFY(found[0].z == static_cast<double>(0.1f));
    }

    void queriesFollowEdits()
    {
        Segment segment({0, 0}, 1.0f);
        QVERIFY(!segment.isNear(10, 5, 1, 1));
        segment.addPointBack({10, 5});
        QVERIFY(segment.isNear(10, 5, 1, 1));
        QCOMPARE(segment.extentX(), 10.0);
        QCOMPARE(segment.extentY(), 5.0);
        segment.addPointBack({0, 0}); // back again
        QVERIFY(!segment.isNear(10, 5, 1, 1));
        QCOMPARE(segment.extentX(), 0.0);
        segment.addPointFront({-3, 7});
        QCOMPARE(segment.extentX(), 0.0);
        QCOMPARE(segment.extentY(), 7.0);
        QCOMPARE(Segment().extentX(), 0.0);
    }

    void numbersThatAreNoneAreNotFound()
    {
        Segment segment;
        segment.addPointFront({1, 1});
        segment.addPointFront({NAN, 1});
        segment.addPointFront({2, NAN});
        QVERIFY(segment.isNear(1, 1, 0, 1));
        QVERIFY(!segment.isNear(5, 5, 0, 1));
        QList<Vector3> found;
        segment.appendPointsNear({1, 1, 0}, 3.0, found);
        QCOMPARE(found.size(), 1);
        QCOMPARE(segment.extentX(), 2.0);
        segment.setZ(NAN);
        QVERIFY(!segment.isNear(1, 1, 0, 1));
        QVERIFY(!segment.isNear(1, 1, NAN, 1));
    }
};

QTEST_GUILESS_MAIN(SlicedContoursSegmentTest)
#include "SlicedContoursSegmentTest.moc"
