// The index against the plain scan, bit by bit, over meshes and lines that are hard on it.
#include "meshes/geometry/NearestHitIndex.h"

#include "meshes/geometry/NearestHit.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

using MERV::BRep::FacePoint;
using MERV::BRep::Line;
using MERV::BRep::nearestHitByScan;
using MERV::BRep::NearestHitIndex;
using MERV::BRep::Point;
using MERV::BRep::side;
using MERV::BRep::TriFace;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

using Faces = std::vector<TriFace>;

struct Query
{
    Line line;
    Point from;
};

using Queries = std::vector<Query>;

// What the answers of a test were made of, so that it can show that it tests something.
struct Seen
{
    std::size_t hits = 0;
    std::size_t farHits = 0; // of these, outside the face: on the extension of an edge

    Seen &operator+=(const Seen &other)
    {
        hits += other.hits;
        farHits += other.farHits;
        return *this;
    }
};

bool isOutside(const TriFace &face, const Line &line)
{
    bool below = false, above = false;
    for (int i = 0; i < 3; ++i) {
        const double s = side(face.edge(i), line);
        below = below || s < 0.0;
        above = above || s > 0.0;
    }
    return below && above;
}

bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool sameAnswer(const FacePoint &a, const FacePoint &b)
{
    return a.face == b.face && a.point.valid == b.point.valid && sameBits(a.point.x, b.point.x) &&
           sameBits(a.point.y, b.point.y) && sameBits(a.point.z, b.point.z) && sameBits(a.point.w, b.point.w);
}

Seen expectScanAnswers(const Faces &faces, const Queries &queries)
{
    const NearestHitIndex index(faces);
    Seen seen;
    for (std::size_t i = 0; i < queries.size(); ++i) {
        const auto &[line, from] = queries[i];
        const FacePoint expected = nearestHitByScan(faces, line, from);
        const FacePoint found = index.nearestHit(line, from);
        EXPECT_TRUE(sameAnswer(found, expected))
            << "line " << i << ": face " << found.face << " instead of " << expected.face;
        if (!expected.point.valid)
            continue;
        ++seen.hits;
        if (isOutside(faces[expected.face], line))
            ++seen.farHits;
    }
    return seen;
}

Point moved(const Point &p, double x, double y, double z)
{
    return {p.x + x, p.y + y, p.z + z};
}

Query alongNormal(const TriFace &face, int corner)
{
    const Point &p = face.vertex(corner), n = face.normal();
    return {Line(p, moved(p, n.x, n.y, n.z)), p};
}

Queries normalsOf(const Faces &faces)
{
    Queries queries;
    for (const TriFace &face : faces) {
        for (int corner = 0; corner < 3; ++corner)
            queries.push_back(alongNormal(face, corner));
    }
    return queries;
}

// Random numbers that are the same everywhere.
class Dice
{
public:
    explicit Dice(unsigned seed)
        : engine(seed)
    {}
    double between(double low, double high)
    {
        return low + (high - low) * static_cast<double>(engine()) / 4294967296.0;
    }
    int below(int count) { return static_cast<int>(engine() % static_cast<unsigned>(count)); }
    Point point(double size) { return {between(-size, size), between(-size, size), between(-size, size)}; }
    // On a grid, so that lines meet edges exactly.
    Point gridPoint(int size)
    {
        const auto whole = [&] { return static_cast<double>(below(2 * size + 1) - size); };
        return {whole(), whole(), whole()};
    }

private:
    std::mt19937 engine;
};

Queries randomLines(int count, double size, unsigned seed)
{
    Dice dice(seed);
    Queries queries;
    for (int i = 0; i < count; ++i) {
        const Point p = dice.point(size);
        queries.push_back({Line(p, dice.point(size)), i % 4 == 0 ? dice.point(size) : p});
    }
    return queries;
}

