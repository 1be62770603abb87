#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "tests/support/GlCanvas.h"
#include "tests/support/GoldenPicture.h"
#include "tests/support/RibbonMesh.h"

#include <QTest>

#include <malloc.h>

#include <array>
#include <initializer_list>
#include <limits>
#include <memory>
#include <vector>

using MERV::BRep::Point;
using MERV::BRep::TriFace;

namespace {

// A canvas of 100 x 100 pixels that shows 0..10 mm from +z; (x, y) in mm from the lower left is probed at its
// pixel.
struct Sheet
{
    Sheet()
        : canvas(100, 100)
    {
        canvas.ortho(0, 10, 0, 10, 100);
        glDisable(GL_DITHER);
        glColor4ub(128, 64, 0, 255);
    }

    QColor at(double x, double y) const
    {
        return probe(canvas.picture(), static_cast<int>(x * 10), 99 - static_cast<int>(y * 10));
    }

    GlCanvas canvas;
};

// a, b, c, d around, as two triangles.
void addQuad(TriMeshFragment &fragment, const Point &a, const Point &b, const Point &c, const Point &d)
{
    fragment.addFace({a, b, c});
    fragment.addFace({a, c, d});
}

// Three strips from x = 1 to x = 9 that fall away from the eye more and more. Their normals are (0, 0, 1) for
// y from 0 to 3, (0, 3, 4) / 5 for y from 3 to 7, and (0, 4, 3) / 5 for y from 7 to 10.
void addStrips(TriMeshFragment &fragment)
{
    const std::array<std::array<double, 2>, 4> profile{{{0, 0}, {3, 0}, {7, -3}, {10, -7}}};
    for (std::size_t i = 1; i < profile.size(); ++i) {
        const auto [y0, z0] = profile[i - 1];
        const auto [y1, z1] = profile[i];
        addQuad(fragment, {1, y0, z0}, {9, y0, z0}, {9, y1, z1}, {1, y1, z1});
    }
}

// The drawing as it is defined, one pair of begin and end and one normal for each face.
void drawFaceByFace(const TriMeshFragment &fragment)
{
    std::array<GLfloat, 4> colour{};
    const std::array<GLfloat, 4> specular{0.5f, 0.5f, 0.5f, 1.0f};
    glGetFloatv(GL_CURRENT_COLOR, colour.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, colour.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular.data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 10.0f);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    const GlEnableScope lighting(GL_LIGHTING), light(GL_LIGHT0), normalize(GL_NORMALIZE),
        depth(GL_DEPTH_TEST);
    for (int i = 0; i < fragment.faceCount(); ++i) {
        const TriFace &face = fragment.face(i);
        const GlPrimitive triangle(GL_TRIANGLES);
        const Point normal = face.normal();
        glNormal3d(normal.x, normal.y, normal.z);
        for (int k = 0; k < 3; ++k)
            glVertex4d(face.vertex(k).x, face.vertex(k).y, face.vertex(k).z, face.vertex(k).w);
    }
}

// Four walls from z = 0 to z = 4 around a square, each of two triangles that begin at a corner above. Of the
// wall at the top of the picture, the first triangle begins with its edge along the floor.
void addWalls(TriMeshFragment &fragment)
{
    const std::array<std::array<double, 2>, 4> corner{
        {{2.05, 2.05}, {8.05, 2.05}, {8.05, 8.05}, {2.05, 8.05}}};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto [x0, y0] = corner[i];
        const auto [x1, y1] = corner[(i + 1) % 4];
        const Point a(x0, y0, 0), b(x1, y1, 0), c(x1, y1, 4), d(x0, y0, 4);
        const bool floorFirst = i == 2;
        fragment.addFace(floorFirst ? TriFace(a, b, c) : TriFace(c, a, b));
        fragment.addFace({d, a, c});
    }
}

