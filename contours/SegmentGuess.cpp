#include "contours/SegmentGuess.h"

#include "contours/SlicedContoursSegment.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>

namespace {

constexpr double stepMm = 0.1;
// Longer pieces of a path cannot come from a volume: they are jumped over, so that no walk takes for ever.
constexpr double longestPieceMm = 1e4;

Vector3 operator-(const Vector3 &a, const Vector3 &b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

double dot(const Vector3 &a, const Vector3 &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

double lengthOf(const Vector3 &v)
{
    return std::sqrt(dot(v, v));
}

// A zero vector stays one.
Vector3 normalised(const Vector3 &v)
{
    const double length = lengthOf(v);
    return length > 0.0 ? Vector3{v.x / length, v.y / length, v.z / length} : Vector3{};
}

// Walks along the points of a path, which has at least one, in small steps.
class PathWalker
{
public:
    explicit PathWalker(const QList<Vector3> &pathPoints)
        : path(pathPoints)
        , current(pathPoints.front())
    {}

    bool atEnd() const { return index + 1 >= path.size(); }
    const Vector3 &position() const { return current; }
    const Vector3 &previous() const { return before; }

    void step()
    {
        before = current;
        const Vector3 ahead = path[index + 1] - current;
        const double distance = lengthOf(ahead);
        bool moved = false;
        if (distance > stepMm && distance <= longestPieceMm) {
            current = {current.x + stepMm * ahead.x / distance, current.y + stepMm * ahead.y / distance,
                       current.z + stepMm * ahead.z / distance};
            // Far from the origin a step can be too small to change the position.
            moved = current.x != before.x || current.y != before.y || current.z != before.z;
        }
        if (!moved)
            current = path[++index];
    }

    // The part of the present piece of the path that lies behind, 1 at the end of the path.
    double fraction() const
    {
        if (atEnd())
            return 1.0;
        const double whole = lengthOf(path[index + 1] - path[index]);
        return whole > 0.0 ? lengthOf(current - path[index]) / whole : 0.0;
    }

private:
    const QList<Vector3> &path;
    qsizetype index = 0;
    Vector3 current;
    Vector3 before;
};

// What the score of a candidate depends on besides the candidate.
struct Surroundings
{
    Vector3 walker;
    Vector3 walkDirection;                    // normalised
    Vector3 edge;                             // the edge position
    std::optional<Vector3> previousDirection; // of the line so far, normalised
    double voxelSize;
    double fraction;
};

double scoreOf(const EdgePoint &candidate, const Surroundings &at)
{
    const Vector3 position{candidate.x, candidate.y, candidate.z};
    const Vector3 hop = position - at.edge;
    const double hopLength = lengthOf(hop);
    const Vector3 hopDirection = normalised(hop);
    const bool stays = hopLength == 0.0;
    double score = 2.0 * static_cast<double>(candidate.strength);
    // The favourite distance is one voxel.
    const double excess = hopLength / at.voxelSize - 1.0;
    score += stays ? 1.0 : 4.0 * std::exp2(-(excess * excess));
    score += stays ? 0.5 : 0.5 * dot(hopDirection, at.walkDirection);
    if (at.previousDirection) {
        const double along = dot(hopDirection, *at.previousDirection);
        score += stays ? 1.0 : along * along;
    }
    // A candidate farther from the walker than the edge position loses.
    const double candidateDistance = lengthOf(position - at.walker);
    const double edgeDistance = lengthOf(at.edge - at.walker);
    score += std::min(edgeDistance - candidateDistance, 0.0);
    if (candidateDistance > edgeDistance)
        score -= 4.0 * at.fraction * at.fraction + 0.5;
    return score;
}

const EdgePoint *bestCandidate(const EdgePointList &candidates, const Surroundings &at)
{
    const EdgePoint *best = nullptr;
    double bestScore = -std::numeric_limits<float>::max();
    for (const EdgePoint *candidate : candidates)
        if (const double score = scoreOf(*candidate, at); score > bestScore) {
            bestScore = score;
            best = candidate;
        }
    return best;
}

} // namespace

SlicedContoursSegment *guessSegment(SlicedContoursSegment *target, const QList<Vector3> &path,
                                    EdgePointSource &source)
{
    if (path.isEmpty())
        return target;
    const float voxelSize = source.analyzedGranularity();
    PathWalker walker(path);
    Vector3 edge = path.front();
    while (!walker.atEnd()) {
        walker.step();
        const std::unique_ptr<EdgePointList> candidates(
            source.edgePointsNear(static_cast<float>(edge.x), static_cast<float>(edge.y),
                                  static_cast<float>(edge.z), 5.0f * voxelSize));
        Surroundings at{walker.position(),
                        normalised(walker.position() - walker.previous()),
                        edge,
                        std::nullopt,
                        voxelSize,
                        walker.fraction()};
        if (target->pointCount() >= 2) {
            const QPointF before = target->point(-2);
            at.previousDirection = normalised(edge - Vector3{before.x(), before.y(), edge.z});
        }
        if (const EdgePoint *best = bestCandidate(*candidates, at)) {
            target->addPointBack({best->x, best->y});
            edge.x = best->x;
            edge.y = best->y;
        }
    }
    return target;
}
