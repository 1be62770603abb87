#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshDrawing.h"
#include "meshes/TriMeshObject.h"
#include "tests/support/FlatSheet.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

using MERV::BRep::Plane;
using MERV::BRep::Point;
using MERV::BRep::TriFace;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TriFace triangleAt(double z)
{
    return {{0, 0, z}, {4, 0, z}, {0, 4, z}};
}

Plane planeOf(double a, double b, double c, double d)
{
    const double coefficients[4] = {a, b, c, d};
    return Plane(coefficients);
}

} // namespace

class TriMeshFragmentTest : public QObject
{
    Q_OBJECT

private slots:
    void isEmptyAtFirst()
    {
        const TriMeshFragment fragment;
        QCOMPARE(fragment.faceCount(), 0);
        QCOMPARE(fragment.graphicsType(), 8);
        QCOMPARE(fragment.revision(), std::uint64_t{0});
        QVERIFY(fragment.parent() == nullptr);
    }

    void addFaceAppendsACopyAndClearRemovesAll()
    {
        TriMeshFragment fragment;
        const TriFace face = triangleAt(1);
        fragment.addFace(face);
        fragment.addFace(triangleAt(2));
        fragment.addFace(TriFace());
        QCOMPARE(fragment.faceCount(), 3);
        QVERIFY(&fragment.face(0).vertex(0) != &face.vertex(0));
        QCOMPARE(fragment.face(1).vertex(2).z, 2.0);
        QVERIFY(!fragment.face(2).isValid());
        fragment.clear();
        QCOMPARE(fragment.faceCount(), 0);
    }

    void setFacesReplacesAll()
    {
        TriMeshFragment fragment;
        fragment.addFace(triangleAt(1));
        fragment.setFaces(flatSheet(3, 2, 5.0));
        QCOMPARE(fragment.faceCount(), 12);
        QCOMPARE(fragment.face(0).vertex(0).z, 5.0);
        fragment.setFaces({});
        QCOMPARE(fragment.faceCount(), 0);
    }

    void everyChangeOfTheFacesIsCounted()
    {
        TriMeshFragment fragment;
        std::uint64_t last = fragment.revision();
        const auto grew = [&] { return fragment.revision() > std::exchange(last, fragment.revision()); };
        fragment.addFace(triangleAt(1));
        QVERIFY(grew());
        fragment.clear();
        QVERIFY(grew());
        fragment.setFaces({});
        QVERIFY(grew());
        fragment.setLabel("other");
        fragment.notifyFragmentUpdated();
        QVERIFY(!grew());
    }

    // Changes are announced by their producer when it is done.
    void onlyNotifyEmits()
    {
        TriMeshFragment fragment;
        QSignalSpy ofFragment(&fragment, qOverload<QObject *>(&TriMeshFragment::updated));
        QSignalSpy plain(&fragment, qOverload<>(&TriMeshFragment::updated));
        fragment.addFace(triangleAt(1));
        fragment.setFaces(flatSheet(2, 2, 0.0));
        fragment.clear();
        QCOMPARE(ofFragment.count(), 0);
        fragment.notifyFragmentUpdated();
        QCOMPARE(ofFragment.count(), 1);
        QCOMPARE(ofFragment[0][0].value<QObject *>(), &fragment);
        QCOMPARE(plain.count(), 0);
        emit fragment.updated();
        QCOMPARE(plain.count(), 1);
    }

    // A receiver may change the fragment: no lock is held while it is told.
    void receiversMayChangeTheFragment()
    {
        TriMeshFragment fragment;
        connect(&fragment, qOverload<QObject *>(&TriMeshFragment::updated), this,
                [&fragment] { fragment.addFace(triangleAt(1)); });
        fragment.notifyFragmentUpdated();
        QCOMPARE(fragment.faceCount(), 1);
    }

    void copyIsASnapshotThatOutlivesItsSource()
    {
        TriMeshObject object;
        auto source = std::make_unique<TriMeshFragment>();
        source->setParent(&object);
        source->setLabel("ribbon");
        source->setFaces(flatSheet(3, 2, 5.0));
        const TriMeshFragment snapshot(*source);
        QVERIFY(snapshot.parent() == nullptr);
        QVERIFY(&snapshot.face(0).vertex(0) != &source->face(0).vertex(0));
        QCOMPARE(snapshot.revision(), source->revision());
        source->clear();
        source->setLabel("other");
        source.reset();
        QCOMPARE(snapshot.displayName(), QString("ribbon"));
        QCOMPARE(snapshot.faceCount(), 12);
        // The last square's second triangle, (2, 1), (3, 2), (2, 2) at z = 5.
        QVERIFY(snapshot.face(11).vertex(0).sameCoordinates({2, 1, 5}));
        QVERIFY(snapshot.face(11).vertex(1).sameCoordinates({3, 2, 5}));
        QVERIFY(snapshot.face(11).vertex(2).sameCoordinates({2, 2, 5}));
    }

