#pragma once

#include "meshes/geometry/Plane.h"
#include "meshes/geometry/TriFace.h"

#include <array>
#include <span>
#include <vector>

// What is sent to OpenGL for triangles, made without OpenGL. Numbers become single precision, as they do in
// any drawing. What is not finite then (a vertex with a NaN, a number beyond the range) is left out.

// A corner of a lit triangle.
struct LitVertex
{
    std::array<float, 3> normal;   // of its face, not normalised
    std::array<float, 4> position; // homogeneous, mm
};

// An end of a line, in mm.
using SectionVertex = std::array<float, 3>;

// Three corners for each valid face, in stored order, all three with the normal of the face: meshes look
// faceted. A face without area has the normal (0, 0, 0).
std::vector<LitVertex> litTriangles(std::span<const MERV::BRep::TriFace> faces);

// Two ends for each face that has a section with the plane (TriFace::sectionWith()), in stored order.
std::vector<SectionVertex> sectionLines(std::span<const MERV::BRep::TriFace> faces,
                                        const MERV::BRep::Plane &plane);
