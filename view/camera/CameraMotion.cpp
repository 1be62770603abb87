#include "view/camera/CameraMotion.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double reachedDistance = 0.001;
constexpr double share = 1.0 / 8.0;
constexpr double tickMs = 20.0;
constexpr double longestPauseTicks = 3000.0;

bool isReached(const Matrix4 &view, const Matrix4 &target)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            if (std::abs(target.m[row][column] - view.m[row][column]) > reachedDistance)
                return false;
    return true;
}

void stepTowards(Matrix4 &view, const Matrix4 &target)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            view.m[row][column] += (target.m[row][column] - view.m[row][column]) * share;
}

double usableExtent(double extent)
{
    return std::isfinite(extent) && extent > 0.0 ? extent : 0.0;
}

Matrix4 fromRows(const double (&rows)[3][3])
{
    Matrix4 result = Matrix4::identity();
    for (int row = 0; row < 3; ++row)
        std::copy_n(rows[row], 3, result.m[row]);
    return result;
}

// The rotation and scale of the axis view nearest to where the x axis of the world points.
Matrix4 axisView(const Vector4 &x)
{
    const double s = std::hypot(x[0], x[1], x[2]);
    if (x[0] > x[2])
        return scaling(s);
    if (x[1] <= x[2])
        return fromRows({{0.0, s, 0.0}, {-s, 0.0, 0.0}, {0.0, 0.0, s}});
    return fromRows({{0.0, 0.0, s}, {0.0, s, 0.0}, {-s, 0.0, 0.0}});
}

} // namespace

Approach approach(Matrix4 &view, const Matrix4 &target, double steps)
{
    Approach result;
    for (int i = 0; i < steps; ++i) {
        if (isReached(view, target)) {
            view = target;
            result.reached = true;
            break;
        }
        stepTowards(view, target);
        result.moved = true;
    }
    return result;
}

double animationSteps(double elapsedMs)
{
    const double steps = elapsedMs / tickMs;
    return steps < 0.0 || steps > longestPauseTicks ? 1.0 : steps;
}

Matrix4 fittedView(double extentX, double extentY, int width, int height)
{
    const double sceneWidth = usableExtent(extentX);
    const double sceneHeight = usableExtent(extentY);
    const Matrix4 centred = translation(-sceneWidth / 2.0, -sceneHeight / 2.0, 0.0);
    const double factor = std::min(height / sceneHeight, width / sceneWidth); // infinite for an extent of 0
    return product(scaling(std::isfinite(factor) ? factor : 1.0), centred);
}

Matrix4 snappedToAxis(const Matrix4 &target)
{
    Matrix4 turned = target; // without translation
    for (int row = 0; row < 3; ++row)
        turned.m[row][3] = 0.0;
    const auto back = inverseOf(turned);
    if (!back)
        return target;
    const Vector4 shift = transformed(*back, {target.m[0][3], target.m[1][3], target.m[2][3], 0.0});
    const Vector4 x = transformed(turned, {1.0, 0.0, 0.0, 0.0});
    return product(axisView(x), translation(shift[0], shift[1], shift[2]));
}

Plane turnedOntoAxis(const Plane &plane, const Vector4 &position)
{
    const double a = std::abs(plane.a);
    const double b = std::abs(plane.b);
    const double c = std::abs(plane.c);
    const auto sign = [](double old) { return old > 0.0 ? 1.0 : -1.0; };
    Plane turned{0.0, 0.0, 0.0, 0.0};
    const bool nearX = a > b && a > c && b != 0.0 && c != 0.0;
    const bool onZ = a == 0.0 && b == 0.0;
    if (nearX || onZ)
        turned.a = sign(plane.a);
    else if ((b > c && a != 0.0 && c != 0.0) || (b == 0.0 && c == 0.0))
        turned.b = sign(plane.b);
    else
        turned.c = sign(plane.c);
    turned.d = -(turned.a * position[0] + turned.b * position[1] + turned.c * position[2]);
    return turned;
}
