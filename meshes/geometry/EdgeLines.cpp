#include "meshes/geometry/EdgeLines.h"

#include "meshes/geometry/Bounds.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <vector>

namespace MERV::BRep {

namespace {

// An edge's line in the frame of the search.
struct EdgeLine
{
    Triple<double> place{};     // the point nearest to the frame's centre
    Triple<double> direction{}; // of length 1, its longest element positive
    std::array<std::uint32_t, 2> faces{EdgeLeaf::none, EdgeLeaf::none};
};

// The plane of a face in the frame of the search.
struct FaceNormal
{
    Triple<double> normal{}; // of length 1
    bool sliver = false;
};

Triple<double> unitVector(const Triple<double> &v)
{
    const double length = std::sqrt(dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

Triple<double> fromTo(const Point &a, const Point &b)
{
    return {b.x - a.x, b.y - a.y, b.z - a.z};
}

// The element of the largest magnitude.
double longestElement(const Triple<double> &v)
{
    return std::max({v.x, v.y, v.z}, [](double a, double b) { return std::abs(a) < std::abs(b); });
}

EdgeLine edgeLine(const Point &a, const Point &b, const SearchFrame &frame)
{
    Triple<double> direction = unitVector(fromTo(a, b));
    if (longestElement(direction) < 0.0)
        direction = direction * -1.0;
    const Triple<double> place = frame.place(a);
    return {place - direction * dot(place, direction), direction, {EdgeLeaf::none, EdgeLeaf::none}};
}

FaceNormal faceNormal(const TriFace &face)
{
    constexpr double thinnest = 0x1p-16; // of SearchLine's bounds
    const Triple<double> u = fromTo(face.vertex(0), face.vertex(1)),
                         v = fromTo(face.vertex(1), face.vertex(2)),
                         w = fromTo(face.vertex(2), face.vertex(0));
    const Triple<double> n = cross(u, v);
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
        // w, 1 in all points here, spreads the bits of z: without it, points that differ in z alone crowd.
        for (const double value : {p.x, p.y, p.z, p.w}) {
            h = (h ^ std::bit_cast<std::uint64_t>(value + 0.0)) * 0x9e3779b97f4a7c15u; // -0.0 as 0.0
            h ^= h >> 32;
        }
        return h;
    }

    std::span<const TriFace> faces;
    std::vector<std::uint32_t> slots;
    std::vector<std::array<const Point *, 2>> keys;
};

void store(Vector4 &middle, Vector4 &spread, std::size_t lane, const Bounds &bounds)
{
    setLane(middle, lane, inFloat(bounds.middle()));
    setLane(spread, lane, inFloat(bounds.half()));
}

Triple<double> meanPlace(std::span<const EdgeLine> edges)
{
    Triple<double> sum{};
    for (const EdgeLine &edge : edges)
        sum = sum + edge.place;
    return sum * (1.0 / static_cast<double>(edges.size()));
}

void boundLines(LineGroup &group, std::size_t lane, std::span<const EdgeLine> edges,
                const Triple<double> &centre)
{
    Bounds directions(edges.front().direction);
    Triple<double> most{};
    for (const EdgeLine &edge : edges) {
        directions.add(edge.direction);
        const Triple<double> moment = cross(edge.place - centre, edge.direction);
        most = {std::max(most.x, std::abs(moment.x)), std::max(most.y, std::abs(moment.y)),
                std::max(most.z, std::abs(moment.z))};
    }
    store(group.direction, group.directionSpread, lane, directions);
    setLane(group.momentSpread, lane, inFloat(most));
}

void boundPlanes(LineGroup &group, std::size_t lane, std::span<const EdgeLine> edges,
                 const Triple<double> &centre, std::span<const FaceNormal> normals)
{
    constexpr double anyOffset = 4.0; // of a plane through the frame's cube from a place in it
    const Triple<double> first = normals[edges.front().faces[0]].normal;
    Bounds all(first);
    double offset = 0.0;
    for (const EdgeLine &edge : edges) {
        for (const std::uint32_t face : edge.faces) {
            if (face == EdgeLeaf::none)
                continue;
            if (normals[face].sliver) {
                all.add({-1.0, -1.0, -1.0});
                all.add({1.0, 1.0, 1.0});
                offset = anyOffset;
                continue;
            }
            const Triple<double> normal = normals[face].normal;
            all.add(dot(normal, first) < 0.0 ? normal * -1.0 : normal);
            offset = std::max(offset, std::abs(dot(normal, edge.place - centre)));
        }
    }
    store(group.normal, group.normalSpread, lane, all);
    group.offsetSpread[lane] = static_cast<float>(offset);
}

std::vector<EdgeLine> arrangedEdges(std::vector<EdgeLine> edges)
{
    constexpr double weight = 0.5; // of a direction beside a place: at about this distance lines are met
    std::vector<Placed<6>> order;
    order.reserve(edges.size());
    for (const EdgeLine &edge : edges) {
        const Vector p = inFloat(edge.place), d = inFloat(edge.direction * weight);
        order.push_back({{p.x, p.y, p.z, d.x, d.y, d.z}, static_cast<std::uint32_t>(order.size())});
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
                     const SearchFrame &frame, const std::function<void()> &checkpoint)
{
    EdgeCollector collector(faces, 3 * numbers.size());
    std::vector<FaceNormal> normals(faces.size());
    for (const std::uint32_t number : numbers) {
        checkpoint();
        normals[number] = faceNormal(faces[number]);
        for (int edge = 0; edge < 3; ++edge)
            collector.add(number, edge, frame);
    }
    checkpoint();
    const std::vector<EdgeLine> edges = arrangedEdges(std::move(collector.edges));
    checkpoint();

    const auto fillLeaf = [&](EdgeLeaf &leaf, std::size_t first, std::size_t count) {
        for (std::size_t lane = 0; lane < count; ++lane) {
            const EdgeLine &edge = edges[first + lane];
            setLane(leaf.direction, lane, inFloat(edge.direction));
            setLane(leaf.moment, lane, inFloat(cross(edge.place, edge.direction)));
            leaf.faces[lane] = edge.faces;
        }
    };
    const auto fillNode = [&](LineGroup &node, std::size_t lane, std::size_t first, std::size_t count) {
        checkpoint();
        const auto bounded = std::span(edges).subspan(first, count);
        const Vector rounded = inFloat(meanPlace(bounded));
        const Triple<double> centre{rounded.x, rounded.y, rounded.z};
        setLane(node.centre, lane, rounded);
        boundLines(node, lane, bounded, centre);
        boundPlanes(node, lane, bounded, centre, normals);
    };
    tree.build(edges.size(), fillLeaf, fillNode);
}

} // namespace MERV::BRep
