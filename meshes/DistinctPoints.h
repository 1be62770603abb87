#pragma once

#include "objects/Vector3.h"

#include <cstddef>
#include <span>
#include <vector>

// The points of a list without repeats. Points count as one only if they agree bit by bit, so that whatever
// is computed from one holds for all of its repeats.
class DistinctPoints
{
public:
    DistinctPoints() = default;
    explicit DistinctPoints(std::span<const Vector3> list);

    // In the order in which they come first.
    const std::vector<Vector3> &points() const { return distinct; }
    // For each point of the list, in its order, which of points() it is.
    const std::vector<std::size_t> &order() const { return places; }

private:
    std::vector<Vector3> distinct;
    std::vector<std::size_t> places;
};
