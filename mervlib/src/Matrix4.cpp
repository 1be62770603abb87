#include "Common/Matrix4.h"

#include <tnt_array2d.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace MERV {

Matrix4::Matrix4(const TNT::Array2D<double> &tntMatrix)
{
    if (!(tntMatrix.dim1() == 4 && tntMatrix.dim2() == 4)) {
        std::cerr
            << "Assertion failed: (tntMatrix.dim1() == 4 && tntMatrix.dim2() == 4) && \"You screwed up! "
               "File: __FILE__ line: __LINE__\""
            << std::endl;
        std::abort();
    }
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            m[i][j] = tntMatrix[i][j];
}

Matrix4 Matrix4::identity()
{
    Matrix4 result;
    for (int i = 0; i < 4; ++i)
        result.m[i][i] = 1.0;
    return result;
}

void multiply(Matrix4 &a, Matrix4 &b, bool intoSecond)
{
    Matrix4 product;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            for (int k = 0; k < 4; ++k)
                product.m[i][j] += a.m[i][k] * b.m[k][j];
    (intoSecond ? b : a) = product;
}

void transpose(const Matrix4 &m, Matrix4 &result)
{
    Matrix4 transposed;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            transposed.m[i][j] = m.m[j][i];
    result = transposed;
}

void invertRigid(const Matrix4 &m, Matrix4 &result)
{
    Matrix4 inverse = Matrix4::identity();
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            inverse.m[i][j] = m.m[j][i];
            inverse.m[3][i] -= m.m[3][j] * m.m[i][j];
        }
    }
    result = inverse;
}

namespace {

using Rows = double[4][8];

// Brings the row with the largest entry of a column, from the diagonal on, to the diagonal.
void pivot(Rows &rows, int column)
{
    int best = column;
    for (int row = column + 1; row < 4; ++row)
        if (std::abs(rows[row][column]) > std::abs(rows[best][column]))
            best = row;
    std::swap(rows[column], rows[best]);
}

void eliminate(Rows &rows, int column)
{
    const double diagonal = rows[column][column];
    for (double &entry : rows[column])
        entry /= diagonal;
    for (int row = 0; row < 4; ++row) {
        const double factor = rows[row][column];
        for (int j = 0; row != column && j < 8; ++j)
            rows[row][j] -= factor * rows[column][j];
    }
}

} // namespace

bool invert(const Matrix4 &m, Matrix4 &result)
{
    Rows rows{};
    for (int i = 0; i < 4; ++i) {
        std::copy_n(m.m[i], 4, rows[i]);
        rows[i][4 + i] = 1.0;
    }
    for (int column = 0; column < 4; ++column) {
        pivot(rows, column);
        if (rows[column][column] == 0.0 || !std::isfinite(rows[column][column]))
            return false;
        eliminate(rows, column);
    }
    Matrix4 inverse;
    for (int i = 0; i < 4; ++i) {
        if (!std::all_of(rows[i] + 4, rows[i] + 8, [](double entry) { return std::isfinite(entry); }))
            return false;
        std::copy_n(rows[i] + 4, 4, inverse.m[i]);
    }
    result = inverse;
    return true;
}

} // namespace MERV
