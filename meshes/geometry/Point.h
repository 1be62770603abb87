#pragma once

namespace MERV::BRep {

// A point in homogeneous coordinates; its place in mm is (x/w, y/w, z/w). A default-made point is invalid, as
// is the result of every construction that fails.
struct Point
{
    double x = 0.0, y = 0.0, z = 0.0, w = 0.0;
    bool valid = false;

    Point() = default;
    Point(double newX, double newY, double newZ, double newW = 1.0)
        : x(newX)
        , y(newY)
        , z(newZ)
        , w(newW)
        , valid(true)
    {}

    // All four coordinates are equal: 0.0 and -0.0 are, a NaN equals nothing. Validity does not matter.
    bool sameCoordinates(const Point &other) const
    {
        return x == other.x && y == other.y && z == other.z && w == other.w;
    }
};

// (x/w, y/w, z/w, 1), with the same validity.
Point euclidean(const Point &point);
// Both from the Euclidean forms, in mm (mm^2).
double distance(const Point &a, const Point &b);
double squaredDistance(const Point &a, const Point &b);

} // namespace MERV::BRep
