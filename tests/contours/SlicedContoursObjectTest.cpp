#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursSegment.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <memory>
#include <random>

namespace {

using Object = SlicedContoursObject;
using Fragment = SlicedContoursFragment;
using Segment = SlicedContoursSegment;
using Hits = std::unique_ptr<QList<GraphicsObject *>>;

auto objectUpdated()
{
    return qOverload<QObject *>(&Object::updated);
}
auto fragmentUpdated()
{
    return qOverload<QObject *>(&Fragment::updated);
}
auto segmentUpdated()
{
    return qOverload<QObject *>(&Segment::updated);
}

Segment *addLine(Fragment &fragment, float z, const std::vector<QPointF> &points)
{
    Segment *segment = fragment.newSegment(points.front(), z);
    for (auto point = points.begin() + 1; point != points.end(); ++point)
        segment->addPointBack(*point);
    return segment;
}

// The same questions answered by plain walks over all segments in stored order.
template <typename Visit>
void forEachSegment(const Object &object, const Visit &visit)
{
    for (int f = 0; f < object.fragmentCount(); ++f)
        for (int s = 0; s < object.fragment(f)->segmentCount(); ++s)
            visit(*object.fragment(f)->segment(s));
}

float plainNext(const Object &object, float z)
{
    bool found = false;
    float best = z;
    forEachSegment(object, [&](const Segment &segment) {
        if (segment.z() > z && (!found || segment.z() < best)) {
            best = segment.z();
            found = true;
        }
    });
    return best;
}

float plainPrevious(const Object &object, float z)
{
    bool found = false;
    float best = z;
    forEachSegment(object, [&](const Segment &segment) {
        if (segment.z() < z && (!found || segment.z() > best)) {
            best = segment.z();
            found = true;
        }
    });
    return best;
}

QList<Vector3> plainPointsNear(const Object &object, const Vector3 &at, float r, bool endsOnly)
{
    QList<Vector3> points;
    forEachSegment(object, [&](const Segment &segment) {
        const int count = segment.pointCount();
        for (int i = 0; i < count; ++i) {
            if (endsOnly && i != 0 && i != count - 1)
                continue;
            const QPointF point = segment.point(i);
            if (std::abs(segment.z() - at.z) <= r && std::abs(point.x() - at.x) <= r &&
                std::abs(point.y() - at.y) <= r)
                points.append({point.x(), point.y(), segment.z()});
        }
    });
    return points;
}

bool equalLists(const QList<Vector3> &a, const QList<Vector3> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Vector3 &p, const Vector3 &q) {
        return p.x == q.x && p.y == q.y && p.z == q.z;
    });
}

} // namespace

class SlicedContoursObjectTest : public QObject
{
    Q_OBJECT

private slots:
    void kindsAndNames()
    {
        Object object;
        QCOMPARE(object.label(), QString("Unnamed Contours"));
        QCOMPARE(object.graphicsType(), 2);
        QCOMPARE(object.imageType(), 2);
        QCOMPARE(Fragment().label(), QString("some Fragment"));
        QCOMPARE(Fragment().graphicsType(), 4);
        QCOMPARE(SlicedContour().label(), QString("some Contour"));
        QCOMPARE(SlicedContour().graphicsType(), 3);
        Fragment *fragment = object.newFragment("bone");
        SlicedContour *contour = object.newContour("patella");
        QCOMPARE(fragment->label(), QString("bone"));
        QCOMPARE(contour->label(), QString("patella"));
        QCOMPARE(fragment->parentGraphicsObject(), static_cast<GraphicsObject *>(&object));
        QCOMPARE(contour->parentGraphicsObject(), static_cast<GraphicsObject *>(&object));
        Segment *segment = fragment->newSegment({0, 0}, 1.0f);
        QCOMPARE(segment->parentGraphicsObject(), static_cast<GraphicsObject *>(fragment));
        QCOMPARE(segment->parent(), fragment);
        QVERIFY(object.sources().isEmpty());
        QCOMPARE(object.granularity(), 1.0f);
    }

