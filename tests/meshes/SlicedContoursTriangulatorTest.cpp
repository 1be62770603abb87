#include "meshes/SlicedContoursTriangulator.h"

#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/TriMeshFragment.h"
#include "tests/support/CapturedOutput.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>
#include <memory>

namespace {

SlicedContoursSegment *addLine(SlicedContoursFragment &fragment, float z, const std::vector<QPointF> &points)
{
    SlicedContoursSegment *segment = fragment.newSegment(points.front(), z);
    for (auto point = points.begin() + 1; point != points.end(); ++point)
        segment->addPointBack(*point);
    return segment;
}

// Three points that are not on one line: the segment would drop a middle one.
const std::vector<QPointF> bend{{0.0, 0.0}, {1.0, 1.0}, {2.0, 0.0}};

auto meshUpdated()
{
    return qOverload<QObject *>(&TriMeshFragment::updated);
}

auto plainUpdated()
{
    return qOverload<>(&GraphicsObject::updated);
}

bool spansLevels(const TriMeshFragment &mesh, double low, double high)
{
    bool hasLow = false, hasHigh = false;
    for (const auto &face : mesh.all())
        for (int i = 0; i < 3; ++i) {
            const double z = face.vertex(i).z;
            if (z != low && z != high)
                return false;
            (z == low ? hasLow : hasHigh) = true;
        }
    return hasLow && hasHigh;
}

} // namespace

class SlicedContoursTriangulatorTest : public QObject
{
    Q_OBJECT

private slots:
    void constructor_makesAMeshPerFragmentAtOnce()
    {
        SlicedContoursObject contours(QStringLiteral("patella %1"));
        SlicedContoursFragment *bone = contours.newFragment(QStringLiteral("bone %2"));
        SlicedContoursFragment *surface = contours.newFragment(QStringLiteral("surface"));
        addLine(*bone, 0.0f, bend);
        addLine(*bone, 1.5f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        QCOMPARE(triangulator.label(), QStringLiteral("Triangulation of patella %1"));
        QCOMPARE(triangulator.fragmentCount(), 2);
        QCOMPARE(triangulator.fragment(0), triangulator.triangulationOf(bone));
        QCOMPARE(triangulator.fragment(1), triangulator.triangulationOf(surface));
        QCOMPARE(triangulator.fragment(0)->label(), QStringLiteral("bone %2 (triangulated)"));
        QCOMPARE(triangulator.fragment(1)->label(), QStringLiteral("surface (triangulated)"));
        QCOMPARE(triangulator.fragment(0)->faceCount(), 4); // 3 + 3 points, two of them the first ones
        QCOMPARE(triangulator.fragment(1)->faceCount(), 0);
        QCOMPARE(triangulator.triangulationOf(nullptr), nullptr);
        QCOMPARE(triangulator.sources(), QList<ImageObject *>{&contours});
    }

    void mesh_isTheRibbonOfPointsAtTheHeightsOfTheLines()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        addLine(*fragment, 1.5f, {{0.0, 0.0}, {4.0, 0.0}});
        addLine(*fragment, 0.1f, {{0.0, 0.0}, {4.0, 0.0}});
        const SlicedContoursTriangulator triangulator(&contours);
        const TriMeshFragment &mesh = *triangulator.fragment(0);
        // The lower line is a: a tie at first, along b; then along a.
        QCOMPARE(mesh.faceCount(), 2);
        const double low = 0.1f; // as single precision has it
        const std::vector<std::vector<MERV::BRep::Point>> expected{{{0, 0, 1.5}, {4, 0, 1.5}, {0, 0, low}},
                                                                   {{0, 0, low}, {4, 0, 1.5}, {4, 0, low}}};
        for (std::size_t f = 0; f < 2; ++f)
            for (std::size_t i = 0; i < 3; ++i)
                QVERIFY(mesh.face(static_cast<int>(f))
                            .vertex(static_cast<int>(i))
                            .sameCoordinates(expected[f][i]));
    }

    void edit_isInTheMeshWhenItReturns()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        SlicedContoursSegment *low = addLine(*fragment, 0.0f, bend);
        SlicedContoursSegment *high = addLine(*fragment, 1.0f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        const TriMeshFragment &mesh = *triangulator.fragment(0);
        high->addPointBack({5.0, 5.0});
        QCOMPARE(mesh.faceCount(), 5);
        high->setZ(3.0f);
        QVERIFY(spansLevels(mesh, 0.0, 3.0));
        low->beginUpdates();
        low->addPointBack({7.0, 5.0});
        low->addPointBack({9.0, 0.0});
        QCOMPARE(mesh.faceCount(), 5);
        low->endUpdates();
        QCOMPARE(mesh.faceCount(), 7);
        delete low;
        QCOMPARE(mesh.faceCount(), 0);
    }

