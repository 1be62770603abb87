#pragma once

#include "Common/Matrix4.h"

namespace MERV {

// A rigid pose is six values: translation tx, ty, tz, then the angles a, b, c in radians about x, y and z.
// Its rotation is R = Rz(c) Ry(b) Rx(a), acting on column vectors. All functions compute in double precision.

// Mode 0: p' = R p + t. Mode 1: p' = R (p + t). Any other: p' = R p. In place.
void rigidTransformPoint(float p[3], const float pose[6], int mode);

// The rotation of groups 0 to 2; mode 0 adds the translation of group 3 behind it, any other mode does not.
void rigidTransformPoint(float p[3], const Matrix4 &m, int mode);

// Rotation into groups 0 to 2, translation t into group 3, or R t with rotateTranslation.
void matrixFromPose(const float pose[6], Matrix4 &m, bool rotateTranslation);
void matrixFromPose(const double pose[6], Matrix4 &m, bool rotateTranslation);

// The pose of a matrix that matrixFromPose built without rotateTranslation.
void poseFromMatrix(float pose[6], const Matrix4 &m);
void poseFromMatrix(double pose[6], const Matrix4 &m);

// A second family for old callers, which does not mix with the first: the groups are the rows of
// R2 = Rz(-c) Ry(-b) Rx(-a). With rotateTranslation the translation is turned by the matrix as points are.
void matrixFromPoseTransposed(const float pose[6], Matrix4 &m, bool rotateTranslation);
void matrixFromPoseTransposed(const double pose[6], Matrix4 &m, bool rotateTranslation);

// Reads what matrixFromPoseTransposed built; the angle b comes back with its sign changed, on purpose.
void poseFromMatrixSimple(float pose[6], const Matrix4 &m);
void poseFromMatrixSimple(double pose[6], const Matrix4 &m);

} // namespace MERV
