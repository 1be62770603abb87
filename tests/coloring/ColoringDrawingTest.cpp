#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "objects/DoubleBufferedSparselySampledImageObject.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/SparselySampledImageObject.h"
#include "tests/coloring/PlainColoring.h"
#include "tests/support/GlCanvas.h"
#include "tests/support/GoldenPicture.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
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

    QImage picture() const { return opaquePicture(GlCanvas::picture()); }
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

// A channel of a vertex that faces the viewer. The light shines along (1, 1, 1): the ambient share is 0.25 of
// it and 0.2 of the scene, the diffuse one 0.75 / sqrt(3) = 0.433. The highlight does not depend on the
// colour: half way between the light and the viewer is (0.325, 0.325, 0.888), and 0.2 * 0.888^2 = 0.1577.
int lit(double channel)
{
    return static_cast<int>(std::lround(255.0 * std::min(1.0, 0.8830 * channel + 0.1577)));
}

bool isLit(const QColor &colour, double red, double green, double blue)
{
    return isNear(colour, lit(red), lit(green), lit(blue));
}

// A colour between vertices of pure colours: those are lit, and limited to 1, before they are blended.
bool isLitBetween(const QColor &colour, double red, double green, double blue)
{
    const auto level = [](double channel) {
        return static_cast<int>(std::lround(lit(0) + (lit(1) - lit(0)) * channel));
    };
    return isNear(colour, level(red), level(green), level(blue));
}

void addFace(Mesh &mesh, const std::array<Vector3, 3> &corners, const std::array<double, 3> &values)
{
    std::array<Point, 3> points;
    for (std::size_t i = 0; i < 3; ++i) {
        points[i] = Point(corners[i].x, corners[i].y, corners[i].z);
        mesh.samples.setSample(corners[i], values[i]);
    }
    mesh.fragment->addFace(TriFace(points[0], points[1], points[2]));
}

Vector3 rim(double centreX, int corner)
{
    const double angle = 3.14159265358979 / 3.0 * (corner % 6);
    return {centreX + 3.5 * std::cos(angle), -5.0 + 3.5 * std::sin(angle), 0.0};
}

// Six faces around (centreX, -5), with the value 0.48 all over.
void addFan(Mesh &mesh, double centreX)
{
    for (int corner = 0; corner < 6; ++corner)
        addFace(mesh, {{{centreX, -5, 0}, rim(centreX, corner), rim(centreX, corner + 1)}},
                {0.48, 0.48, 0.48});
}

// The largest value is 4. Above a ruler from 0 to 4, in two faces; below four faces: cut by all lines, rising
// from a tie, all on a line, turned away from the viewer.
void addBands(Mesh &mesh)
{
    addFace(mesh, {{{-9, 6, 0}, {9, 6, 0}, {9, 9, 0}}}, {0, 4, 4});
    addFace(mesh, {{{-9, 6, 0}, {9, 9, 0}, {-9, 9, 0}}}, {0, 4, 0});
    addFace(mesh, {{{-9, 1, 0}, {-5, 1, 0}, {-9, 5, 0}}}, {0, 4, 2});
    addFace(mesh, {{{-3, 1, 0}, {1, 1, 0}, {-1, 5, 0}}}, {0.8, 0.8, 3.2});
    addFace(mesh, {{{3, 1, 0}, {7, 1, 0}, {5, 5, 0}}}, {2, 2, 2});
    addFace(mesh, {{{7.5, 1, 0}, {8.5, 5, 0}, {9.5, 1, 0}}}, {2.5, 2.5, 2.5});
}

// Where hatching leaves a pixel, y from the top of a picture 400 pixels high: a bit of every eight, from the
// bottom row on 1, 2, 4 .. 128, the highest bit to the left.
bool isHatchLine(int x, int y)
{
    return (x + (399 - y)) % 8 == 7;
}

