#include "meshes/geometry/FaceBoxes.h"

#include "meshes/geometry/Bounds.h"

#include <vector>

namespace MERV::BRep {

namespace {

Bounds boundsOf(const TriFace &face, const SearchFrame &frame)
{
    Bounds bounds(frame.place(face.vertex(0)));
    bounds.add(frame.place(face.vertex(1)));
    bounds.add(frame.place(face.vertex(2)));
    return bounds;
}

void set(BoxGroup &group, std::size_t lane, const Bounds &bounds)
{
    setLane(group.centre, lane, inFloat(bounds.middle()));
    setLane(group.half, lane, inFloat(bounds.half()));
}

} // namespace

FaceBoxes::FaceBoxes(std::span<const TriFace> faces, std::span<const std::uint32_t> numbers,
                     const SearchFrame &frame)
{
    std::vector<Placed<3>> order;
    order.reserve(numbers.size());
    for (const std::uint32_t number : numbers) {
        const Vector middle = inFloat(boundsOf(faces[number], frame).middle());
        order.push_back({{middle.x, middle.y, middle.z}, number});
    }
    arrangeByPlace(std::span(order));
    std::vector<Bounds> boxes;
    boxes.reserve(order.size());
    for (const Placed<3> &each : order)
        boxes.push_back(boundsOf(faces[each.item], frame));

    const auto fillLeaf = [&](FaceLeaf &leaf, std::size_t first, std::size_t count) {
        for (std::size_t lane = 0; lane < count; ++lane) {
            leaf.faces[lane] = order[first + lane].item;
            set(leaf, lane, boxes[first + lane]);
        }
    };
    const auto fillNode = [&](BoxGroup &node, std::size_t lane, std::size_t first, std::size_t count) {
        Bounds bounds = boxes[first];
        for (const Bounds &each : std::span(boxes).subspan(first, count))
            bounds.add(each);
        set(node, lane, bounds);
    };
    tree.build(order.size(), fillLeaf, fillNode);
}

} // namespace MERV::BRep
