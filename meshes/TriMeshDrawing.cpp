#include "meshes/TriMeshDrawing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

using MERV::BRep::Point;
using MERV::BRep::Segment;
using MERV::BRep::TriFace;

constexpr int corners = 3;

template <std::size_t Size>
bool isFinite(const std::array<float, Size> &values)
{
    return std::all_of(values.begin(), values.end(), [](float value) { return std::isfinite(value); });
}

std::array<float, 3> place(const Point &point)
{
    return {static_cast<float>(point.x), static_cast<float>(point.y), static_cast<float>(point.z)};
}

LitVertex litVertex(const Point &normal, const Point &corner)
{
    return {place(normal),
            {static_cast<float>(corner.x), static_cast<float>(corner.y), static_cast<float>(corner.z),
             static_cast<float>(corner.w)}};
}

bool isDrawable(const LitVertex &vertex)
{
    return isFinite(vertex.normal) && isFinite(vertex.position);
}

} // namespace

std::vector<LitVertex> litTriangles(std::span<const TriFace> faces)
{
    std::vector<LitVertex> vertices;
    vertices.reserve(corners * faces.size());
    for (const TriFace &face : faces) {
        if (!face.isValid())
            continue;
        const Point normal = face.normal();
        const std::array<LitVertex, corners> triangle{litVertex(normal, face.vertex(0)),
                                                      litVertex(normal, face.vertex(1)),
                                                      litVertex(normal, face.vertex(2))};
        if (std::all_of(triangle.begin(), triangle.end(), isDrawable))
            vertices.insert(vertices.end(), triangle.begin(), triangle.end());
    }
    return vertices;
}

std::vector<SectionVertex> sectionLines(std::span<const TriFace> faces, const MERV::BRep::Plane &plane)
{
    std::vector<SectionVertex> vertices;
    for (const TriFace &face : faces) {
        const Segment section = face.sectionWith(plane);
        if (!section.isValid())
            continue;
        const SectionVertex from = place(euclidean(section.from)), to = place(euclidean(section.to));
        if (isFinite(from) && isFinite(to))
            vertices.insert(vertices.end(), {from, to});
    }
    return vertices;
}