    void closestPointIsThatOfTheNearestFace()
    {
        TriMeshFragment fragment;
        QVERIFY(!fragment.closestPointTo({0, 0, 0}).valid);
        fragment.addFace(TriFace());
        fragment.addFace({{1, 1, 1}, {1, 1, 1}, {2, 2, 2}});
        QVERIFY(!fragment.closestPointTo({0, 0, 0}).valid);
        fragment.addFace(triangleAt(5));
        fragment.addFace(triangleAt(-2));
        fragment.addFace(triangleAt(2));
        QCOMPARE(euclidean(fragment.closestPointTo({1, 1, 4})).z, 5.0);
        QCOMPARE(euclidean(fragment.closestPointTo({1, 1, 0})).z, -2.0); // as near as 2, and earlier
        QVERIFY(!fragment.closestPointTo({notANumber, 1, 0}).valid);
    }

    void lockIsThatOfTheFragment()
    {
        TriMeshFragment fragment;
        QVERIFY((std::is_base_of_v<QReadWriteLock, TriMeshFragment>));
        fragment.lockForRead();
        QVERIFY(!fragment.tryLockForWrite());
        fragment.unlock();
        QVERIFY(fragment.tryLockForWrite());
        fragment.unlock();
    }

    void litTrianglesHaveTheNormalOfTheirFace()
    {
        const std::vector<TriFace> faces{triangleAt(1), {{1, 2, 3}, {1, 2, 3}, {8, 0, 0, 2}}};
        const std::vector<LitVertex> vertices = litTriangles(faces);
        QCOMPARE(vertices.size(), std::size_t{6});
        for (std::size_t i = 0; i < 3; ++i)
            QVERIFY(vertices[i].normal == (std::array<float, 3>{0, 0, 16}));
        QVERIFY(vertices[1].position == (std::array<float, 4>{4, 0, 1, 1}));
        // A face without area is sent all the same, with a zero normal, and points as they are stored.
        QVERIFY(vertices[5].normal == (std::array<float, 3>{0, 0, 0}));
        QVERIFY(vertices[5].position == (std::array<float, 4>{8, 0, 0, 2}));
        QVERIFY(litTriangles({}).empty());
    }

    void whatIsNotFiniteIsNotSent()
    {
        const std::vector<TriFace> faces{TriFace(),
                                         {{0, 0, notANumber}, {4, 0, 0}, {0, 4, 0}},
                                         {{0, 0, 0}, {infinity, 0, 0}, {0, 4, 0}},
                                         {{0, 0, 0}, {4, 0, 0}, {0, 1e300, 0}},
                                         triangleAt(3)};
        const std::vector<LitVertex> vertices = litTriangles(faces);
        QCOMPARE(vertices.size(), std::size_t{3});
        QCOMPARE(vertices[0].position[2], 3.0f);
        const std::vector<SectionVertex> lines = sectionLines(faces, planeOf(1, 0, 0, -1));
        for (const SectionVertex &end : lines)
            for (const float coordinate : end)
                QVERIFY(std::isfinite(coordinate));
        QVERIFY(sectionLines(faces, planeOf(notANumber, 0, 0, -1)).empty());
        QVERIFY(sectionLines(faces, planeOf(0, 0, 0, 1)).empty());
    }

    void sectionHasTwoEndsPerFace()
    {
        // x = 1 cuts the triangles at z = 2 and z = 3 from (1, 0) to (1, 3).
        const std::vector<TriFace> faces{
            triangleAt(2), TriFace(), {{8, 0, 0}, {9, 0, 0}, {8, 1, 0}}, triangleAt(3)};
        const std::vector<SectionVertex> lines = sectionLines(faces, planeOf(1, 0, 0, -1));
        QCOMPARE(lines.size(), std::size_t{4});
        QVERIFY(lines[0] == (SectionVertex{1, 0, 2}));
        QVERIFY(lines[1] == (SectionVertex{1, 3, 2}));
        QVERIFY(lines[2] == (SectionVertex{1, 0, 3}));
        QVERIFY(lines[3] == (SectionVertex{1, 3, 3}));
        // x = 4 touches vertex 1: a line without length. Ends are divided by their weight.
        const std::vector<TriFace> touched{{{0, 0, 4, 2}, {8, 0, 4, 2}, {0, 8, 4, 2}}};
        const std::vector<SectionVertex> point = sectionLines(touched, planeOf(1, 0, 0, -4));
        QCOMPARE(point.size(), std::size_t{2});
        QVERIFY(point[0] == (SectionVertex{4, 0, 2}));
        QVERIFY(point[1] == (SectionVertex{4, 0, 2}));
    }
};

QTEST_GUILESS_MAIN(TriMeshFragmentTest)
#include "TriMeshFragmentTest.moc"