// What drawing may change, as numbers.
std::vector<double> openGlState()
{
    std::vector<double> state;
    for (const int name : {GL_CURRENT_COLOR,
                           GL_CURRENT_NORMAL,
                           GL_BLEND,
                           GL_POLYGON_STIPPLE,
                           GL_TEXTURE_2D,
                           GL_LIGHTING,
                           GL_LIGHT0,
                           GL_NORMALIZE,
                           GL_DEPTH_TEST,
                           GL_COLOR_MATERIAL,
                           GL_COLOR_MATERIAL_FACE,
                           GL_COLOR_MATERIAL_PARAMETER,
                           GL_LIGHT_MODEL_TWO_SIDE,
                           GL_FRONT_FACE,
                           GL_SHADE_MODEL,
                           GL_CULL_FACE,
                           GL_VERTEX_ARRAY,
                           GL_NORMAL_ARRAY,
                           GL_COLOR_ARRAY,
                           GL_VERTEX_ARRAY_STRIDE,
                           GL_UNPACK_ALIGNMENT,
                           GL_UNPACK_ROW_LENGTH,
                           GL_MATRIX_MODE,
                           GL_ATTRIB_STACK_DEPTH,
                           GL_CLIENT_ATTRIB_STACK_DEPTH}) {
        std::array<GLdouble, 16> values{};
        glGetDoublev(static_cast<GLenum>(name), values.data());
        state.insert(state.end(), values.begin(), values.end());
    }
    for (const GLenum face : std::initializer_list<GLenum>{GL_FRONT, GL_BACK})
        for (const GLenum name :
             std::initializer_list<GLenum>{GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION, GL_SHININESS}) {
            std::array<GLfloat, 4> values{};
            glGetMaterialfv(face, name, values.data());
            state.insert(state.end(), values.begin(), values.end());
        }
    std::array<GLubyte, 128> stipple{};
    glGetPolygonStipple(stipple.data());
    state.insert(state.end(), stipple.begin(), stipple.end());
    return state;
}

// Everything that drawing sets, the other way round.
void upsetState()
{
    for (const GLenum name : std::initializer_list<GLenum>{GL_POLYGON_STIPPLE, GL_TEXTURE_2D})
        glEnable(name);
    glFrontFace(GL_CW);
    glShadeModel(GL_FLAT);
    glColor4f(0.1f, 0.2f, 0.3f, 0.4f);
    glNormal3f(1.0f, 0.0f, 0.0f);
    glColorMaterial(GL_BACK, GL_EMISSION);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 77);
    const std::array<GLfloat, 4> odd{0.3f, 0.4f, 0.5f, 0.6f};
    glMaterialfv(GL_FRONT, GL_SPECULAR, odd.data());
    glMaterialfv(GL_BACK, GL_AMBIENT, odd.data());
}

// A bound texture of one dark pixel.
void bindDarkTexture(Canvas &canvas)
{
    canvas.useNearestTexture();
    const std::array<GLubyte, 4> dark{10, 20, 30, 255};
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, dark.data());
}

bool isBlack(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (probe(picture, x, y) != QColor(0, 0, 0))
                return false;
    return true;
}

} // namespace

class ColoringDrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void pictureIsThatOfThePlainDrawing_data();
    void pictureIsThatOfThePlainDrawing();
    void bandsAreExact();
    void facesWithoutASampleAreHatched();
    void facesOutOfOneWinding_areLitLikeTheirFaces();
    void stateIsLeftAsFound();
    void pictureDoesNotDependOnTheStateFound();
    void changesShowAtTheNextPaint();
    void swapOfTheSamplesShowsAtTheNextPaint();
    void brokenValuesAndPlaces_endTheFrame();
    void closedSources_drawNothing();
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

