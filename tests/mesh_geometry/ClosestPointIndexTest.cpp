#include "meshes/geometry/ClosestPointIndex.h"

#include "tests/support/RibbonMesh.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <random>
#include <thread>

namespace {

using namespace MERV::BRep;

using Faces = std::vector<TriFace>;
using Queries = std::vector<Point>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

bool sameBits(const Point &a, const Point &b)
{
    const auto bits = [](const Point &p) {
        return std::array{std::bit_cast<std::uint64_t>(p.x), std::bit_cast<std::uint64_t>(p.y),
                          std::bit_cast<std::uint64_t>(p.z), std::bit_cast<std::uint64_t>(p.w)};
    };
    return a.valid == b.valid && bits(a) == bits(b);
}

void expectSame(const FacePoint &found, const FacePoint &scanned, const Point &query)
{
    ASSERT_TRUE(found.face == scanned.face && sameBits(found.point, scanned.point))
        << "asked for (" << query.x << ", " << query.y << ", " << query.z << ", " << query.w << "): face "
        << found.face << " instead of " << scanned.face;
}

// Without a hint, with the previous answer and with any number as a hint.
void expectScanAnswers(const Faces &faces, const Queries &queries)
{
    const ClosestPointIndex index(faces);
    std::mt19937 random(7);
    std::size_t previous = ClosestPointIndex::noHint;
    for (const Point &query : queries) {
        const FacePoint scanned = closestPointByScan(faces, query);
        expectSame(index.closestPoint(query), scanned, query);
        expectSame(index.closestPoint(query, previous), scanned, query);
        expectSame(index.closestPoint(query, random() % (faces.size() + 2)), scanned, query);
        if (::testing::Test::HasFatalFailure())
            return;
        previous = scanned.face;
    }
}

struct Extent
{
    std::array<double, 3> middle{}, half{};
};

Extent extentOf(const Faces &faces)
{
    std::array<double, 3> low{infinity, infinity, infinity}, high{-infinity, -infinity, -infinity};
    for (const TriFace &face : faces)
        for (int i = 0; i < 3; ++i) {
            const Point p = euclidean(face.vertex(i));
            const std::array at{p.x, p.y, p.z};
            for (std::size_t k = 0; k < at.size(); ++k)
                if (std::isfinite(at[k])) {
                    low[k] = std::min(low[k], at[k]);
                    high[k] = std::max(high[k], at[k]);
                }
        }
    Extent result;
    for (std::size_t k = 0; k < low.size(); ++k) {
        result.middle[k] = 0.5 * (low[k] + high[k]);
        result.half[k] = 0.5 * (high[k] - low[k]);
    }
    return result;
}

// Points in and around the mesh, near its vertices, on them, in its faces and far away.
Queries queriesAround(const Faces &faces, std::size_t count)
{
    const Extent extent = extentOf(faces);
    std::mt19937 random(11);
    std::uniform_real_distribution<double> place(-1.3, 1.3), part(0.0, 1.0);
    const double size = std::max({extent.half[0], extent.half[1], extent.half[2]});
    const auto near = [&](const Point &p, double reach) {
        return Point(p.x + reach * place(random), p.y + reach * place(random), p.z + reach * place(random));
    };
    Queries queries;
    while (queries.size() < count) {
        const TriFace &face = faces[random() % faces.size()];
        const Point a = euclidean(face.vertex(0)), b = euclidean(face.vertex(1)),
                    c = euclidean(face.vertex(2));
        const double u = part(random), v = (1.0 - u) * part(random);
        const Point inside(a.x + u * (b.x - a.x) + v * (c.x - a.x), a.y + u * (b.y - a.y) + v * (c.y - a.y),
                           a.z + u * (b.z - a.z) + v * (c.z - a.z));
        const Point middle(extent.middle[0], extent.middle[1], extent.middle[2]);
        queries.push_back(near(middle, size));
        queries.push_back(near(inside, 0.05 * size));
        queries.push_back(near(inside, 1e-3 * size));
        queries.push_back(near(a, 1e-7 * size));
        queries.push_back(inside);
        queries.push_back(a);
        queries.push_back(near(middle, std::exp2(20.0 * part(random)) * size));
    }
    return queries;
}

void expectScanAnswersAround(const Faces &faces, std::size_t count)
{
    expectScanAnswers(faces, queriesAround(faces, count));
}

Faces moved(const Faces &faces, double factor, double x, double y, double z)
{
    Faces result;
    const auto place = [&](const Point &p) {
        return Point(factor * p.x + x, factor * p.y + y, factor * p.z + z, p.w);
    };
    for (const TriFace &face : faces)
        result.emplace_back(place(face.vertex(0)), place(face.vertex(1)), place(face.vertex(2)));
    return result;
}

// A square of squares of two faces, in the plane z = 0, with whole coordinates.
Faces planarGrid(int side)
{
    Faces faces;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            faces.emplace_back(Point(x, y, 0), Point(x + 1, y, 0), Point(x + 1, y + 1, 0));
            faces.emplace_back(Point(x, y, 0), Point(x + 1, y + 1, 0), Point(x, y + 1, 0));
        }
    return faces;
}

