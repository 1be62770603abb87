#pragma once

#include "objects/Vector3.h"

#include <QList>
#include <QPointF>

#include <span>

// The rough path of a guess from start to end (mm) at the z of start: along the points of a guide on a
// neighbouring slice, from the one nearest to start to the one nearest to end, bent at both ends so that it
// begins at start and reaches end. Straight without a guide.
QList<Vector3> guessPath(const Vector3 &start, const Vector3 &end, std::span<const QPointF> guide);
