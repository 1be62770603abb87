#pragma once

#include "meshes/geometry/ClosestPoint.h"

#include <jama_eig.h>

#include <array>
#include <cstddef>
#include <vector>

// The plain rounds of an alignment by iterated closest points: every corner of every free face is searched by
// a scan and summed by itself. What the fast alignment must reproduce bit by bit.
class PlainAlignment
{
public:
    using Faces = std::vector<MERV::BRep::TriFace>;

    PlainAlignment(const Faces &base, const Faces &free)
        : baseFaces(base)
    {
        for (const MERV::BRep::TriFace &face : free)
            for (int i = 0; i < 3; ++i)
                F.push_back(place(face.vertex(i)));
        for (const Vector &f : F)
            for (std::size_t k = 0; k < 3; ++k)
                c[k] += f[k];
        for (double &k : c)
            k /= static_cast<double>(F.size());
    }

    void round()
    {
        const auto N = static_cast<double>(F.size());
        std::array<Vector, 3> S{};
        Vector y{};
        for (const Vector &f : F) {
            const Vector q = moved(f);
            const MERV::BRep::Point at(q[0], q[1], q[2]);
            const Vector b = place(MERV::BRep::closestPointByScan(baseFaces, at).point);
            for (std::size_t i = 0; i < 3; ++i) {
                y[i] += b[i];
                for (std::size_t j = 0; j < 3; ++j)
                    S[i][j] += q[i] * b[j];
            }
        }
        const Vector m = moved(c);
        for (double &k : y)
            k /= N;
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t j = 0; j < 3; ++j)
                S[i][j] = S[i][j] / N - m[i] * y[j];
        step(rotation(leadingEigenvector(S)), y, m);
    }

    Faces faces() const
    {
        Faces all;
        for (std::size_t i = 0; i + 2 < F.size(); i += 3) {
            const Vector p = moved(F[i]), q = moved(F[i + 1]), r = moved(F[i + 2]);
            all.push_back({{p[0], p[1], p[2]}, {q[0], q[1], q[2]}, {r[0], r[1], r[2]}});
        }
        return all;
    }

private:
    using Vector = std::array<double, 3>;
    using Matrix3 = std::array<Vector, 3>;
    using Matrix4 = std::array<std::array<double, 4>, 4>;

    static Vector place(const MERV::BRep::Point &point)
    {
        return {point.x / point.w, point.y / point.w, point.z / point.w};
    }

    Vector moved(const Vector &p) const
    {
        Vector result{};
        for (std::size_t i = 0; i < 3; ++i)
            result[i] = T[i][0] * p[0] + T[i][1] * p[1] + T[i][2] * p[2] + T[i][3];
        return result;
    }

    static std::array<double, 4> leadingEigenvector(const Matrix3 &S)
    {
        const double trace = S[0][0] + S[1][1] + S[2][2];
        TNT::Array2D<double> Q(4, 4);
        Q[0][0] = trace;
        Q[0][1] = Q[1][0] = S[1][2] - S[2][1];
        Q[0][2] = Q[2][0] = S[2][0] - S[0][2];
        Q[0][3] = Q[3][0] = S[0][1] - S[1][0];
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) {
                const auto r = static_cast<std::size_t>(i), s = static_cast<std::size_t>(j);
                Q[i + 1][j + 1] = S[r][s] + S[s][r] - (i == j ? trace : 0.0);
            }
        JAMA::Eigenvalue<double> decomposition(Q);
        TNT::Array1D<double> values;
        TNT::Array2D<double> V;
        decomposition.getRealEigenvalues(values);
        decomposition.getV(V);
        int index = 0;
        double best = 0.0;
        for (int i = 0; i < 4; ++i)
            if (values[i] > best) {
                best = values[i];
                index = i;
            }
        return {V[0][index], V[1][index], V[2][index], V[3][index]};
    }

    static Matrix3 rotation(const std::array<double, 4> &q)
    {
        const auto [q0, q1, q2, q3] = q;
        return {{{q0 * q0 + q1 * q1 - q2 * q2 - q3 * q3, 2 * (q1 * q2 - q0 * q3), 2 * (q1 * q3 + q0 * q2)},
                 {2 * (q1 * q2 + q0 * q3), q0 * q0 + q2 * q2 - q1 * q1 - q3 * q3, 2 * (q2 * q3 - q0 * q1)},
                 {2 * (q1 * q3 - q0 * q2), 2 * (q2 * q3 + q0 * q1), q0 * q0 + q3 * q3 - q1 * q1 - q2 * q2}}};
    }

    // T := [R, y - R m] T
    void step(const Matrix3 &R, const Vector &y, const Vector &m)
    {
        Matrix4 left{};
        left[3][3] = 1.0;
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j)
                left[i][j] = R[i][j];
            left[i][3] = y[i] - (R[i][0] * m[0] + R[i][1] * m[1] + R[i][2] * m[2]);
        }
        Matrix4 product{};
        for (std::size_t i = 0; i < 4; ++i)
            for (std::size_t j = 0; j < 4; ++j)
                for (std::size_t k = 0; k < 4; ++k)
                    product[i][j] += left[i][k] * T[k][j];
        T = product;
    }

    const Faces &baseFaces;
    std::vector<Vector> F; // every corner of every free face
    Vector c{};            // their mean
    Matrix4 T{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
};