    void lookupsOutOfRangeAreNull()
    {
        Object object;
        Fragment *fragment = object.newFragment("a");
        SlicedContour *contour = object.newContour("c");
        QCOMPARE(object.fragment(0), fragment);
        QCOMPARE(object.fragment(1), nullptr);
        QCOMPARE(object.fragment(-1), nullptr);
        QCOMPARE(object.contour(0), contour);
        QCOMPARE(object.contour(1), nullptr);
        QCOMPARE(contour->fragment(0), nullptr);
        contour->addFragmentReference(nullptr);
        QCOMPARE(contour->fragmentCount(), 0);
        contour->addFragmentReference(fragment);
        QCOMPARE(contour->fragment(0), fragment);
        QCOMPARE(contour->fragment(-1), nullptr);
        QCOMPARE(fragment->segment(0), nullptr);
        QCOMPARE(object.fragmentCount(), 1);
        QCOMPARE(object.contourCount(), 1);
    }

    void emptyObjectAnswersDefaults()
    {
        Object object;
        object.newFragment("without segments");
        QCOMPARE(object.firstSignificantZ(), FLT_MAX);
        QCOMPARE(object.nextSignificantZ(5.0f), 5.0f);
        QCOMPARE(object.previousSignificantZ(5.0f), 5.0f);
        QCOMPARE(object.extentX(), 0.0f);
        QCOMPARE(object.extentY(), 0.0f);
        QCOMPARE(object.extentZ(), 0.0f);
        QVERIFY(!object.hasContent());
        QVERIFY(Hits(object.segmentsNear(0, 0, 0, 100))->isEmpty());
        QVERIFY(object.contourPointsNear({0, 0, 0}, 100).isEmpty());
    }

    void onePointReachesAllThreeInOrder()
    {
        // Connected before they are put together, so that the receivers here hear of each level first.
        QList<QObject *> order;
        const auto record = [&](QObject *sender) { order.append(sender); };
        Object object;
        connect(&object, objectUpdated(), this, record);
        connect(&object, qOverload<>(&Object::updated), this, [&] { order.append(nullptr); });
        auto *fragment = new Fragment;
        connect(fragment, fragmentUpdated(), this, record);
        object.addFragment(fragment);
        Fragment *other = object.newFragment("other");
        for (int i = 0; i < 1000; ++i) {
            other->newSegment({0, 0}, static_cast<float>(i));
            fragment->newSegment({0, 0}, static_cast<float>(i));
        }
        auto *segment = new Segment({0, 0}, 7.0f);
        connect(segment, segmentUpdated(), this, record);
        connect(segment, segmentUpdated(), this,
                [&] { QCOMPARE(segment->length(), 5.0f); }); // the mutex is free
        fragment->addSegment(segment);
        order.clear();
        QSignalSpy otherSpy(other, fragmentUpdated());
        segment->addPointBack({3, 4});
        QCOMPARE(order, (QList<QObject *>{segment, fragment, &object, nullptr}));
        QCOMPARE(otherSpy.count(), 0);
    }

    void segmentsOnlyEmitTheSignalWithAnArgument()
    {
        Fragment fragment;
        Segment *segment = fragment.newSegment({0, 0}, 1.0f);
        QSignalSpy plainSegment(segment, qOverload<>(&GraphicsObject::updated));
        QSignalSpy plainFragment(&fragment, qOverload<>(&GraphicsObject::updated));
        segment->addPointBack({1, 0});
        QCOMPARE(plainSegment.count(), 0);
        QCOMPARE(plainFragment.count(), 0);
    }

    void creationEmitsNoUpdate()
    {
        Object object;
        QSignalSpy updated(&object, objectUpdated());
        QSignalSpy structure(&object, &Object::structureChanged);
        Fragment *fragment = object.newFragment("a");
        QCOMPARE(structure.count(), 1);
        object.newContour("c");
        QCOMPARE(structure.count(), 2);
        QSignalSpy fragmentSpy(fragment, fragmentUpdated());
        fragment->newSegment({0, 0}, 1.0f);
        QCOMPARE(updated.count(), 0);
        QCOMPARE(fragmentSpy.count(), 0);
    }

    void adoptedSegmentEmits()
    {
        Object object;
        Fragment *fragment = object.newFragment("a");
        QSignalSpy spy(&object, objectUpdated());
        fragment->addSegment(nullptr);
        QCOMPARE(spy.count(), 0);
        auto *segment = new Segment({1, 2}, 3.0f);
        fragment->addSegment(segment);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(segment->parent(), fragment);
        segment->addPointBack({5, 5});
        QCOMPARE(spy.count(), 2);
        fragment->addSegment(segment); // it is here already
        QCOMPARE(spy.count(), 2);
        QCOMPARE(fragment->segmentCount(), 1);
        QCOMPARE(object.firstSignificantZ(), 3.0f);
    }

