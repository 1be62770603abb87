#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/SparselySampledImageObject.h"
#include "tests/coloring/PlainColoring.h"
#include "tests/support/GlCanvas.h"
#include "tests/support/GoldenPicture.h"

#include <QTest>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using MERV::BRep::Point;
using MERV::BRep::TriFace;

class NoAdvice : public GraphicsObjectRenderAdvisor
{
public:
    bool overrides(GraphicsObject *, int, int) override { return false; }
    std::uint32_t value(GraphicsObject *, int, int) override { return 0; }
};

// A picture of 400 x 400 pixels on -10 .. 10 mm, lit like a view.
class Canvas : public GlCanvas
{
public:
    Canvas()
        : GlCanvas(400, 400)
    {
        ortho(-10.0, 10.0, -10.0, 10.0, 100.0);
        constexpr GLfloat position[4] = {1.0f, 1.0f, 1.0f, 0.0f};
        constexpr GLfloat ambient[4] = {0.25f, 0.25f, 0.25f, 1.0f};
        constexpr GLfloat diffuse[4] = {0.75f, 0.75f, 0.75f, 1.0f};
        glLightfv(GL_LIGHT0, GL_POSITION, position);
        glLightfv(GL_LIGHT0, GL_AMBIENT, ambient);
        glLightfv(GL_LIGHT0, GL_DIFFUSE, diffuse);
        glDepthFunc(GL_GEQUAL);
        glClearDepth(0.0);
        clear();
    }

    void clear() { glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); }
};

struct Mesh
{
    TriMeshObject object{"mesh", nullptr};
    TriMeshFragment *fragment = object.addFragment("ribbon");
    SparselySampledImageObject samples{"thickness", nullptr};
    ColoringTriMeshRenderer coloring{fragment, &samples, "coloring"};

    void draw()
    {
        NoAdvice advice;
        coloring.render(&advice);
    }
};

// 3000 triangles of all sizes and directions through each other, with all kinds of values.
void fillWithChaos(Mesh &mesh, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-10.0, 10.0), step(-3.0, 3.0), value(-0.2, 4.0);
    constexpr std::array<double, 6> special{0.0, 0.96, 1.0, 2.0, 3.0, 4.0};
    std::vector<TriFace> faces;
    for (int i = 0; i < 3000; ++i) {
        const Point p0(place(random), place(random), place(random));
        const Point p1(p0.x + step(random), p0.y + step(random), p0.z + step(random));
        const Point p2(p0.x + step(random), p0.y + step(random), p0.z + step(random));
        const double w = i % 2 == 0 ? 1.0 : 2.0;
        faces.emplace_back(Point(p0.x * w, p0.y * w, p0.z * w, w), p1, p2);
        for (const Point &p : {p0, p1, p2}) {
            if (random() % 16 != 0)
                mesh.samples.setSample(
                    {p.x, p.y, p.z}, random() % 2 == 0 ? value(random) : special[random() % special.size()]);
        }
    }
    mesh.fragment->setFaces(std::move(faces));
}

} // namespace

class ColoringDrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void pictureIsThatOfThePlainDrawing_data();
    void pictureIsThatOfThePlainDrawing();
};

void ColoringDrawingTest::pictureIsThatOfThePlainDrawing_data()
{
    QTest::addColumn<unsigned>("seed");
    QTest::addColumn<bool>("hasDepth");
    QTest::newRow("depth") << 1U << true;
    QTest::newRow("flat depth range, where the order decides") << 2U << false;
}

void ColoringDrawingTest::pictureIsThatOfThePlainDrawing()
{
    QFETCH(const unsigned, seed);
    QFETCH(const bool, hasDepth);
    Canvas canvas;
    QVERIFY(canvas.isValid());
    if (!hasDepth)
        glDepthRange(0.5, 0.5);
    Mesh mesh;
    fillWithChaos(mesh, seed);
    PlainColoring::draw(*mesh.fragment, mesh.samples);
    const QImage expected = canvas.picture();
    canvas.clear();
    mesh.draw();
    const QImage drawn = canvas.picture();
    QVERIFY(drawn == expected);
}

QTEST_MAIN(ColoringDrawingTest)
#include "ColoringDrawingTest.moc"
