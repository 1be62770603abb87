#include "meshes/geometry/Point.h"

#include <cmath>

namespace MERV::BRep {

Point euclidean(const Point &point)
{
    Point result(point.x / point.w, point.y / point.w, point.z / point.w);
    result.valid = point.valid;
    return result;
}

double squaredDistance(const Point &a, const Point &b)
{
    const Point p = euclidean(a), q = euclidean(b);
    const double x = p.x - q.x, y = p.y - q.y, z = p.z - q.z;
    return x * x + y * y + z * z;
}

double distance(const Point &a, const Point &b)
{
    return std::sqrt(squaredDistance(a, b));
}

} // namespace MERV::BRep
