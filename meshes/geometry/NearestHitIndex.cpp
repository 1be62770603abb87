#include "meshes/geometry/NearestHitIndex.h"

#include "meshes/geometry/Bounds.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace MERV::BRep {

namespace {

// The bounds of the rounding hold for frames of these sizes, without overflow and loss of small numbers.
constexpr double smallestUnit = 0x1p-100, largestUnit = 0x1p100, mostUnitsOff = 0x1p7;

bool isPlain(const Point &p)
{
    const auto inRange = [](double value) { return std::abs(value) <= mostUnitsOff * largestUnit; };
    return p.valid && p.w == 1.0 && inRange(p.x) && inRange(p.y) && inRange(p.z);
}

bool isPlain(const TriFace &face)
{
    return isPlain(face.vertex(0)) && isPlain(face.vertex(1)) && isPlain(face.vertex(2));
}

double shortestEdge(const TriFace &face)
{
    return std::min({distance(face.vertex(0), face.vertex(1)), distance(face.vertex(1), face.vertex(2)),
                     distance(face.vertex(2), face.vertex(0))});
}

// The smallest frame around the faces with these numbers.
SearchFrame frameAround(std::span<const TriFace> faces, std::span<const std::uint32_t> numbers)
{
    const auto place = [&](std::uint32_t number, int corner) {
        const Point &p = faces[number].vertex(corner);
        return Triple<double>{p.x, p.y, p.z};
    };
    Bounds bounds(place(numbers.front(), 0));
    for (const std::uint32_t number : numbers) {
        for (int corner = 0; corner < 3; ++corner)
            bounds.add(place(number, corner));
    }
    const auto [low, high] = bounds;
    const Triple<double> extent = bounds.half();
    const double half = std::max({extent.x, extent.y, extent.z});
    SearchFrame frame;
    frame.centre = bounds.middle();
    frame.largest = std::max({std::abs(low.x), std::abs(low.y), std::abs(low.z), std::abs(high.x),
                              std::abs(high.y), std::abs(high.z)});
    int exponent = 0;
    std::frexp(half, &exponent);
    frame.unit = std::ldexp(1.0, exponent);
    return frame;
}

bool isUsable(const SearchFrame &frame)
{
    return frame.unit >= smallestUnit && frame.unit <= largestUnit &&
           frame.largest <= mostUnitsOff * frame.unit;
}

// The best of the hits that were looked at, in any order.
class BestHit
{
public:
    BestHit(std::span<const TriFace> newFaces, const Line &newLine, const Point &newFrom)
        : faces(newFaces)
        , line(newLine)
        , from(newFrom)
    {}

    // Whether the face's hit is nearer than all before.
    bool look(std::uint32_t face)
    {
        const Point candidate = faces[face].intersection(line);
        if (!candidate.valid)
            return false;
        const double d = squaredDistance(candidate, from);
        const bool nearer = !answer.point.valid || d < best;
        if (nearer || (d == best && face < answer.face)) {
            answer = {candidate, face};
            best = d;
        }
        return nearer;
    }

    double distance() const { return std::sqrt(best); }
    const FacePoint &found() const { return answer; }

private:
    std::span<const TriFace> faces;
    const Line &line;
    const Point &from;
    FacePoint answer;
    double best = 0.0;
};

} // namespace

NearestHitIndex::NearestHitIndex(std::span<const TriFace> newFaces, const std::function<void()> &checkpoint)
    : faces(newFaces)
{
    std::vector<std::uint32_t> plain;
    plain.reserve(faces.size());
    for (std::size_t i = 0; i < faces.size(); ++i) {
        if (faces[i].plane().isValid()) // the others are never hit
            (isPlain(faces[i]) ? plain : testedAlways).push_back(static_cast<std::uint32_t>(i));
    }
    if (!plain.empty())
        frame = frameAround(faces, plain);
    const double shortest = 0x1p-26 * (frame.largest / frame.unit) * frame.largest; // see SearchLine
    const auto cannotBeSearched = [&](std::uint32_t number) {
        return shortestEdge(faces[number]) < shortest;
    };
    const auto searched =
        isUsable(frame) ? std::stable_partition(plain.begin(), plain.end(), std::not_fn(cannotBeSearched))
                        : plain.begin();
    testedAlways.insert(testedAlways.end(), searched, plain.end());
    plain.erase(searched, plain.end());
    if (!plain.empty()) {
        checkpoint();
        boxes.emplace(faces, plain, frame);
        checkpoint();
        edges.emplace(faces, plain, frame, checkpoint);
    }
}

FacePoint NearestHitIndex::nearestHit(const Line &line, const Point &from) const
{
    if (!SearchLine::canBeMade(frame, line, from))
        return nearestHitByScan(faces, line, from);
    BestHit best(faces, line, from);
    for (const std::uint32_t face : testedAlways)
        best.look(face);
    if (boxes) {
        SearchLine search(frame, line, from);
        if (best.found().point.valid)
            search.narrow(best.distance());
        const auto look = [&](std::uint32_t face) {
            if (best.look(face))
                search.narrow(best.distance());
        };
        boxes->visit(search, look);
        edges->visit(search, look);
    }
    return best.found();
}

std::size_t NearestHitIndex::bytes() const
{
    return sizeof *this + testedAlways.capacity() * sizeof(std::uint32_t) + (boxes ? boxes->bytes() : 0) +
           (edges ? edges->bytes() : 0);
}

} // namespace MERV::BRep
