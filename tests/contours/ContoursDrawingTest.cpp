#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "tests/support/GlCanvas.h"
#include "tests/support/GoldenPicture.h"

#include <QTest>

#include <atomic>
#include <cmath>
#include <limits>
#include <map>
#include <thread>
#include <tuple>

namespace {

// Answers what a test has put in, for any object or for one.
class TestAdvisor : public GraphicsObjectRenderAdvisor
{
public:
    std::map<std::pair<int, int>, std::uint32_t> forAll;
    std::map<std::tuple<GraphicsObject *, int, int>, std::uint32_t> forOne;

    bool overrides(GraphicsObject *object, int key, int subKey) override
    {
        return forOne.count({object, key, subKey}) != 0 || forAll.count({key, subKey}) != 0;
    }
    std::uint32_t value(GraphicsObject *object, int key, int subKey) override
    {
        const auto one = forOne.find({object, key, subKey});
        return one != forOne.end() ? one->second : forAll.at({key, subKey});
    }
};

constexpr float lowest = std::numeric_limits<float>::lowest();
constexpr float highest = std::numeric_limits<float>::max();

void drawAt(SlicedContoursObject &object, TestAdvisor &advisor, float z0, float z1)
{
    object.renderBox(&advisor, lowest, highest, lowest, highest, z0, z1);
}

SlicedContoursSegment *addLine(SlicedContoursFragment *fragment, float z, const std::vector<QPointF> &points)
{
    SlicedContoursSegment *segment = fragment->newSegment(points.front(), z);
    for (auto point = points.begin() + 1; point != points.end(); ++point)
        segment->addPointBack(*point);
    return segment;
}

// The square from (low, low) to (high, high) in two pieces.
void addSquare(SlicedContoursFragment *fragment, float z, double low, double high)
{
    addLine(fragment, z, {{low, low}, {high, low}, {high, high}});
    addLine(fragment, z, {{high, high}, {low, high}, {low, low}});
}

// A canvas of 100 x 100 pixels that shows 0..10 mm; (x, y) in mm from the lower left is probed at its pixel.
struct Sheet
{
    Sheet()
        : canvas(100, 100)
    {
        canvas.ortho(0, 10, 0, 10);
        glDisable(GL_DITHER);
        glColor4ub(255, 255, 255, 255);
    }

    QColor at(double x, double y) const
    {
        return probe(canvas.picture(), static_cast<int>(x * 10), 99 - static_cast<int>(y * 10));
    }
    int litPixels() const
    {
        const QImage picture = opaquePicture(canvas.picture());
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                count += (picture.pixel(x, y) & 0xFFFFFF) != 0;
        return count;
    }

    GlCanvas canvas;
};

} // namespace

class ContoursDrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void closedContourIsFilledInItsColour()
    {
        Sheet sheet;
        QVERIFY(sheet.canvas.isValid());
        SlicedContoursObject object;
        SlicedContoursFragment *fragment = object.newFragment("a");
        addSquare(fragment, 1.0f, 2.05, 6.05);
        SlicedContour *contour = object.newContour("c");
        contour->addFragmentReference(fragment);
        TestAdvisor advisor;
        advisor.forOne[{contour, RenderKey::Color, 0}] = 0xFF4080C0;
        advisor.forAll[{RenderKey::Smooth, 0}] = 0;
        drawAt(object, advisor, 1.0f, 1.0f);
        QVERIFY(isNear(sheet.at(4, 4), 0x40, 0x80, 0xC0));
        QVERIFY(isNear(sheet.at(2.5, 5.5), 0x40, 0x80, 0xC0));
        QVERIFY(isNear(sheet.at(7, 4), 0, 0, 0));
        QVERIFY(isNear(sheet.at(1, 1), 0, 0, 0));
        // The lines keep the colour that was current before: the fill restores it.
        QVERIFY(isNear(sheet.at(6.05, 4.0), 255, 255, 255));
        QCOMPARE(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    void openContourIsNotFilled()
    {
        Sheet sheet;
        SlicedContoursObject object;
        SlicedContoursFragment *fragment = object.newFragment("a");
        addLine(fragment, 1.0f, {{2, 2}, {6, 2}, {6, 6}});
        addLine(fragment, 1.0f, {{6, 6}, {2, 6}, {2, 3}});
        object.newContour("c")->addFragmentReference(fragment);
        TestAdvisor advisor;
        drawAt(object, advisor, 1.0f, 1.0f);
        QVERIFY(isNear(sheet.at(4, 4), 0, 0, 0));
        QVERIFY(sheet.at(6, 4).red() > 100);
    }

    // A bow tie crosses itself: the tessellator makes a vertex of its own there. Odd winding fills both
    // wings.
    void selfCrossingOutlineIsFilled()
    {
        Sheet sheet;
        SlicedContoursObject object;
        SlicedContoursFragment *fragment = object.newFragment("a");
        addLine(fragment, 1.0f, {{1, 1}, {9, 9}, {9, 1}});
        addLine(fragment, 1.0f, {{9, 1}, {1, 9}, {1, 1}});
        SlicedContour *contour = object.newContour("c");
        contour->addFragmentReference(fragment);
        TestAdvisor advisor;
        advisor.forOne[{contour, RenderKey::Color, 0}] = 0xFF00FF00;
        drawAt(object, advisor, 0.0f, 2.0f);
        QVERIFY(isNear(sheet.at(2, 5), 0, 255, 0));
        QVERIFY(isNear(sheet.at(8, 5), 0, 255, 0));
        QVERIFY(isNear(sheet.at(5, 2), 0, 0, 0));
        QVERIFY(isNear(sheet.at(5, 8), 0, 0, 0));
    }

    void coordinatesThatAreNoNumbersDoNoHarm()
    {
        Sheet sheet;
        SlicedContoursObject object;
        SlicedContoursFragment *fragment = object.newFragment("a");
        addLine(fragment, 1.0f, {{1, 1}, {NAN, 9}, {9, 1}});
        addLine(fragment, 1.0f, {{9, 1}, {1, 9}, {1, 1}});
        addLine(fragment, 1.0f, {{1e300, 1}, {-1e300, 9}, {INFINITY, 1}});
        object.newContour("c")->addFragmentReference(fragment);
        TestAdvisor advisor;
        drawAt(object, advisor, 0.0f, 2.0f);
        QVERIFY(isNear(sheet.at(5, 3), 0, 0, 0));
        object.render(&advisor);
    }

    void slabIsHalfOpen()
    {
        SlicedContoursObject object;
        addLine(object.newFragment("a"), 2.0f, {{1, 5}, {9, 5}});
        TestAdvisor advisor;
        const auto lit = [&](float z0, float z1) {
            Sheet sheet;
            drawAt(object, advisor, z0, z1);
            return sheet.litPixels() > 0;
        };
        QVERIFY(lit(2.0f, 3.0f));
        QVERIFY(!lit(1.0f, 2.0f));
        QVERIFY(lit(2.0f, 2.0f));
        QVERIFY(!lit(1.0f, 1.0f));
        QVERIFY(lit(1.0f, 2.5f));
    }

    // 8 mm are 80 pixels. Without smoothing a plain line has them all (end diamonds add some around the
    // ends); the pattern 0xE0E0 leaves 3 of 8 pixels, and a dashed line has no markers.
    void dashedLineHasGapsAndNoMarkers()
    {
        SlicedContoursObject object;
        addLine(object.newFragment("a"), 1.0f, {{1, 5.05}, {9, 5.05}});
        TestAdvisor advisor;
        advisor.forAll[{RenderKey::Smooth, 0}] = 0;
        Sheet plain;
        drawAt(object, advisor, 1.0f, 1.0f);
        const int whole = plain.litPixels();
        QVERIFY(whole >= 80 && whole <= 110);
        Sheet dashed;
        advisor.forAll[{RenderKey::Dashed, 0}] = 1;
        drawAt(object, advisor, 1.0f, 1.0f);
        QCOMPARE(dashed.litPixels(), 30);
        QVERIFY(!glIsEnabled(GL_LINE_STIPPLE));
        QVERIFY(!glIsEnabled(GL_LINE_SMOOTH));
    }

    void lineWidthFollowsItsFactor()
    {
        SlicedContoursObject object;
        addLine(object.newFragment("a"), 1.0f, {{1, 5.05}, {9, 5.05}});
        TestAdvisor advisor;
        advisor.forAll[{RenderKey::Smooth, 0}] = 0;
        advisor.forAll[{RenderKey::LineWidthFactor, 0}] = 5;
        Sheet sheet;
        drawAt(object, advisor, 1.0f, 1.0f);
        QVERIFY(isNear(sheet.at(5, 5.25), 255, 255, 255));
        QVERIFY(isNear(sheet.at(5, 5.45), 0, 0, 0));
        GLfloat width = 0.0f;
        glGetFloatv(GL_LINE_WIDTH, &width);
        QCOMPARE(width, 1.0f);
    }

    // With exclusive-or as logic operation and end points in code 255, a second segment of the fragment must
    // not inherit that colour.
    void endPointsKeepTheirColourToThemselves()
    {
        SlicedContoursObject object;
        SlicedContoursFragment *fragment = object.newFragment("a");
        addLine(fragment, 1.0f, {{1, 2.05}, {9, 2.05}});
        addLine(fragment, 1.0f, {{1, 7.05}, {9, 7.05}});
        TestAdvisor advisor;
        advisor.forAll[{RenderKey::Smooth, 0}] = 0;
        advisor.forAll[{RenderKey::EndPoints, 0}] = 1;
        advisor.forOne[{fragment, RenderKey::Color, 0}] = 0xFF00FF00;
        advisor.forAll[{RenderKey::Color, RenderKey::EndPoints}] = 0xFF0000FF;
        Sheet sheet;
        drawAt(object, advisor, 1.0f, 1.0f);
        QVERIFY(isNear(sheet.at(5, 2.05), 0, 255, 0));
        QVERIFY(isNear(sheet.at(5, 7.05), 0, 255, 0));
        QVERIFY(isNear(sheet.at(1, 2.05), 0, 0, 255));
        QVERIFY(isNear(sheet.at(1, 7.05), 0, 0, 255));
    }

    void singlePointIsAMarker()
    {
        SlicedContoursObject object;
        object.newFragment("a")->newSegment({5, 5}, 1.0f);
        TestAdvisor advisor;
        advisor.forAll[{RenderKey::Smooth, 0}] = 0;
        Sheet sheet;
        drawAt(object, advisor, 1.0f, 1.0f);
        // A diamond of half-diagonal 0.2 mm, 2 pixels: an area of 8 pixels, give or take its rim.
        QVERIFY(sheet.litPixels() >= 4 && sheet.litPixels() <= 14);
    }

    void nothingIsDrawnForAnEmptyObject()
    {
        SlicedContoursObject object;
        object.newFragment("a");
        object.newContour("c")->addFragmentReference(object.fragment(0));
        TestAdvisor advisor;
        Sheet sheet;
        drawAt(object, advisor, lowest, highest);
        object.render(&advisor);
        QCOMPARE(sheet.litPixels(), 0);
    }

    // A rasterizing worker draws slab after slab while the main thread makes, joins and deletes lines.
    void workerDrawsWhileLinesComeAndGo()
    {
        SlicedContoursObject object;
        SlicedContoursFragment *fragment = object.newFragment("a");
        object.newContour("c")->addFragmentReference(fragment);
        QOffscreenSurface surface;
        surface.create();
        std::atomic<bool> stop{false};
        std::atomic<int> slabs{0};
        std::atomic<int> errors{0};
        std::thread worker([&] {
            QOpenGLContext context;
            if (!context.create() || !context.makeCurrent(&surface)) {
                ++errors;
                return;
            }
            TestAdvisor advisor;
            advisor.forAll[{RenderKey::Smooth, 0}] = 0;
            while (!stop) {
                drawAt(object, advisor, static_cast<float>(slabs % 4), static_cast<float>(slabs % 4 + 1));
                ++slabs;
            }
            errors += glGetError() != GL_NO_ERROR;
            context.doneCurrent();
        });
        for (int i = 0; i < 10000; ++i) {
            addSquare(fragment, static_cast<float>(i % 4), 1.0, 2.0 + i % 7);
            if (fragment->segmentCount() > 12) {
                fragment->segment(0)->replaceWith(fragment->segment(1), nullptr);
                while (fragment->segmentCount() > 8)
                    delete fragment->segment(0);
            }
        }
        while (slabs < 8 && errors == 0)
            std::this_thread::yield();
        stop = true;
        worker.join();
        QCOMPARE(errors.load(), 0);
        QVERIFY(slabs >= 8);
    }

    void linesAndFillsLookAsAccepted()
    {
        GlCanvas canvas(200, 200);
        QVERIFY(canvas.isValid());
        canvas.ortho(0, 10, 0, 10);
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        SlicedContoursObject object;
        SlicedContoursFragment *bone = object.newFragment("bone");
        SlicedContoursFragment *surface = object.newFragment("surface");
        SlicedContoursSegment *lower = addLine(bone, 1.0f, {{1, 5}, {2, 2.5}, {5, 1.5}, {8, 2.5}, {9, 5}});
        addLine(surface, 1.0f, {{9, 5}, {7, 4}, {5, 6.5}, {3, 4}, {1, 5}});
        SlicedContoursSegment *loose = addLine(surface, 1.0f, {{1, 8}, {4, 9}, {9, 7.5}});
        SlicedContour *contour = object.newContour("cartilage");
        contour->addFragmentReference(bone);
        contour->addFragmentReference(surface);
        TestAdvisor advisor;
        advisor.forOne[{contour, RenderKey::Color, 0}] = 0x800000FF;
        advisor.forOne[{bone, RenderKey::Color, 0}] = 0xFFFF8000;
        advisor.forOne[{surface, RenderKey::Color, 0}] = 0xFF00FF80;
        advisor.forOne[{lower, RenderKey::Highlight, 0}] = 1;
        advisor.forOne[{loose, RenderKey::Dashed, 0}] = 1;
        advisor.forAll[{RenderKey::LineWidthFactor, 0}] = 2;
        drawAt(object, advisor, 1.0f, 1.0f);
        const QImage picture = canvas.picture();
        QVERIFY(isNear(probe(picture, 100, 199 - 60), 0, 0, 128)); // the fill, half transparent on black
        QVERIFY(isNear(probe(picture, 20, 100), 0, 255, 128));     // a diamond of the surface, drawn last
        QVERIFY(isNear(probe(picture, 40, 60), 0, 0, 0));
        QCOMPARE(goldenFault(picture, QStringLiteral("contours_lines_and_fill")), QString());
    }

    // A cylinder of two halves, seen from above its axis and a little from the side.
    void skinLooksAsAccepted()
    {
        GlCanvas canvas(200, 200);
        QVERIFY(canvas.isValid());
        canvas.ortho(-5, 5, -5, 5);
        glRotated(-70.0, 1.0, 0.0, 0.0);
        glRotated(20.0, 0.0, 0.0, 1.0);
        glDepthFunc(GL_LEQUAL);
        SlicedContoursObject object;
        SlicedContoursFragment *fragment = object.newFragment("a");
        for (int level = -2; level <= 2; ++level) {
            std::vector<QPointF> arc;
            for (int i = 0; i <= 24; ++i) {
                const double angle = i * 3.14159265358979 / 24.0;
                arc.emplace_back(3.0 * std::cos(angle), 3.0 * std::sin(angle) - 1.0);
            }
            if (level % 2 != 0)
                std::reverse(arc.begin(), arc.end()); // the direction of a line does not matter
            addLine(fragment, static_cast<float>(level), arc);
        }
        TestAdvisor advisor;
        advisor.forOne[{fragment, RenderKey::Color, 0}] = 0xFFC08040;
        object.render(&advisor);
        QVERIFY(!glIsEnabled(GL_LIGHTING));
        QVERIFY(!glIsEnabled(GL_DEPTH_TEST));
        QCOMPARE(goldenFault(canvas.picture(), QStringLiteral("contours_skin")), QString());
    }
};

QTEST_MAIN(ContoursDrawingTest)
#include "ContoursDrawingTest.moc"