// Two levels by two, faces between them as between the contours of neighbouring slices.
template <class Vertex>
Faces sheet(int levels, int points, const Vertex &vertex)
{
    Faces faces;
    for (int k = 0; k + 1 < levels; ++k) {
        for (int i = 0; i + 1 < points; ++i) {
            const Point a = vertex(k, i), b = vertex(k, i + 1), c = vertex(k + 1, i),
                        d = vertex(k + 1, i + 1);
            faces.emplace_back(a, b, c);
            faces.emplace_back(b, d, c);
        }
    }
    return faces;
}

double dyadic(double value, double steps)
{
    return std::round(value * steps) / steps;
}

// A curved sheet, bent like the cartilage of a joint; on a grid of 1/steps mm, or generic for steps 0.
Faces ribbon(double apart, double steps, int levels = 14, int points = 22)
{
    return sheet(levels, points, [=](int k, int i) {
        const double angle = 0.4 + 2.0 * i / points,
                     radius = 30.0 + apart + 2.0 * std::sin(0.3 * k + 0.5 * i);
        const double x = 40.0 + radius * std::cos(angle), y = 90.0 + radius * std::sin(angle),
                     z = 2.5 + 1.5 * k;
        return steps == 0.0 ? Point(x, y, z) : Point(dyadic(x, steps), dyadic(y, steps), z);
    });
}

Faces plate(int size, double height)
{
    return sheet(size, size, [=](int k, int i) { return Point(i, k, height); });
}

Faces randomFaces(int count, unsigned seed)
{
    Dice dice(seed);
    Faces faces;
    for (int i = 0; i < count; ++i) {
        const Point p = dice.point(50.0), step = dice.point(5.0), other = dice.point(5.0);
        faces.emplace_back(p, moved(p, step.x, step.y, step.z), moved(p, other.x, other.y, other.z));
    }
    return faces;
}

Faces scaled(const Faces &faces, double factor)
{
    Faces result;
    for (const TriFace &face : faces) {
        const auto at = [&](int i) {
            const Point &p = face.vertex(i);
            return Point(p.x * factor, p.y * factor, p.z * factor);
        };
        result.emplace_back(at(0), at(1), at(2));
    }
    return result;
}

Faces joined(Faces a, const Faces &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

} // namespace

TEST(NearestHitIndex, HasNoAnswerWithoutFaces)
{
    const NearestHitIndex index({});
    EXPECT_FALSE(index.nearestHit(Line(Point(0, 0, 0), Point(0, 0, 1)), Point(0, 0, 0)).point.valid);
}

TEST(NearestHitIndex, FindsTheHitBehindThePointAndTheFirstOfEqualOnes)
{
    // Squares of two faces at z = -1, 2 and 1; all four faces at distance 1 are on the line's way through
    // (2, 1), which is on none of the diagonals' lines x + y = 4.
    const auto square = [](double z) {
        return sheet(2, 2, [z](int k, int i) { return Point(4.0 * i, 4.0 * k, z); });
    };
    const Faces faces = joined(joined(square(2.0), square(1.0)), square(-1.0));
    const NearestHitIndex index(faces);
    const Line line(Point(2, 1, 0), Point(2, 1, 1));
    const FacePoint both = index.nearestHit(line, Point(2, 1, 0));
    EXPECT_EQ(both.face, 2u);
    EXPECT_EQ(MERV::BRep::squaredDistance(both.point, Point(2, 1, 1)), 0.0);
    EXPECT_EQ(index.nearestHit(line, Point(2, 1, -0.125)).face, 4u);
}

TEST(NearestHitIndex, FindsTheFaceWhoseEdgeIsMetFarBeyondItsEnds)
{
    // The line runs upwards through (1000, 0), where the line of the near face's edge y = 0 passes, and the
    // far face's inside is.
    const Faces faces{TriFace(Point(990, -10, 50), Point(1010, -10, 50), Point(1000, 20, 50)),
                      TriFace(Point(0, 0, 1), Point(4, 0, 1), Point(0, 4, 1))};
    const NearestHitIndex index(faces);
    const FacePoint found = index.nearestHit(Line(Point(1000, 0, 0), Point(1000, 0, 1)), Point(1000, 0, 0));
    EXPECT_EQ(found.face, 1u);
    EXPECT_EQ(MERV::BRep::squaredDistance(found.point, Point(1000, 0, 1)), 0.0);
}