Faces fan(int count, double height)
{
    Faces faces;
    const double step = 2.0 * std::numbers::pi / count;
    for (int i = 0; i < count; ++i)
        faces.emplace_back(Point(0, 0, height), Point(std::cos(i * step), std::sin(i * step), 0),
                           Point(std::cos((i + 1) * step), std::sin((i + 1) * step), 0));
    return faces;
}

Faces moebiusBand(int around, int across)
{
    const auto place = [&](int i, int k) {
        const double u = 2.0 * std::numbers::pi * i / around, v = 20.0 * k / across - 10.0;
        const double radius = 40.0 + v * std::cos(0.5 * u);
        return Point(radius * std::cos(u), radius * std::sin(u), v * std::sin(0.5 * u));
    };
    Faces faces;
    for (int i = 0; i < around; ++i)
        for (int k = 0; k < across; ++k) {
            faces.emplace_back(place(i, k), place(i + 1, k), place(i + 1, k + 1));
            faces.emplace_back(place(i, k), place(i + 1, k + 1), place(i, k + 1));
        }
    return faces;
}

// Any three points; `flatness` 0 puts the third one on the line of the other two.
Faces loose(int count, double size, double flatness, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-50.0, 50.0), step(-1.0, 1.0);
    Faces faces;
    for (int i = 0; i < count; ++i) {
        const Point a(place(random), place(random), place(random));
        const Point b(a.x + size * step(random), a.y + size * step(random), a.z + size * step(random));
        const double along = 2.0 * step(random), off = flatness * size;
        faces.emplace_back(a, b,
                           Point(a.x + along * (b.x - a.x) + off * step(random),
                                 a.y + along * (b.y - a.y) + off * step(random),
                                 a.z + along * (b.z - a.z) + off * step(random)));
    }
    return faces;
}

Faces together(Faces faces, const Faces &more)
{
    faces.insert(faces.end(), more.begin(), more.end());
    return faces;
}

} // namespace

TEST(ClosestPointIndex, ofNoFacesHasNoAnswer)
{
    const ClosestPointIndex index({});
    EXPECT_FALSE(index.closestPoint(Point(1, 2, 3)).point.valid);
    EXPECT_EQ(index.closestPoint(Point(1, 2, 3), 5).face, FacePoint().face);
}

TEST(ClosestPointIndex, ofFacesWithoutAreaHasNoAnswer)
{
    const Point a(1, 2, 3), b(4, 5, 6);
    const Faces faces{TriFace(a, a, b), TriFace(a, b, a), TriFace(b, a, a), TriFace(a, a, a), TriFace()};
    const ClosestPointIndex index(faces);
    EXPECT_FALSE(index.closestPoint(Point(1, 2, 3)).point.valid);
    EXPECT_FALSE(index.closestPoint(Point(1, 2, 3), 2).point.valid);
}

// By hand: the foot of (1, 1, 5) on the triangle (0,0,0), (4,0,0), (0,4,0) is (1, 1, 0).
TEST(ClosestPointIndex, findsTheFoot)
{
    const Faces faces{TriFace(Point(0, 0, 9), Point(4, 0, 9), Point(0, 4, 9)),
                      TriFace(Point(0, 0, 0), Point(4, 0, 0), Point(0, 4, 0))};
    const FacePoint high = ClosestPointIndex(faces).closestPoint(Point(1, 1, 8));
    const FacePoint low = ClosestPointIndex(faces).closestPoint(Point(1, 1, 4));
    EXPECT_EQ(high.face, 0u);
    EXPECT_EQ(distance(high.point, Point(1, 1, 9)), 0.0);
    EXPECT_EQ(low.face, 1u);
    EXPECT_EQ(distance(low.point, Point(1, 1, 0)), 0.0);
}

