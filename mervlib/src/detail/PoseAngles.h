// What the pose functions of both conventions share.
#pragma once

#include "Common/Matrix4.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace MERV::detail {

using Vector3 = std::array<double, 3>;

// Cosines and sines of the three angles of a pose.
struct PoseAngles
{
    double ca;
    double sa;
    double cb;
    double sb;
    double cc;
    double sc;

    template <class Value>
    explicit PoseAngles(const Value pose[6])
        : ca(std::cos(static_cast<double>(pose[3])))
        , sa(std::sin(static_cast<double>(pose[3])))
        , cb(std::cos(static_cast<double>(pose[4])))
        , sb(std::sin(static_cast<double>(pose[4])))
        , cc(std::cos(static_cast<double>(pose[5])))
        , sc(std::sin(static_cast<double>(pose[5])))
    {}
};

inline void setGroup(Matrix4 &m, int group, const Vector3 &values)
{
    std::copy(values.begin(), values.end(), m.m[group]);
    m.m[group][3] = group == 3 ? 1.0 : 0.0;
}

// The groups 0 to 2 of the rows of R2 = Rz(-c) Ry(-b) Rx(-a).
inline void setOldRotation(Matrix4 &m, const PoseAngles &angles)
{
    const auto &[ca, sa, cb, sb, cc, sc] = angles;
    setGroup(m, 0, {cc * cb, sb * sa * cc + sc * ca, sc * sa - sb * ca * cc});
    setGroup(m, 1, {-sc * cb, cc * ca - sb * sa * sc, sb * ca * sc + cc * sa});
    setGroup(m, 2, {sb, -cb * sa, cb * ca});
}

// A point as a row vector times groups 0 to 2.
inline Vector3 rotated(const Vector3 &p, const Matrix4 &m)
{
    Vector3 result{};
    for (std::size_t j = 0; j < 3; ++j)
        result[j] = p[0] * m.m[0][j] + p[1] * m.m[1][j] + p[2] * m.m[2][j];
    return result;
}

template <class Value>
Vector3 translationOf(const Value pose[6])
{
    return {static_cast<double>(pose[0]), static_cast<double>(pose[1]), static_cast<double>(pose[2])};
}

// Group 3: the translation of a pose, or what the rotation of m makes of it.
template <class Value>
void setTranslation(Matrix4 &m, const Value pose[6], bool rotateTranslation)
{
    const Vector3 translation = translationOf(pose);
    setGroup(m, 3, rotateTranslation ? rotated(translation, m) : translation);
}

template <class Value>
void setPose(Value pose[6], const Matrix4 &m, double a, double b, double c)
{
    for (int i = 0; i < 3; ++i)
        pose[i] = static_cast<Value>(m.m[3][i]);
    pose[3] = static_cast<Value>(a);
    pose[4] = static_cast<Value>(b);
    pose[5] = static_cast<Value>(c);
}

// Rounding may put the sine of a right angle a little beyond 1.
inline double clampedAsin(double value)
{
    return std::asin(std::clamp(value, -1.0, 1.0));
}

// Mode 0: p m + t. Mode 1: (p + t) m. Any other: p m. In place.
inline void transformPoint(float p[3], const Matrix4 &m, const Vector3 &translation, int mode)
{
    Vector3 point{p[0], p[1], p[2]};
    for (std::size_t i = 0; i < 3 && mode == 1; ++i)
        point[i] += translation[i];
    point = rotated(point, m);
    for (std::size_t i = 0; i < 3; ++i)
        p[i] = static_cast<float>(mode == 0 ? point[i] + translation[i] : point[i]);
}

} // namespace MERV::detail