    void segmentMovesToAnotherFragment()
    {
        Object object;
        Fragment *from = object.newFragment("a");
        Fragment *to = object.newFragment("b");
        Segment *segment = from->newSegment({1, 2}, 3.0f);
        to->addSegment(segment);
        QCOMPARE(from->segmentCount(), 0);
        QCOMPARE(to->segment(0), segment);
        QSignalSpy fromSpy(from, fragmentUpdated());
        QSignalSpy toSpy(to, fragmentUpdated());
        segment->addPointBack({5, 5});
        delete segment;
        QCOMPARE(fromSpy.count(), 0);
        QCOMPARE(toSpy.count(), 2);
        QCOMPARE(to->segmentCount(), 0);
    }

    void deletedSegmentLeavesItsFragment()
    {
        Object object;
        Fragment *fragment = object.newFragment("a");
        Segment *first = fragment->newSegment({0, 0}, 1.0f);
        Segment *second = fragment->newSegment({0, 0}, 2.0f);
        QSignalSpy spy(&object, objectUpdated());
        int seen = -1;
        connect(fragment, fragmentUpdated(), this, [&] { seen = fragment->segmentCount(); });
        delete first;
        QCOMPARE(spy.count(), 1);
        QCOMPARE(seen, 1);
        QCOMPARE(fragment->segment(0), second);
        QCOMPARE(object.firstSignificantZ(), 2.0f);
        delete second;
        QVERIFY(!object.hasContent());
    }

    void addedFragmentIsOwnedAndHeard()
    {
        Object object;
        auto *fragment = new Fragment;
        fragment->setLabel("x");
        fragment->newSegment({0, 0}, 4.0f);
        object.addFragment(fragment);
        object.addFragment(fragment);
        object.addFragment(nullptr);
        QCOMPARE(object.fragmentCount(), 1);
        QCOMPARE(fragment->parent(), &object);
        QCOMPARE(object.firstSignificantZ(), 4.0f);
        QSignalSpy spy(&object, objectUpdated());
        fragment->segment(0)->addPointBack({1, 1});
        QCOMPARE(spy.count(), 1);
        auto *contour = new SlicedContour;
        object.addContour(contour);
        object.addContour(contour);
        object.addContour(nullptr);
        QCOMPARE(object.contourCount(), 1);
        QCOMPARE(contour->parent(), &object);
    }

    // The references of a contour are not cleaned up, but one to a fragment that is gone answers null.
    void deletedFragmentLeavesAnEmptyReference()
    {
        Object object;
        Fragment *fragment = object.newFragment("a");
        addLine(*fragment, 1.0f, {{0, 0}, {4, 0}});
        SlicedContour *contour = object.newContour("c");
        contour->addFragmentReference(fragment);
        QSignalSpy structure(&object, &Object::structureChanged);
        delete fragment;
        QCOMPARE(structure.count(), 1);
        QCOMPARE(object.fragmentCount(), 0);
        QCOMPARE(contour->fragmentCount(), 1);
        QCOMPARE(contour->fragment(0), nullptr);
        QCOMPARE(contour->areaAt(1.0f), 0.0f);
        delete contour;
        QCOMPARE(object.contourCount(), 0);
    }

    void deletedObjectTakesAllWithItSilently()
    {
        auto *object = new Object;
        Fragment *fragment = object->newFragment("a");
        QPointer<Segment> segment = fragment->newSegment({0, 0}, 1.0f);
        QPointer<SlicedContour> contour = object->newContour("c");
        contour->addFragmentReference(fragment);
        QSignalSpy updated(object, objectUpdated());
        QSignalSpy structure(object, &Object::structureChanged);
        delete object;
        QVERIFY(segment.isNull());
        QVERIFY(contour.isNull());
        QCOMPARE(updated.count(), 0);
        QCOMPARE(structure.count(), 0);
    }

