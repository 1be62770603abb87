#include "objects/manager/RelationsLayout.h"

#include "objects/ImageObject.h"

#include <algorithm>

namespace {

constexpr int firstX = 40;
constexpr int firstY = 40;
constexpr int step = 80;

using Positions = QMap<ImageObject *, QPoint>;

// What is known of the sources of one object.
struct Sources
{
    int placed = 0;
    int skipped = 0; // not in the list
    int largestX = 0;
    int sumOfY = 0;
    bool allPlaced = false;
};

Sources inspectSources(const ImageObject *object, const QList<ImageObject *> &images,
                       const Positions &positions)
{
    Sources result;
    const QList<ImageObject *> sources = object->sources();
    for (ImageObject *source : sources) {
        if (const auto position = positions.constFind(source); position != positions.cend()) {
            result.largestX = result.placed == 0 ? position->x() : std::max(result.largestX, position->x());
            result.sumOfY += position->y();
            ++result.placed;
        } else if (images.contains(source)) {
            break;
        } else {
            ++result.skipped;
        }
    }
    result.allPlaced = result.placed == sources.size() - result.skipped;
    return result;
}

QPoint besideSources(const Sources &sources, const Positions &positions)
{
    QPoint point(sources.largestX + step, sources.sumOfY / sources.placed);
    const auto taken = [&] {
        return std::find(positions.cbegin(), positions.cend(), point) != positions.cend();
    };
    while (taken())
        point.ry() += step;
    return point;
}

} // namespace

QMap<ImageObject *, QPoint> relationsLayout(const QList<ImageObject *> &images)
{
    Positions positions;
    QList<ImageObject *> pending;
    int y = firstY; // the next free row
    for (ImageObject *object : images) {
        if (!object->sources().isEmpty()) {
            pending.append(object);
            continue;
        }
        positions.insert(object, QPoint(firstX, y));
        y += step;
    }
    qsizetype postponed = 0; // objects put back since the last one that was placed
    while (!pending.isEmpty()) {
        ImageObject *object = pending.takeFirst();
        const Sources sources = inspectSources(object, images, positions);
        const bool inRing = postponed > pending.size();
        if (!sources.allPlaced && !inRing) {
            pending.append(object);
            ++postponed;
            continue;
        }
        postponed = 0;
        if (sources.placed > 0 && !inRing) {
            const QPoint point = besideSources(sources, positions);
            positions.insert(object, point);
            y = std::max(y, point.y());
        } else {
            y += step; // leaves one row free
            positions.insert(object, QPoint(firstX, y));
        }
    }
    return positions;
}
