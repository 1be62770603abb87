#pragma once

#include "meshes/geometry/TriFace.h"

#include <array>
#include <cstdint>
#include <random>

// Triangles with small whole coordinates, for which every decision can be taken in whole numbers and every
// product that double precision computes is exact: an independent statement of the rules, without Pluecker
// coordinates.

using Whole = std::int64_t;

struct WholePoint
{
    Whole x = 0, y = 0, z = 0;

    WholePoint operator-(const WholePoint &other) const { return {x - other.x, y - other.y, z - other.z}; }
    bool operator==(const WholePoint &) const = default;
    MERV::BRep::Point point() const
    {
        return {static_cast<double>(x), static_cast<double>(y), static_cast<double>(z)};
    }
};

inline WholePoint cross(const WholePoint &a, const WholePoint &b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline Whole dot(const WholePoint &a, const WholePoint &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

struct WholeTriangle
{
    std::array<WholePoint, 3> p;

    MERV::BRep::TriFace face() const { return {p[0].point(), p[1].point(), p[2].point()}; }
    WholePoint normal() const { return cross(p[1] - p[0], p[2] - p[1]); }
    const WholePoint &corner(std::size_t index) const { return p[index % 3]; }
    WholePoint edge(std::size_t index) const { return corner(index + 1) - corner(index); }

    // Six times the volume that edge `index` spans with the line through `through` along `direction`: on
    // which side the line passes the edge, positive for a line along the normal through the inside.
    Whole side(std::size_t index, const WholePoint &through, const WholePoint &direction) const
    {
        return dot(direction, cross(edge(index), through - corner(index)));
    }
    std::array<Whole, 3> sides(const WholePoint &through, const WholePoint &direction) const
    {
        return {side(0, through, direction), side(1, through, direction), side(2, through, direction)};
    }
};

// Whole points with coordinates from -limit to limit.
class WholePoints
{
public:
    WholePoints(unsigned seed, Whole limit)
        : random(seed)
        , coordinate(-limit, limit)
    {}

    WholePoint next() { return {coordinate(random), coordinate(random), coordinate(random)}; }
    WholeTriangle nextTriangle() { return {{next(), next(), next()}}; }

private:
    std::mt19937 random;
    std::uniform_int_distribution<Whole> coordinate;
};
