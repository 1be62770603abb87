#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/MervImageObject.h"
#include "objects/SparselySampledImageObject.h"
#include "tests/support/GlCanvas.h"
#include "tests/support/GoldenPicture.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TestVolume.h"

#include <QTest>

#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr float openRange = std::numeric_limits<float>::max();

using Advice = std::map<int, std::uint32_t>;

class TestAdvisor : public GraphicsObjectRenderAdvisor
{
public:
    explicit TestAdvisor(Advice newAdvice = {})
        : advice(std::move(newAdvice))
    {}
    bool overrides(GraphicsObject *, int key, int subKey) override
    {
        return subKey == 0 && advice.contains(key);
    }
    std::uint32_t value(GraphicsObject *, int key, int) override { return advice.at(key); }

private:
    Advice advice;
};

class OpenImage : public MervImageObject
{
public:
    explicit OpenImage(std::unique_ptr<MERV::Image> newImage)
        : MervImageObject(newImage.release(), QString())
    {}
    using MervImageObject::sliceTextureValid;
    using MervImageObject::textureMode;
};

// 5 x 3 x 4 voxels of 16 x 20 x 4 mm with the value 50 x + 20 y + 5 z, shown as it is (window 0 .. 255).
std::unique_ptr<MERV::Image> newStairs()
{
    auto image =
        newVolume(MERV::TypeUShort, {5, 3, 4}, [](int x, int y, int z) { return 50 * x + 20 * y + 5 * z; });
    image->setSpacing(16.0f, 20.0f, 4.0f, 1.0f);
    image->setWindowRange(0.0f, 255.0f, 0);
    return image;
}

void drawBox(MervImageObject &object, GraphicsObjectRenderAdvisor &advisor, float zMin, float zMax)
{
    object.renderBox(&advisor, -openRange, openRange, -openRange, openRange, zMin, zMax);
}

bool isBlack(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (probe(picture, x, y) != QColor(0, 0, 0))
                return false;
        }
    }
    return true;
}

// A line of the process's status, -1 if there is none.
long megabytes(const std::string &name)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long kilobytes = 0;
        if (word == name && status >> kilobytes)
            return kilobytes / 1024;
    }
    return -1;
}

// What drawing may change, as numbers.
std::vector<double> openGlState()
{
    std::vector<double> state;
    for (const int name :
         {GL_CURRENT_COLOR, GL_BLEND, GL_BLEND_SRC, GL_BLEND_DST, GL_POLYGON_STIPPLE, GL_FOG, GL_LINE_STIPPLE,
          GL_LINE_STIPPLE_PATTERN, GL_LINE_STIPPLE_REPEAT, GL_TEXTURE_BINDING_2D, GL_UNPACK_ALIGNMENT,
          GL_UNPACK_ROW_LENGTH, GL_RED_SCALE, GL_RED_BIAS, GL_DEPTH_TEST, GL_MATRIX_MODE,
          GL_ATTRIB_STACK_DEPTH, GL_CLIENT_ATTRIB_STACK_DEPTH, GL_LINE_WIDTH}) {
        std::array<GLdouble, 16> values{};
        glGetDoublev(static_cast<GLenum>(name), values.data());
        state.insert(state.end(), values.begin(), values.end());
    }
    std::array<GLubyte, 128> stipple{};
    glGetPolygonStipple(stipple.data());
    state.insert(state.end(), stipple.begin(), stipple.end());
    return state;
}

// A 160 x 120 picture of 80 x 60 mm.
class Canvas : public GlCanvas
{
public:
    Canvas()
        : GlCanvas(160, 120)
    {
        ortho(0.0, 80.0, 0.0, 60.0);
        useNearestTexture();
    }
};

// Shows y to the right and z upwards.
void lookAlongX()
{
    const GLdouble columns[16] = {0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1};
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(columns);
}

// 8 x 6 x 8 voxels of 10 mm in a window of 100 .. 300. The value rises by 20 from layer to layer, so that
// layers 0 to 7 show (20 z + 40) / 200; two columns lie outside the window.
std::unique_ptr<MERV::Image> newLayers()
{
    auto image = newVolume(MERV::TypeShort, {8, 6, 8}, [](int x, int y, int z) {
        if (y == 1)
            return 400; // t = 1.5
        if (y == 4 && x >= 4)
            return 50; // t = -0.25
        return 140 + 20 * z;
    });
    image->setSpacing(10.0f, 10.0f, 10.0f, 1.0f);
    image->setWindowRange(100.0f, 300.0f, 0);
    return image;
}

} // namespace

class SliceDrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void sliceShowsTheVoxels();
    void planeShowsTheSliceAroundIt();
    void boxShowsSlicesWithTheirMiddleInside();
    void renderShowsTheWholeVolume();
    void colourAndBlending();
    void channels();
    void channelOneIsConvertedAtEachDrawing();
    void windowIsShown();
    void narrowSlices();
    void ownTextureObject();
    void rectangleTexturesShowTheSame();
    void obliquePlane();
    void obliquePlaneOfOneColour();
    void planeAlongTheSlices();
    void steepPlane();
    void emptyWindowDrawsBlack();
    void vectorsAsGlyphs();
    void glyphsOnlyForThreeChannelsInModeOne();
    void samplesAsCrosses();
    void stateIsLeftAsFound();
    void unusableImagesDrawNothing();
    void memoryIsVoxelsTexturesAndLittleMore();
};

void SliceDrawingTest::initTestCase()
{
    QCOMPARE(int(OpenImage::textureMode), 0);
}

void SliceDrawingTest::sliceShowsTheVoxels()
{
    Canvas canvas;
    QVERIFY(canvas.isValid());
    OpenImage object(newStairs());
    TestAdvisor advisor;
    const float plane[4] = {0.0f, 0.0f, 1.0f, -6.0f}; // the middle of slice 1
    QVERIFY(object.renderPlane(&advisor, plane));
    const QImage picture = canvas.picture();
    // Two pixels per mm, y upwards. The middle of voxel (x, y) is at (16 x + 8, 20 y + 10) mm, that is pixel
    // (32 x + 16, 120 - 40 y - 20); its grey is 50 x + 20 y + 5.
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x) {
            const int grey = 50 * x + 20 * y + 5;
            QVERIFY(isNear(probe(picture, 32 * x + 16, 100 - 40 * y), grey, grey, grey));
        }
    }
    // The border between voxels 0 and 1 lies between pixels 31 and 32.
    QVERIFY(isNear(probe(picture, 31, 100), 5, 5, 5));
    QVERIFY(isNear(probe(picture, 32, 100), 55, 55, 55));
    QCOMPARE(goldenFault(picture, "slice_axial"), QString());
    // The driver offers rectangles; power-of-two textures are used all the same.
    const auto *extensions = reinterpret_cast<const char *>(glGetString(GL_EXTENSIONS));
    QVERIFY(MervImageObject::offersRectangleTextures(extensions));
    QCOMPARE(int(OpenImage::textureMode), 1);
    QCOMPARE(int(glGetError()), int(GL_NO_ERROR));
}

void SliceDrawingTest::planeShowsTheSliceAroundIt()
{
    // Slices have their middles at 2, 6, 10, 14 mm. Voxel (0, 0) of slice k has the grey 5 k.
    const auto greyAt = [](float c, float d) {
        Canvas canvas;
        auto image = newStairs();
        image->setWindowRange(-100.0f, 155.0f, 0); // 100 brighter, so that slice 0 is not black
        OpenImage object(std::move(image));
        TestAdvisor advisor;
        const float plane[4] = {0.0005f, -0.001f, c, d}; // still axial
        object.renderPlane(&advisor, plane);
        return probe(canvas.picture(), 16, 100).red();
    };
    QVERIFY(std::abs(greyAt(1.0f, -11.0f) - 110) <= 2);
    QVERIFY(std::abs(greyAt(-1.0f, 11.0f) - 110) <= 2);
    QVERIFY(std::abs(greyAt(1.0f, -2.0f) - 100) <= 2);
    QCOMPARE(greyAt(1.0f, 1.0f), 0);   // 1 mm below the stack: nearest middle 3 mm away
    QCOMPARE(greyAt(1.0f, -17.0f), 0); // 17 mm: 3 mm above the last middle
    QVERIFY(std::abs(greyAt(1.0f, -16.0f) - 115) <= 2);
    // Half-way between two middles both are drawn, the higher one last.
    QVERIFY(std::abs(greyAt(1.0f, -12.0f) - 115) <= 2);
}

