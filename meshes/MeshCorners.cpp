#include "meshes/MeshCorners.h"

#include "meshes/RigidStep.h"

#include <array>

using MERV::BRep::Point;
using MERV::BRep::TriFace;

MeshCorners::MeshCorners(std::span<const TriFace> faces)
{
    std::vector<Vector3> corners;
    corners.reserve(3 * faces.size());
    valid.reserve(faces.size());
    for (const TriFace &face : faces) {
        valid.push_back(face.isValid());
        for (int i = 0; face.isValid() && i < 3; ++i) {
            const Point corner = euclidean(face.vertex(i));
            corners.push_back({corner.x, corner.y, corner.z});
        }
    }
    distinct = DistinctPoints(corners);
}

Vector3 MeshCorners::mean() const
{
    Vector3 sum;
    double count = 0.0;
    for (const std::size_t which : order()) {
        const Vector3 &point = points()[which];
        if (!isFinite(point))
            continue;
        sum = {sum.x + point.x, sum.y + point.y, sum.z + point.z};
        ++count;
    }
    return {sum.x / count, sum.y / count, sum.z / count};
}

std::vector<TriFace> MeshCorners::movedFaces(const MERV::Matrix4 &matrix) const
{
    std::vector<Point> places;
    places.reserve(points().size());
    for (const Vector3 &point : points()) {
        const Vector3 place = moved(matrix, point);
        places.emplace_back(place.x, place.y, place.z);
    }
    std::vector<TriFace> faces;
    faces.reserve(valid.size());
    auto corner = order().begin();
    for (const bool isFace : valid) {
        if (!isFace) {
            faces.emplace_back();
            continue;
        }
        faces.emplace_back(places[corner[0]], places[corner[1]], places[corner[2]]);
        corner += 3;
    }
    return faces;
}
