#include "meshes/RibbonStitching.h"

#include <algorithm>
#include <cmath>

namespace {

using MERV::BRep::Point;

double lengthInSlice(const QPointF &from, const QPointF &to)
{
    const double x = to.x() - from.x(), y = to.y() - from.y();
    return std::sqrt(x * x + y * y);
}

} // namespace

std::vector<std::size_t> firstOfEachLevel(std::span<const float> z)
{
    std::vector<std::size_t> levels;
    levels.reserve(z.size());
    for (std::size_t i = 0; i < z.size(); ++i)
        if (std::isfinite(z[i]))
            levels.push_back(i);
    std::stable_sort(levels.begin(), levels.end(),
                     [&](std::size_t left, std::size_t right) { return z[left] < z[right]; });
    levels.erase(std::unique(levels.begin(), levels.end(),
                             [&](std::size_t left, std::size_t right) { return z[left] == z[right]; }),
                 levels.end());
    return levels;
}

void stitchRibbon(const SegmentSnapshot &a, const SegmentSnapshot &b, std::vector<MERV::BRep::TriFace> &faces)
{
    if (a.points.empty() || b.points.empty())
        return;
    const auto ofA = [&a](std::size_t i) { return Point(a.points[i].x(), a.points[i].y(), a.z); };
    const auto ofB = [&b](std::size_t j) { return Point(b.points[j].x(), b.points[j].y(), b.z); };
    const std::size_t lastA = a.points.size() - 1, lastB = b.points.size() - 1;
    for (std::size_t i = 0, j = 0; i < lastA || j < lastB;) {
        const bool alongA = i < lastA && (j == lastB || lengthInSlice(a.points[i], b.points[j + 1]) >
                                                            lengthInSlice(a.points[i + 1], b.points[j]));
        if (alongA) {
            faces.emplace_back(ofA(i), ofB(j), ofA(i + 1));
            ++i;
        } else {
            faces.emplace_back(ofB(j), ofB(j + 1), ofA(i));
            ++j;
        }
    }
}