TEST(NearestHitIndex, AgreesWithTheScanBetweenGenericRibbons)
{
    const Faces base = ribbon(0.0, 0.0), remote = ribbon(3.0, 0.0, 30, 40);
    EXPECT_GT(expectScanAnswers(remote, normalsOf(base)).hits, 1000u);
    expectScanAnswers(remote, randomLines(2000, 120.0, 1));
}

TEST(NearestHitIndex, AgreesWithTheScanBetweenDyadicRibbons)
{
    Seen seen;
    for (const double steps : {16.0, 4.0, 2.0, 1.0})
        seen += expectScanAnswers(ribbon(3.0, steps), normalsOf(ribbon(0.0, steps)));
    EXPECT_GT(seen.hits, 4000u);
    EXPECT_GT(seen.farHits, 100u);
}

TEST(NearestHitIndex, AgreesWithTheScanWhereBaseAndRemoteAreOne)
{
    for (const double steps : {0.0, 16.0, 1.0}) {
        const Faces faces = ribbon(0.0, steps);
        EXPECT_GT(expectScanAnswers(faces, normalsOf(faces)).hits, 1000u);
    }
    const Faces flat = plate(20, 2.0);
    EXPECT_EQ(expectScanAnswers(flat, normalsOf(flat)).hits, flat.size() * 3);
}

TEST(NearestHitIndex, AgreesWithTheScanWhereLinesMeetWholeRowsOfEdges)
{
    Seen seen;
    for (const double height : {3.0, 0.7}) {
        const Faces flat = plate(24, height);
        Queries queries = normalsOf(plate(30, 0.0)); // some pass beside the plate
        for (Query &query : Queries(queries))        // and tilted ones, from the same points to other ones
            queries.push_back({Line(query.from, Point(query.from.y, 7.0, height)), query.from});
        seen += expectScanAnswers(flat, queries);
    }
    EXPECT_GT(seen.farHits, 1000u);
}

TEST(NearestHitIndex, AgreesWithTheScanOverFacesAndLinesOnAGrid)
{
    Seen seen;
    for (unsigned seed = 0; seed < 40; ++seed) {
        Dice dice(seed);
        const int size = 2 + dice.below(6);
        Faces faces;
        for (int i = 0, count = 1 + dice.below(80); i < count; ++i)
            faces.emplace_back(dice.gridPoint(size), dice.gridPoint(size), dice.gridPoint(size));
        Queries queries;
        for (int i = 0; i < 100; ++i) {
            const Point p = dice.gridPoint(size);
            queries.push_back({Line(p, dice.gridPoint(size)), i % 3 == 0 ? dice.gridPoint(size) : p});
        }
        seen += expectScanAnswers(faces, queries);
    }
    EXPECT_GT(seen.farHits, 300u);
}

TEST(NearestHitIndex, AgreesWithTheScanOverUnrelatedFaces)
{
    const Faces faces = randomFaces(1500, 3);
    expectScanAnswers(faces, randomLines(1500, 60.0, 4));
    // Through two points, each on the line of some face's edge.
    Dice dice(5);
    Queries queries;
    for (int i = 0; i < 1500; ++i) {
        const auto onEdge = [&] {
            const TriFace &face = faces[static_cast<std::size_t>(dice.below(static_cast<int>(faces.size())))];
            const Point &a = face.vertex(0), &b = face.vertex(1);
            const double t = dice.between(-20.0, 20.0);
            return moved(a, t * (b.x - a.x), t * (b.y - a.y), t * (b.z - a.z));
        };
        const Point p = onEdge();
        queries.push_back({Line(p, onEdge()), p});
    }
    expectScanAnswers(faces, queries);
}

