#pragma once

#include "meshes/geometry/LaneTree.h"
#include "meshes/geometry/SearchLine.h"
#include "meshes/geometry/TriFace.h"

#include <array>
#include <cstdint>
#include <span>

namespace MERV::BRep {

// Four boxes along the axes of a search frame; in lanes that are not filled, boxes that nothing meets.
struct BoxGroup
{
    static constexpr float inverted = -0x1p60f;
    Vector4 centre{}, half{inAllLanes(inverted), inAllLanes(inverted), inAllLanes(inverted)};

    // Whether the line may pass the box within its reach: the line is outside when it passes beyond the box
    // as seen along one of the axes.
    Mask4 mayMatter(const SearchLine &line) const
    {
        const Vector4 moment = line.moment - cross(centre, line.direction);
        const Vector4 &u = line.absDirection;
        const Float4 x = half.y * u.z + half.z * u.y, y = half.z * u.x + half.x * u.z,
                     z = half.x * u.y + half.y * u.x;
        const Float4 away = magnitude(dot(centre - line.start, line.direction));
        const Mask4 outside =
            (magnitude(moment.x) > x + line.tolerance) | (magnitude(moment.y) > y + line.tolerance) |
            (magnitude(moment.z) > z + line.tolerance) | (away > dot(half, u) + line.tolerance + line.reach);
        return ~outside;
    }
};

struct FaceLeaf : BoxGroup
{
    std::array<std::uint32_t, lanes> faces{};

    template <class Consider>
    void consider(std::size_t lane, const Consider &face) const
    {
        face(faces[lane]);
    }
};

// The faces whose boxes a line meets: all that it passes inside their edges, farther than its tolerance.
class FaceBoxes
{
public:
    // Of the faces with these numbers.
    FaceBoxes(std::span<const TriFace> faces, std::span<const std::uint32_t> numbers,
              const SearchFrame &frame);

    // Calls face(number); it may narrow the line.
    template <class Face>
    void visit(SearchLine &line, const Face &face) const
    {
        tree.visit(line, face);
    }
    std::size_t bytes() const { return tree.bytes(); }

private:
    LaneTree<FaceLeaf, BoxGroup> tree;
};

} // namespace MERV::BRep
