#pragma once

#include <QPointF>

#include <cstdint>
#include <vector>

// Lines in mm in the plane of a slice.
using Polyline = std::vector<QPointF>;

// The path of an unsteady hand along a line: never on it, but at 1 to 2 times `unitMm` beside it, always on
// the same side (+1: left of the walking direction, -1: right), wandering slowly in between. Points lie about
// stepMm apart. The same seed gives the same path.
Polyline unsteadyPath(const Polyline &line, int side, double unitMm, double stepMm, std::uint32_t seed);

// The path from its first point on that lies at most backMm behind `from` on the way to `to`; empty if there
// is none.
Polyline leadingOn(const Polyline &path, const QPointF &from, const QPointF &to, double backMm);

// Area in mm^2 enclosed by two lines that run side by side from a common start to a common end.
double enclosedArea(const Polyline &first, const Polyline &second);

double lengthOf(const Polyline &line);
