#include "view/camera/Homogeneous.h"

#include <algorithm>
#include <cmath>

Matrix4 product(const Matrix4 &left, const Matrix4 &right)
{
    Matrix4 result;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            for (int k = 0; k < 4; ++k)
                result.m[row][column] += left.m[row][k] * right.m[k][column];
    return result;
}

Vector4 transformed(const Matrix4 &matrix, const Vector4 &vector)
{
    Vector4 result{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            result[row] += matrix.m[row][column] * vector[column];
    return result;
}

std::optional<Matrix4> inverseOf(const Matrix4 &matrix)
{
    Matrix4 inverse;
    if (!MERV::invert(matrix, inverse))
        return std::nullopt;
    return inverse;
}

Plane transformedPlane(const Matrix4 &inverse, const Plane &plane)
{
    Matrix4 transposed;
    MERV::transpose(inverse, transposed);
    const Vector4 result = transformed(transposed, {plane.a, plane.b, plane.c, plane.d});
    return {result[0], result[1], result[2], result[3]};
}

bool isFinite(const Vector4 &vector)
{
    return std::all_of(vector.begin(), vector.end(), [](double entry) { return std::isfinite(entry); });
}

Matrix4 translation(double x, double y, double z)
{
    Matrix4 result = Matrix4::identity();
    result.m[0][3] = x;
    result.m[1][3] = y;
    result.m[2][3] = z;
    return result;
}

Matrix4 scaling(double factor)
{
    Matrix4 result = Matrix4::identity();
    for (int i = 0; i < 3; ++i)
        result.m[i][i] = factor;
    return result;
}

namespace {

// The turn of axis `from` towards axis `to`.
Matrix4 turn(int from, int to, double angle)
{
    Matrix4 result = Matrix4::identity();
    result.m[from][from] = result.m[to][to] = std::cos(angle);
    result.m[to][from] = std::sin(angle);
    result.m[from][to] = -std::sin(angle);
    return result;
}

} // namespace

Matrix4 rotation(double x, double y, double z)
{
    constexpr int xAxis = 0, yAxis = 1, zAxis = 2;
    return product(product(turn(yAxis, zAxis, x), turn(zAxis, xAxis, y)), turn(xAxis, yAxis, z));
}
