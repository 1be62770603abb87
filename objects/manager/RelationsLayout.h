#pragma once

#include <QList>
#include <QMap>
#include <QPoint>

class ImageObject;

// Centres of the squares of the relations graph, in pixels: images without sources stand in the first column,
// in list order; each other one stands a column to the right of its sources, at their mean height. Sources
// that are not in the list are left out of account; images that depend on one another in a ring are placed
// like those whose sources are all gone.
QMap<ImageObject *, QPoint> relationsLayout(const QList<ImageObject *> &images);