// 20 pixels per mm; the middle of pixel (x, y) is at (x / 20 - 9.975, 9.975 - y / 20) mm.
void ColoringDrawingTest::bandsAreExact()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    Mesh mesh;
    addBands(mesh);
    mesh.draw();
    const QImage picture = canvas.picture();
    // The ruler: the fraction at column x is (x / 20 - 0.975) / 18, in both faces.
    for (const int y : {25, 50, 75}) {
        QVERIFY(isLitBetween(probe(picture, 63, y), 0, 0.5035, 1));       // 0.12083, of 0.24 to cyan
        QVERIFY(isLitBetween(probe(picture, 106, y), 0, 0.9722, 0.9722)); // 0.240278, the line begins
        QVERIFY(isLitBetween(probe(picture, 110, y), 0, 0.1389, 0.1389)); // 0.251389, of 0.01 to cyan
        QVERIFY(isLitBetween(probe(picture, 113, y), 0, 0.9722, 0.9722)); // 0.259722, the line ends
        QVERIFY(isLitBetween(probe(picture, 155, y), 0, 1, 0.4940)); // 0.376389, 0.116389 of 0.23 to green
        QVERIFY(isLitBetween(probe(picture, 199, y), 0, 0.1389, 0)); // 0.498611
        QVERIFY(isLitBetween(probe(picture, 200, y), 0, 0.1389, 0)); // 0.501389
        QVERIFY(isLitBetween(probe(picture, 290, y), 0.1389, 0.1389, 0)); // 0.751389
        QVERIFY(isLitBetween(probe(picture, 336, y), 1, 0.5035, 0));      // 0.879167, 0.119167 of 0.24 to red
        QVERIFY(isLitBetween(probe(picture, 379, y), 1, 0.0058, 0));      // 0.998611
    }
    // Cut by all lines: (x + 9) / 4 + (y - 1) / 8 at (-8.225, 2.475) is 0.378125.
    QVERIFY(isLitBetween(probe(picture, 35, 150), 0, 1, 0.4864));
    // Rising from a tie: 0.2 + 0.15 (y - 1), black at y = 3; here 0.50375 and 0.49625.
    QVERIFY(isLitBetween(probe(picture, 180, 139), 0, 0.375, 0));
    QVERIFY(isLitBetween(probe(picture, 180, 140), 0, 0.375, 0));
    // 0.21125, 0.28 of the way from the corner (0.2: 5/6 to cyan, lit 0.8936) to the first line (lit 1).
    QVERIFY(isNear(probe(picture, 175, 178), lit(0), 236, 255));
    // All on a line.
    QVERIFY(isLit(probe(picture, 300, 160), 0, 0, 0));
    // Turned away, 0.625: half way from green to yellow.
    QVERIFY(isLit(probe(picture, 370, 150), 0.5, 1, 0));
    QVERIFY(isNear(probe(picture, 200, 330), 0, 0, 0));
    QCOMPARE(goldenFault(picture, "coloring_bands"), QString());
}

void ColoringDrawingTest::facesWithoutASampleAreHatched()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    Mesh mesh;
    addFan(mesh, -5.0);
    addFan(mesh, 5.0);
    mesh.samples.setSample({99, 99, 99}, 4.0);
    // There is no way to take one sample away: all but two are set again.
    const SampleMap all = *mesh.samples.samples();
    mesh.samples.clearSamples();
    for (const auto &[position, value] : all) {
        const Vector3 lost = rim(5.0, 0);
        const bool isCentre = position.x == -5.0 && position.y == -5.0;
        if (!isCentre && !(position.x == lost.x && position.y == lost.y))
            mesh.samples.setSample(position, value);
    }
    mesh.draw();
    const QImage picture = canvas.picture();
    // The left fan has lost its middle: all of it is hatched. Its rim is at least 3.03 mm, 60 pixels, from
    // the middle (100, 300).
    for (int y = 260; y < 340; ++y)
        for (int x = 60; x < 140; ++x) {
            const QColor colour = probe(picture, x, y);
            QVERIFY(isHatchLine(x, y) ? isLit(colour, 1, 0, 0) : isNear(colour, 0, 0, 0));
        }
    // The right one has lost the corner to the right: two faces are hatched, four have the fraction 0.12.
    for (const int degrees : {90, 150, 210, 270}) {
        const double angle = degrees * 3.14159265358979 / 180.0;
        const int x = 300 + static_cast<int>(40 * std::cos(angle));
        const int y = 300 - static_cast<int>(40 * std::sin(angle));
        QVERIFY(isLit(probe(picture, x, y), 0, 0.5, 1));
    }
    for (int y = 290; y < 310; ++y)
        for (int x = 330; x < 350; ++x) {
            const QColor colour = probe(picture, x, y);
            QVERIFY(isHatchLine(x, y) ? isLit(colour, 1, 0, 0) : isNear(colour, 0, 0, 0));
        }
    QCOMPARE(goldenFault(picture, "coloring_hatching"), QString());
}