// Face 0 has an obtuse corner at (0, 0, 0). From (-1, -0.3, 0) both of its sides there are passed, so its
// answer is the corner, 1.044 away, though its side to (-4, 1, 0) is as near as 0.534. Face 1, 1 away, wins.
TEST(ClosestPointIndex, takesTheCornerBeyondAnObtuseAngle)
{
    const Faces faces{TriFace(Point(0, 0, 0), Point(4, 1, 0), Point(-4, 1, 0)),
                      TriFace(Point(-2, -1, 1), Point(0, -1, 1), Point(-1, 1, 1))};
    const Point query(-1, -0.3, 0);
    ASSERT_TRUE(faces[0].closestPointTo(query).sameCoordinates(Point(0, 0, 0)));
    EXPECT_EQ(ClosestPointIndex(faces).closestPoint(query).face, 1u);
    expectScanAnswers(faces, {query});
}

TEST(ClosestPointIndex, takesTheFirstOfEqualFaces)
{
    Faces faces = loose(40, 5.0, 1.0, 3);
    faces = together(together(faces, faces), faces);
    const ClosestPointIndex index(faces);
    for (const Point &query : queriesAround(faces, 700))
        for (const std::size_t hint : {ClosestPointIndex::noHint, std::size_t{0}, std::size_t{100}})
            EXPECT_LT(index.closestPoint(query, hint).face, 40u);
}

TEST(ClosestPointIndex, answersAsTheScanOnRibbons)
{
    expectScanAnswersAround(ribbonMesh(12, 41, 0.0, 1), 15000);
    expectScanAnswersAround(ribbonMesh(4, 150, 0.0, 2), 7000);
    expectScanAnswersAround(together(ribbonMesh(8, 30, 0.0, 3), ribbonMesh(8, 30, 0.01, 4)), 7000);
}

TEST(ClosestPointIndex, answersAsTheScanForVerticesOfAParallelRibbon)
{
    Queries queries;
    for (const TriFace &face : ribbonMesh(12, 41, 3.0, 5))
        for (int i = 0; i < 3; ++i)
            queries.push_back(face.vertex(i));
    expectScanAnswers(ribbonMesh(12, 41, 0.0, 1), queries);
}

TEST(ClosestPointIndex, answersAsTheScanWhereManyFacesAreEquallyNear)
{
    const Faces grid = planarGrid(16);
    Queries queries;
    for (int x = -2; x <= 34; ++x)
        for (int y = -2; y <= 34; ++y)
            for (const double z : {0.0, 0.5, -3.0})
                queries.emplace_back(0.5 * x, 0.5 * y, z);
    expectScanAnswers(grid, queries);
    expectScanAnswersAround(grid, 7000);
    // Both sheets are equally near to all points half way.
    const Faces two = together(grid, moved(grid, 1.0, 0.0, 0.0, 8.0));
    for (Point &query : queries)
        query.z = 4.0;
    expectScanAnswers(two, queries);
    // From above its tip and from its axis all faces of a fan are.
    for (const double height : {0.0, 2.0})
        for (const double z : {-1.0, 0.0, 1.0, 5.0})
            expectScanAnswers(fan(500, height), {Point(0, 0, z), Point(1e-9, 0, z), Point(0.5, 0, z)});
}

TEST(ClosestPointIndex, answersAsTheScanOnFansAndBands)
{
    expectScanAnswersAround(fan(300, 0.0), 7000);
    expectScanAnswersAround(fan(300, 3.0), 7000);
    expectScanAnswersAround(moebiusBand(60, 7), 7000);
}

TEST(ClosestPointIndex, answersAsTheScanOnLooseFaces)
{
    for (const double size : {0.01, 1.0, 100.0})
        expectScanAnswersAround(loose(300, size, 1.0, 21), 7000);
    for (int count = 1; count < 70; ++count)
        expectScanAnswersAround(loose(count, 10.0, 1.0, static_cast<unsigned>(count)), 140);
}

TEST(ClosestPointIndex, answersAsTheScanOnSlivers)
{
    for (int step = 0; step < 12; ++step) // down to 2e-18
        expectScanAnswersAround(loose(200, 5.0, 0.1 * std::pow(0.03, step), 31), 1400);
    expectScanAnswersAround(loose(200, 5.0, 0.0, 31), 1400);
    Faces mixed;
    for (int exponent = 2; exponent >= -12; --exponent)
        mixed = together(mixed, loose(30, std::pow(10.0, exponent), 1.0, 41));
    expectScanAnswersAround(mixed, 7000);
}

TEST(ClosestPointIndex, answersAsTheScanAtAnyScaleAndPlace)
{
    const Faces ribbon = ribbonMesh(6, 20, 0.0, 1);
    for (const int exponent : {-600, -340, -300, -160, -101, -60, -20, 20, 60, 93, 160, 300, 500, 900})
        expectScanAnswersAround(moved(ribbon, std::exp2(exponent), 0.0, 0.0, 0.0), 700);
    for (const double far : {1e3, 1e5, 1e6, 1e7, 1e8, 1e10, 1e14})
        expectScanAnswersAround(moved(ribbon, 1.0, far, -far, far), 700);
}

