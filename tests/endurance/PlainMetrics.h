#pragma once

#include "tests/endurance/PlainContours.h"

#include <cmath>
#include <vector>

// The measures of plain contours, in double precision and by the formulas as they stand. Lengths in mm.

class PlainMetrics
{
public:
    explicit PlainMetrics(const PlainContours &measured)
        : contours(measured)
        , levels(measured.levels())
    {}

    const std::vector<float> &zLevels() const { return levels; }

    // Of the slab of level i.
    double spacing(std::size_t i) const
    {
        const std::size_t last = levels.size() - 1;
        if (last < 1)
            return 0.0;
        const std::size_t from = i == 0 ? 0 : i - 1, to = i == last ? last : i + 1;
        const double distance = static_cast<double>(levels[to]) - static_cast<double>(levels[from]);
        return i == 0 || i == last ? distance : distance / 2;
    }
    double area(const PlainContour &contour, float z) const
    {
        const std::vector<const PlainLine *> loop = firstLoop(linesAt(contour, z));
        const std::vector<QPointF> outline = outlineOf(loop);
        double sum = 0.0;
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const QPointF &a = outline[i], &b = outline[(i + 1) % outline.size()];
            sum += a.x() * b.y() - b.x() * a.y();
        }
        return std::abs(sum / 2);
    }
    double volume(const PlainContour &contour) const
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < levels.size(); ++i)
            sum += area(contour, levels[i]) * spacing(i);
        return sum;
    }
    double correctedVolume(const PlainContour &contour) const
    {
        if (levels.size() < 2)
            return 0.0;
        const std::size_t last = levels.size() - 1;
        double sum = end(area(contour, levels[0]), area(contour, levels[1]), spacing(0)) +
                     end(area(contour, levels[last]), area(contour, levels[last - 1]), spacing(last));
        for (std::size_t i = 1; i < last; ++i)
            sum += area(contour, levels[i]) * spacing(i);
        return sum;
    }
    double length(const PlainFragment &fragment, float z) const
    {
        double sum = 0.0;
        for (const PlainLine &line : fragment.lines)
            if (line.z == z)
                sum += static_cast<double>(line.length());
        return sum;
    }
    double sweptArea(const PlainFragment &fragment) const
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < levels.size(); ++i)
            sum += length(fragment, levels[i]) * spacing(i);
        return sum;
    }

private:
    using Lines = std::vector<const PlainLine *>;

    // An area whose neighbour is 0 counts as large beside it; where both are 0 their ratio counts as 0.
    static double end(double area, double neighbour, double spacing)
    {
        return area > 0.0 ? area * spacing * 9 / 8 : neighbour * spacing * 17 / 24;
    }
    Lines linesAt(const PlainContour &contour, float z) const
    {
        Lines lines;
        for (const int id : contour.fragmentIds)
            if (const PlainFragment *fragment = contours.fragmentOf(id))
                for (const PlainLine &line : fragment->lines)
                    if (line.z == z)
                        lines.push_back(&line);
        return lines;
    }
    static QPointF firstOf(const PlainLine &line)
    {
        return line.points.empty() ? QPointF() : line.points.front();
    }
    static QPointF lastOf(const PlainLine &line)
    {
        return line.points.empty() ? QPointF() : line.points.back();
    }
    // From the first line on, each time the first one that begins or ends at the open end.
    static Lines firstLoop(Lines rest)
    {
        if (rest.size() < 2)
            return {};
        Lines loop{rest.front()};
        rest.erase(rest.begin());
        QPointF head = lastOf(*loop.front());
        while (!plainSame(head, firstOf(*loop.front()))) {
            const auto next = std::find_if(rest.begin(), rest.end(), [&](const PlainLine *line) {
                return plainSame(firstOf(*line), head) || plainSame(lastOf(*line), head);
            });
            if (next == rest.end())
                return {};
            head = plainSame(firstOf(**next), head) ? lastOf(**next) : firstOf(**next);
            loop.push_back(*next);
            rest.erase(next);
        }
        return loop;
    }
    static std::vector<QPointF> outlineOf(const Lines &loop)
    {
        std::vector<QPointF> outline;
        QPointF end = loop.empty() ? QPointF() : firstOf(*loop.front());
        for (const PlainLine *line : loop) {
            const bool reversed =
                (end - lastOf(*line)).manhattanLength() <= (end - firstOf(*line)).manhattanLength();
            std::vector<QPointF> points = line->points;
            if (reversed)
                std::reverse(points.begin(), points.end());
            outline.insert(outline.end(), points.begin(), points.end());
            end = reversed ? firstOf(*line) : lastOf(*line);
        }
        return outline;
    }

    const PlainContours &contours;
    std::vector<float> levels;
};
