#include "view/camera/Projection.h"

#include <algorithm>

namespace {

constexpr double farDistance = 5000.0; // pixels behind and, at most, before the screen

// The two entries of row 2, which order depth.
struct DepthRow
{
    double ofY;
    double constant;
};

DepthRow depthRow(double p)
{
    const double f = farDistance;
    const double n = std::min(2.0 / p / 3.0, farDistance);
    const double a =
        (p * n - 3.0 * p * f - 2.0 + p * p * n * f - p * p * f) / (f + n + p * n * f + p * f * f);
    const double numerator = 8.0 * p * f * n - 3.0 * p * f * f - 2.0 * f + 8.0 * p * p * f * f * n -
                             p * p * f * f * f - p * n * n + 2.0 * n - 3.0 * p * p * f * n * n -
                             2.0 * p * p * p * f * f * n * n + 2.0 * p * p * p * f * f * f * n;
    const double denominator = 2.0 * f + 2.0 * n + 2.0 * p * f * n + 3.0 * p * f * f + p * p * f * f * f -
                               p * n * n - p * p * f * n * n;
    return {a, numerator / denominator};
}

} // namespace

Matrix4 projectionMatrix(int width, int height, double shearX, double shearY, double strength)
{
    Matrix4 result;
    result.m[0][0] = 2.0 / width;
    result.m[0][2] = 2.0 * shearX / width;
    result.m[1][1] = 2.0 / height;
    result.m[1][2] = 2.0 * shearY / height;
    // On purpose in the column of y and not of z: the whole view is tuned to this order of depths, clipping
    // at strong perspectives included.
    const DepthRow depth = depthRow(strength);
    result.m[2][1] = depth.ofY;
    result.m[2][3] = depth.constant;
    result.m[3][2] = -strength;
    result.m[3][3] = 1.0;
    return result;
}

Matrix4 invertibleProjection(const Matrix4 &projection)
{
    // So small that depths keep within -1 and 1 up to 1e16 pixels, where single precision has long lost the
    // picture, and not smaller: drivers take a determinant below 1e-25 for none, in views with a shear.
    constexpr double depthPerPixel = 1e-16;
    Matrix4 result = projection;
    for (double &entry : result.m[2])
        entry = 0.0;
    result.m[2][2] = depthPerPixel;
    return result;
}

Vector4 eyeOf(double shearX, double shearY, double strength)
{
    return {-shearX, -shearY, 1.0, strength};
}

Vector4 meetingPoint(const Vector4 &eye, const Vector4 &mouse, const Plane &plane)
{
    const Vector4 coefficients{plane.a, plane.b, plane.c, plane.d};
    double eyeValue = 0.0;
    double mouseValue = 0.0;
    for (std::size_t i = 0; i < 4; ++i) {
        eyeValue += eye[i] * coefficients[i];
        mouseValue += mouse[i] * coefficients[i];
    }
    Vector4 point{};
    for (std::size_t i = 0; i < 4; ++i)
        point[i] = eye[i] * mouseValue - mouse[i] * eyeValue;
    return point;
}

Vector4 divided(const Vector4 &point)
{
    const double w = point[3];
    return {point[0] / w, point[1] / w, point[2] / w, w / w};
}