TEST(NearestHitIndex, AgreesWithTheScanOverFansBandsAndRepeatedFaces)
{
    Faces fan, band;
    for (int i = 0; i < 60; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / 60, next = 2.0 * std::numbers::pi * (i + 1) / 60;
        fan.emplace_back(Point(5, 5, 5), Point(9 * std::cos(angle), 9 * std::sin(angle), 0),
                         Point(9 * std::cos(next), 9 * std::sin(next), 0));
        const auto rim = [](double a, double side) {
            const double r = 20.0 + side * std::cos(a / 2.0);
            return Point(r * std::cos(a), r * std::sin(a), side * std::sin(a / 2.0)); // half a turn: Moebius
        };
        band.emplace_back(rim(angle, -3), rim(next, -3), rim(angle, 3));
        band.emplace_back(rim(next, -3), rim(next, 3), rim(angle, 3));
    }
    for (const Faces &faces : {fan, band, joined(fan, band)}) {
        expectScanAnswers(faces, normalsOf(faces));
        expectScanAnswers(joined(faces, faces), normalsOf(faces));
        expectScanAnswers(faces, randomLines(500, 25.0, 6));
    }
}

TEST(NearestHitIndex, AgreesWithTheScanOverSliversAndFacesWithoutArea)
{
    Dice dice(7);
    Faces faces = ribbon(0.0, 0.0, 6, 8);
    for (int i = 0; i < 300; ++i) {
        const Point p = dice.point(30.0), step = dice.point(10.0);
        const double thin = std::pow(10.0, -dice.between(1.0, 18.0)), t = dice.between(-1.0, 2.0);
        faces.emplace_back(p, moved(p, step.x, step.y, step.z),
                           moved(p, t * step.x + thin, t * step.y - thin, t * step.z + thin));
        faces.emplace_back(p, p, dice.point(30.0));
    }
    expectScanAnswers(faces, normalsOf(faces));
    expectScanAnswers(faces, randomLines(1500, 40.0, 8));
}

TEST(NearestHitIndex, AgreesWithTheScanOverShortEdgesAndNearlyParallelLines)
{
    Faces faces = ribbon(0.0, 0.0, 6, 8);
    for (const TriFace &face : ribbon(3.0, 0.0, 4, 5)) {
        for (const double length : {1e-3, 1e-6, 1e-9, 1e-12}) {
            const Point &p = face.vertex(0);
            faces.emplace_back(p, moved(p, length, 0, length), moved(p, 0, length, -length));
        }
    }
    Queries queries = normalsOf(faces);
    Dice dice(9);
    for (const TriFace &face : Faces(faces)) { // within the face's plane but for rounding and a little tilt
        const Point &a = face.vertex(0), &b = face.vertex(1), &c = face.vertex(2);
        const double s = dice.between(-1.0, 1.0), tilt = std::pow(10.0, -dice.between(1.0, 20.0));
        const Point q(a.x + s * (b.x - c.x), a.y + s * (b.y - c.y), a.z + s * (b.z - c.z) + tilt);
        queries.push_back({Line(a, q), a});
        queries.push_back({Line(q, b), dice.point(50.0)});
    }
    expectScanAnswers(faces, queries);
}

TEST(NearestHitIndex, AgreesWithTheScanAtEveryScale)
{
    Seen seen;
    for (const double factor :
         {1e-300, 1e-170, 1e-110, 1e-60, 1e-12, 1e-3, 1e5, 1e12, 1e40, 1e75, 1e140, 1e300}) {
        for (const double steps : {0.0, 1.0}) {
            const Faces base = scaled(ribbon(0.0, steps, 6, 8), factor);
            seen += expectScanAnswers(scaled(ribbon(3.0, steps, 8, 9), factor), normalsOf(base));
            const Faces flat = scaled(plate(6, 1.0), factor);
            seen += expectScanAnswers(flat, normalsOf(flat));
        }
    }
    EXPECT_GT(seen.hits, 1000u);
}

