#include "demo/PhantomBody.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace demo {
namespace {

constexpr double centreAcross = 0.5, centreDown = 0.30, centreUp = 0.5; // parts of the volume's extents

double dot(const Point &u, const Point &v)
{
    return u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
}

double square(double value)
{
    return value * value;
}

// Turned about x, then y, then z.
Point turned(Point p, const Point &degrees)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double angle = degrees[axis] * std::numbers::pi / 180.0;
        const std::size_t i = (axis + 1) % 3, j = (axis + 2) % 3;
        const double u = p[i], v = p[j];
        p[i] = std::cos(angle) * u - std::sin(angle) * v;
        p[j] = std::sin(angle) * u + std::cos(angle) * v;
    }
    return p;
}

} // namespace

PhantomBody::PhantomBody(const PhantomParameters &p)
    : a(p.halfWidthMm)
    , b(p.halfHeightMm)
    , front(p.frontDepthMm)
    , back(p.backDepthMm)
    , covered(p.coveredPart)
    , ridge(p.ridgeAcross)
    , ridgeThickness(p.ridgeThicknessMm)
    , rimThickness(p.rimThicknessMm)
    , outerRadius(std::max({a, b, front, back}) + std::max(ridgeThickness, rimThickness))
    , origin{centreAcross * p.width * p.spacingMm[0], centreDown * p.height * p.spacingMm[1],
             centreUp * p.slices * p.spacingMm[2]}
    , axes{turned({1, 0, 0}, p.tiltDegrees), turned({0, 0, 1}, p.tiltDegrees),
           turned({0, 1, 0}, p.tiltDegrees)}
    , mirrored(p.mirrored)
    , extentX(p.width * p.spacingMm[0])
{}

Point PhantomBody::toBody(const Point &point) const
{
    const Point offset{(mirrored ? extentX - point[0] : point[0]) - origin[0], point[1] - origin[1],
                       point[2] - origin[2]};
    return {dot(offset, axes[0]), dot(offset, axes[1]), dot(offset, axes[2])};
}

Point PhantomBody::toVolume(const Point &local) const
{
    Point point = origin;
    for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t i = 0; i < 3; ++i)
            point[i] += local[k] * axes[k][i];
    if (mirrored)
        point[0] = extentX - point[0];
    return point;
}

double PhantomBody::scaledRadiusSquared(const Point &local, double shrinkMm) const
{
    return square(local[0] / (a - shrinkMm)) + square(local[1] / (b - shrinkMm)) +
           square(local[2] / ((local[2] > 0.0 ? back : front) - shrinkMm));
}

bool PhantomBody::isBone(const Point &point) const
{
    return scaledRadiusSquared(toBody(point), 0.0) <= 1.0;
}

bool PhantomBody::isShell(const Point &point, double thicknessMm) const
{
    return isBone(point) && scaledRadiusSquared(toBody(point), thicknessMm) > 1.0;
}

bool PhantomBody::isCartilage(const Point &point) const
{
    const std::optional<Foot> foot = footBehind(point);
    return foot && isCovered(foot->place) && foot->distanceMm <= thicknessMm(foot->place);
}

// With half axes e the foot of X is e^2 X / (e^2 + t), where t >= 0 solves sum (e X / (e^2 + t))^2 = 1. The
// sum falls and is convex in t, so Newton's steps from 0 approach the solution from one side.
std::optional<PhantomBody::Foot> PhantomBody::footBehind(const Point &point) const
{
    const Point x = toBody(point);
    if (x[2] <= 0.0 || scaledRadiusSquared(x, 0.0) <= 1.0)
        return std::nullopt;
    const Point e2{a * a, b * b, back * back};
    double t = 0.0;
    for (int step = 0; step < 60; ++step) {
        double value = -1.0, slope = 0.0;
        for (std::size_t i = 0; i < 3; ++i) {
            const double term = e2[i] * square(x[i] / (e2[i] + t));
            value += term;
            slope -= 2.0 * term / (e2[i] + t);
        }
        const double next = t - value / slope;
        if (!(next > t * (1.0 + 1e-15)))
            break;
        t = next;
    }
    double distance = 0.0;
    Point foot{};
    for (std::size_t i = 0; i < 3; ++i) {
        foot[i] = e2[i] * x[i] / (e2[i] + t);
        distance += square(x[i] - foot[i]);
    }
    return Foot{{foot[0] / a, foot[1] / b}, std::sqrt(distance)};
}

bool PhantomBody::isCovered(const BonePlace &place) const
{
    return square(place.across) + square(place.up) <= square(covered);
}

// With s the part of the way from the ridge through the place to the rim (0 at the ridge, 1 at the rim), the
// thickness is rim + (ridge - rim) (1 - s^2).
double PhantomBody::thicknessMm(const BonePlace &place) const
{
    const double u = place.across - ridge, v = place.up;
    const double length2 = u * u + v * v;
    if (length2 == 0.0)
        return ridgeThickness;
    const double along = ridge * u;
    const double toRim = (-along + std::sqrt(along * along + length2 * (covered * covered - ridge * ridge)));
    const double s = std::min(length2 / toRim, 1.0);
    return rimThickness + (ridgeThickness - rimThickness) * (1.0 - s * s);
}

Point PhantomBody::pointAbove(const BonePlace &place, double heightMm) const
{
    const double behind = std::sqrt(1.0 - square(place.across) - square(place.up));
    const Point normal{place.across / a, place.up / b, behind / back};
    const double length = std::sqrt(dot(normal, normal));
    return toVolume({a * place.across + heightMm * normal[0] / length,
                     b * place.up + heightMm * normal[1] / length,
                     back * behind + heightMm * normal[2] / length});
}

double PhantomBody::areaDensity(const BonePlace &place) const
{
    const double behind = std::sqrt(1.0 - square(place.across) - square(place.up));
    return a * b * back / behind *
           std::sqrt(square(place.across / a) + square(place.up / b) + square(behind / back));
}

// Curvatures of an ellipsoid at (x, y, z), with h^2 = x^2/a^4 + y^2/b^4 + z^2/c^4:
// mean (a^2 + b^2 + c^2 - x^2 - y^2 - z^2) / (2 (a b c)^2 h^3), Gaussian 1 / ((a b c)^2 h^4).
double PhantomBody::meanCurvature(const BonePlace &place) const
{
    const double q2 = 1.0 - square(place.across) - square(place.up);
    const double h2 = square(place.across / a) + square(place.up / b) + q2 / square(back);
    const double numerator = square(a) * (1.0 - square(place.across)) + square(b) * (1.0 - square(place.up)) +
                             square(back) * (1.0 - q2);
    return numerator / (2.0 * square(a * b * back) * h2 * std::sqrt(h2));
}

double PhantomBody::gaussianCurvature(const BonePlace &place) const
{
    const double h2 = square(place.across / a) + square(place.up / b) +
                      (1.0 - square(place.across) - square(place.up)) / square(back);
    return 1.0 / square(a * b * back * h2);
}

} // namespace demo
