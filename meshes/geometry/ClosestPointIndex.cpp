#include "meshes/geometry/ClosestPointIndex.h"

#include "meshes/geometry/MedianOrder.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MERV::BRep {

namespace {

// Coordinates and sizes between which no product in TriFace::closestPointTo() overflows or vanishes.
constexpr double largestCoordinate = 0x1p100;
constexpr double smallestExtent = 0x1p-100;
// How far from the mesh a point may be, in local coordinates, to be answered by the tree.
constexpr double reach = 0x1p16;
// What distances in single precision may be wrong by, relative to the largest local coordinate, and as much
// again for the rounding in TriFace::closestPointTo() on a sound face.
constexpr double margin = 0x1p-18;
// The lowest height of a sound face: relative to the extent of the mesh, so that single precision can tell it
// from a line; and relative to the largest coordinate squared by the extent. Sides of lines are sums of
// products of coordinates: the foot that TriFace::closestPointTo() takes for one inside may be outside by
// about 2^-44 times the largest coordinate squared by the height, and is to stay within the margin.
constexpr double lowestHeight = 0x1p-20;
constexpr double lowestHeightByCoordinates = 0x1p-23;

constexpr float noLimit = 0x1p80f; // above all distances but those of lanes without content

bool isPlain(const Point &p)
{
    const auto fits = [](double value) { return std::abs(value) <= largestCoordinate; };
    return p.valid && p.w == 1.0 && fits(p.x) && fits(p.y) && fits(p.z);
}

bool isPlain(const TriFace &face)
{
    return face.isValid() && isPlain(face.vertex(0)) && isPlain(face.vertex(1)) && isPlain(face.vertex(2));
}

// The lowest of the three heights.
double heightOf(const TriFace &face)
{
    const Point normal = face.normal(), zero(0.0, 0.0, 0.0);
    double longest = 0.0;
    for (int i = 0; i < 3; ++i)
        longest = std::max(longest, squaredDistance(face.vertex(i), face.vertex((i + 1) % 3)));
    return std::sqrt(squaredDistance(normal, zero) / longest);
}

} // namespace

// One question and the best answer so far.
class ClosestPointIndex::Search
{
public:
    Search(const ClosestPointIndex &newIndex, const Point &newQuery)
        : index(newIndex)
        , query(newQuery)
        , at(newIndex.local(newQuery))
        , slack(margin * (1.0 + std::abs(at.x) + std::abs(at.y) + std::abs(at.z)))
    {}

    void ask(std::size_t face);
    void descend();

    // Comparisons with distances that are no numbers depend on the order of all faces.
    bool isDecided() const { return decided; }
    const FacePoint &answer() const { return best; }

private:
    struct Node
    {
        float squaredDistance;
        std::uint32_t level; // 0 is a packet
        std::size_t number;
    };

    void askNearOnes(const Packet &packet);
    void openBoxes(const Node &node);

    // A node leaves at most three others waiting at each of at most 16 levels.
    static constexpr std::size_t mostNodes = 64;

    const ClosestPointIndex &index;
    const Point &query;
    const Vector at;
    const double slack;
    float limit = noLimit; // squared distance from which on no face can be better
    double bestDistance = 0.0;
    FacePoint best;
    bool decided = true;
    std::array<Node, mostNodes> waiting; // the nearest one last
    std::size_t count = 0;
};

void ClosestPointIndex::Search::ask(std::size_t face)
{
    const Point candidate = index.faces[face].closestPointTo(query);
    if (!candidate.valid)
        return;
    const double d = distance(candidate, query);
    decided = decided && !std::isnan(d);
    if (best.point.valid && (d > bestDistance || (d == bestDistance && face >= best.face)))
        return;
    best = {candidate, face};
    bestDistance = d;
    const double bound = d * index.scale + slack;
    limit = std::min(noLimit, static_cast<float>(bound * bound * (1.0 + margin)));
}

void ClosestPointIndex::Search::askNearOnes(const Packet &packet)
{
    Float4 distances = packet.triangles.squaredDistances(at);
    for (std::size_t turn = 0; turn < lanes; ++turn) {
        std::size_t nearest = 0;
        for (std::size_t lane = 1; lane < lanes; ++lane)
            if (distances[lane] < distances[nearest])
                nearest = lane;
        if (distances[nearest] > limit)
            return;
        distances[nearest] = 2.0f * noLimit;
        ask(packet.faces[nearest]);
    }
}

void ClosestPointIndex::Search::openBoxes(const Node &node)
{
    const FourBoxes &boxes = index.levels[node.level - 1][node.number];
    const Float4 distances = boxes.squaredDistances(at);
    const std::size_t first = count;
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        const float d = distances[lane];
        if (d > limit)
            continue;
        std::size_t place = count++;
        for (; place > first && waiting[place - 1].squaredDistance < d; --place)
            waiting[place] = waiting[place - 1];
        waiting[place] = {d, node.level - 1, node.number * lanes + lane};
    }
}

void ClosestPointIndex::Search::descend()
{
    if (index.packets.empty())
        return;
    waiting[count++] = {0.0f, static_cast<std::uint32_t>(index.levels.size()), 0};
    while (count > 0) {
        const Node node = waiting[--count];
        if (node.squaredDistance > limit)
            continue;
        if (node.level == 0)
            askNearOnes(index.packets[node.number]);
        else
            openBoxes(node);
    }
}