TEST(NearestHitIndex, AgreesWithTheScanFarFromTheOrigin)
{
    for (const double away : {300.0, 1e4, 1e6, 1e9, 1e13}) {
        Faces base, remote;
        for (const TriFace &face : ribbon(0.0, 0.0, 6, 8)) {
            const auto at = [&](int i, double up) { return moved(face.vertex(i), away, -away, up); };
            base.emplace_back(at(0, 0), at(1, 0), at(2, 0));
            remote.emplace_back(at(0, 2), at(1, 2), at(2, 2));
        }
        expectScanAnswers(remote, normalsOf(base));
        expectScanAnswers(ribbon(0.0, 0.0, 6, 8), normalsOf(base));
    }
}

TEST(NearestHitIndex, AgreesWithTheScanOverOtherWeightsAndWildNumbers)
{
    Dice dice(10);
    Faces faces = ribbon(3.0, 4.0, 6, 8);
    const std::vector<double> wild{notANumber, infinite, -infinite, 1e300, -1e308, 1e-310, 0.0, -0.0};
    for (std::size_t i = 0; i < 200; ++i) {
        Point p = dice.point(80.0), q = dice.point(80.0);
        if (i % 2 == 0)
            p.w = i % 4 == 0 ? 2.0 : wild[i / 2 % wild.size()];
        else
            q.y = wild[i / 2 % wild.size()];
        faces.insert(faces.begin() + static_cast<std::ptrdiff_t>(i) % 50, TriFace(p, q, dice.point(80.0)));
    }
    faces.insert(faces.begin() + 5, TriFace());
    faces.emplace_back(Point(), Point(1, 0, 0), Point(0, 1, 0));
    Queries queries = normalsOf(ribbon(0.0, 4.0, 6, 8));
    for (Query &query : randomLines(400, 100.0, 11)) {
        queries.push_back(query);
        queries.push_back({query.line, moved(query.from, wild[queries.size() % wild.size()], 0, 0)});
        Point q = query.line.to();
        (queries.size() % 3 == 0 ? q.w : q.z) = wild[queries.size() / 3 % wild.size()];
        queries.push_back({Line(query.line.from(), q), query.from});
    }
    queries.push_back({Line(), Point(0, 0, 0)});
    queries.push_back({queries.front().line, Point()});
    expectScanAnswers(faces, queries);
    expectScanAnswers(ribbon(3.0, 4.0, 6, 8), queries);
}

TEST(NearestHitIndex, AnswersSeveralThreadsAtOnce)
{
    const Faces remote = ribbon(3.0, 16.0);
    const Queries queries = normalsOf(ribbon(0.0, 16.0));
    const NearestHitIndex index(remote);
    std::vector<std::vector<FacePoint>> answers(4);
    {
        std::vector<std::jthread> threads;
        threads.reserve(answers.size());
        for (std::vector<FacePoint> &mine : answers) {
            threads.emplace_back([&] {
                for (const Query &query : queries)
                    mine.push_back(index.nearestHit(query.line, query.from));
            });
        }
    }
    for (std::size_t i = 0; i < queries.size(); ++i) {
        const FacePoint expected = nearestHitByScan(remote, queries[i].line, queries[i].from);
        for (const std::vector<FacePoint> &mine : answers)
            EXPECT_TRUE(sameAnswer(mine[i], expected));
    }
}

TEST(NearestHitIndex, TakesAModestAmountOfMemory)
{
    const Faces faces = ribbon(0.0, 0.0, 60, 80);
    EXPECT_LE(NearestHitIndex(faces).bytes(), 150 * faces.size());
}

TEST(NearestHitIndex, CanBeGivenUpAtEachCheckpoint)
{
    const Faces faces = ribbon(0.0, 0.0, 6, 8);
    int calls = 0;
    const NearestHitIndex whole(faces, [&calls] { ++calls; });
    EXPECT_GT(calls, static_cast<int>(faces.size())); // at each face, and between the steps
    for (int last = 1; last <= calls; ++last) {
        int left = last;
        const auto giveUp = [&left] {
            if (--left == 0)
                throw 1;
        };
        EXPECT_THROW(NearestHitIndex(faces, giveUp), int);
    }
}
