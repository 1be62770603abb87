#pragma once

#include "meshes/ColourScale.h"
#include "meshes/geometry/TriFace.h"
#include "objects/SparselySampledImageObject.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

// A mesh coloured by samples, ready to be sent: the faces in their order, cut into triangles. Single
// precision, as OpenGL works.
struct ColouredTriangles
{
    struct Vertex
    {
        std::array<float, 3> position; // mm
        std::array<float, 3> normal;   // not normalised
        std::array<float, 3> colour;   // opaque
    };
    // Neighbouring triangles that are drawn the same way.
    struct Run
    {
        bool isHatched = false;
        std::size_t first = 0; // of the indices
        std::size_t count = 0;
    };

    std::vector<Vertex> vertices;
    std::vector<std::uint32_t> indices; // of vertices, three for each triangle
    std::vector<Run> runs;              // in drawing order

    std::size_t memory() const; // bytes
};

// Faces with a sample at each corner are cut into bands by their values relative to the largest sample, all
// others are one red triangle in a hatched run. Faces without a place in single precision (NaN, infinite) are
// left out. Where the strip runs the other way round than its face, the normal is turned, so that with
// lighting from both sides each triangle is lit like its face.
ColouredTriangles colouredTriangles(std::span<const MERV::BRep::TriFace> faces, const SampleMap &samples,
                                    const ColourScale &scale);
