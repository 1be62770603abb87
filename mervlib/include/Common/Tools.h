#pragma once

#include "Common/Matrix4.h"

namespace MERV {

// The pose functions of an old convention, R2 = Rz(-c) Ry(-b) Rx(-a). Each call prints a warning on standard
// output, which marks callers that have not moved to Pose.h.
struct Tools
{
    // Modes as in rigidTransformPoint, with R2 in the place of R.
    static void rigidTransform(float p[3], const float pose[6], int mode);

    // The pose of a matrix that euler2hom built without rotateTranslation.
    static void hom2euler(float pose[6], const Matrix4 &m);

    // R2 transposed into groups 0 to 2, the translation t into group 3, or R2 t with rotateTranslation.
    static void euler2hom(const float pose[6], Matrix4 &m, bool rotateTranslation);
};

} // namespace MERV
