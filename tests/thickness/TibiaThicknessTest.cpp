#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/geometry/ClosestPointIndex.h"
#include "tests/support/NoTimeLimit.h"
#include "tests/support/TestData.h"
#include "tests/support/TrueDistance.h"
#include "tests/support/VtkMesh.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

using MERV::BRep::ClosestPointIndex;
using MERV::BRep::FacePoint;
using MERV::BRep::Line;
using MERV::BRep::Point;
using MERV::BRep::TriFace;

// A real tibia: the surface of the bone with a published cartilage thickness at each vertex, 0 where there is
// no cartilage, and the closed shells of the medial and the lateral cartilage. The published thickness is the
// distance between the two hits of a ray from the vertex, along the average of the unit normals of the faces
// around it, with the closed shell.
namespace {

constexpr int publishedCount = 1584;
constexpr double publishedMeanMm = 1.968;
constexpr double toleranceMm = 0.01; // of the mean absolute difference
constexpr double rayLengthMm = 10.0;
constexpr double depthMm = 5.0; // more than a shell reaches into the bone, see below

Point moved(const Point &from, const Point &direction, double way)
{
    return {from.x + way * direction.x, from.y + way * direction.y, from.z + way * direction.z};
}

double product(const Point &a, const Point &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Point unit(const Point &vector)
{
    const double length = std::sqrt(product(vector, vector));
    return {vector.x / length, vector.y / length, vector.z / length};
}

// At each point the direction of the sum of the unit normals of the faces around it.
std::vector<Point> averagedNormals(const VtkMesh &mesh)
{
    std::vector<Point> sums(mesh.points.size(), Point(0, 0, 0));
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
        const Point normal = unit(mesh.face(i).normal());
        for (const std::size_t corner : mesh.triangles[i])
            sums[corner] = moved(sums[corner], normal, 1.0);
    }
    for (Point &sum : sums)
        sum = unit(sum);
    return sums;
}

// A triangle whose vertex 0 is the point and whose normal is the unit vector: it hands a measurer, which
// takes the normal of the first face that reaches a vertex, an averaged normal.
TriFace faceWithNormal(const Point &point, const Point &normal)
{
    const Point axis = std::abs(normal.x) < 0.6 ? Point(1, 0, 0) : Point(0, 1, 0);
    const Point a = unit(moved(axis, normal, -product(axis, normal)));
    const Point b(normal.y * a.z - normal.z * a.y, normal.z * a.x - normal.x * a.z,
                  normal.x * a.y - normal.y * a.x);
    return {point, moved(point, a, 1.0), moved(point, b, 1.0)};
}

// Faces in balls around their first corner, to leave those out that are far from a line or a point.
struct Ball
{
    Point center;
    double radius = 0.0;
};

Ball ballAround(const TriFace &face)
{
    return {face.vertex(0),
            std::max(distance(face.vertex(0), face.vertex(1)), distance(face.vertex(0), face.vertex(2)))};
}

struct Tibia
{
    VtkMesh bone;
    std::vector<Point> normals; // of the bone, out of it
    std::vector<TriFace> shells;
    std::vector<Ball> balls; // of the shells' faces
};

std::optional<Tibia> readTibia()
{
    const std::string folder = testDataFolder() + "/knee-meshes/tibia/";
    const auto bone = readVtkMesh(folder + "tibia_smoothed_image_10k_pts_thick_regions.vtk");
    const auto lateral = readVtkMesh(folder + "lat_tib_cart_smoothed_binary_no_surface_resampling.vtk");
    const auto medial = readVtkMesh(folder + "med_tib_cart_smoothed_binary_no_surface_resampling.vtk");
    if (!bone || !lateral || !medial)
        return std::nullopt;
    Tibia tibia{*bone, averagedNormals(*bone), lateral->faces(), {}};
    for (const TriFace &face : medial->faces())
        tibia.shells.push_back(face);
    for (const TriFace &face : tibia.shells)
        tibia.balls.push_back(ballAround(face));
    return tibia;
}

// How far along the ray from a vertex the shells are hit, within the length of a ray to either side.
std::vector<double> hitsOfRay(const Tibia &tibia, std::size_t vertex)
{
    const Point &from = tibia.bone.points[vertex], &along = tibia.normals[vertex];
    const Line ray(from, moved(from, along, 1.0));
    std::vector<double> hits;
    for (std::size_t i = 0; i < tibia.shells.size(); ++i) {
        const Ball &ball = tibia.balls[i];
        const Point way = moved(ball.center, from, -1.0);
        const double past = product(way, along);
        if (product(way, way) - past * past > (ball.radius + 0.01) * (ball.radius + 0.01))
            continue;
        const Point hit = euclidean(tibia.shells[i].intersection(ray));
        const double reached = product(moved(hit, from, -1.0), along);
        if (hit.valid && std::abs(reached) < rayLengthMm)
            hits.push_back(reached);
    }
    std::sort(hits.begin(), hits.end());
    return hits;
}

// The distance from q to the point that a face answers with: its foot inside, the corner where both edges
// that meet there have q outside, else the nearest point of the one edge that has. In real data no side is 0.
Real distanceByTheRules(const Corners &p, const Point &q)
{
    const RealVector normal = cross(difference(p[1], p[0]), difference(p[2], p[1]));
    std::array<bool, 3> outside{};
    for (std::size_t i = 0; i < 3; ++i)
        outside[i] = dot(normal, cross(difference(p[(i + 1) % 3], p[i]), difference(q, p[i]))) < 0;
    for (std::size_t i = 0; i < 3; ++i)
        if (outside[i] && outside[(i + 1) % 3])
            return std::sqrt(dot(difference(q, p[(i + 1) % 3]), difference(q, p[(i + 1) % 3])));
    for (std::size_t i = 0; i < 3; ++i)
        if (outside[i])
            return distanceToEdge(p[i], p[(i + 1) % 3], q);
    return std::abs(dot(normal, difference(q, p[0]))) / std::sqrt(dot(normal, normal));
}

struct Agreement
{
    int count = 0;
    double mean = 0.0, meanDifference = 0.0, largestDifference = 0.0;
};

// Of thicknesses measured at vertices of the bone, negative where there is none, with the published ones.
Agreement agreement(const std::vector<double> &measured, const std::vector<double> &published)
{
    Agreement result;
    for (std::size_t i = 0; i < measured.size(); ++i) {
        if (measured[i] < 0.0)
            continue;
        ++result.count;
        result.mean += measured[i];
        result.meanDifference += std::abs(measured[i] - published[i]);
        result.largestDifference = std::max(result.largestDifference, std::abs(measured[i] - published[i]));
    }
    result.mean /= result.count;
    result.meanDifference /= result.count;
    return result;
}

QByteArray text(const Agreement &a)
{
    return QString("n %1, mean %2, mean difference %3, largest %4")
        .arg(QString::number(a.count), QString::number(a.mean), QString::number(a.meanDifference),
             QString::number(a.largestDifference))
        .toUtf8();
}

void waitUntilIdle(const TriMeshDistanceMeasurer &measurer)
{
    QTRY_VERIFY_WITH_TIMEOUT(!measurer.isPending(), 250000);
}

Vector3 place(const Point &point)
{
    return {point.x, point.y, point.z};
}

} // namespace

class TibiaThicknessTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { liftTimeLimit(); } // scans of all faces take long under a sanitizer

private slots:
    void initTestCase()
    {
        if (testDataFolder().empty())
            QSKIP("no real data");
        tibia = readTibia();
        if (!tibia)
            QSKIP("no meshes of a tibia among the real data");
        QCOMPARE(tibia->bone.points.size(), std::size_t{9999});
        QCOMPARE(tibia->bone.scalars.size(), std::size_t{9999});
    }

    // Rays that hit the closed shells exactly twice are those with a published thickness, and it is the
    // distance between the two hits.
    void hitsOfClosedShellsAreThePublishedThickness()
    {
        std::vector<double> measured;
        int mistaken = 0;
        for (std::size_t i = 0; i < tibia->bone.points.size(); ++i) {
            const std::vector<double> hits = hitsOfRay(*tibia, i);
            measured.push_back(hits.size() == 2 ? hits[1] - hits[0] : -1.0);
            mistaken += (hits.size() == 2) != (tibia->bone.scalars[i] > 0.0) ? 1 : 0;
        }
        QCOMPARE(mistaken, 0);
        checkAgreement(agreement(measured, tibia->bone.scalars));
    }

    // The same by the measurer. It knows one base and one remote fragment and measures to the nearest hit to
    // either side, so the closed shells are taken apart into their sides towards and away from the bone (by
    // the normal of the nearest face of the bone), and the base are the vertices of the bone moved 5 mm into
    // it, from where all hits lie ahead though some shells reach below the bone's surface. The thickness is
    // the distance to the far side less that to the near side. The base's normals are the averaged ones.
    void measurerFindsThePublishedThickness()
    {
        TriMeshFragment base, nearSide, farSide;
        std::vector<Point> starts;
        for (std::size_t i = 0; i < tibia->bone.points.size(); ++i) {
            starts.push_back(moved(tibia->bone.points[i], tibia->normals[i], -depthMm));
            if (tibia->bone.scalars[i] > 0.0)
                base.addFace(faceWithNormal(starts.back(), tibia->normals[i]));
        }
        const std::vector<TriFace> boneFaces = tibia->bone.faces();
        const ClosestPointIndex boneIndex(boneFaces);
        for (const TriFace &face : tibia->shells) {
            const auto &corners = tibia->bone.triangles[boneIndex.closestPoint(face.vertex(0)).face];
            const std::size_t nearest =
                *std::min_element(corners.begin(), corners.end(), [&](std::size_t left, std::size_t right) {
                    return distance(tibia->bone.points[left], face.vertex(0)) <
                           distance(tibia->bone.points[right], face.vertex(0));
                });
            (product(face.normal(), tibia->normals[nearest]) > 0.0 ? farSide : nearSide).addFace(face);
        }
        const TriMeshDistanceMeasurer toNear(&base, &nearSide, "near side");
        const TriMeshDistanceMeasurer toFar(&base, &farSide, "far side");
        waitUntilIdle(toNear);
        waitUntilIdle(toFar);
        std::vector<double> measured;
        for (const Point &start : starts) {
            const Vector3 key = place(start);
            const bool isMeasured = toNear.hasSample(key) && toFar.hasSample(key);
            measured.push_back(isMeasured ? toFar.sampleAt(key) - toNear.sampleAt(key) : -1.0);
        }
        checkAgreement(agreement(measured, tibia->bone.scalars));
    }

    // The minimal distance from the vertices of the bone to the shells, against the rules written down anew.
    // A face answers with its obtuse corner where an edge is nearer, so a distance may be longer than a
    // textbook's, never shorter.
    void minimalDistanceFollowsTheRules()
    {
        TriMeshFragment base, remote;
        base.setFaces(tibia->bone.faces());
        remote.setFaces(tibia->shells);
        const TriMeshDistanceMeasurer measurer(&base, &remote, TriMeshDistanceMeasurer::MinimalDistance,
                                               "minimal");
        waitUntilIdle(measurer);
        int longer = 0, measured = 0;
        for (std::size_t i = 0; i < tibia->bone.points.size(); i += 7) {
            const Point &vertex = tibia->bone.points[i];
            QVERIFY(measurer.hasSample(place(vertex)));
            const double found = measurer.sampleAt(place(vertex));
            const double truth = smallestOverShells(vertex, trueDistance);
            QVERIFY2(std::abs(found - smallestOverShells(vertex, distanceByTheRules)) <= 1e-9,
                     qPrintable(QString::number(i)));
            QVERIFY2(found >= truth - 1e-9, qPrintable(QString::number(i)));
            longer += found > truth + 1e-9 ? 1 : 0;
            ++measured;
        }
        QCOMPARE(measured, 1429); // every seventh of 9,999
        qInfo("%d of %d distances end at an obtuse corner though an edge is nearer", longer, measured);
    }

private:
    void checkAgreement(const Agreement &found)
    {
        qInfo("%s", text(found).constData());
        QCOMPARE(found.count, publishedCount);
        QVERIFY2(std::abs(found.mean - publishedMeanMm) <= 0.001, text(found).constData());
        QVERIFY2(found.meanDifference <= toleranceMm, text(found).constData());
        QVERIFY2(found.largestDifference <= 0.1, text(found).constData());
    }

    // Faces whose balls are too far away are left out.
    template <class Distance>
    double smallestOverShells(const Point &vertex, const Distance &distanceTo) const
    {
        double best = std::numeric_limits<double>::max();
        for (std::size_t i = 0; i < tibia->shells.size(); ++i) {
            const TriFace &face = tibia->shells[i];
            if (distance(vertex, tibia->balls[i].center) - tibia->balls[i].radius > best)
                continue;
            const Corners corners{face.vertex(0), face.vertex(1), face.vertex(2)};
            best = std::min(best, static_cast<double>(distanceTo(corners, vertex)));
        }
        return best;
    }

    std::optional<Tibia> tibia;
};

QTEST_GUILESS_MAIN(TibiaThicknessTest)
#include "TibiaThicknessTest.moc"
