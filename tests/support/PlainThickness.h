#pragma once

#include "meshes/geometry/TriFace.h"

#include <span>
#include <utility>
#include <vector>

// The plain way to measure a thickness, vertex by vertex and face by face, with nothing but lists: what the
// fast measurement must reproduce bit for bit.

struct PlainThickness
{
    std::vector<std::pair<MERV::BRep::Point, double>> samples; // in the order of the vertices

    PlainThickness(std::span<const MERV::BRep::TriFace> base, std::span<const MERV::BRep::TriFace> remote,
                   bool alongNormal)
    {
        std::vector<MERV::BRep::Point> handled;
        for (const MERV::BRep::TriFace &face : base) {
            if (!face.isValid())
                continue;
            const MERV::BRep::Point n = face.normal();
            for (int corner = 0; corner < 3; ++corner) {
                const MERV::BRep::Point &p = face.vertex(corner);
                if (contains(handled, p))
                    continue;
                handled.push_back(p);
                const MERV::BRep::Point hit = alongNormal ? nearestHit(p, n, remote) : closest(p, remote);
                if (hit.valid)
                    samples.emplace_back(p, distance(hit, p));
            }
        }
    }

    static bool contains(const std::vector<MERV::BRep::Point> &points, const MERV::BRep::Point &p)
    {
        for (auto q = points.rbegin(); q != points.rend(); ++q)
            if (q->x == p.x && q->y == p.y && q->z == p.z && q->w == p.w)
                return true;
        return false;
    }

    static MERV::BRep::Point nearestHit(const MERV::BRep::Point &p, const MERV::BRep::Point &n,
                                        std::span<const MERV::BRep::TriFace> remote)
    {
        const MERV::BRep::Point start(p.x / p.w, p.y / p.w, p.z / p.w);
        const MERV::BRep::Line line(start, {start.x + n.x, start.y + n.y, start.z + n.z});
        MERV::BRep::Point hit;
        for (const MERV::BRep::TriFace &face : remote) {
            const MERV::BRep::Point point = face.intersection(line);
            if (point.valid && (!hit.valid || squaredDistance(hit, p) > squaredDistance(point, p)))
                hit = point;
        }
        return hit;
    }

    static MERV::BRep::Point closest(const MERV::BRep::Point &p, std::span<const MERV::BRep::TriFace> remote)
    {
        MERV::BRep::Point hit;
        for (const MERV::BRep::TriFace &face : remote) {
            const MERV::BRep::Point point = face.closestPointTo(p);
            if (point.valid && (!hit.valid || distance(hit, p) > distance(point, p)))
                hit = point;
        }
        return hit;
    }
};