void SliceDrawingTest::boxShowsSlicesWithTheirMiddleInside()
{
    const auto shown = [](float zMin, float zMax) {
        Canvas canvas;
        OpenImage object(newStairs());
        TestAdvisor advisor(
            Advice{{RenderKey::Color, 0x40FFFFFF}}); // an alpha of a quarter lets lower slices through
        // Limits of x and y are accepted and not used.
        object.renderBox(&advisor, 70.0f, 71.0f, 50.0f, 51.0f, zMin, zMax);
        return probe(canvas.picture(), 32 + 16, 100).red();
    };
    QVERIFY(std::abs(shown(6.0f, 6.0f) - 55) <= 2); // exactly the middle of slice 1: 50 + 5
    QVERIFY(std::abs(shown(4.0f, 8.0f) - 55) <= 2);
    QCOMPARE(shown(6.5f, 9.5f), 0);
    // Slices 1 and 2: 60 + (1 - 64 / 255) 55 = 101.
    QVERIFY(std::abs(shown(6.0f, 10.0f) - 101) <= 2);
    QCOMPARE(shown(10.0f, 6.0f), 0);
}

void SliceDrawingTest::renderShowsTheWholeVolume()
{
    Canvas canvas;
    OpenImage object(newStairs());
    TestAdvisor advisor;
    object.render(&advisor);
    // Opaque slices over each other: slice 3 is seen. Voxel (4, 2): 200 + 40 + 15 = 255.
    QVERIFY(isNear(probe(canvas.picture(), 144, 20), 255, 255, 255));
    QVERIFY(isNear(probe(canvas.picture(), 48, 100), 65, 65, 65));
}

