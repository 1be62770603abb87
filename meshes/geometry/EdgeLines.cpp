#include "meshes/geometry/EdgeLines.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <vector>

namespace MERV::BRep {

namespace {

// An edge's line in the frame of the search.
struct EdgeLine
{
    Vector place{};     // the point nearest to the frame's centre
    Vector direction{}; // of length 1, its longest element positive
    std::array<std::uint32_t, 2> faces{EdgeLeaf::none, EdgeLeaf::none};
};

// The plane of a face in the frame of the search.
struct FaceNormal
{
    Vector normal{}; // of length 1
    bool sliver = false;
};

Vector unitVector(const Vector &v)
{
    const double length = std::sqrt(dot(v, v));
    return {v[0] / length, v[1] / length, v[2] / length};
}

Vector fromTo(const Point &a, const Point &b)
{
    return {b.x - a.x, b.y - a.y, b.z - a.z};
}

EdgeLine edgeLine(const Point &a, const Point &b, const SearchFrame &frame)
{
    Vector direction = unitVector(fromTo(a, b));
    const auto bySize = [](double x, double y) { return std::abs(x) < std::abs(y); };
    if (*std::max_element(direction.begin(), direction.end(), bySize) < 0.0)
        direction = {-direction[0], -direction[1], -direction[2]};
    const Vector place = frame.place(a);
    return {along(place, -dot(place, direction), direction), direction, {EdgeLeaf::none, EdgeLeaf::none}};
}

FaceNormal faceNormal(const TriFace &face)
{
    constexpr double thinnest = 0x1p-16; // of SearchLine's bounds
    const Vector u = fromTo(face.vertex(0), face.vertex(1)), v = fromTo(face.vertex(1), face.vertex(2)),
                 w = fromTo(face.vertex(2), face.vertex(0));
    const Vector n = cross(u, v);
    const double longest = std::max({dot(u, u), dot(v, v), dot(w, w)});
    if (std::sqrt(dot(n, n)) < 2.0 * thinnest * longest)
        return {{}, true};
    return {unitVector(n), false};
}

// Finds the edges that two faces have in common, by a table of open addresses.
class EdgeCollector
{
public:
    EdgeCollector(std::span<const TriFace> newFaces, std::size_t edgeCount)
        : faces(newFaces)
        , slots(std::bit_ceil(2 * edgeCount + 1), EdgeLeaf::none)
    {
        edges.reserve(edgeCount);
        keys.reserve(edgeCount);
    }

    void add(std::uint32_t face, int edge, const SearchFrame &frame)
    {
        const Point &a = faces[face].vertex(edge), &b = faces[face].vertex((edge + 1) % 3);
        std::size_t slot = hash(a) ^ hash(b);
        for (slot &= slots.size() - 1; slots[slot] != EdgeLeaf::none;
             slot = (slot + 1) & (slots.size() - 1)) {
            const auto &[otherA, otherB] = keys[slots[slot]];
            const bool same = (a.sameCoordinates(*otherA) && b.sameCoordinates(*otherB)) ||
                              (a.sameCoordinates(*otherB) && b.sameCoordinates(*otherA));
            std::uint32_t &second = edges[slots[slot]].faces[1];
            if (same && second == EdgeLeaf::none) {
                second = face;
                return;
            }
        }
        slots[slot] = static_cast<std::uint32_t>(edges.size());
        keys.push_back({&a, &b});
        edges.push_back(edgeLine(a, b, frame));
        edges.back().faces[0] = face;
    }

    std::vector<EdgeLine> edges;

private:
    static std::uint64_t hash(const Point &p)
    {
        std::uint64_t h = 0;
        for (const double value : {p.x, p.y, p.z}) {
            h = (h ^ std::bit_cast<std::uint64_t>(value + 0.0)) * 0x9e3779b97f4a7c15u; // -0.0 as 0.0
            h ^= h >> 32;
        }
        return h;
    }

    std::span<const TriFace> faces;
    std::vector<std::uint32_t> slots;
    std::vector<std::array<const Point *, 2>> keys;
};

// The smallest interval of each element.
struct Bounds
{
    Vector low{4.0, 4.0, 4.0}, high{-4.0, -4.0, -4.0};

