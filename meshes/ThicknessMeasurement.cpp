#include "meshes/ThicknessMeasurement.h"

#include "meshes/DistinctItems.h"
#include "meshes/geometry/ClosestPointIndex.h"
#include "meshes/geometry/NearestHitIndex.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

using MERV::BRep::ClosestPointIndex;
using MERV::BRep::FacePoint;
using MERV::BRep::Line;
using MERV::BRep::NearestHitIndex;
using MERV::BRep::Point;
using MERV::BRep::TriFace;

namespace {

constexpr int cornersOfAFace = 3;
constexpr std::size_t maximalRecords = 10;

// A vertex and the face that reaches it first.
struct BaseVertex
{
    Point point;
    const TriFace *face = nullptr;
};

struct SameCoordinates
{
    static std::size_t hash(const BaseVertex &vertex)
    {
        const Point &point = vertex.point;
        return hashOfNumbers({point.x, point.y, point.z, point.w});
    }
    static bool same(const BaseVertex &left, const BaseVertex &right)
    {
        return left.point.sameCoordinates(right.point);
    }
};

std::vector<BaseVertex> distinctVertices(std::span<const TriFace> faces)
{
    DistinctItems<BaseVertex, SameCoordinates> distinct(faces.size() * cornersOfAFace);
    for (const TriFace &face : faces)
        for (int corner = 0; face.isValid() && corner < cornersOfAFace; ++corner)
            distinct.add({face.vertex(corner), &face});
    return distinct.take();
}

Line lineAlongNormal(const BaseVertex &vertex)
{
    const Point from = euclidean(vertex.point);
    const Point normal = vertex.face->normal();
    return {from, {from.x + normal.x, from.y + normal.y, from.z + normal.z}};
}

// Ends a measurement from wherever it is.
struct Stopped
{};

// How a measurement runs.
struct Course
{
    std::function<void()> checkpoint; // throws to end it
    int threads = 1;
};

// The hit of each vertex, in their order. find is given the face of the answer before: neighbours in the
// order mostly lie near one another.
template <typename Find>
std::vector<Point> findHits(const std::vector<BaseVertex> &vertices, const Find &find, const Course &course)
{
    constexpr std::size_t batch = 32; // enough that handing them out costs nothing
    std::vector<Point> hits(vertices.size());
    const auto batches = static_cast<int>((vertices.size() + batch - 1) / batch);
    MERV::parallelFor(
        batches,
        [&](int index) {
            const std::size_t first = static_cast<std::size_t>(index) * batch;
            const std::size_t last = std::min(first + batch, vertices.size());
            FacePoint hit;
            for (std::size_t i = first; i < last; ++i) {
                course.checkpoint();
                hit = find(vertices[i], hit.face);
                hits[i] = hit.point;
            }
        },
        course.threads);
    return hits;
}

std::vector<Point> hitsAlongNormals(const std::vector<BaseVertex> &vertices, std::span<const TriFace> remote,
                                    const Course &course)
{
    const NearestHitIndex index(remote, course.checkpoint);
    const auto find = [&](const BaseVertex &vertex, std::size_t) {
        return index.nearestHit(lineAlongNormal(vertex), vertex.point);
    };
    return findHits(vertices, find, course);
}

std::vector<Point> closestPoints(const std::vector<BaseVertex> &vertices, std::span<const TriFace> remote,
                                 const Course &course)
{
    const ClosestPointIndex index(remote);
    const auto find = [&](const BaseVertex &vertex, std::size_t hint) {
        return index.closestPoint(vertex.point, hint);
    };
    return findHits(vertices, find, course);
}

std::vector<ThicknessSample> measure(std::span<const TriFace> base, std::span<const TriFace> remote,
                                     ThicknessDirection direction, const Course &course)
{
    const std::vector<BaseVertex> vertices = distinctVertices(base);
    course.checkpoint();
    const std::vector<Point> hits = direction == ThicknessDirection::AlongNormal
                                        ? hitsAlongNormals(vertices, remote, course)
                                        : closestPoints(vertices, remote, course);
    std::vector<ThicknessSample> samples;
    samples.reserve(vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i)
        if (hits[i].valid)
            samples.push_back({vertices[i].point, distance(hits[i], vertices[i].point)});
    return samples;
}

} // namespace

std::optional<std::vector<ThicknessSample>>
measureThickness(std::span<const TriFace> base, std::span<const TriFace> remote, ThicknessDirection direction,
                 const std::function<bool()> &stopped, int threads)
{
    const auto checkpoint = [&stopped] {
        if (stopped())
            throw Stopped();
    };
    try {
        return measure(base, remote, direction, {checkpoint, threads});
    } catch (const Stopped &) {
        return std::nullopt;
    }
}

std::vector<double> runningRecords(std::span<const ThicknessSample> samples)
{
    std::vector<double> records;
    for (const ThicknessSample &sample : samples) {
        if (records.empty() || sample.distance > records.back())
            records.push_back(sample.distance);
        else if (records.front() > sample.distance)
            records.insert(records.begin(), sample.distance);
        if (records.size() > maximalRecords)
            records.erase(records.begin());
    }
    return records;
}

std::optional<ThicknessSummary> summarizeThickness(std::span<const ThicknessSample> samples)
{
    if (samples.empty())
        return std::nullopt;
    const std::vector<double> records = runningRecords(samples);
    double sumOfRecords = 0.0;
    for (const double record : records)
        sumOfRecords += record;
    double sum = 0.0;
    for (const ThicknessSample &sample : samples)
        sum += sample.distance;
    const auto count = static_cast<double>(samples.size());
    const double mean = sum / count;
    double squares = 0.0;
    for (const ThicknessSample &sample : samples)
        squares += (sample.distance - mean) * (sample.distance - mean);
    return ThicknessSummary{records.back(), sumOfRecords / static_cast<double>(records.size()), mean,
                            std::sqrt(squares / count)};
}