// Everything that drawing may change, as numbers.
std::vector<double> openGlState()
{
    std::vector<double> state;
    for (const GLenum name : std::initializer_list<GLenum>{
             GL_CURRENT_COLOR, GL_CURRENT_NORMAL, GL_LIGHTING, GL_LIGHT0, GL_NORMALIZE, GL_DEPTH_TEST,
             GL_LIGHT_MODEL_TWO_SIDE, GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_VERTEX_ARRAY_SIZE,
             GL_VERTEX_ARRAY_STRIDE, GL_NORMAL_ARRAY_STRIDE, GL_ATTRIB_STACK_DEPTH,
             GL_CLIENT_ATTRIB_STACK_DEPTH}) {
        std::array<GLdouble, 16> values{};
        glGetDoublev(name, values.data());
        state.insert(state.end(), values.begin(), values.end());
    }
    for (const GLenum side : std::initializer_list<GLenum>{GL_FRONT, GL_BACK})
        for (const GLenum name :
             std::initializer_list<GLenum>{GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_SHININESS}) {
            std::array<GLfloat, 4> values{};
            glGetMaterialfv(side, name, values.data());
            state.insert(state.end(), values.begin(), values.end());
        }
    return state;
}

std::size_t heapBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

constexpr double plane[4] = {0, 0, 1, -1}; // z = 1

} // namespace