    void add(const Vector &v)
    {
        for (std::size_t k = 0; k < v.size(); ++k) {
            low[k] = std::min(low[k], v[k]);
            high[k] = std::max(high[k], v[k]);
        }
    }
    void store(Vector4 &middle, Vector4 &spread, std::size_t lane) const
    {
        for (std::size_t k = 0; k < low.size(); ++k) {
            middle[k][lane] = static_cast<float>((low[k] + high[k]) / 2.0);
            spread[k][lane] = static_cast<float>((high[k] - low[k]) / 2.0);
        }
    }
};

void raise(float &most, double value)
{
    most = std::max(most, static_cast<float>(std::abs(value)));
}

Vector meanPlace(std::span<const EdgeLine> edges)
{
    Vector sum{};
    for (const EdgeLine &edge : edges)
        sum = along(sum, 1.0, edge.place);
    return along({}, 1.0 / static_cast<double>(edges.size()), sum);
}

Vector storeRounded(Vector4 &stored, std::size_t lane, const Vector &v)
{
    Vector result{};
    for (std::size_t k = 0; k < v.size(); ++k)
        result[k] = stored[k][lane] = static_cast<float>(v[k]);
    return result;
}

void boundLines(LineGroup &group, std::size_t lane, std::span<const EdgeLine> edges, const Vector &centre)
{
    Bounds directions;
    std::array<float, 3> most{};
    for (const EdgeLine &edge : edges) {
        directions.add(edge.direction);
        const Vector moment = cross(difference(edge.place, centre), edge.direction);
        for (std::size_t k = 0; k < most.size(); ++k)
            raise(most[k], moment[k]);
    }
    directions.store(group.direction, group.directionSpread, lane);
    for (std::size_t k = 0; k < most.size(); ++k)
        group.momentSpread[k][lane] = most[k];
}

void boundPlanes(LineGroup &group, std::size_t lane, std::span<const EdgeLine> edges, const Vector &centre,
                 std::span<const FaceNormal> normals)
{
    constexpr double anyOffset = 4.0; // of a plane through the frame's cube from a place in it
    Bounds all;
    Vector first{};
    float offset = 0.0f;
    for (const EdgeLine &edge : edges) {
        for (const std::uint32_t face : edge.faces) {
            if (face == EdgeLeaf::none)
                continue;
            Vector normal = normals[face].normal;
            if (normals[face].sliver) {
                all.add({-1.0, -1.0, -1.0});
                all.add({1.0, 1.0, 1.0});
                raise(offset, anyOffset);
                continue;
            }
            if (dot(first, first) == 0.0)
                first = normal;
            if (dot(normal, first) < 0.0)
                normal = {-normal[0], -normal[1], -normal[2]};
            all.add(normal);
            raise(offset, dot(normal, difference(edge.place, centre)));
        }
    }
    all.store(group.normal, group.normalSpread, lane);
    group.offsetSpread[lane] = offset;
}

std::vector<EdgeLine> arrangedEdges(std::vector<EdgeLine> edges)
{
    constexpr float weight = 0.7f; // of a direction beside a place: at about this distance lines are met
    std::vector<Placed<6>> order;
    order.reserve(edges.size());
    for (const EdgeLine &edge : edges) {
        Placed<6> &placed = order.emplace_back();
        for (std::size_t k = 0; k < 3; ++k) {
            placed.place[k] = static_cast<float>(edge.place[k]);
            placed.place[k + 3] = weight * static_cast<float>(edge.direction[k]);
        }
        placed.item = static_cast<std::uint32_t>(order.size() - 1);
    }
    arrangeByPlace(std::span(order));
    std::vector<EdgeLine> arranged;
    arranged.reserve(edges.size());
    for (const Placed<6> &each : order)
        arranged.push_back(edges[each.item]);
    return arranged;
}

} // namespace

EdgeLines::EdgeLines(std::span<const TriFace> faces, std::span<const std::uint32_t> numbers,
                     const SearchFrame &frame)
{
    EdgeCollector collector(faces, 3 * numbers.size());
    std::vector<FaceNormal> normals(faces.size());
    for (const std::uint32_t number : numbers) {
        normals[number] = faceNormal(faces[number]);
        for (int edge = 0; edge < 3; ++edge)
            collector.add(number, edge, frame);
    }
    const std::vector<EdgeLine> edges = arrangedEdges(std::move(collector.edges));

    const auto fillLeaf = [&](EdgeLeaf &leaf, std::size_t first, std::size_t count) {
        for (std::size_t lane = 0; lane < count; ++lane) {
            const EdgeLine &edge = edges[first + lane];
            storeRounded(leaf.direction, lane, edge.direction);
            storeRounded(leaf.moment, lane, cross(edge.place, edge.direction));
            leaf.faces[lane] = edge.faces;
        }
    };
    const auto fillNode = [&](LineGroup &node, std::size_t lane, std::size_t first, std::size_t count) {
        const auto bounded = std::span(edges).subspan(first, count);
        const Vector centre = storeRounded(node.centre, lane, meanPlace(bounded));
        boundLines(node, lane, bounded, centre);
        boundPlanes(node, lane, bounded, centre, normals);
    };
    tree.build(edges.size(), fillLeaf, fillNode);
}

} // namespace MERV::BRep
