#pragma once

#include "meshes/geometry/ClosestPoint.h"
#include "meshes/geometry/FourBoxes.h"
#include "meshes/geometry/FourTriangles.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace MERV::BRep {

struct PlacedFace;

// Answers closestPointByScan() over a fixed list of faces without looking at all of them. The faces must
// outlive the index and stay as they are. After construction any number of threads may ask at once; to ask
// allocates nothing. About 73 bytes per face.
//
// A tree of boxes over triangles in single precision tells, with a margin for all rounding, which faces
// cannot have the answer. All others are put to TriFace::closestPointTo() itself, whose answer is never
// nearer than the triangle. Where rounding may tear it off the triangle, in faces that are as good as a line,
// it is asked each time.
class ClosestPointIndex
{
public:
    static constexpr std::size_t noHint = static_cast<std::size_t>(-1);

    explicit ClosestPointIndex(std::span<const TriFace> faces);

    // The same point, bit by bit, and the same face as closestPointByScan(). The hint, any number, changes
    // only the time: best is the face of the answer to a point nearby.
    FacePoint closestPoint(const Point &query, std::size_t hint = noHint) const;

private:
    class Search;

    void measureExtent();
    std::vector<PlacedFace> sortOut();
    void makeTriangles(std::span<const PlacedFace> ordered);
    void makeBoxes();
    std::vector<FourBoxes> boxesAround(const std::vector<FourBoxes> &below, std::size_t content,
                                       std::vector<Vector> &normals) const;
    Vector local(const Point &point) const;
    std::array<Vector, 3> localCorners(const TriFace &face) const;
    bool isInReach(const Point &query) const;

    std::span<const TriFace> faces;
    std::vector<std::uint32_t> unsound;   // the faces to ask each time, in rising order
    std::vector<FourTriangles> triangles; // the sound faces, by fours that lie close together
    std::vector<std::uint32_t> faceOf;    // of each triangle; the last four may repeat a face
    // levels[0] holds a box around each four triangles, levels[1] one around each four boxes of levels[0]
    // and so on, up to a level of at most four boxes. Of four triangles alone there are none.
    std::vector<std::vector<FourBoxes>> levels;
    Point center;             // of the local coordinates
    double scale = 0.0;       // to local coordinates between -1 and 1; 0 if no face is sound
    double largest = 0.0;     // coordinate
    double longestSide = 0.0; // of a sound face, in local coordinates
};

} // namespace MERV::BRep