    void segmentsNearListsSegmentsThenTheirFragment()
    {
        Object object;
        Fragment *a = object.newFragment("a");
        Fragment *b = object.newFragment("b");
        Segment *point = a->newSegment({10, 10}, 2.0f);
        Segment *line = addLine(*a, 2.0f, {{0, 0}, {10.5, 10.5}, {20, 0}});
        addLine(*a, 3.0f, {{10, 10}, {11, 10}}); // z = 2 + 1: outside the half-open range
        addLine(*b, 2.0f, {{50, 50}, {51, 50}});
        const Hits hits(object.segmentsNear(10, 10, 2, 1));
        QCOMPARE(*hits, (QList<GraphicsObject *>{point, line, a}));
        const Hits around(object.objectsAround(10, 10, 2, 1));
        QCOMPARE(*around, *hits);
        const Hits both(object.segmentsNear(25, 25, 2.5, 30));
        QCOMPARE(both->size(), 6);
        QCOMPARE(both->indexOf(a), 3);
        QCOMPARE(both->indexOf(b), 5);
        // A point at the upper limit of the box is not found, but contourPointsNear() finds it.
        QVERIFY(Hits(object.segmentsNear(9, 10, 2, 1))->isEmpty());
        // So is that of the line at z = 3.
        QCOMPARE(object.contourPointsNear({9, 10, 2}, 1).size(), 2);
        QCOMPARE(Hits(object.segmentsNear(11, 10, 2, 1))->size(), 3);
    }

    void endPointsStandInForContourPointsAround()
    {
        Object object;
        Fragment *a = object.newFragment("a");
        addLine(*a, 2.0f, {{0, 0}, {1, 1}, {2, 0}});
        a->newSegment({1, 0.5}, 2.0f);
        QCOMPARE(object.endPointsNear({1, 0, 2}, 2).size(), 3); // one end only of a single point
        QCOMPARE(object.contourPointsAround({1, 0, 2}, 2).size(), 3);
        QCOMPARE(object.contourPointsNear({1, 0, 2}, 2).size(), 4);
    }

    void extentsIgnoreNegativeCoordinates()
    {
        Object object;
        Fragment *a = object.newFragment("a");
        addLine(*a, -7.0f, {{-5, -3}, {-1, -2}});
        QCOMPARE(object.extentX(), 0.0f);
        QCOMPARE(object.extentY(), 0.0f);
        QCOMPARE(object.extentZ(), 0.0f);
        QCOMPARE(object.firstSignificantZ(), -7.0f);
        addLine(*object.newFragment("b"), 4.0f, {{6, 1}, {2, 9}});
        QCOMPARE(object.extentX(), 6.0f);
        QCOMPARE(object.extentY(), 9.0f);
        QCOMPARE(object.extentZ(), 4.0f);
    }

    void steppingThroughLevelsEndsAtItsArgument()
    {
        Object object;
        Fragment *a = object.newFragment("a");
        Fragment *b = object.newFragment("b");
        a->newSegment({0, 0}, 3.0f);
        b->newSegment({0, 0}, 1.0f);
        a->newSegment({0, 0}, 1.0f);
        QCOMPARE(object.firstSignificantZ(), 1.0f);
        QCOMPARE(object.nextSignificantZ(1.0f), 3.0f);
        QCOMPARE(object.nextSignificantZ(3.0f), 3.0f);
        QCOMPARE(object.nextSignificantZ(3.5f), 3.5f);
        QCOMPARE(object.nextSignificantZ(-9.0f), 1.0f);
        QCOMPARE(object.previousSignificantZ(1.0f), 1.0f);
        QCOMPARE(object.previousSignificantZ(2.0f), 1.0f);
        QCOMPARE(object.previousSignificantZ(99.0f), 3.0f);
        QVERIFY(std::isnan(object.nextSignificantZ(NAN)));
        b->segment(0)->setZ(0.5f);
        QCOMPARE(object.firstSignificantZ(), 0.5f);
        b->segment(0)->setZ(NAN); // a level that is no number is none
        QCOMPARE(object.firstSignificantZ(), 1.0f);
        delete a->segment(0);
        QCOMPARE(object.nextSignificantZ(1.0f), 1.0f);
    }

    // z set while emissions are held back still counts at once.
    void silentChangeOfZIsSeen()
    {
        Object object;
        Segment *segment = object.newFragment("a")->newSegment({0, 0}, 3.0f);
        QCOMPARE(object.firstSignificantZ(), 3.0f);
        segment->beginUpdates();
        segment->setZ(8.0f);
        QCOMPARE(object.firstSignificantZ(), 8.0f);
        QCOMPARE(object.contourPointsNear({0, 0, 8}, 1).size(), 1);
        QVERIFY(object.contourPointsNear({0, 0, 3}, 1).isEmpty());
    }