void SliceDrawingTest::colourAndBlending()
{
    Canvas canvas;
    glClearColor(100.0f / 255.0f, 100.0f / 255.0f, 100.0f / 255.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    OpenImage object(newStairs());
    TestAdvisor advisor(Advice{{RenderKey::Color, 0x80FF8040}});
    drawBox(object, advisor, 2.0f, 2.0f);
    const QImage picture = canvas.picture();
    // The colour (255, 128, 64) is not multiplied by its alpha of 128 / 255, the background by 1 - 128 / 255.
    // Voxel (2, 1) has the grey 120: red 120 + 49.8, green 120 * 128 / 255 + 49.8 = 110, blue 120 * 64 / 255
    // + 49.8 = 80.
    QVERIFY(isNear(probe(picture, 80, 60), 170, 110, 80));
    QCOMPARE(goldenFault(picture, "slice_colour"), QString());
}

void SliceDrawingTest::channels()
{
    auto image = newVolume(MERV::TypeUChar, {2, 1, 1, 1, 3});
    for (int channel = 0; channel < 3; ++channel) {
        image->setVoxel(static_cast<float>(50 + 50 * channel), 1, 0, 0, 0, channel);
        image->setWindowRange(0.0f, 255.0f, channel);
    }
    image->setWindowRange(0.0f, 510.0f, 2); // channel 2 through its own window: half as bright
    image->setSpacing(40.0f, 60.0f, 1.0f, 1.0f);
    OpenImage object(std::move(image));
    const int expected[3] = {50, 100, 75};
    for (std::uint32_t channel = 0; channel < 3; ++channel) {
        Canvas canvas;
        TestAdvisor advisor(Advice{{RenderKey::Component, channel}});
        drawBox(object, advisor, 0.0f, 1.0f);
        const int grey = expected[channel];
        QVERIFY(isNear(probe(canvas.picture(), 120, 60), grey, grey, grey));
        QVERIFY(isNear(probe(canvas.picture(), 40, 60), 0, 0, 0));
    }
}

void SliceDrawingTest::channelOneIsConvertedAtEachDrawing()
{
    OpenImage object(newVolume(MERV::TypeUChar, {2, 2, 2, 1, 2}));
    Canvas canvas;
    TestAdvisor one(Advice{{RenderKey::Component, 1}});
    TestAdvisor zero;
    QVERIFY(object.sliceTextureValid[0]);
    drawBox(object, one, 0.5f, 0.5f);
    QVERIFY(!object.sliceTextureValid[0]);
    QVERIFY(object.sliceTextureValid[1]);
    drawBox(object, one, 0.5f, 0.5f);
    QVERIFY(!object.sliceTextureValid[0]);
    drawBox(object, zero, 0.5f, 0.5f);
    QVERIFY(object.sliceTextureValid[0]);
}

void SliceDrawingTest::windowIsShown()
{
    OpenImage object(newStairs());
    object.setWindow(100.0f, 151.0f); // five times as steep
    Canvas canvas;
    TestAdvisor advisor;
    drawBox(object, advisor, 2.0f, 2.0f);
    // Voxels (0, 0): 0, below; (2, 1): 120, (120 - 100) 5 = 100; (4, 0): 200, above.
    QVERIFY(isNear(probe(canvas.picture(), 16, 100), 0, 0, 0));
    QVERIFY(isNear(probe(canvas.picture(), 80, 60), 100, 100, 100));
    QVERIFY(isNear(probe(canvas.picture(), 144, 100), 255, 255, 255));
}

// Textures of one and two bytes per row.
void SliceDrawingTest::narrowSlices()
{
    for (const int width : {1, 2}) {
        auto image =
            newVolume(MERV::TypeUChar, {width, 3, 1}, [](int x, int y, int) { return 60 + 60 * y + 10 * x; });
        image->setWindowRange(0.0f, 255.0f, 0);
        image->setSpacing(80.0f / static_cast<float>(width), 20.0f, 1.0f, 1.0f);
        OpenImage object(std::move(image));
        Canvas canvas;
        TestAdvisor advisor;
        drawBox(object, advisor, 0.0f, 1.0f);
        for (int y = 0; y < 3; ++y) {
            const int left = 60 + 60 * y;
            const int right = left + 10 * (width - 1);
            QVERIFY(isNear(probe(canvas.picture(), 20, 100 - 40 * y), left, left, left));
            QVERIFY(isNear(probe(canvas.picture(), 140, 100 - 40 * y), right, right, right));
        }
    }
}

void SliceDrawingTest::ownTextureObject()
{
    Canvas canvas;
    const GLuint own = contextTexture();
    QVERIFY(own != 0);
    QCOMPARE(contextTexture(), own);
    glBindTexture(GL_TEXTURE_2D, 0);
    OpenImage object(newStairs());
    TestAdvisor advisor;
    drawBox(object, advisor, 2.0f, 2.0f);
    // The default texture object is untouched, the own one holds the slice.
    GLint width = -1;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    QCOMPARE(width, 0);
    glBindTexture(GL_TEXTURE_2D, own);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    QCOMPARE(width, 8);
    {
        Canvas second;
        QVERIFY(contextTexture() != 0);
        deleteContextTexture();
    }
}

void SliceDrawingTest::rectangleTexturesShowTheSame()
{
    const auto draw = [](int mode) {
        Canvas canvas;
        auto image =
            newVolume(MERV::TypeUChar, {5, 3, 2}, [](int x, int y, int z) { return 50 * x + 20 * y + z; });
        image->setSpacing(16.0f, 20.0f, 4.0f, 1.0f);
        image->setWindowRange(40.0f, 140.0f, 0);
        OpenImage object(std::move(image));
        OpenImage::textureMode = mode;
        TestAdvisor advisor;
        drawBox(object, advisor, 6.0f, 6.0f);
        OpenImage::textureMode = 1;
        return canvas.picture();
    };
    const QImage powerOfTwo = draw(1);
    const QImage rectangle = draw(2);
    // Voxel (1, 1) of slice 1: 71, (71 - 40) 255 / 100 = 79.
    QVERIFY(isNear(probe(rectangle, 48, 60), 79, 79, 79));
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x) {
            const QColor colour = probe(powerOfTwo, 32 * x + 16, 100 - 40 * y);
            QVERIFY(isNear(probe(rectangle, 32 * x + 16, 100 - 40 * y), colour.red(), colour.green(),
                           colour.blue()));
        }
    }
}

