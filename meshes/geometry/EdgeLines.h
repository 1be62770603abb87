#pragma once

#include "meshes/geometry/LaneTree.h"
#include "meshes/geometry/SearchLine.h"
#include "meshes/geometry/TriFace.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>

namespace MERV::BRep {

// Four groups of edges, taken as infinite lines: bounds of their directions and of their moments about the
// group's centre, and of the planes of their faces. In lanes that are not filled, lines that nothing meets.
struct LineGroup
{
    static constexpr float inverted = -0x1p60f;
    Vector4 centre{};
    Vector4 direction{}, directionSpread{}; // of length 1, of a fixed sign
    Vector4 momentSpread{inAllLanes(inverted), inAllLanes(inverted), inAllLanes(inverted)};
    Vector4 normal{}, normalSpread{}; // of length 1, of either sign
    Float4 offsetSpread{};            // of the planes from the centre

    // Whether the line may meet one of the edges' lines where it also comes to the plane of the edge's face
    // within its reach.
    Mask4 mayMatter(const SearchLine &line) const
    {
        const Vector4 moment = line.moment - cross(centre, line.direction);
        const Float4 side = magnitude(dot(direction, moment));
        const Float4 sideSpread =
            dot(directionSpread, magnitude(moment)) + dot(momentSpread, line.absDirection) + line.tolerance;
        const Mask4 met = ~(side > sideSpread);
        const Vector4 toStart = line.start - centre;
        const Float4 height = magnitude(dot(normal, toStart)) - dot(normalSpread, magnitude(toStart)) -
                              offsetSpread - line.planeTolerance;
        const Float4 slope =
            magnitude(dot(normal, line.direction)) + dot(normalSpread, line.absDirection) + line.slack;
        return met & ~(height > line.reach * slope);
    }
};

// Four edges, each of one or two faces.
struct EdgeLeaf
{
    static constexpr std::uint32_t none = ~std::uint32_t{0};
    Vector4 direction{}, moment{};
    std::array<std::array<std::uint32_t, 2>, lanes> faces{
        {{none, none}, {none, none}, {none, none}, {none, none}}};

    Mask4 mayMatter(const SearchLine &line) const
    {
        return ~(magnitude(dot(direction, line.moment) + dot(moment, line.direction)) > line.tolerance);
    }

    template <class Consider>
    void consider(std::size_t lane, const Consider &face) const
    {
        for (const std::uint32_t number : faces[lane]) {
            if (number != none)
                face(number);
        }
    }
};

// The edges that a line meets, be it far beyond their ends.
class EdgeLines
{
public:
    // Of the faces with these numbers. checkpoint is called every few steps; what it throws ends the
    // construction.
    EdgeLines(std::span<const TriFace> faces, std::span<const std::uint32_t> numbers,
              const SearchFrame &frame, const std::function<void()> &checkpoint);

    // Calls face(number) for the faces of all edges whose line is met within the tolerance, but for those
    // whose plane is beyond the line's reach; it may narrow the line.
    template <class Face>
    void visit(SearchLine &line, const Face &face) const
    {
        tree.visit(line, face);
    }
    std::size_t bytes() const { return tree.bytes(); }

private:
    LaneTree<EdgeLeaf, LineGroup> tree;
};

} // namespace MERV::BRep