class TriMeshDrawingTest : public QObject
{
    Q_OBJECT

private slots:
    // Light 0 shines along -z, and the eye is there too, so that the cosines with the light and with the
    // half way are both that of the normal with z: 1, 0.8 and 0.6. Of each channel m comes
    // 0.2 m (ambient light of the model) + cosine m + 0.5 cosine^10. With m = 128 / 255 and 64 / 255:
    //   1:   0.602 + 0.5 > 1;                  0.301 + 0.5 = 0.801, 204;      0.5, 127.5
    //   0.8: 0.502 + 0.0537 = 0.556, 142;      0.251 + 0.0537 = 0.305, 78;    0.0537, 14
    //   0.6: 0.402 + 0.0030 = 0.405, 103;      0.201 + 0.0030 = 0.204, 52;    0.0030, 1
    void facesAreLitByTheirNormals()
    {
        Sheet sheet;
        QVERIFY(sheet.canvas.isValid());
        TriMeshFragment fragment;
        addStrips(fragment);
        fragment.render(nullptr);
        QVERIFY(isNear(sheet.at(2, 1.5), 255, 204, 128));
        QVERIFY(isNear(sheet.at(8, 0.5), 255, 204, 128));
        QVERIFY(isNear(sheet.at(5, 3.5), 142, 78, 14));
        QVERIFY(isNear(sheet.at(5, 6.5), 142, 78, 14));
        QVERIFY(isNear(sheet.at(2, 9.5), 103, 52, 1));
        QVERIFY(isNear(sheet.at(8, 7.5), 103, 52, 1));
        QVERIFY(isNear(sheet.at(0.5, 5), 0, 0, 0));
        QCOMPARE(goldenFault(sheet.canvas.picture(), "mesh_lit_strips"), QString());
        QCOMPARE(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    // Seen from behind, a face is lit as if it was wound the other way.
    void bothSidesAreLit()
    {
        TriMeshFragment front, back;
        addStrips(front);
        for (int i = 0; i < front.faceCount(); ++i)
            back.addFace({front.face(i).vertex(0), front.face(i).vertex(2), front.face(i).vertex(1)});
        std::array<QImage, 2> pictures;
        for (std::size_t i = 0; i < 2; ++i) {
            Sheet sheet;
            (i == 0 ? front : back).render(nullptr);
            pictures[i] = sheet.canvas.picture();
        }
        QCOMPARE(pictures[0], pictures[1]);
    }

    void nearerFacesHideOthers()
    {
        Sheet sheet;
        TriMeshFragment near, far;
        addQuad(near, {0, 0, 5}, {5, 0, 5}, {5, 10, 5}, {0, 10, 5});
        addQuad(far, {0, 0, -3}, {10, 0, -3}, {10, 10, -3}, {0, 10, -3});
        near.render(nullptr);
        glColor4ub(0, 0, 100, 255);
        far.render(nullptr);
        // 1.2 * 100 + 127.5 of blue for the far one.
        QVERIFY(isNear(sheet.at(2, 5), 255, 204, 128));
        QVERIFY(isNear(sheet.at(8, 5), 128, 128, 248));
    }

    void theSamePixelsAsFaceByFace()
    {
        TriMeshObject object;
        TriMeshFragment *fragment = object.addFragment("ribbon");
        fragment->setFaces(ribbonMesh(12, 40, 0.0, 7));
        fragment->addFace({{120, 90, 0}, {120, 90, 0}, {130, 90, 5}}); // no area, no pixels
        fragment->addFace({{200, 230, 20, 2}, {60, 57.5, 5, 0.5}, {110, 100, 4}});
        std::array<QImage, 3> pictures;
        for (std::size_t i = 0; i < pictures.size(); ++i) {
            GlCanvas canvas(200, 200);
            canvas.ortho(-45, 45, -45, 45, 200);
            glRotated(40, 1, 0.5, 0);
            glTranslated(-121, -120, -9);
            glColor4ub(200, 150, 90, 255);
            const float box[6] = {};
            if (i == 0)
                drawFaceByFace(*fragment);
            else if (i == 1)
                object.render(nullptr);
            else
                object.renderBox(nullptr, box[0], box[1], box[2], box[3], box[4], box[5]);
            pictures[i] = canvas.picture();
        }
        QCOMPARE(pictures[1], pictures[0]);
        QCOMPARE(pictures[2], pictures[0]);
        QCOMPARE(goldenFault(pictures[1], "mesh_ribbon"), QString());
    }

    void drawingFollowsChanges()
    {
        Sheet sheet;
        TriMeshFragment fragment;
        fragment.render(nullptr);
        QVERIFY(isNear(sheet.at(2, 5), 0, 0, 0));
        addQuad(fragment, {0, 0, 0}, {5, 0, 0}, {5, 10, 0}, {0, 10, 0});
        fragment.render(nullptr);
        QVERIFY(isNear(sheet.at(2, 5), 255, 204, 128));
        QVERIFY(isNear(sheet.at(8, 5), 0, 0, 0));
        addQuad(fragment, {5, 0, 0}, {10, 0, 0}, {10, 10, 0}, {5, 10, 0});
        fragment.render(nullptr);
        QVERIFY(isNear(sheet.at(8, 5), 255, 204, 128));
        fragment.clear();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        fragment.render(nullptr);
        QVERIFY(isNear(sheet.at(2, 5), 0, 0, 0));
    }

    void facesWithoutAPlaceAreNotDrawn()
    {
        Sheet sheet;
        const double nowhere = std::numeric_limits<double>::quiet_NaN();
        TriMeshFragment fragment;
        fragment.addFace({{nowhere, 0, 0}, {10, 0, 0}, {0, 10, 0}});
        addQuad(fragment, {6, 0, 0}, {10, 0, 0}, {10, 10, 0}, {6, 10, 0});
        fragment.render(nullptr);
        QVERIFY(isNear(sheet.at(2, 2), 0, 0, 0));
        QVERIFY(isNear(sheet.at(8, 5), 255, 204, 128));
        QVERIFY(fragment.renderSection(nullptr, plane));
        const double noPlane[4] = {nowhere, 0, 0, 0};
        QVERIFY(fragment.renderSection(nullptr, noPlane));
        QCOMPARE(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    // z = 1 cuts each wall along its length, three quarters of it in the triangle that has the floor edge and
    // one quarter, at the wall's start, in the other one. On purpose: where the floor edge is a triangle's
    // first, its part of the line is missing, here three quarters of the upper line, which runs from x = 8.05
    // to the left.
    void sectionsAreLinesInTheCurrentColour()
    {
        Sheet sheet;
        TriMeshObject object;
        addWalls(*object.addFragment("walls"));
        addQuad(*object.addFragment("roof"), {4, 4, 0}, {6, 4, 0}, {6, 6, 3}, {4, 6, 3});
        QVERIFY(object.renderPlane(nullptr, plane));
        for (const double t : {2.55, 3.95, 5.05, 7.55}) {
            QVERIFY(isNear(sheet.at(t, 2.05), 128, 64, 0)); // below
            QVERIFY(isNear(sheet.at(8.05, t), 128, 64, 0)); // right
            QVERIFY(isNear(sheet.at(2.05, t), 128, 64, 0)); // left
        }
        QVERIFY(isNear(sheet.at(7.55, 8.05), 128, 64, 0)); // above, the first quarter
        QVERIFY(isNear(sheet.at(6.75, 8.05), 128, 64, 0));
        for (const double t : {6.35, 5.05, 3.05})
            QVERIFY(isNear(sheet.at(t, 8.05), 0, 0, 0));
        QVERIFY(isNear(sheet.at(3, 3), 0, 0, 0));
        QCOMPARE(goldenFault(sheet.canvas.picture(), "mesh_section"), QString());
        QCOMPARE(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    void planesInSinglePrecisionShowTheSame()
    {
        TriMeshObject object;
        addWalls(*object.addFragment("walls"));
        const double steep[4] = {0.25, 0.5, 1, -5};
        const float narrow[4] = {0.25f, 0.5f, 1, -5};
        std::array<QImage, 2> pictures;
        for (std::size_t i = 0; i < 2; ++i) {
            Sheet sheet;
            QVERIFY(i == 0 ? object.renderPlane(nullptr, steep) : object.renderPlane(nullptr, narrow));
            pictures[i] = sheet.canvas.picture();
        }
        QCOMPARE(pictures[0], pictures[1]);
        QVERIFY(pictures[0] != Sheet().canvas.picture());
    }

    // Lighting and depth test are off after a mesh, on purpose also if they were on before.
    void stateIsLeftAsFoundButForLightAndDepth()
    {
        Sheet sheet;
        TriMeshFragment fragment;
        addStrips(fragment);
        const std::array<GLfloat, 4> odd{0.1f, 0.7f, 0.3f, 0.9f};
        glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, odd.data());
        glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 77.0f);
        glNormal3f(0.0f, 1.0f, 0.0f);
        for (const bool twoSided : {false, true}) {
            glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, twoSided ? GL_TRUE : GL_FALSE);
            const std::vector<double> off = openGlState();
            fragment.renderSection(nullptr, plane);
            QVERIFY(openGlState() == off);
            fragment.render(nullptr);
            QVERIFY(openGlState() == off);
            for (const GLenum capability :
                 std::initializer_list<GLenum>{GL_LIGHTING, GL_LIGHT0, GL_NORMALIZE, GL_DEPTH_TEST})
                glEnable(capability);
            const std::vector<double> on = openGlState();
            QVERIFY(on != off);
            fragment.renderSection(nullptr, plane);
            QVERIFY(openGlState() == on);
            fragment.render(nullptr);
            QVERIFY(openGlState() == off);
        }
    }

    // A face in the list with all that is kept to draw it, and once more in a snapshot: 400 bytes at most.
    void memoryPerFace()
    {
        constexpr int count = 50000;
        const auto fill = [](TriMeshFragment &fragment) {
            for (int i = 0; i < count; ++i)
                fragment.addFace({{0, 0, 0}, {1, 0, 0}, {0, 0.001 * i, 0}});
            fragment.render(nullptr);
            glFinish();
        };
        Sheet sheet;
        {
            TriMeshFragment warmUp; // for what the driver keeps
            fill(warmUp);
        }
        const std::size_t before = heapBytes();
        TriMeshFragment fragment;
        fill(fragment);
        const TriMeshFragment snapshot(fragment);
        const std::size_t after = heapBytes();
        if (after <= before)
            QSKIP("this memory allocator does not tell what is in use");
        const double perFace = static_cast<double>(after - before) / count;
        QVERIFY2(perFace <= 400.0, qPrintable(QString::number(perFace)));
        qInfo("%.1f bytes per face", perFace);
    }
};

QTEST_MAIN(TriMeshDrawingTest)
#include "TriMeshDrawingTest.moc"
