#pragma once

#include "Common/Matrix4.h"
#include "meshes/DistinctPoints.h"
#include "meshes/geometry/TriFace.h"

#include <span>
#include <vector>

// The corners of a list of faces as places in mm, detached from the faces: a corner that several faces share
// is stored once, and stands in the order as often as faces have it.
class MeshCorners
{
public:
    explicit MeshCorners(std::span<const MERV::BRep::TriFace> faces);

    // Without repeats.
    const std::vector<Vector3> &points() const { return distinct.points(); }
    // Which of points() the corners of the valid faces are, face by face.
    const std::vector<std::size_t> &order() const { return distinct.order(); }

    // Of all corners whose coordinates are finite, with their repeats. Not a number if there is none.
    Vector3 mean() const;
    // All faces at the places to which the matrix moves them; default-made faces stay so.
    std::vector<MERV::BRep::TriFace> movedFaces(const MERV::Matrix4 &matrix) const;

private:
    DistinctPoints distinct;
    std::vector<bool> valid; // for each face
};
