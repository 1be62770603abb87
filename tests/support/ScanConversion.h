#pragma once

#include <QPointF>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

// What a picture of outlines should be, worked out without OpenGL; all coordinates in voxels. A pixel is
// inside where a ray from its centre towards larger x crosses the closed outlines an odd number of times.
class ScanConversion
{
public:
    ScanConversion(int newWidth, int newHeight)
        : width(newWidth)
        , height(newHeight)
        , inside(static_cast<std::size_t>(newWidth) * static_cast<std::size_t>(newHeight), 0)
    {}

    // Toggles what the outline, whose last point is joined to the first, covers.
    void toggle(const std::vector<QPointF> &outline)
    {
        std::vector<double> crossings;
        for (int y = 0; y < height; ++y) {
            crossingsAt(outline, y + 0.5, crossings);
            std::sort(crossings.begin(), crossings.end());
            for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
                toggleRow(y, crossings[i], crossings[i + 1]);
        }
    }

    bool isInside(int x, int y) const { return inside[index(x, y)] != 0; }

    // How far the centre of a pixel is from the nearest edge of the outlines.
    static double distanceToEdges(int x, int y, const std::vector<std::vector<QPointF>> &outlines)
    {
        const QPointF centre(x + 0.5, y + 0.5);
        double nearest = std::numeric_limits<double>::infinity();
        for (const std::vector<QPointF> &outline : outlines)
            for (std::size_t i = 0; i < outline.size(); ++i)
                nearest = std::min(nearest, distance(centre, outline[i], outline[(i + 1) % outline.size()]));
        return nearest;
    }

private:
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }

    static void crossingsAt(const std::vector<QPointF> &outline, double y, std::vector<double> &crossings)
    {
        crossings.clear();
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const QPointF &from = outline[i];
            const QPointF &to = outline[(i + 1) % outline.size()];
            if ((from.y() <= y) != (to.y() <= y))
                crossings.push_back(from.x() + (y - from.y()) / (to.y() - from.y()) * (to.x() - from.x()));
        }
    }

    void toggleRow(int y, double from, double to)
    {
        const auto first = static_cast<int>(std::ceil(std::clamp(from - 0.5, 0.0, width * 1.0)));
        const auto end = static_cast<int>(std::ceil(std::clamp(to - 0.5, 0.0, width * 1.0)));
        for (int x = first; x < end; ++x)
            inside[index(x, y)] ^= 1;
    }

    static double distance(const QPointF &point, const QPointF &from, const QPointF &to)
    {
        const QPointF along = to - from;
        const double square = QPointF::dotProduct(along, along);
        const double t =
            square > 0.0 ? std::clamp(QPointF::dotProduct(point - from, along) / square, 0.0, 1.0) : 0.0;
        const QPointF apart = point - (from + t * along);
        return std::hypot(apart.x(), apart.y());
    }

    int width;
    int height;
    std::vector<std::uint8_t> inside;
};