void SliceDrawingTest::obliquePlane()
{
    Canvas canvas;
    OpenImage object(newLayers());
    TestAdvisor advisor;
    // z = 5 + 0.8 x + 0.1 y, seen from above.
    const float plane[4] = {-0.8f, -0.1f, 1.0f, -5.0f};
    QVERIFY(object.renderPlane(&advisor, plane));
    const QImage picture = canvas.picture();
    const auto at = [&picture](int xMm, int yMm) { return probe(picture, 2 * xMm, 119 - 2 * yMm); };
    // (5, 5) mm: z = 9.5, layer 0: t = 40 / 200, grey 51. (25, 5): z = 25.5, layer 2: t = 80 / 200, grey 102.
    QVERIFY(isNear(at(5, 5), 51, 51, 51));
    QVERIFY(isNear(at(25, 5), 102, 102, 102));
    // (45, 25): z = 43.5, layer 4: t = 120 / 200, grey 153. (75, 55): z = 70.5, layer 7: t = 0.9, grey 230.
    QVERIFY(isNear(at(45, 25), 153, 153, 153));
    QVERIFY(isNear(at(75, 55), 229, 229, 229, 3));
    // In the cell at 10 .. 20 mm x 20 .. 30 mm the height passes 20 at x = (20 - 5 - 2.5) / 0.8 = 15.6 (on y
    // = 25): left of it layer 1 (t = 0.3, grey 76), right of it layer 2 (grey 102).
    QVERIFY(isNear(at(14, 25), 76, 76, 76));
    QVERIFY(isNear(at(18, 25), 102, 102, 102));
    // y = 10 .. 20 mm lies above the window: white under red hatching, one pixel in eight of each row. The
    // bits of a row r from below are 1 << (r mod 8), highest bit first: red where x mod 8 = 7 - r mod 8.
    int red = 0;
    for (int r = 24; r < 36; ++r) {
        for (int x = 0; x < 160; ++x) {
            const QColor colour = probe(picture, x, 119 - r);
            const bool hatched = x % 8 == 7 - r % 8;
            QVERIFY2(hatched ? isNear(colour, 255, 0, 0) : isNear(colour, 255, 255, 255),
                     qPrintable(QStringLiteral("%1 %2").arg(x).arg(r)));
            red += hatched ? 1 : 0;
        }
    }
    QCOMPARE(red, 12 * 20);
    // x >= 40, y = 40 .. 50 mm lies below the window: black under red hatching. Row 90 from below: 90 mod 8
    // = 2.
    QVERIFY(isNear(probe(picture, 101, 119 - 90), 255, 0, 0)); // 101 mod 8 = 5
    QVERIFY(isNear(probe(picture, 102, 119 - 90), 0, 0, 0));
    // x = 26.5 mm, y = 45 mm: z = 30.7, layer 3, t = 0.5, inside the window and not hatched.
    QVERIFY(isNear(probe(picture, 53, 119 - 90), 127, 127, 127));
    QCOMPARE(goldenFault(picture, "plane_oblique"), QString());
    QCOMPARE(int(glGetError()), int(GL_NO_ERROR));
}

void SliceDrawingTest::obliquePlaneOfOneColour()
{
    Canvas canvas;
    glEnable(GL_TEXTURE_2D); // cells are not textured
    OpenImage object(newLayers());
    TestAdvisor advisor(Advice{{RenderKey::Color, 0xFF804020}});
    const float plane[4] = {-0.8f, -0.1f, 1.0f, -5.0f};
    QVERIFY(object.renderPlane(&advisor, plane));
    QVERIFY(glIsEnabled(GL_TEXTURE_2D));
    // Layer 4 has t = 0.6: (0.6 * 128, 0.6 * 64, 0.6 * 32).
    QVERIFY(isNear(probe(canvas.picture(), 90, 119 - 50), 77, 38, 19));
    // Far above the window t is not clamped: 1.5 * (128, 64, 32), between the red lines.
    QVERIFY(isNear(probe(canvas.picture(), 90, 119 - 30), 192, 96, 48));
}

