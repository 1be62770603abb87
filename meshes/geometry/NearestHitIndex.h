#pragma once

#include "meshes/geometry/EdgeLines.h"
#include "meshes/geometry/FaceBoxes.h"
#include "meshes/geometry/NearestHit.h"
#include "meshes/geometry/SearchLine.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace MERV::BRep {

// nearestHitByScan() over the same faces again and again: the same answer for every line and point, bit by
// bit, found without looking at most faces. Borrows the faces, which must outlive it unchanged. Queries only
// read and do not allocate: several threads may ask one index at once.
//
// A face is hit when a line passes all its edges on one side, and also when it meets the line of an edge
// exactly, be it far from the face. One tree of boxes finds the former, one of the edges' lines everything
// that rounding can make the latter; what they find is decided by TriFace::intersection(). Points with w
// other than 1, and faces, lines and meshes of sizes for which no bound of the rounding holds, are tested
// one by one: the answer is the same, but takes the time of the scan.
class NearestHitIndex
{
public:
    // checkpoint is called every few steps; what it throws ends the construction.
    explicit NearestHitIndex(
        std::span<const TriFace> newFaces, const std::function<void()> &checkpoint = [] {});

    FacePoint nearestHit(const Line &line, const Point &from) const;

    // Of memory, beside the faces.
    std::size_t bytes() const;

private:
    std::span<const TriFace> faces;
    std::vector<std::uint32_t> testedAlways;
    SearchFrame frame;
    std::optional<FaceBoxes> boxes; // neither if no face can be searched for
    std::optional<EdgeLines> edges;
};

} // namespace MERV::BRep