TEST(ClosestPointIndex, answersAsTheScanOnDegenerateAndInvalidFaces)
{
    Faces faces = loose(100, 5.0, 1.0, 51);
    const Point a(1, 2, 3), b(4, 5, 7);
    for (int i = 0; i < 20; ++i) {
        faces.insert(faces.begin() + 5 * i, TriFace(a, b, a));
        faces.insert(faces.begin() + 5 * i, TriFace());
        faces.insert(faces.begin() + 5 * i, TriFace(a, Point(), b));
    }
    expectScanAnswersAround(loose(100, 5.0, 1.0, 51), 700);
    expectScanAnswers(faces, queriesAround(loose(100, 5.0, 1.0, 51), 7000));
}

TEST(ClosestPointIndex, answersAsTheScanOnAnyWeights)
{
    std::mt19937 random(61);
    const std::array weights{1.0, 2.0, 0.5, -1.0, -3.0, 1e-200, 1e200, 0.0, infinity, notANumber};
    for (int weighty = 1; weighty <= 4; ++weighty) {
        Faces faces;
        for (const TriFace &face : loose(100, 5.0, 1.0, 61)) {
            std::array<Point, 3> p{face.vertex(0), face.vertex(1), face.vertex(2)};
            for (Point &point : p)
                if (random() % 4 < static_cast<unsigned>(weighty)) {
                    const double w = weights[random() % weights.size()];
                    point = Point(w * point.x, w * point.y, w * point.z, w);
                }
            faces.emplace_back(p[0], p[1], p[2]);
        }
        Queries queries = queriesAround(loose(100, 5.0, 1.0, 61), 700);
        for (std::size_t i = 0; i < queries.size(); i += 3) {
            const double w = weights[random() % weights.size()];
            queries[i] = Point(w * queries[i].x, w * queries[i].y, w * queries[i].z, w);
        }
        expectScanAnswers(faces, queries);
    }
}

TEST(ClosestPointIndex, answersAsTheScanOnNumbersThatAreNotFinite)
{
    std::mt19937 random(71);
    const std::array values{infinity, -infinity, notANumber, 1e308, -1e200, 1e154, 1e-310};
    const Faces sound = loose(100, 5.0, 1.0, 71);
    for (const unsigned rarity : {2u, 20u, 200u}) {
        const auto spoiled = [&](Point p) {
            for (double *value : {&p.x, &p.y, &p.z})
                if (random() % rarity == 0)
                    *value = values[random() % values.size()];
            return p;
        };
        for (int turn = 0; turn < 20; ++turn) {
            Faces faces;
            for (const TriFace &face : sound)
                faces.emplace_back(spoiled(face.vertex(0)), spoiled(face.vertex(1)), spoiled(face.vertex(2)));
            Queries queries = queriesAround(sound, 140);
            expectScanAnswers(faces, queries);
            for (Point &query : queries)
                query = spoiled(query);
            queries.emplace_back();
            expectScanAnswers(faces, queries);
            expectScanAnswers(sound, queries);
        }
    }
}

// Above the middle of the wide triangle, whose corners are 8e76 away, the foot has w = n * n, 6.75 * 8e76^4,
// which overflows: there is no answer, though the triangle is the nearest one.
TEST(ClosestPointIndex, passesOverFacesWhoseFootOverflows)
{
    const double radius = 8e76, half = 0.5 * radius, side = 0.5 * std::numbers::sqrt3 * radius;
    const TriFace wide(Point(radius, 0, 0), Point(-half, side, 0), Point(-half, -side, 0));
    const TriFace narrow(Point(0, 0, 9), Point(4, 0, 9), Point(0, 4, 9));
    const Point query(1, 1, 0.5);
    const Faces faces{wide, narrow, wide};
    EXPECT_EQ(ClosestPointIndex(faces).closestPoint(query).face, 1u);
    EXPECT_EQ(ClosestPointIndex(faces).closestPoint(query, 0).face, 1u);
    expectScanAnswers(faces, {query});
}

TEST(ClosestPointIndex, answersSeveralThreadsAtOnce)
{
    const Faces faces = ribbonMesh(10, 20, 0.0, 1);
    const Queries queries = queriesAround(faces, 700);
    const ClosestPointIndex index(faces);
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (const Point &query : queries)
                expectSame(index.closestPoint(query), closestPointByScan(faces, query), query);
        });
}