// A roof of two sides, one towards the light and one away from it; each side is made of a face whose strip
// runs round like the face and one whose strip does not.
void ColoringDrawingTest::facesOutOfOneWinding_areLitLikeTheirFaces()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    Mesh mesh;
    addFace(mesh, {{{0, -8, 4}, {8, -8, 0}, {8, 8, 0}}}, {0.1, 0.2, 0.3});
    addFace(mesh, {{{0, -8, 4}, {8, 8, 0}, {0, 8, 4}}}, {0.1, 0.3, 0.2});
    addFace(mesh, {{{0, -8, 4}, {0, 8, 4}, {-8, 8, 0}}}, {0.1, 0.2, 0.4});
    addFace(mesh, {{{0, -8, 4}, {-8, 8, 0}, {-8, -8, 0}}}, {0.1, 0.4, 0.3});
    mesh.samples.setSample({99, 99, 99}, 1e9); // all fractions are next to 0: blue all over
    mesh.draw();
    const QImage picture = canvas.picture();
    // The normals are (1, 0, 2) / sqrt(5) to the right and (-1, 0, 2) / sqrt(5) to the left. Towards the
    // light: 3 / sqrt(15) = 0.7746 and 1 / sqrt(15) = 0.2582. Half way: (0.325 + 2 * 0.888) / sqrt(5) =
    // 0.9396 and (-0.325 + 1.776) / sqrt(5) = 0.6489; 0.2 of their squares: 0.1766 and 0.0842.
    const auto level = [](double value) {
        return static_cast<int>(std::lround(255.0 * std::min(1.0, value)));
    };
    const int rightBlue = level(0.45 + 0.75 * 0.7746 + 0.1766), rightRed = level(0.1766);
    const int leftBlue = level(0.45 + 0.75 * 0.2582 + 0.0842), leftRed = level(0.0842);
    for (const int y : {60, 340}) {
        QVERIFY(isNear(probe(picture, 280, y), rightRed, rightRed, rightBlue));
        QVERIFY(isNear(probe(picture, 120, y), leftRed, leftRed, leftBlue));
    }
}

void ColoringDrawingTest::stateIsLeftAsFound()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    Mesh mesh;
    addBands(mesh);
    mesh.fragment->addFace(TriFace(Point(0, 0, 0), Point(1, 0, 0), Point(0, -1, 0))); // hatched
    const std::vector<double> calm = openGlState();
    mesh.draw();
    QVERIFY(openGlState() == calm);
    upsetState();
    const std::vector<double> upset = openGlState();
    QVERIFY(upset != calm);
    mesh.draw();
    QVERIFY(openGlState() == upset);
    QCOMPARE(int(glGetError()), int(GL_NO_ERROR));
}

void ColoringDrawingTest::pictureDoesNotDependOnTheStateFound()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    Mesh mesh;
    fillWithChaos(mesh, 3);
    mesh.draw();
    const QImage expected = canvas.picture();
    canvas.clear();
    bindDarkTexture(canvas);
    upsetState();
    mesh.draw();
    QVERIFY(canvas.picture() == expected);
}

void ColoringDrawingTest::changesShowAtTheNextPaint()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    Mesh mesh;
    const auto drawn = [&] {
        canvas.clear();
        mesh.draw();
        return canvas.picture();
    };
    QVERIFY(isBlack(drawn())); // no faces
    addFace(mesh, {{{-9, -9, 0}, {9, -9, 0}, {0, 9, 0}}}, {1, 1, 1});
    const QImage full = drawn();
    QVERIFY(isLit(probe(full, 200, 250), 1, 0, 0));
    mesh.samples.setSample({99, 99, 99}, 100.0); // all others are a hundredth of it: 0.01 of 0.24 to cyan
    QVERIFY(isLit(probe(drawn(), 200, 250), 0, 0.0417, 1));
    mesh.samples.clearSamples();
    const QImage hatched = drawn();
    QVERIFY(isNear(probe(hatched, 200, 250), 0, 0, 0) != isHatchLine(200, 250));
    mesh.fragment->clear();
    QVERIFY(isBlack(drawn()));
    addFace(mesh, {{{-9, -9, 0}, {9, -9, 0}, {0, 9, 0}}}, {1, 1, 1});
    QVERIFY(drawn() == full);
    mesh.fragment->setFaces({TriFace(Point(-9, -9, 0), Point(0, 9, 0), Point(-9, 9, 0))});
    mesh.samples.setSample({-9, 9, 0}, 1.0);
    const QImage moved = drawn();
    QVERIFY(isNear(probe(moved, 200, 250), 0, 0, 0));
    QVERIFY(isLit(probe(moved, 60, 100), 1, 0, 0));
}

