#include "meshes/geometry/FaceBoxes.h"

#include <algorithm>
#include <vector>

namespace MERV::BRep {

namespace {

struct Box
{
    Vector low{2.0, 2.0, 2.0}, high{-2.0, -2.0, -2.0};

    void add(const Vector &place)
    {
        for (std::size_t k = 0; k < place.size(); ++k) {
            low[k] = std::min(low[k], place[k]);
            high[k] = std::max(high[k], place[k]);
        }
    }
    void add(const Box &box)
    {
        add(box.low);
        add(box.high);
    }
    Vector middle() const
    {
        return {(low[0] + high[0]) / 2.0, (low[1] + high[1]) / 2.0, (low[2] + high[2]) / 2.0};
    }
};

Box boxOf(const TriFace &face, const SearchFrame &frame)
{
    Box box;
    for (int corner = 0; corner < 3; ++corner)
        box.add(frame.place(face.vertex(corner)));
    return box;
}

void set(BoxGroup &group, std::size_t lane, const Box &box)
{
    const Vector middle = box.middle();
    for (std::size_t k = 0; k < middle.size(); ++k) {
        group.centre[k][lane] = static_cast<float>(middle[k]);
        group.half[k][lane] = static_cast<float>((box.high[k] - box.low[k]) / 2.0);
    }
}

std::array<float, 3> inFloat(const Vector &v)
{
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

} // namespace

FaceBoxes::FaceBoxes(std::span<const TriFace> faces, std::span<const std::uint32_t> numbers,
                     const SearchFrame &frame)
{
    std::vector<Placed<3>> order;
    order.reserve(numbers.size());
    for (const std::uint32_t number : numbers)
        order.push_back({inFloat(boxOf(faces[number], frame).middle()), number});
    arrangeByPlace(std::span(order));
    std::vector<Box> boxes;
    boxes.reserve(order.size());
    for (const Placed<3> &each : order)
        boxes.push_back(boxOf(faces[each.item], frame));

    const auto fillLeaf = [&](FaceLeaf &leaf, std::size_t first, std::size_t count) {
        leaf.count = static_cast<std::uint32_t>(count);
        for (std::size_t lane = 0; lane < count; ++lane) {
            leaf.faces[lane] = order[first + lane].item;
            set(leaf, lane, boxes[first + lane]);
        }
    };
    const auto fillNode = [&](BoxGroup &node, std::size_t lane, std::size_t first, std::size_t count) {
        Box box;
        for (const Box &each : std::span(boxes).subspan(first, count))
            box.add(each);
        set(node, lane, box);
    };
    tree.build(order.size(), fillLeaf, fillNode);
}

} // namespace MERV::BRep