ClosestPointIndex::ClosestPointIndex(std::span<const TriFace> newFaces)
    : faces(newFaces)
{
    measureExtent();
    std::vector<PlacedFace> sound = sortOut();
    orderByMedians(sound);
    makePackets(sound);
}

FacePoint ClosestPointIndex::closestPoint(const Point &query, std::size_t hint) const
{
    if (!isInReach(query))
        return closestPointByScan(faces, query);
    Search search(*this, query);
    if (hint < faces.size())
        search.ask(hint);
    for (const std::uint32_t face : unsound)
        search.ask(face);
    search.descend();
    return search.isDecided() ? search.answer() : closestPointByScan(faces, query);
}

// The box around all faces that may be sound.
void ClosestPointIndex::measureExtent()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Triple<double> low{infinity, infinity, infinity}, high{-infinity, -infinity, -infinity};
    for (const TriFace &face : faces) {
        if (!isPlain(face))
            continue;
        for (int i = 0; i < 3; ++i) {
            const Point &p = face.vertex(i);
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
    }
    const auto size = high - low;
    const double extent = 0.5 * std::max({size.x, size.y, size.z});
    if (!(extent >= smallestExtent))
        return;
    center = Point(0.5 * (low.x + high.x), 0.5 * (low.y + high.y), 0.5 * (low.z + high.z));
    scale = std::exp2(-std::ceil(std::log2(extent)));
    largest = std::max({-low.x, -low.y, -low.z, high.x, high.y, high.z});
}

bool ClosestPointIndex::isSound(const TriFace &face) const
{
    if (scale == 0.0 || !isPlain(face))
        return false;
    const double height = heightOf(face) * scale, far = largest * scale;
    return height >= lowestHeight && height >= lowestHeightByCoordinates * far * far;
}

bool ClosestPointIndex::isInReach(const Point &query) const
{
    const double x = (query.x - center.x) * scale, y = (query.y - center.y) * scale,
                 z = (query.z - center.z) * scale;
    return isPlain(query) && std::abs(x) <= reach && std::abs(y) <= reach && std::abs(z) <= reach;
}

// Leaves out faces that never have an answer.
std::vector<PlacedFace> ClosestPointIndex::sortOut()
{
    std::vector<PlacedFace> sound;
    sound.reserve(faces.size());
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const auto number = static_cast<std::uint32_t>(i);
        if (isSound(faces[i])) {
            const std::array<Vector, 3> corners = localCorners(faces[i]);
            sound.push_back({corners[0] + corners[1] + corners[2], number});
        } else if (faces[i].plane().isValid()) {
            unsound.push_back(number);
        }
    }
    return sound;
}

Vector ClosestPointIndex::local(const Point &point) const
{
    return {static_cast<float>((point.x - center.x) * scale),
            static_cast<float>((point.y - center.y) * scale),
            static_cast<float>((point.z - center.z) * scale)};
}

std::array<Vector, 3> ClosestPointIndex::localCorners(const TriFace &face) const
{
    return {local(face.vertex(0)), local(face.vertex(1)), local(face.vertex(2))};
}

void ClosestPointIndex::makePackets(std::span<const PlacedFace> ordered)
{
    packets.resize((ordered.size() + lanes - 1) / lanes);
    std::vector<FourBoxes> boxes((packets.size() + lanes - 1) / lanes);
    std::vector<Vector> normals(packets.size());
    for (std::size_t i = 0; i < packets.size(); ++i) {
        const auto content = ordered.subspan(i * lanes, std::min(lanes, ordered.size() - i * lanes));
        std::array<Vector, 3 * lanes> points;
        for (std::size_t lane = 0; lane < content.size(); ++lane) {
            const std::array<Vector, 3> corners = localCorners(faces[content[lane].face]);
            packets[i].triangles.set(lane, corners);
            packets[i].faces[lane] = content[lane].face;
            std::copy(corners.begin(), corners.end(), points.begin() + static_cast<std::ptrdiff_t>(3 * lane));
            normals[i] = normals[i] + cross(corners[1] - corners[0], corners[2] - corners[0]);
        }
        boxes[i / lanes].fit(i % lanes, std::span(points).first(3 * content.size()), normals[i]);
    }
    if (packets.size() > 1) {
        levels.push_back(std::move(boxes));
        makeBoxes(std::move(normals));
    }
}

// The levels above the boxes of the packets, whose normals are given.
void ClosestPointIndex::makeBoxes(std::vector<Vector> normals)
{
    while (levels.back().size() > 1) {
        const std::vector<FourBoxes> &below = levels.back();
        std::vector<FourBoxes> boxes((below.size() + lanes - 1) / lanes);
        std::vector<Vector> sums(below.size());
        for (std::size_t i = 0; i < below.size(); ++i) {
            std::array<Vector, 8 * lanes> points;
            const std::size_t content = std::min(lanes, normals.size() - i * lanes);
            for (std::size_t lane = 0; lane < content; ++lane) {
                const std::array<Vector, 8> corners = below[i].corners(lane);
                std::copy(corners.begin(), corners.end(),
                          points.begin() + static_cast<std::ptrdiff_t>(8 * lane));
                sums[i] = sums[i] + normals[i * lanes + lane];
            }
            boxes[i / lanes].fit(i % lanes, std::span(points).first(8 * content), sums[i]);
        }
        levels.push_back(std::move(boxes));
        normals = std::move(sums);
    }
}

} // namespace MERV::BRep
