#include "Common/Tools.h"

#include "mervlib/src/detail/PoseAngles.h"

#include <cmath>
#include <iostream>

namespace MERV {

namespace {

// The stored sense: a point as a row vector times the groups is R2 times the point.
Matrix4 oldMatrix(const float pose[6])
{
    Matrix4 m;
    detail::setOldRotation(m, detail::PoseAngles(pose));
    transpose(m, m);
    return m;
}

void warn(const char *operation)
{
    std::cout << "Warning: The bloody old Tools::" << operation << " method was called!" << '\n';
}

} // namespace

void Tools::rigidTransform(float p[3], const float pose[6], int mode)
{
    warn("rigidTransform");
    detail::transformPoint(p, oldMatrix(pose), detail::translationOf(pose), mode);
}

void Tools::hom2euler(float pose[6], const Matrix4 &m)
{
    warn("hom2euler");
    detail::setPose(pose, m, std::atan2(-m.m[1][2], m.m[2][2]), detail::clampedAsin(m.m[0][2]),
                    std::atan2(-m.m[0][1], m.m[0][0]));
}

void Tools::euler2hom(const float pose[6], Matrix4 &m, bool rotateTranslation)
{
    warn("euler2hom");
    m = oldMatrix(pose);
    detail::setTranslation(m, pose, rotateTranslation);
}

} // namespace MERV
