#include "demo/pilot/TracePath.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double wanderMm = 4.0; // the deviation goes from one random value to the next over this length

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

double shoelace(const Polyline &outline)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const QPointF &a = outline[i];
        const QPointF &b = outline[(i + 1) % outline.size()];
        sum += a.x() * b.y() - b.x() * a.y();
    }
    return std::abs(sum) / 2.0;
}

// The point at a length from the start and the unit direction of its edge.
std::pair<QPointF, QPointF> walk(const Polyline &line, double length)
{
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const double edge = distance(line[i], line[i + 1]);
        if (edge > 0.0 && (length <= edge || i + 2 == line.size())) {
            const QPointF direction = (line[i + 1] - line[i]) / edge;
            return {line[i] + direction * std::min(length, edge), direction};
        }
        length -= edge;
    }
    return {line.back(), QPointF(1, 0)};
}

} // namespace

double lengthOf(const Polyline &line)
{
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < line.size(); ++i)
        sum += distance(line[i], line[i + 1]);
    return sum;
}

Polyline unsteadyPath(const Polyline &line, int side, double unitMm, double stepMm, std::uint32_t seed)
{
    const double length = lengthOf(line);
    std::minstd_rand generator(seed);
    const auto random = [&] { return 1.0 + double(generator() % 1000) / 999.0; };
    std::vector<double> knots(std::size_t(length / wanderMm) + 2);
    std::generate(knots.begin(), knots.end(), random);

    Polyline path;
    const int steps = std::max(1, int(length / stepMm));
    for (int i = 0; i <= steps; ++i) {
        const double at = length * i / steps;
        const auto knot = std::size_t(at / wanderMm);
        const double t = at / wanderMm - double(knot);
        const double deviation = unitMm * side * ((1.0 - t) * knots[knot] + t * knots[knot + 1]);
        const auto [point, direction] = walk(line, at);
        path.push_back(point + QPointF(-direction.y(), direction.x()) * deviation);
    }
    return path;
}

Polyline leadingOn(const Polyline &path, const QPointF &from, const QPointF &to, double backMm)
{
    const QPointF way = (to - from) / distance(from, to);
    const auto first = std::find_if(path.begin(), path.end(), [&](const QPointF &point) {
        return QPointF::dotProduct(point - from, way) >= -backMm;
    });
    return {first, path.end()};
}

double enclosedArea(const Polyline &first, const Polyline &second)
{
    Polyline outline = first;
    outline.insert(outline.end(), second.rbegin(), second.rend());
    return shoelace(outline);
}