    void gap_isBridged()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        addLine(*fragment, 12.0f, bend);
        addLine(*fragment, -3.0f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        QCOMPARE(triangulator.fragment(0)->faceCount(), 4);
        QVERIFY(spansLevels(*triangulator.fragment(0), -3.0, 12.0));
    }

    void secondLineOfALevel_takesNoPart()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        addLine(*fragment, 1.0f, bend);
        addLine(*fragment, 1.0f, {{9.0, 9.0}, {8.0, 7.0}, {9.0, 5.0}});
        const SlicedContoursTriangulator triangulator(&contours);
        const TriMeshFragment &mesh = *triangulator.fragment(0);
        QCOMPARE(mesh.faceCount(), 0); // no other level
        addLine(*fragment, 0.0f, bend);
        addLine(*fragment, 2.0f, bend);
        QCOMPARE(mesh.faceCount(), 8);
        for (const auto &face : mesh.all())
            for (int i = 0; i < 3; ++i)
                QVERIFY(face.vertex(i).x <= 2.0);
    }

    // An empty line that is the first of its level counts, and breaks the ribbon to both neighbours.
    void emptyFirstLine_breaksTheRibbon()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        addLine(*fragment, 0.0f, bend);
        auto *empty = new SlicedContoursSegment;
        empty->setZ(1.0f);
        fragment->addSegment(empty);
        addLine(*fragment, 1.0f, bend);
        addLine(*fragment, 2.0f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        QCOMPARE(triangulator.fragment(0)->faceCount(), 0);
        delete empty;
        QCOMPARE(triangulator.fragment(0)->faceCount(), 8);
    }

    void signals_comePerFragmentAndThenOnceForAll()
    {
        SlicedContoursObject contours;
        std::vector<SlicedContoursSegment *> lines;
        for (int f = 0; f < 10; ++f) {
            SlicedContoursFragment *fragment = contours.newFragment(QString::number(f));
            lines.push_back(addLine(*fragment, 0.0f, bend));
            if (f != 3)
                addLine(*fragment, 1.0f, bend);
        }
        SlicedContoursTriangulator triangulator(&contours);
        QStringList log;
        for (int f = 0; f < 10; ++f) {
            TriMeshFragment *mesh = triangulator.fragment(f);
            connect(mesh, plainUpdated(), this, [&log, f] { log << QStringLiteral("%1").arg(f); });
            connect(mesh, meshUpdated(), this, [&log, f, mesh](QObject *object) {
                log << (object == mesh ? QStringLiteral("mesh %1").arg(f) : QStringLiteral("another"));
            });
        }
        connect(&triangulator, &GraphicsObject::updated, this, [&log] { log << QStringLiteral("all"); });
        lines[7]->addPointBack({9.0, 9.0});
        QStringList expected;
        for (int f = 0; f < 10; ++f) {
            if (f != 3)
                expected << QString::number(f);
            expected << QStringLiteral("mesh %1").arg(f);
        }
        expected << QStringLiteral("all");
        QCOMPARE(log, expected);
    }

    void fragmentShrunkToOneLine_isEmptiedWithOneSignal()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        addLine(*fragment, 0.0f, bend);
        SlicedContoursSegment *second = addLine(*fragment, 1.0f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        TriMeshFragment *mesh = triangulator.fragment(0);
        QCOMPARE(mesh->faceCount(), 4);
        const QSignalSpy plain(mesh, plainUpdated()), withObject(mesh, meshUpdated());
        const CapturedOutput output;
        delete second;
        QCOMPARE(mesh->faceCount(), 0);
        QCOMPARE(plain.count(), 0);
        QCOMPARE(withObject.count(), 1);
        QVERIFY(output.standardOutput().isEmpty() && output.standardError().isEmpty());
    }

    // It is the number of lines that counts for updated(), not that of levels or faces.
    void linesOfOneLevel_makeNoFaceButAreAnnounced()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        addLine(*fragment, 1.0f, bend);
        SlicedContoursSegment *second = addLine(*fragment, 1.0f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        const QSignalSpy plain(triangulator.fragment(0), plainUpdated());
        const QSignalSpy withObject(triangulator.fragment(0), meshUpdated());
        second->addPointBack({9.0, 9.0});
        QCOMPARE(triangulator.fragment(0)->faceCount(), 0);
        QCOMPARE(plain.count(), 1);
        QCOMPARE(withObject.count(), 1);
    }

    // Nobody sees a part of a mesh: one change of the faces per rebuild.
    void rebuild_replacesAllFacesAtOnce()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        SlicedContoursSegment *line = addLine(*fragment, 0.0f, bend);
        addLine(*fragment, 1.0f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        const auto before = triangulator.fragment(0)->revision();
        line->addPointBack({9.0, 9.0});
        QCOMPARE(triangulator.fragment(0)->revision(), before + 1);
    }

    void newFragment_getsItsMeshWithTheNextChange()
    {
        SlicedContoursObject contours;
        addLine(*contours.newFragment(QStringLiteral("first")), 0.0f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        SlicedContoursFragment *added = contours.newFragment(QStringLiteral("added"));
        QCOMPARE(triangulator.triangulationOf(added), nullptr);
        QCOMPARE(triangulator.fragmentCount(), 1);
        addLine(*added, 0.0f, bend);
        QCOMPARE(triangulator.fragmentCount(), 2);
        QCOMPARE(triangulator.triangulationOf(added), triangulator.fragment(1));
        addLine(*added, 1.0f, bend);
        QCOMPARE(triangulator.fragment(1)->faceCount(), 4);
        QCOMPARE(triangulator.fragmentCount(), 2);
    }

    void removedFragment_leavesItsMeshAsItWas()
    {
        SlicedContoursObject contours, other;
        SlicedContoursFragment *moved = contours.newFragment(QStringLiteral("moved"));
        SlicedContoursFragment *stays = contours.newFragment(QStringLiteral("stays"));
        addLine(*moved, 0.0f, bend);
        addLine(*moved, 1.0f, bend);
        SlicedContoursSegment *line = addLine(*stays, 0.0f, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        other.addFragment(moved);
        const auto before = triangulator.fragment(0)->revision();
        line->addPointBack({9.0, 9.0});
        moved->segment(0)->addPointBack({9.0, 9.0});
        QCOMPARE(triangulator.fragmentCount(), 2);
        QCOMPARE(triangulator.fragment(0)->revision(), before);
        QCOMPARE(triangulator.fragment(0)->faceCount(), 4);
        QCOMPARE(triangulator.triangulationOf(moved), triangulator.fragment(0));
    }

    // Made at the address of one that has gone, a fragment must not inherit its mesh.
    void fragmentAtAFormerAddress_getsAMeshOfItsOwn()
    {
        SlicedContoursObject contours;
        alignas(SlicedContoursFragment) std::byte place[sizeof(SlicedContoursFragment)];
        auto *former = new (place) SlicedContoursFragment;
        former->setLabel(QStringLiteral("former"));
        contours.addFragment(former);
        addLine(*former, 0.0f, bend);
        addLine(*former, 1.0f, bend);
        SlicedContoursTriangulator triangulator(&contours);
        const TriMeshFragment *mesh = triangulator.triangulationOf(former);
        QVERIFY(mesh != nullptr);
        former->~SlicedContoursFragment();
        QCOMPARE(triangulator.triangulationOf(former), nullptr);

        auto *later = new (place) SlicedContoursFragment;
        later->setLabel(QStringLiteral("later"));
        contours.addFragment(later);
        QCOMPARE(triangulator.triangulationOf(later), nullptr);
        addLine(*later, 0.0f, bend);
        QCOMPARE(triangulator.fragmentCount(), 2);
        QCOMPARE(triangulator.triangulationOf(later), triangulator.fragment(1));
        QCOMPARE(triangulator.fragment(1)->label(), QStringLiteral("later (triangulated)"));
        QCOMPARE(triangulator.fragment(0)->faceCount(), 4);
        QCOMPARE(triangulator.fragment(1)->faceCount(), 0);
        later->~SlicedContoursFragment();
    }

    void closedSource_isForgottenAndTheMeshStays()
    {
        auto contours = std::make_unique<SlicedContoursObject>();
        SlicedContoursFragment *fragment = contours->newFragment(QStringLiteral("f"));
        addLine(*fragment, 0.0f, bend);
        SlicedContoursSegment *line = addLine(*fragment, 1.0f, bend);
        SlicedContoursTriangulator triangulator(contours.get());
        SlicedContoursObject another;
        triangulator.detachFrom(&another);
        QCOMPARE(triangulator.sources(), QList<ImageObject *>{contours.get()});

        triangulator.detachFrom(contours.get());
        QCOMPARE(triangulator.sources(), QList<ImageObject *>());
        const QSignalSpy updates(&triangulator, &GraphicsObject::updated);
        line->addPointBack({9.0, 9.0});
        contours.reset();
        triangulator.retriangulate();
        QCOMPARE(updates.count(), 0);
        QCOMPARE(triangulator.fragment(0)->faceCount(), 4);
    }

    void deletedSource_withoutAnnouncementDoesNoHarm()
    {
        auto contours = std::make_unique<SlicedContoursObject>();
        SlicedContoursFragment *fragment = contours->newFragment(QStringLiteral("f"));
        addLine(*fragment, 0.0f, bend);
        addLine(*fragment, 1.0f, bend);
        SlicedContoursTriangulator triangulator(contours.get());
        contours.reset();
        QCOMPARE(triangulator.sources(), QList<ImageObject *>());
        triangulator.retriangulate();
        triangulator.retriangulate(&triangulator);
        QCOMPARE(triangulator.fragment(0)->faceCount(), 4);
    }

    void sourceClosedByAListener_endsTheRebuild()
    {
        SlicedContoursObject contours;
        for (int f = 0; f < 3; ++f)
            addLine(*contours.newFragment(QString::number(f)), 0.0f, bend);
        SlicedContoursTriangulator triangulator(&contours);
        connect(triangulator.fragment(1), meshUpdated(), &triangulator,
                [&] { triangulator.detachFrom(&contours); });
        const QSignalSpy last(triangulator.fragment(2), meshUpdated());
        const QSignalSpy whole(&triangulator, &GraphicsObject::updated);
        triangulator.retriangulate();
        QCOMPARE(last.count(), 0);
        QCOMPARE(whole.count(), 1);
    }

    void sourceDeletedByAListener_endsTheRebuild()
    {
        auto contours = std::make_unique<SlicedContoursObject>();
        for (int f = 0; f < 3; ++f) {
            SlicedContoursFragment *fragment = contours->newFragment(QString::number(f));
            addLine(*fragment, 0.0f, bend);
            addLine(*fragment, 1.0f, bend);
        }
        SlicedContoursTriangulator triangulator(contours.get());
        TriMeshFragment *mesh = triangulator.fragment(1);
        connect(mesh, plainUpdated(), &triangulator, [&] { contours.reset(); });
        const QSignalSpy own(mesh, meshUpdated()), last(triangulator.fragment(2), meshUpdated());
        triangulator.retriangulate();
        QCOMPARE(mesh->faceCount(), 4);
        QCOMPARE(own.count(), 1);
        QCOMPARE(last.count(), 0);
        QCOMPARE(triangulator.sources(), QList<ImageObject *>());
    }

    void noSource_isReportedInTheAgreedWords()
    {
        const CapturedOutput output;
        const SlicedContoursTriangulator triangulator(nullptr);
        QCOMPARE(output.standardError(),
                 QStringLiteral("Cound not establish connection indicating triangulation invalidation.\n"));
        QCOMPARE(triangulator.fragmentCount(), 0);
        QCOMPARE(triangulator.sources(), QList<ImageObject *>());
    }

    void heightsAndPointsThatAreNotFinite_doNoHarm()
    {
        constexpr float no = std::numeric_limits<float>::quiet_NaN();
        constexpr float endless = std::numeric_limits<float>::infinity();
        SlicedContoursObject contours;
        SlicedContoursFragment *fragment = contours.newFragment(QStringLiteral("f"));
        for (const float z : {no, endless, 0.0f, -endless, 1.0f, no})
            addLine(*fragment, z, bend);
        const SlicedContoursTriangulator triangulator(&contours);
        QCOMPARE(triangulator.fragment(0)->faceCount(), 4);
        QVERIFY(spansLevels(*triangulator.fragment(0), 0.0, 1.0));
        fragment->segment(2)->addPointBack({std::numeric_limits<double>::quiet_NaN(), 1.0});
        QCOMPARE(triangulator.fragment(0)->faceCount(), 5); // a mesh has exactly the points of the lines
    }
};

QTEST_GUILESS_MAIN(SlicedContoursTriangulatorTest)
#include "SlicedContoursTriangulatorTest.moc"