void SliceDrawingTest::planeAlongTheSlices()
{
    Canvas canvas;
    lookAlongX();
    OpenImage object(newLayers());
    TestAdvisor advisor;
    const float plane[4] = {1.0f, 0.0f, 0.0f, -25.0f}; // x = 25 mm: voxels with x = 2
    QVERIFY(object.renderPlane(&advisor, plane));
    const QImage picture = canvas.picture();
    // Now y runs to the right (60 mm wide) and z upwards. Layer z has the grey (40 + 20 z) / 200 * 255.
    QVERIFY(isNear(probe(picture, 10, 119 - 10), 51, 51, 51));
    QVERIFY(isNear(probe(picture, 50, 119 - 90), 153, 153, 153));
    QVERIFY(isNear(probe(picture, 121, 60), 0, 0, 0)); // beyond the volume
    // y = 10 .. 20 mm is hatched in every layer. Row 90, 90 mod 8 = 2: red at x mod 8 = 5.
    QVERIFY(isNear(probe(picture, 29, 119 - 90), 255, 0, 0));
    QVERIFY(isNear(probe(picture, 30, 119 - 90), 255, 255, 255));
    QCOMPARE(goldenFault(picture, "plane_sagittal"), QString());
}

void SliceDrawingTest::steepPlane()
{
    Canvas canvas;
    lookAlongX();
    OpenImage object(newLayers());
    TestAdvisor advisor;
    // x + 0.9 y + 0.7 z = 100: cells are projected along x, some split into three layers.
    const float plane[4] = {1.0f, 0.9f, 0.7f, -100.0f};
    QVERIFY(object.renderPlane(&advisor, plane));
    const QImage picture = canvas.picture();
    // (y, z) = (45, 15): x = 100 - 40.5 - 10.5 = 49, voxel (4, 4, 1), below the window: black, and red where
    // x mod 8 = 7 - 30 mod 8 = 1.
    QVERIFY(isNear(probe(picture, 90, 119 - 30), 0, 0, 0));
    QVERIFY(isNear(probe(picture, 89, 119 - 30), 255, 0, 0));
    // (y, z) = (45, 45): x = 28, voxel (2, 4, 4): inside the window, grey 153.
    QVERIFY(isNear(probe(picture, 90, 119 - 90), 153, 153, 153));
    // (y, z) = (5, 5): x = 92, outside.
    QVERIFY(isNear(probe(picture, 10, 119 - 10), 0, 0, 0));
    QVERIFY(isNear(probe(picture, 11, 119 - 10), 0, 0, 0));
    QCOMPARE(goldenFault(picture, "plane_steep"), QString());
}

void SliceDrawingTest::emptyWindowDrawsBlack()
{
    Canvas canvas;
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    auto image = newVolume(MERV::TypeShort, {4, 3, 3}, [](int, int, int) { return 7; });
    image->setSpacing(20.0f, 20.0f, 20.0f, 1.0f);
    OpenImage object(std::move(image)); // minimum and maximum are equal: the window is 7 .. 7
    TestAdvisor advisor;
    const float plane[4] = {-0.5f, 0.0f, 1.0f, -5.0f};
    QVERIFY(object.renderPlane(&advisor, plane));
    const QImage picture = canvas.picture();
    for (int x = 4; x < 156; ++x)
        QVERIFY(isNear(probe(picture, x, 60), 0, 0, 0)); // black, no hatching
}

// A constant vector field of (30, 20, 40) mm in 4 x 3 x 2 voxels of 20 mm, seen at an angle.
void SliceDrawingTest::vectorsAsGlyphs()
{
    auto image = newVolume(MERV::TypeFloat, {4, 3, 2, 1, 3});
    const float vector[3] = {30.0f, 20.0f, 40.0f};
    for (int z = 0; z < 2; ++z) {
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 4; ++x) {
                for (int channel = 0; channel < 3; ++channel)
                    image->setVoxel(vector[channel], x, y, z, 0, channel);
            }
        }
    }
    image->setSpacing(20.0f, 20.0f, 20.0f, 1.0f);
    OpenImage object(std::move(image));
    Canvas canvas;
    // z is drawn to the left and upwards: (x - z / 4, y + z / 2).
    const GLdouble columns[16] = {1, 0, 0, 0, 0, 1, 0, 0, -0.25, 0.5, 1, 0, 0, 0, 0, 1};
    glLoadMatrixd(columns);
    TestAdvisor advisor(Advice{{RenderKey::DisplayMode, 1}});
    glColor4ub(255, 255, 0, 255);
    object.renderPoint(&advisor, 30.25f, 10.25f, 0.5f);
    const QImage picture = canvas.picture();
    // The shaft goes from (30.125, 10.5) to (60.25 - 10.125, 30.25 + 20.25) = (50.125, 50.5) mm; half-way
    // lies (40.125, 30.5), pixel (80.25, 61) from below.
    QVERIFY(isNear(probe(picture, 80, 119 - 61), 255, 255, 0));
    // The leg along z ends there as well; it starts at (60.125, 30.5) and is stippled: one pixel of four.
    int lit = 0;
    for (int r = 63; r < 99; ++r) {
        for (int x = 100; x < 121; ++x)
            lit += probe(picture, x, 119 - r).red() > 128 ? 1 : 0;
    }
    QVERIFY2(lit >= 7 && lit <= 22,
             qPrintable(QString::number(lit))); // 40 pixels long, a quarter lit, and the tip
    QCOMPARE(goldenFault(picture, "glyph"), QString());
}