void ColoringDrawingTest::swapOfTheSamplesShowsAtTheNextPaint()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    TriMeshObject object("mesh", nullptr);
    TriMeshFragment *fragment = object.addFragment("ribbon");
    fragment->addFace(TriFace(Point(-9, -9, 0), Point(9, -9, 0), Point(0, 9, 0)));
    DoubleBufferedSparselySampledImageObject samples("thickness", nullptr);
    ColoringTriMeshRenderer coloring(fragment, &samples, "coloring");
    const auto isHatched = [&] {
        canvas.clear();
        NoAdvice advice;
        coloring.render(&advice);
        const QImage picture = canvas.picture();
        return isNear(probe(picture, 200, 250), 0, 0, 0) || isNear(probe(picture, 201, 250), 0, 0, 0);
    };
    QVERIFY(isHatched());
    for (const Vector3 &corner : {Vector3{-9, -9, 0}, Vector3{9, -9, 0}, Vector3{0, 9, 0}})
        samples.setSample(corner, 1.0);
    QVERIFY(isHatched());
    samples.swapSamples();
    QVERIFY(!isHatched());
    samples.swapSamples(); // the other side is still empty
    QVERIFY(isHatched());
}

void ColoringDrawingTest::brokenValuesAndPlaces_endTheFrame()
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Canvas canvas;
    QVERIFY(canvas.isValid());
    {
        Mesh zero; // the largest value is 0: blue and in place
        addFace(zero, {{{-9, -9, 0}, {9, -9, 0}, {0, 9, 0}}}, {0, 0, 0});
        zero.draw();
        QVERIFY(isLit(probe(canvas.picture(), 200, 250), 0, 0, 1));
        QVERIFY(isNear(probe(canvas.picture(), 20, 30), 0, 0, 0));
    }
    canvas.clear();
    Mesh mesh;
    addFace(mesh, {{{-9, -9, 0}, {9, -9, 0}, {0, 9, 0}}}, {nan, -infinity, 1});
    addFace(mesh, {{{nan, -9, 0}, {9, -9, 0}, {0, 9, 0}}}, {1, 1, 1});
    addFace(mesh, {{{-9, infinity, 0}, {9, -9, 0}, {0, 9, 0}}}, {1, 1, 1});
    addFace(mesh, {{{1, 1, 0}, {1, 1, 0}, {1, 1, 0}}}, {1, 1, 1});
    addFace(mesh, {{{-9, -9, 1}, {0, -9, 1}, {0, 9, 1}}}, {infinity, infinity, 1});
    mesh.draw();
    QCOMPARE(int(glGetError()), int(GL_NO_ERROR));
    // The first face again, with the sample that the later ones gave two of its corners: still not finite.
    QVERIFY(isLit(probe(canvas.picture(), 250, 300), 0, 0, 1));
}

void ColoringDrawingTest::closedSources_drawNothing()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    Mesh mesh, other;
    addBands(mesh);
    addBands(other);
    mesh.draw();
    QVERIFY(!isBlack(canvas.picture()));
    canvas.clear();
    mesh.coloring.detachFrom(&mesh.object);
    mesh.draw();
    QVERIFY(isBlack(canvas.picture()));
    other.draw();
    canvas.clear();
    other.coloring.detachFrom(&other.samples);
    other.draw();
    QVERIFY(isBlack(canvas.picture()));
}

QTEST_MAIN(ColoringDrawingTest)
#include "ColoringDrawingTest.moc"
