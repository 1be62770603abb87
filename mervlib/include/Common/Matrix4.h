#pragma once

namespace TNT {
template <class T>
class Array2D;
}

namespace MERV {

// A homogeneous 4 x 4 matrix. As the pose functions store it, groups 0 to 2 hold the rotation and group 3 the
// translation (millimetres), so that a point is multiplied as a row vector from the left. All zero at first.
struct Matrix4
{
    double m[4][4]{};

    Matrix4() = default;
    // Element (i, j) goes to m[i][j]. Anything but a 4 x 4 matrix ends the program, in release builds too.
    explicit Matrix4(const TNT::Array2D<double> &tntMatrix);

    static Matrix4 identity();
};

// The product a * b, put into a, or into b when intoSecond. a and b may be the same matrix.
void multiply(Matrix4 &a, Matrix4 &b, bool intoSecond);

// m and result may be the same matrix.
void transpose(const Matrix4 &m, Matrix4 &result);

// Inverse of a rotation with a translation in group 3. m and result may be the same matrix.
void invertRigid(const Matrix4 &m, Matrix4 &result);

// Inverse of any matrix. False, with result unchanged, when m is singular or not finite. m and result may be
// the same matrix.
bool invert(const Matrix4 &m, Matrix4 &result);

} // namespace MERV