void SliceDrawingTest::glyphsOnlyForThreeChannelsInModeOne()
{
    const auto drawn = [](int channels, const Advice &advice, float x) {
        auto image = newVolume(MERV::TypeFloat, {4, 3, 2, 1, channels});
        for (std::uint64_t index = 0; index < image->getValueCount(); ++index)
            image->setValue(20.0f, index);
        image->setSpacing(20.0f, 20.0f, 20.0f, 1.0f);
        OpenImage object(std::move(image));
        Canvas canvas;
        TestAdvisor advisor(advice);
        object.renderPoint(&advisor, x, 10.0f, 10.0f);
        return !isBlack(canvas.picture());
    };
    const Advice modeOne = {{RenderKey::DisplayMode, 1}};
    QVERIFY(drawn(3, modeOne, 10.0f));
    QVERIFY(!drawn(1, modeOne, 10.0f));
    QVERIFY(!drawn(2, modeOne, 10.0f));
    QVERIFY(!drawn(4, modeOne, 10.0f));
    QVERIFY(!drawn(3, {}, 10.0f));
    QVERIFY(!drawn(3, {{RenderKey::DisplayMode, 2}}, 10.0f));
    // Outside the volume (80 mm wide) there is no vector; on its lower border there is.
    QVERIFY(drawn(3, modeOne, 0.0f));
    QVERIFY(!drawn(3, modeOne, 80.0f));
    QVERIFY(!drawn(3, modeOne, -1.0f));
    QVERIFY(!drawn(3, modeOne, std::numeric_limits<float>::quiet_NaN()));
}

void SliceDrawingTest::samplesAsCrosses()
{
    Canvas canvas;
    canvas.ortho(0.0, 4.0, 0.0, 3.0); // 40 pixels per mm
    SparselySampledImageObject object;
    object.setSample({1.0125, 1.0125, 0.0}, 0.4);
    object.setSample({3.0125, 2.0125, 5.0}, 1.6);
    object.setSample({3.0125, 1.0125, 5.0}, -1.0);
    TestAdvisor advisor;
    object.render(&advisor);
    const QImage picture = canvas.picture();
    // Value 0.4: (0.8, 0.2, 0.05). The strokes reach 12 pixels to either side of pixel (40, 40) from below.
    QVERIFY(isNear(probe(picture, 40 + 8, 119 - 40), 204, 51, 13));
    QVERIFY(isNear(probe(picture, 40, 119 - 30), 204, 51, 13));
    QVERIFY(isNear(probe(picture, 40 + 14, 119 - 40), 0, 0, 0));
    // Value 1.6: (3.2, 0.8, 0.2), clamped. A negative value is black.
    QVERIFY(isNear(probe(picture, 120 - 8, 119 - 80), 255, 204, 51));
    QVERIFY(isNear(probe(picture, 120 - 8, 119 - 40), 0, 0, 0));
    QCOMPARE(goldenFault(picture, "samples"), QString());
}

