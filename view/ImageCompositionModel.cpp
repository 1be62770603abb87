// The tree that the composition shows: its rows, and how they follow objects that change or go.
#include "view/ImageComposition.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "view/GraphicsPod.h"

#include <algorithm>

namespace {

constexpr int columns = 7;

// The child of a contours object at a row: contours first, then fragments.
GraphicsObject *childAt(const SlicedContoursObject &contours, int row)
{
    if (row < contours.contourCount())
        return contours.contour(row);
    return contours.fragment(row - contours.contourCount());
}

int childCount(const SlicedContoursObject &contours)
{
    return contours.contourCount() + contours.fragmentCount();
}

} // namespace

SlicedContoursObject *ImageComposition::contoursAt(int row) const
{
    const GraphicsPod *found = pod(row);
    return found != nullptr ? qobject_cast<SlicedContoursObject *>(static_cast<QObject *>(found->object()))
                            : nullptr;
}

int ImageComposition::rowOf(const GraphicsObject *object) const
{
    const auto found = std::find_if(pods.begin(), pods.end(),
                                    [object](const GraphicsPod *pod) { return pod->object() == object; });
    return found != pods.end() ? static_cast<int>(found - pods.begin()) : -1;
}

GraphicsPod *ImageComposition::podOf(const GraphicsObject *object) const
{
    return pod(rowOf(object));
}

// Looks for the address only: it may be that of a child that is gone.
std::optional<ImageComposition::ChildPlace> ImageComposition::childPlace(const void *child) const
{
    for (int podRow = 0; podRow < podCount(); ++podRow) {
        const SlicedContoursObject *contours = contoursAt(podRow);
        for (int row = 0; contours != nullptr && row < childCount(*contours); ++row)
            if (childAt(*contours, row) == child)
                return ChildPlace{podRow, row};
    }
    return std::nullopt;
}

// Null for an index whose object is no longer shown, or is being deleted while views are told of it: then it
// is a mere QObject by now.
GraphicsObject *ImageComposition::objectAt(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != this)
        return nullptr;
    auto *object = static_cast<GraphicsObject *>(index.internalPointer());
    const bool isShown = rowOf(object) >= 0 || childPlace(object);
    return isShown ? qobject_cast<GraphicsObject *>(static_cast<QObject *>(object)) : nullptr;
}

// The pod of a top-level row; null for child rows.
GraphicsPod *ImageComposition::topPod(const QModelIndex &index) const
{
    GraphicsPod *found = pod(index.row());
    const auto *object = static_cast<GraphicsObject *>(index.internalPointer());
    return found != nullptr && found->object() == object ? found : nullptr;
}

QModelIndex ImageComposition::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column < 0 || row >= rowCount(parent))
        return {};
    GraphicsObject *object =
        parent.isValid() ? childAt(*contoursAt(parent.row()), row) : pods.at(row)->object();
    return createIndex(row, column, object);
}

QModelIndex ImageComposition::parent(const QModelIndex &index) const
{
    if (!index.isValid() || rowOf(static_cast<GraphicsObject *>(index.internalPointer())) >= 0)
        return {};
    const auto place = childPlace(index.internalPointer());
    if (!place)
        return {};
    return createIndex(place->podRow, 0, static_cast<GraphicsObject *>(pods.at(place->podRow)->object()));
}

int ImageComposition::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return podCount();
    if (parent.column() != 0 || topPod(parent) == nullptr)
        return 0;
    const SlicedContoursObject *contours = contoursAt(parent.row());
    return contours != nullptr ? childCount(*contours) : 0;
}

int ImageComposition::columnCount(const QModelIndex &) const
{
    return columns;
}

bool ImageComposition::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

// Called when it has happened already, hence both announcements here.
void ImageComposition::structureChanged()
{
    emit layoutAboutToBeChanged();
    if (edited != nullptr && rowOf(edited) < 0 && !childPlace(edited))
        edited = nullptr;
    const QModelIndexList indexes = persistentIndexList();
    for (const QModelIndex &index : indexes) {
        if (rowOf(static_cast<GraphicsObject *>(index.internalPointer())) >= 0)
            continue;
        const auto place = childPlace(index.internalPointer());
        changePersistentIndex(index,
                              place ? createIndex(place->childRow, index.column(), index.internalPointer())
                                    : QModelIndex());
    }
    emit layoutChanged();
}

// The object may be gone but for its address.
void ImageComposition::removePods(ImageObject *closing)
{
    std::vector<int> newRows; // -1: removed
    QList<GraphicsPod *> remaining;
    QList<GraphicsPod *> doomed;
    for (GraphicsPod *pod : std::as_const(pods)) {
        const bool goes = pod->object() == closing;
        newRows.push_back(goes ? -1 : static_cast<int>(remaining.size()));
        (goes ? doomed : remaining).append(pod);
    }
    if (doomed.isEmpty())
        return;
    emit layoutAboutToBeChanged();
    remapPersistentIndexes(newRows);
    const auto newRow = [&](int row, int fallback) {
        const bool known = row >= 0 && row < static_cast<int>(newRows.size());
        return known && newRows[static_cast<std::size_t>(row)] >= 0 ? newRows[static_cast<std::size_t>(row)]
                                                                    : fallback;
    };
    analyzed = newRow(analyzed, 0);
    current = newRow(current, -1);
    pods = remaining;
    qDeleteAll(doomed);
    emit layoutChanged();
    emit updated();
}

// Child rows stay where they are under their parent, unless that goes.
void ImageComposition::remapPersistentIndexes(const std::vector<int> &newRows)
{
    const auto goes = [&](int row) { return newRows[static_cast<std::size_t>(row)] < 0; };
    const QModelIndexList indexes = persistentIndexList();
    for (const QModelIndex &index : indexes) {
        if (topPod(index) != nullptr) {
            const int row = newRows[static_cast<std::size_t>(index.row())];
            changePersistentIndex(index, row < 0 ? QModelIndex()
                                                 : createIndex(row, index.column(), index.internalPointer()));
        } else if (const auto place = childPlace(index.internalPointer()); !place || goes(place->podRow)) {
            changePersistentIndex(index, QModelIndex());
        }
    }
}
