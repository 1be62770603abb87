#include "meshes/geometry/NearestHitIndex.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

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
    constexpr double endless = std::numeric_limits<double>::infinity();
    Vector low{endless, endless, endless}, high{-endless, -endless, -endless};
    for (const std::uint32_t number : numbers) {
        for (int corner = 0; corner < 3; ++corner) {
            const Point &p = faces[number].vertex(corner);
            low = {std::min(low[0], p.x), std::min(low[1], p.y), std::min(low[2], p.z)};
            high = {std::max(high[0], p.x), std::max(high[1], p.y), std::max(high[2], p.z)};
        }
    }
    SearchFrame frame;
    double half = 0.0;
    for (std::size_t k = 0; k < low.size(); ++k) {
        frame.centre[k] = (low[k] + high[k]) / 2.0;
        half = std::max(half, (high[k] - low[k]) / 2.0);
        frame.largest = std::max({frame.largest, std::abs(low[k]), std::abs(high[k])});
    }
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
        undecided = undecided || std::isnan(d);
        const bool nearer = !answer.point.valid || d < best;
        if (nearer || (d == best && face < answer.face)) {
            answer = {candidate, face};
            best = d;
        }
        return nearer;
    }

    // The order of the faces decides, as one's distance is not a number.
    bool isUndecided() const { return undecided; }
    double distance() const { return std::sqrt(best); }
    const FacePoint &found() const { return answer; }

private:
    std::span<const TriFace> faces;
    const Line &line;
    const Point &from;
    FacePoint answer;
    double best = 0.0;
    bool undecided = false;
};

} // namespace

NearestHitIndex::NearestHitIndex(std::span<const TriFace> newFaces)
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
        boxes.emplace(faces, plain, frame);
        edges.emplace(faces, plain, frame);
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
    return best.isUndecided() ? nearestHitByScan(faces, line, from) : best.found();
}

std::size_t NearestHitIndex::bytes() const
{
    return sizeof *this + testedAlways.capacity() * sizeof(std::uint32_t) + (boxes ? boxes->bytes() : 0) +
           (edges ? edges->bytes() : 0);
}

} // namespace MERV::BRep