    void answersAreThoseOfPlainWalks()
    {
        std::mt19937 random(3);
        const auto number = [&](int range) {
            return static_cast<double>(random() % static_cast<unsigned>(range));
        };
        Object object;
        for (int f = 0; f < 4; ++f)
            object.newFragment(QString::number(f));
        QList<Segment *> alive;
        for (int round = 0; round < 300; ++round) {
            const auto z = static_cast<float>(number(12) * 0.7);
            if (round % 7 == 6) {
                delete alive.takeAt(static_cast<qsizetype>(number(static_cast<int>(alive.size()))));
            } else if (round % 5 == 4) {
                alive[static_cast<qsizetype>(number(static_cast<int>(alive.size())))]->setZ(z);
            } else {
                Segment *segment =
                    object.fragment(static_cast<int>(number(4)))->newSegment({number(40), number(40)}, z);
                for (int i = 0; i < 20; ++i)
                    segment->addPointBack({number(40) / 2, number(40) / 2});
                alive.append(segment);
            }
            for (int query = 0; query < 5; ++query) {
                const float at = static_cast<float>(number(30) * 0.35 - 1.0);
                QCOMPARE(object.nextSignificantZ(at), plainNext(object, at));
                QCOMPARE(object.previousSignificantZ(at), plainPrevious(object, at));
                const Vector3 position{number(40) / 2, number(40) / 2, at};
                const auto radius = static_cast<float>(number(8) * 0.5);
                QVERIFY(equalLists(object.contourPointsNear(position, radius),
                                   plainPointsNear(object, position, radius, false)));
                QVERIFY(equalLists(object.endPointsNear(position, radius),
                                   plainPointsNear(object, position, radius, true)));
            }
        }
    }

    void areaOfASliceNeedsAClosedLoopOfTwoSegments()
    {
        Object object;
        Fragment *bone = object.newFragment("bone");
        Fragment *surface = object.newFragment("surface");
        SlicedContour *contour = object.newContour("c");
        contour->addFragmentReference(bone);
        contour->addFragmentReference(surface);
        addLine(*bone, 1.0f, {{0, 0}, {4, 0}, {4, 4}});
        QCOMPARE(contour->areaAt(1.0f), 0.0f); // a single segment
        addLine(*surface, 1.0f, {{4, 4}, {0, 4}, {0, 0}});
        QCOMPARE(contour->areaAt(1.0f), 16.0f);
        QCOMPARE(contour->areaAt(std::nextafter(1.0f, 2.0f)), 0.0f); // exactly this z
        addLine(*bone, 2.0f, {{0, 0}, {4, 0}, {4, 4}, {0, 0}});
        QCOMPARE(contour->areaAt(2.0f), 0.0f); // closed, but one segment alone
    }

    // A closed line alone is one segment and has no area; referred to twice it is two.
    void repeatedReferenceCountsAgain()
    {
        Object object;
        Fragment *a = object.newFragment("a");
        SlicedContour *contour = object.newContour("c");
        addLine(*a, 1.0f, {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}});
        contour->addFragmentReference(a);
        QCOMPARE(contour->areaAt(1.0f), 0.0f);
        contour->addFragmentReference(a);
        QCOMPARE(contour->areaAt(1.0f), 16.0f);
    }

    // As a damaged file may have them: copies of the line for each would take 30 GB.
    void referencesWithoutEndTakeLittleMemory()
    {
        Object object;
        Fragment *a = object.newFragment("a");
        SlicedContour *contour = object.newContour("c");
        std::vector<QPointF> arc;
        for (int i = 0; i <= 2000; ++i)
            arc.emplace_back(0.002 * i, i % 2 == 0 ? 0.0 : -1e-3);
        addLine(*a, 1.0f, arc);
        addLine(*a, 1.0f, {{4, 0}, {4, 4}, {0, 4}, {0, 0}});
        for (int i = 0; i < 1000000; ++i)
            contour->addFragmentReference(a);
        // A thousand teeth of 0.004 x 0.001 / 2 each below a square.
        QVERIFY(std::abs(contour->areaAt(1.0f) - 16.002f) < 1e-4f);
        QCOMPARE(contour->fragmentCount(), 1000000);
    }

    void greedyDeadEndHasNoArea()
    {
        Object object;
        Fragment *a = object.newFragment("a");
        SlicedContour *contour = object.newContour("c");
        contour->addFragmentReference(a);
        addLine(*a, 1.0f, {{0, 0}, {4, 0}});
        addLine(*a, 1.0f, {{4, 0}, {8, 8}});
        addLine(*a, 1.0f, {{4, 0}, {4, 4}});
        addLine(*a, 1.0f, {{4, 4}, {0, 0}});
        QCOMPARE(contour->areaAt(1.0f), 0.0f);
    }
};

QTEST_GUILESS_MAIN(SlicedContoursObjectTest)
#include "SlicedContoursObjectTest.moc"
