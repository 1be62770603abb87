#pragma once

#include "Common/Matrix4.h"

#include <array>
#include <optional>

// A homogeneous position x, y, z, w.
using Vector4 = std::array<double, 4>;

// Matrices of the view are rows by columns, m[row][column], and act on column vectors; a new step is
// multiplied from the left.
using MERV::Matrix4;

// The plane a x + b y + c z + d = 0.
struct Plane
{
    double a = 0.0;
    double b = 0.0;
    double c = 1.0;
    double d = 0.0;

    bool operator==(const Plane &) const = default;
};

Matrix4 product(const Matrix4 &left, const Matrix4 &right);
Vector4 transformed(const Matrix4 &matrix, const Vector4 &vector);
// Nothing for a matrix that is singular or not finite.
std::optional<Matrix4> inverseOf(const Matrix4 &matrix);
// The plane in the space that matrix leads to, by the inverse of that matrix.
Plane transformedPlane(const Matrix4 &inverse, const Plane &plane);
bool isFinite(const Vector4 &vector);

Matrix4 translation(double x, double y, double z);
Matrix4 scaling(double factor);
// Rx Ry Rz of right-handed angles in radians.
Matrix4 rotation(double x, double y, double z);
