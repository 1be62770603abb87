#include "contours/SegmentMarkers.h"

namespace {

constexpr double octagonShortMm = 0.02;
constexpr double octagonLongMm = 0.05;
constexpr double haloDiagonalMm = 0.3; // half of the diagonal
constexpr double endDiagonalMm = 0.2;

void appendDiamond(const QPointF &centre, double halfDiagonal, std::vector<QPointF> &corners)
{
    corners.push_back(centre + QPointF(halfDiagonal, 0.0));
    corners.push_back(centre + QPointF(0.0, halfDiagonal));
    corners.push_back(centre + QPointF(-halfDiagonal, 0.0));
    corners.push_back(centre + QPointF(0.0, -halfDiagonal));
}

} // namespace

std::array<QPointF, 8> vertexOctagon(const QPointF &centre)
{
    constexpr double s = octagonShortMm;
    constexpr double l = octagonLongMm;
    return {centre + QPointF(l, s),  centre + QPointF(s, l),   centre + QPointF(-s, l),
            centre + QPointF(-l, s), centre + QPointF(-l, -s), centre + QPointF(-s, -l),
            centre + QPointF(s, -l), centre + QPointF(l, -s)};
}

std::vector<QPointF> endDiamonds(const std::vector<QPointF> &points, bool highlighted)
{
    std::vector<QPointF> corners;
    if (points.empty())
        return corners;
    if (highlighted) {
        appendDiamond(points.front(), haloDiagonalMm, corners);
        appendDiamond(points.back(), haloDiagonalMm, corners);
    }
    appendDiamond(points.front(), endDiagonalMm, corners);
    appendDiamond(points.back(), endDiagonalMm, corners);
    return corners;
}
