#pragma once

#include "contours/SegmentSnapshot.h"
#include "meshes/geometry/TriFace.h"

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <vector>

// The plain way from lines to ribbons, with a scan of all lines for each level: what the fast triangulation
// must reproduce face by face. take(face) gets each face.

template <typename Take>
void plainStitch(const SegmentSnapshot &a, const SegmentSnapshot &b, const Take &take)
{
    const int countA = static_cast<int>(a.points.size()), countB = static_cast<int>(b.points.size());
    const auto ofA = [&](int i) { return a.points[static_cast<std::size_t>(i)]; };
    const auto ofB = [&](int j) { return b.points[static_cast<std::size_t>(j)]; };
    const auto length = [](const QPointF &p, const QPointF &q) {
        return std::sqrt((q.x() - p.x()) * (q.x() - p.x()) + (q.y() - p.y()) * (q.y() - p.y()));
    };
    const auto at = [](const QPointF &p, float z) { return MERV::BRep::Point(p.x(), p.y(), z); };
    int i = 0, j = 0;
    while (!(i >= countA && j >= countA)) {
        bool advanceA = false;
        if (i < countA - 1 && j < countB - 1)
            advanceA = length(ofA(i), ofB(j + 1)) > length(ofA(i + 1), ofB(j));
        else
            advanceA = i < countA - 1 && j == countB - 1;
        if (advanceA) {
            take(MERV::BRep::TriFace(at(ofA(i), a.z), at(ofB(j), b.z), at(ofA(i + 1), a.z)));
            ++i;
            continue;
        }
        if (j >= countB - 1)
            return;
        take(MERV::BRep::TriFace(at(ofB(j), b.z), at(ofB(j + 1), b.z), at(ofA(i), a.z)));
        ++j;
    }
}

// Heights that are not numbers compare false with all others and so drop out; infinite ones are not allowed.
template <typename Take>
void plainRibbons(const std::vector<SegmentSnapshot> &lines, const Take &take)
{
    float z = FLT_MAX;
    for (const SegmentSnapshot &line : lines)
        if (line.z < z)
            z = line.z;
    for (;;) {
        std::vector<const SegmentSnapshot *> lower, upper;
        for (const SegmentSnapshot &line : lines)
            if (line.z == z)
                lower.push_back(&line);
        float nextZ = 3.4028235e38f;
        for (const SegmentSnapshot &line : lines) {
            if (!(line.z > z))
                continue;
            if (line.z < nextZ) {
                upper.clear();
                nextZ = line.z;
            }
            upper.push_back(&line);
        }
        if (upper.empty())
            return;
        if (!lower.empty())
            plainStitch(*lower.front(), *upper.front(), take);
        z = nextZ;
    }
}
