#include "Common/Pose.h"

#include "mervlib/src/detail/PoseAngles.h"

#include <cmath>

namespace MERV {

namespace {

template <class Value>
void build(const Value pose[6], Matrix4 &m, bool rotateTranslation)
{
    const auto &[ca, sa, cb, sb, cc, sc] = detail::PoseAngles(pose);
    detail::setGroup(m, 0, {cc * cb, sc * cb, -sb});
    detail::setGroup(m, 1, {sb * sa * cc - sc * ca, sb * sa * sc + cc * ca, cb * sa});
    detail::setGroup(m, 2, {sb * ca * cc + sc * sa, sb * ca * sc - cc * sa, cb * ca});
    detail::setTranslation(m, pose, rotateTranslation);
}

template <class Value>
void read(Value pose[6], const Matrix4 &m)
{
    const double c = std::atan2(m.m[0][1], m.m[0][0]);
    const double cosine = std::cos(c);
    const double sine = std::sin(c);
    const double b = std::atan2(-m.m[0][2], sine * m.m[0][1] + cosine * m.m[0][0]);
    const double a = std::atan2(sine * m.m[2][0] - cosine * m.m[2][1], cosine * m.m[1][1] - sine * m.m[1][0]);
    detail::setPose(pose, m, a, b, c);
}

template <class Value>
void buildTransposed(const Value pose[6], Matrix4 &m, bool rotateTranslation)
{
    detail::setOldRotation(m, detail::PoseAngles(pose));
    detail::setTranslation(m, pose, rotateTranslation);
}

template <class Value>
void readSimple(Value pose[6], const Matrix4 &m)
{
    detail::setPose(pose, m, std::atan2(-m.m[2][1], m.m[2][2]), detail::clampedAsin(-m.m[2][0]),
                    std::atan2(-m.m[1][0], m.m[0][0]));
}

} // namespace

void rigidTransformPoint(float p[3], const float pose[6], int mode)
{
    Matrix4 rotation;
    build(pose, rotation, false);
    detail::transformPoint(p, rotation, detail::translationOf(pose), mode);
}

void rigidTransformPoint(float p[3], const Matrix4 &m, int mode)
{
    constexpr int rotateOnly = 2;
    detail::transformPoint(p, m, {m.m[3][0], m.m[3][1], m.m[3][2]}, mode == 0 ? 0 : rotateOnly);
}

void matrixFromPose(const float pose[6], Matrix4 &m, bool rotateTranslation)
{
    build(pose, m, rotateTranslation);
}

void matrixFromPose(const double pose[6], Matrix4 &m, bool rotateTranslation)
{
    build(pose, m, rotateTranslation);
}

void poseFromMatrix(float pose[6], const Matrix4 &m)
{
    read(pose, m);
}

void poseFromMatrix(double pose[6], const Matrix4 &m)
{
    read(pose, m);
}

void matrixFromPoseTransposed(const float pose[6], Matrix4 &m, bool rotateTranslation)
{
    buildTransposed(pose, m, rotateTranslation);
}

void matrixFromPoseTransposed(const double pose[6], Matrix4 &m, bool rotateTranslation)
{
    buildTransposed(pose, m, rotateTranslation);
}

void poseFromMatrixSimple(float pose[6], const Matrix4 &m)
{
    readSimple(pose, m);
}

void poseFromMatrixSimple(double pose[6], const Matrix4 &m)
{
    readSimple(pose, m);
}

} // namespace MERV
