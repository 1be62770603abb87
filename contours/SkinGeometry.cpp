#include "contours/SkinGeometry.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <map>
#include <optional>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

double distance(const QPointF &left, const QPointF &right)
{
    return std::sqrt(squaredDistance(left, right));
}

// The neighbours of a segment in its natural direction. A direction of -1 means that the neighbour is then
// walked backwards.
struct Neighbours
{
    std::optional<ChainLink> predecessor;
    std::optional<ChainLink> successor;
};

Neighbours findNeighbours(std::span<const SegmentSnapshot> level, std::size_t self)
{
    Neighbours found;
    double bestBefore = infinity;
    double bestAfter = infinity;
    for (std::size_t i = 0; i < level.size(); ++i) {
        if (i == self)
            continue;
        const double beforeByFirst = distance(level[i].first(), level[self].first());
        const double beforeByLast = distance(level[i].last(), level[self].first());
        const double before = std::min(beforeByFirst, beforeByLast);
        // Nearer than the best successor as well: one neighbour must not be wanted on both sides.
        if (before < bestBefore && before < bestAfter) {
            bestBefore = before;
            found.predecessor = ChainLink{i, beforeByLast <= beforeByFirst ? 1 : -1};
        }
        const double afterByFirst = distance(level[i].first(), level[self].last());
        const double afterByLast = distance(level[i].last(), level[self].last());
        const double after = std::min(afterByFirst, afterByLast);
        if (after < bestAfter) {
            bestAfter = after;
            found.successor = ChainLink{i, afterByFirst <= afterByLast ? 1 : -1};
        }
    }
    if (found.predecessor && found.successor && found.predecessor->segment == found.successor->segment)
        (bestBefore < bestAfter ? found.successor : found.predecessor).reset();
    return found;
}

struct ChainPoint
{
    Vector3 position;
    bool behindGap; // the first point of a segment that is not the chain's first
};

struct Chain
{
    std::vector<ChainPoint> points;
    QPointF first;
    QPointF last;
};

Chain walkChain(std::span<const SegmentSnapshot> level, std::span<const ChainLink> links)
{
    Chain chain;
    for (const ChainLink &link : links) {
        const SegmentSnapshot &segment = level[link.segment];
        bool behindGap = !chain.points.empty();
        const auto append = [&](const QPointF &point) {
            chain.points.push_back({{point.x(), point.y(), segment.z}, behindGap});
            behindGap = false;
        };
        if (link.direction > 0)
            std::for_each(segment.points.begin(), segment.points.end(), append);
        else
            std::for_each(segment.points.rbegin(), segment.points.rend(), append);
    }
    const auto end = [&](const ChainLink &link, bool beginning) {
        const SegmentSnapshot &segment = level[link.segment];
        return (link.direction > 0) == beginning ? segment.first() : segment.last();
    };
    chain.first = end(links.front(), true);
    chain.last = end(links.back(), false);
    return chain;
}

Vector3 normalOf(const Vector3 &a, const Vector3 &b, const Vector3 &c)
{
    const Vector3 u{b.x - a.x, b.y - a.y, b.z - a.z};
    const Vector3 v{c.x - a.x, c.y - a.y, c.z - a.z};
    return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}

double planarDistance(const Vector3 &left, const Vector3 &right)
{
    return distance(QPointF(left.x, left.y), QPointF(right.x, right.y));
}

// Walks both chains at once and always takes the step that leaves the shorter edge between them.
std::vector<SkinTriangle> stitch(const std::vector<ChainPoint> &lower, const std::vector<ChainPoint> &upper)
{
    std::vector<SkinTriangle> triangles;
    if (lower.empty() || upper.empty())
        return triangles;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i + 1 < lower.size() || j + 1 < upper.size()) {
        const Vector3 &a = lower[i].position;
        const Vector3 &b = upper[j].position;
        bool advanceLower = j + 1 == upper.size();
        if (!advanceLower && i + 1 < lower.size())
            advanceLower =
                planarDistance(lower[i + 1].position, b) < planarDistance(a, upper[j + 1].position);
        const ChainPoint &next = advanceLower ? lower[++i] : upper[++j];
        if (!next.behindGap)
            triangles.push_back({normalOf(a, b, next.position), {a, b, next.position}});
    }
    return triangles;
}

} // namespace

std::vector<ChainLink> orderChain(std::span<const SegmentSnapshot> level)
{
    if (level.empty())
        return {};
    std::vector<Neighbours> neighbours;
    for (std::size_t i = 0; i < level.size(); ++i)
        neighbours.push_back(findNeighbours(level, i));
    std::vector<bool> ordered(level.size(), false);
    ordered[0] = true;
    std::deque<ChainLink> chain{{0, 1}};
    // The neighbour of an end of the chain, if it is not in the chain yet; walking the segment backwards
    // swaps its sides.
    const auto take = [&](const ChainLink &end, bool after) -> std::optional<ChainLink> {
        const Neighbours &near = neighbours[end.segment];
        const std::optional<ChainLink> &link =
            (end.direction > 0) == after ? near.successor : near.predecessor;
        if (!link || ordered[link->segment])
            return std::nullopt;
        ordered[link->segment] = true;
        return ChainLink{link->segment, end.direction * link->direction};
    };
    for (std::size_t round = 0; round < level.size(); ++round) {
        if (const auto link = take(chain.back(), true))
            chain.push_back(*link);
        if (const auto link = take(chain.front(), false))
            chain.push_front(*link);
    }
    return {chain.begin(), chain.end()};
}

std::vector<SkinTriangle> stitchChains(std::span<const SegmentSnapshot> lower,
                                       std::span<const SegmentSnapshot> upper)
{
    const std::vector<ChainLink> lowerLinks = orderChain(lower);
    std::vector<ChainLink> upperLinks = orderChain(upper);
    if (lowerLinks.empty() || upperLinks.empty())
        return {};
    const Chain a = walkChain(lower, lowerLinks);
    Chain b = walkChain(upper, upperLinks);
    if (distance(a.first, b.last) + distance(a.last, b.first) <
        distance(a.first, b.first) + distance(a.last, b.last)) {
        std::reverse(upperLinks.begin(), upperLinks.end());
        for (ChainLink &link : upperLinks)
            link.direction = -link.direction;
        b = walkChain(upper, upperLinks);
    }
    return stitch(a.points, b.points);
}

std::vector<SkinTriangle> skinOf(std::span<const SegmentSnapshot> segments)
{
    std::map<float, std::vector<SegmentSnapshot>> levels;
    for (const SegmentSnapshot &segment : segments)
        if (!std::isnan(segment.z))
            levels[segment.z].push_back(segment);
    std::vector<SkinTriangle> skin;
    for (auto lower = levels.begin(); lower != levels.end() && std::next(lower) != levels.end(); ++lower) {
        const std::vector<SkinTriangle> strip = stitchChains(lower->second, std::next(lower)->second);
        skin.insert(skin.end(), strip.begin(), strip.end());
    }
    return skin;
}