void SliceDrawingTest::stateIsLeftAsFound()
{
    Canvas canvas;
    OpenImage object(newLayers());
    auto vectors = newVolume(MERV::TypeFloat, {4, 3, 2, 1, 3});
    OpenImage vectorObject(std::move(vectors));
    SparselySampledImageObject samples;
    samples.setSample({1.0, 1.0, 0.0}, 0.4);
    TestAdvisor advisor(Advice{{RenderKey::Color, 0xFF804020}, {RenderKey::DisplayMode, 1}});
    glColor4ub(11, 22, 33, 44);
    glBlendFunc(GL_ZERO, GL_DST_COLOR);
    glLineStipple(3, 0x1234);
    std::array<GLubyte, 128> stipple{};
    stipple.fill(0xA5);
    glPolygonStipple(stipple.data());
    glEnable(GL_POLYGON_STIPPLE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    const std::vector<double> before = openGlState();

    const float plane[4] = {-0.8f, -0.1f, 1.0f, -5.0f};
    object.renderPlane(&advisor, plane);
    QVERIFY(openGlState() == before);
    drawBox(object, advisor, 0.0f, 20.0f);
    QVERIFY(openGlState() == before);
    object.render(&advisor);
    QVERIFY(openGlState() == before);
    vectorObject.renderPoint(&advisor, 1.0f, 1.0f, 1.0f);
    QVERIFY(openGlState() == before);
    samples.render(&advisor);
    QVERIFY(openGlState() == before);
    // Slices leave texturing switched off, even if it was on: what is drawn next has no texture coordinates.
    glEnable(GL_TEXTURE_2D);
    drawBox(object, advisor, 0.0f, 20.0f);
    QVERIFY(!glIsEnabled(GL_TEXTURE_2D));
    QCOMPARE(int(glGetError()), int(GL_NO_ERROR));
}

void SliceDrawingTest::unusableImagesDrawNothing()
{
    Canvas canvas;
    TestAdvisor advisor(Advice{{RenderKey::DisplayMode, 1}});
    const float oblique[4] = {-0.8f, -0.1f, 1.0f, -5.0f};
    const float axial[4] = {0.0f, 0.0f, 1.0f, -5.0f};
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float broken[4] = {nan, 0.5f, 1.0f, nan};

    OpenImage none(nullptr);
    OpenImage empty(std::unique_ptr<MERV::Image>(MERV::createImage(MERV::TypeShort)));
    auto flat = newVolume(MERV::TypeUChar, {3, 3, 3}, [](int x, int, int) { return x; });
    flat->setSpacing(0.0f, 0.0f, 0.0f, 1.0f);
    OpenImage noSpacing(std::move(flat));
    for (OpenImage *object : {&none, &empty, &noSpacing}) {
        object->render(&advisor);
        QVERIFY(object->renderPlane(&advisor, oblique));
        QVERIFY(object->renderPlane(&advisor, axial));
        QVERIFY(object->renderPlane(&advisor, broken));
        object->renderPoint(&advisor, 1.0f, 1.0f, 1.0f);
        QVERIFY(isBlack(canvas.picture()));
    }
    QCOMPARE(int(glGetError()), int(GL_NO_ERROR));
}

// Opening, stepping, changing the window and cutting a volume: the peak beyond what was used before is the
// voxels, the 8-bit textures and at most 64 MB.
void SliceDrawingTest::memoryIsVoxelsTexturesAndLittleMore()
{
    if (sanitized)
        QSKIP("a sanitizer takes memory for itself");
    Canvas canvas;
    TestAdvisor advisor;
    const long before = megabytes("VmRSS:");
    if (before < 0)
        QSKIP("this system does not tell its memory in /proc");
    // 512 * 512 * 200 voxels of 2 bytes: 100 MB, and half of that as textures.
    auto image = newVolume(MERV::TypeUShort, {512, 512, 200});
    image->setVoxel(1000.0f, 1, 1, 1, 0, 0);
    image->computeMinMax();
    OpenImage object(std::move(image));
    object.render(&advisor);
    object.setWindow(0.0f, 500.0f);
    object.render(&advisor);
    const float plane[4] = {0.1f, 0.1f, 1.0f, -100.0f};
    object.renderPlane(&advisor, plane);
    glFinish();
    const long peak = megabytes("VmHWM:") - before;
    QVERIFY2(peak <= 100 + 50 + 64, qPrintable(QString::number(peak)));
}

QTEST_MAIN(SliceDrawingTest)
#include "SliceDrawingTest.moc"
