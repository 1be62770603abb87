#pragma once

#include "meshes/TriMeshFragment.h"
#include "objects/SparselySampledImageObject.h"
#include "platform/OpenGl.h"

#include <array>

// The drawing of a coloured mesh as it is defined: face by face and vertex by vertex, with the front face and
// the material set anew for each. Slow, and independent of the program's own.
namespace PlainColoring {

constexpr int breakCount = 11;
constexpr double breaks[breakCount] = {0.0, 0.24, 0.25, 0.26, 0.49, 0.5, 0.51, 0.74, 0.75, 0.76, 1.0};
constexpr float colours[breakCount][4] = {{0, 0, 1, 1}, {0, 1, 1, 1}, {0, 0, 0, 1}, {0, 1, 1, 1},
                                          {0, 1, 0, 1}, {0, 0, 0, 1}, {0, 1, 0, 1}, {1, 1, 0, 1},
                                          {0, 0, 0, 1}, {1, 1, 0, 1}, {1, 0, 0, 1}};

struct Point
{
    double x, y, z;
};

inline Point operator*(const Point &p, double t)
{
    return {p.x * t, p.y * t, p.z * t};
}

inline Point operator+(const Point &p, const Point &q)
{
    return {p.x + q.x, p.y + q.y, p.z + q.z};
}

inline void setColour(int k, double value)
{
    float colour[4];
    for (int c = 0; c < 4; ++c) {
        if (k <= 0) {
            colour[c] = colours[0][c];
        } else if (k >= breakCount) {
            colour[c] = colours[breakCount - 1][c];
        } else {
            const double t = (value - breaks[k - 1]) / (breaks[k] - breaks[k - 1]);
            colour[c] = static_cast<float>((1.0 - t) * static_cast<double>(colours[k - 1][c]) +
                                           t * static_cast<double>(colours[k][c]));
        }
    }
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, colour);
}

inline void vertex(const Point &p)
{
    glVertex3d(p.x, p.y, p.z);
}

inline void normalOf(const MERV::BRep::TriFace &face)
{
    const MERV::BRep::Point normal = face.normal();
    glNormal3d(normal.x, normal.y, normal.z);
}

inline void drawBanded(const MERV::BRep::TriFace &face, const Point (&points)[3], const double (&f)[3])
{
    int lo = 2, mid = 1, hi = 0;
    bool w = true;
    if (f[0] == f[1] && f[1] < f[2]) {
        lo = 0, mid = 1, hi = 2, w = false;
    } else if (f[1] > f[0] && f[2] > f[0]) {
        lo = 0;
        w = !(f[2] > f[1]);
        mid = w ? 2 : 1;
        hi = w ? 1 : 2;
    } else if (f[0] > f[1] && f[2] > f[1]) {
        lo = 1;
        w = f[2] > f[0];
        mid = w ? 0 : 2;
        hi = w ? 2 : 0;
    } else if (f[1] > f[0]) {
        mid = 0, hi = 1, w = false;
    }
    int k = 0;
    while (k < breakCount && f[lo] >= breaks[k])
        ++k;

    glShadeModel(GL_SMOOTH);
    glFrontFace(w ? GL_CW : GL_CCW);
    glBegin(GL_TRIANGLE_STRIP);
    normalOf(face);
    Point A = points[lo], X = A;
    double a = f[lo];
    setColour(k, a);
    vertex(A);
    while (k < breakCount && f[mid] > breaks[k]) {
        const double b = breaks[k];
        double t = (b - a) / (f[mid] - a);
        X = points[mid] * t + X * (1.0 - t);
        setColour(k, b);
        vertex(X);
        t = (b - a) / (f[hi] - a);
        A = points[hi] * t + A * (1.0 - t);
        vertex(A);
        a = b;
        ++k;
    }
    setColour(k, f[mid]);
    vertex(points[mid]);
    double m = f[mid];
    Point M = points[mid];
    while (k < breakCount && f[hi] > breaks[k]) {
        const double b = breaks[k];
        double t = (b - a) / (f[hi] - a);
        A = points[hi] * t + A * (1.0 - t);
        setColour(k, b);
        vertex(A);
        a = b;
        t = (b - m) / (f[hi] - m);
        M = points[hi] * t + M * (1.0 - t);
        vertex(M);
        m = b;
        ++k;
    }
    setColour(k, f[hi]);
    vertex(points[hi]);
    glEnd();
}

inline void drawUnmeasured(const MERV::BRep::TriFace &face, const Point (&points)[3])
{
    constexpr float red[4] = {1, 0, 0, 1};
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, red);
    glFrontFace(GL_CCW); // the face's own, not the last strip's
    glEnable(GL_POLYGON_STIPPLE);
    glBegin(GL_TRIANGLES);
    normalOf(face);
    for (const Point &point : points)
        vertex(point);
    glEnd();
    glDisable(GL_POLYGON_STIPPLE);
}

inline void drawFace(const MERV::BRep::TriFace &face, const SparselySampledImageObject &samples, double M)
{
    Point points[3];
    double f[3];
    bool isMeasured = true;
    for (int i = 0; i < 3; ++i) {
        const MERV::BRep::Point &p = face.vertex(i);
        points[i] = {p.x / p.w, p.y / p.w, p.z / p.w};
        const Vector3 key{points[i].x, points[i].y, points[i].z};
        isMeasured = isMeasured && samples.hasSample(key);
        f[i] = samples.sampleAt(key) / M;
    }
    if (isMeasured)
        drawBanded(face, points, f);
    else
        drawUnmeasured(face, points);
}

inline void draw(const TriMeshFragment &fragment, const SparselySampledImageObject &samples)
{
    const TriMeshFragment snapshot(fragment);
    std::array<GLubyte, 128> stipple{};
    for (std::size_t i = 0; i < stipple.size(); ++i)
        stipple[i] = static_cast<GLubyte>(1 << (i / 4 % 8));
    glPolygonStipple(stipple.data());
    constexpr float specular[4] = {0.2f, 0.2f, 0.2f, 1.0f};
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 2.0f);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    for (const GLenum state :
         std::initializer_list<GLenum>{GL_LIGHTING, GL_LIGHT0, GL_NORMALIZE, GL_DEPTH_TEST})
        glEnable(state);
    double M = 0.0;
    for (const auto &[position, value] : *samples.samples()) {
        if (value > M)
            M = value;
    }
    for (const MERV::BRep::TriFace &face : snapshot.all())
        drawFace(face, samples, M);
    for (const GLenum state :
         std::initializer_list<GLenum>{GL_LIGHTING, GL_LIGHT0, GL_NORMALIZE, GL_DEPTH_TEST})
        glDisable(state);
}

} // namespace PlainColoring
