#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/XHand.h"
#include "tests/view/ViewScene.h"

#include <QApplication>
#include <QMessageBox>
#include <QSignalSpy>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr float firstZ = 1.0f;
const QString appName = "Tevora";

double shoelace(const QList<QPointF> &points)
{
    double sum = 0.0;
    for (qsizetype i = 0; i < points.size(); ++i) {
        const QPointF &a = points[i];
        const QPointF &b = points[(i + 1) % points.size()];
        sum += a.x() * b.y() - b.x() * a.y();
    }
    return std::abs(sum) / 2.0;
}

class FineObject : public ImageObject
{
public:
    float granularity() const override { return 0.25f; }
};

// Edge points at each quarter of a mm from (10, 10) to (14, 10), faint but for a strong one at x = 12.5.
class EdgeRail : public FineObject
{
public:
    EdgeRail()
    {
        for (int i = 0; i <= 16; ++i)
            rail.emplace_back(10.0f + 0.25f * static_cast<float>(i), 10.0f, firstZ, i == 10 ? 2.0f : 0.0f);
    }
    EdgePointList *edgePointsAround(float x, float y, float z, float radius) override
    {
        auto found = std::make_unique<EdgePointList>();
        for (EdgePoint &point : rail)
            if (std::abs(point.x - x) <= radius && std::abs(point.y - y) <= radius &&
                std::abs(point.z - z) <= radius)
                found->append(&point);
        return found.release();
    }

private:
    std::vector<EdgePoint> rail;
};

} // namespace

class ViewContourEventsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void trace_marksEdgePointsAroundTheCursor();
    void leavingTrace_clearsTheMarks();
    void traceRightDrag_drawsFreehand();
    void traceLeftDrag_followsEdgePoints();
    void tracePress_withoutFragment_warns();
    void traceClick_leavesNothing();
    void tracePressAtTheLastPoint_appends();
    void tracePressAtTheFirstPoint_prepends();
    void tracePressNearTheEdgePointOfAnEnd_continues();
    void tracePressOneStepFromAnEnd_startsAnew();
    void tracePressNearBothEnds_takesTheFirst();
    void stepsOfTraceAndErase_areThoseOfTheFinestObject();
    void stepsOfGuess_areThoseOfTheAnalyzedObject();
    void trace_isAttractedByEnds();
    void traceWithAlt_isAttractedByContours();
    void traceMoveWithAlt_isAttractedByContours();
    void traceGoingBack_takesPointsAway();
    void traceHighlight_isForTheActiveSegment();
    void traceRelease_replacesWhatLiesBetween();
    void traceRelease_asksBeforeMuchIsLost();
    void traceRelease_ofALongPiece_asksNothing();
    void traceRelease_asksOnlyAboveSixteenSteps();
    void traceRelease_ofAPieceFromFreeSpace_goesIntoTheLineAtItsEnd();
    void traceRelease_ofAPieceThatItsStartRefuses_goesIntoTheLineAtItsEnd();
    void traceRelease_joinsTwoLinesThroughThePiece();
    void traceTwoHalves_closeALoop();
    void traceAtZ0_withATurnedCamera_staysOnOneLevel();
    void modeSwitchDuringATrace_leavesNoSinglePoint();
    void secondButtonDuringATrace_leavesNoSinglePoint();
    void closingWhileTracing_letsGo();
    void guess_needsAStartAndAFragment();
    void guessWithoutGuide_walksStraightAlongTheEdge();
    void guessWithGuide_followsTheNeighbouringSlice();
    void guessNextToOneVertexOfTheGuide_isFinite();
    void guessEnd_snapsWithinTwoMillimetres();
    void guess_extendsTheSegmentAtItsStart();
    void guessWhereNoEdgesAre_saysSo();
    void guess_paintsOnce();
    void guessStart_survivesOtherModes();
    void erase_needsShiftAndAFragment();
    void erase_deletesSegmentsUnderTheCursor();
    void viewDeletedDuringAQuestion_isSafe();
    void randomOrdersOfClosing_whileShown();

private:
    SlicedContoursSegment *addU();
    void traceMode() { scene->view->setInteractBaseModeTrace(); }
    void moveTo(double x, double y) { hand->moveTo(ViewScene::pixel(x, y)); }
    // A freehand line through these positions, from press to release.
    void draw(std::initializer_list<QPointF> positions, Qt::MouseButton button = Qt::RightButton);
    QList<QPointF> points(int segment) const { return ViewScene::pointsOf(scene->bone->segment(segment)); }

    std::unique_ptr<ViewScene> scene;
    std::unique_ptr<XHand> hand;
    std::unique_ptr<CapturedOutput> output;
};

void ViewContourEventsTest::init()
{
    QCoreApplication::setApplicationName(appName);
    output = std::make_unique<CapturedOutput>();
    scene = std::make_unique<ViewScene>();
    QVERIFY(scene->show());
    hand = std::make_unique<XHand>(scene->view);
    hand->moveTo({2, 2});
}

void ViewContourEventsTest::cleanup()
{
    hand.reset();
    scene.reset();
    output.reset();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

// A U of 36 + 4 + 36 mm with points at each mm of its legs; from (2, 4) to (6, 4) 34 + 4 + 34 mm are between,
// and with the edges beside both vertices 74 are counted.
SlicedContoursSegment *ViewContourEventsTest::addU()
{
    SlicedContoursSegment *u = scene->bone->newSegment({2, 38}, firstZ);
    for (int y = 37; y >= 2; --y)
        u->addPointFront({2.0, static_cast<double>(y)});
    for (int y = 38; y >= 2; --y)
        u->addPointBack({6.0 + 1e-9 * (y % 2), static_cast<double>(y)}); // not quite straight
    return u;
}

void ViewContourEventsTest::draw(std::initializer_list<QPointF> positions, Qt::MouseButton button)
{
    moveTo(positions.begin()->x(), positions.begin()->y());
    hand->press(button);
    for (auto position = positions.begin() + 1; position != positions.end(); ++position)
        moveTo(position->x(), position->y());
    hand->release(button);
}

void ViewContourEventsTest::trace_marksEdgePointsAroundTheCursor()
{
    traceMode();
    moveTo(21.0, 10.0);
    // The edge runs along x = 20.
    const std::unique_ptr<EdgePointList> near(scene->edges->edgePointsAround(21.0f, 10.0f, firstZ, 2.5f));
    QVERIFY(!near->isEmpty());
    QCOMPARE(static_cast<qsizetype>(scene->state().edgeMarkers.size()), near->size());
    for (const EdgePoint &point : scene->state().edgeMarkers) {
        QVERIFY(std::abs(point.x - 20.0f) < 0.6f);
        QVERIFY(std::abs(point.y - 10.0f) <= 2.5f);
        QCOMPARE(point.z, firstZ);
    }
    moveTo(30.0, 10.0);
    QVERIFY(scene->state().edgeMarkers.empty());
}

void ViewContourEventsTest::leavingTrace_clearsTheMarks()
{
    moveTo(20.0, 10.0);
    QVERIFY(scene->state().edgeMarkers.empty());
    hand->keyDown("t"); // entering fetches them at once
    QVERIFY(!scene->state().edgeMarkers.empty());
    hand->keyUp("t");
    QVERIFY(scene->state().edgeMarkers.empty());
}

void ViewContourEventsTest::traceRightDrag_drawsFreehand()
{
    traceMode();
    draw({{5, 5}, {10, 6}, {10.5, 9}});
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(points(0), (QList<QPointF>{{5, 5}, {10, 6}, {10.5, 9}}));
    QCOMPARE(scene->bone->segment(0)->z(), firstZ);
    QVERIFY(!scene->state().activeSegment);
}

void ViewContourEventsTest::traceLeftDrag_followsEdgePoints()
{
    traceMode();
    draw({{20.5, 10}, {20.5, 12}, {19.5, 14}}, Qt::LeftButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    QVERIFY(points(0).size() >= 2);
    for (const QPointF &point : points(0)) {
        QVERIFY(std::abs(point.x() - 20.0) < 0.1);                 // on the edge
        QVERIFY(std::abs(std::fmod(point.y(), 1.0) - 0.5) < 1e-6); // in the middle of a row of pixels
    }
    QVERIFY(points(0).last().y() > points(0).first().y());
}

void ViewContourEventsTest::tracePress_withoutFragment_warns()
{
    scene->edit(-1);
    traceMode();
    moveTo(10, 10);
    DialogDriver driver;
    driver.expectBox(QMessageBox::Warning, appName,
                     "Tracing edges requires a Sliced Contours Fragment to be selected for editing.",
                     QMessageBox::Ok);
    hand->clickIntoDialog(Qt::LeftButton);
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(scene->bone->segmentCount(), 0);
    // A contour is no fragment either.
    scene->edit(0);
    driver.expectBox(QMessageBox::Warning, appName,
                     "Tracing edges requires a Sliced Contours Fragment to be selected for editing.",
                     QMessageBox::Ok);
    moveTo(10, 10);
    hand->clickIntoDialog(Qt::RightButton);
    QVERIFY2(driver.verify(), driver.report());
    QVERIFY(!scene->state().activeSegment);
}

void ViewContourEventsTest::traceClick_leavesNothing()
{
    traceMode();
    moveTo(10, 10);
    hand->press(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    QVERIFY(scene->state().activeSegment);
    hand->release(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 0);
    hand->doubleClick(Qt::LeftButton); // a press like any other
    QCOMPARE(scene->bone->segmentCount(), 0);
}

void ViewContourEventsTest::tracePressAtTheLastPoint_appends()
{
    ViewScene::line(scene->bone, firstZ, {{5, 5}, {10, 5}});
    traceMode();
    draw({{10.5, 5.5}, {12, 8}});
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(points(0), (QList<QPointF>{{5, 5}, {10, 5}, {12, 8}}));
}

void ViewContourEventsTest::tracePressAtTheFirstPoint_prepends()
{
    ViewScene::line(scene->bone, firstZ, {{5, 5}, {10, 5}});
    traceMode();
    moveTo(4.5, 5.5);
    hand->press(Qt::RightButton);
    QCOMPARE(scene->state().activeEnd, -1);
    QCOMPARE(scene->state().activeSegment.data(), scene->bone->segment(0));
    QVERIFY(!scene->state().anchorSegment);
    moveTo(3, 8);
    hand->release(Qt::RightButton);
    QCOMPARE(points(0), (QList<QPointF>{{3, 8}, {5, 5}, {10, 5}}));
}

void ViewContourEventsTest::tracePressNearTheEdgePointOfAnEnd_continues()
{
    // The end (20, 10.5) is 1.2 mm from the cursor (S is 1), but at the edge point that the cursor snaps to.
    ViewScene::line(scene->bone, firstZ, {{14, 10.5}, {20, 10.5}});
    traceMode();
    moveTo(21.25, 10.5);
    hand->press(Qt::LeftButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(scene->state().activeSegment.data(), scene->bone->segment(0));
    QCOMPARE(scene->state().activeEnd, 1);
    hand->release(Qt::LeftButton);
}

void ViewContourEventsTest::tracePressOneStepFromAnEnd_startsAnew()
{
    SlicedContoursSegment *old = ViewScene::line(scene->bone, firstZ, {{5, 5}, {10, 5}});
    traceMode();
    moveTo(11, 5); // one step is not less than one step
    hand->press(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 2);
    QCOMPARE(scene->state().anchorSegment.data(), old);
    QCOMPARE(scene->state().activeSegment.data(), scene->bone->segment(1));
    QCOMPARE(scene->state().activeEnd, 1);
    hand->release(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    moveTo(10.875, 5);
    hand->press(Qt::RightButton);
    QCOMPARE(scene->state().activeSegment.data(), old);
    QVERIFY(!scene->state().anchorSegment);
    hand->release(Qt::RightButton);
}

void ViewContourEventsTest::tracePressNearBothEnds_takesTheFirst()
{
    SlicedContoursSegment *tiny = ViewScene::line(scene->bone, firstZ, {{10, 10}, {10.5, 10}});
    traceMode();
    moveTo(10.5, 10); // at the last point, but the first one is asked first
    hand->press(Qt::RightButton);
    QCOMPARE(scene->state().activeSegment.data(), tiny);
    QCOMPARE(scene->state().activeEnd, -1);
    hand->release(Qt::RightButton);
}

void ViewContourEventsTest::stepsOfTraceAndErase_areThoseOfTheFinestObject()
{
    FineObject fine;
    scene->composition->addImageObject(&fine);
    ViewScene::line(scene->bone, firstZ, {{5, 5}, {10, 5}});
    traceMode();
    draw({{10.5, 5.5}, {12, 8}}); // two steps of 0.25 beside the end
    QCOMPARE(scene->bone->segmentCount(), 2);
    QCOMPARE(points(1), (QList<QPointF>{{10.5, 5.5}, {12, 8}}));
    scene->view->setInteractBaseModeErase();
    hand->keyDown("Shift_L");
    moveTo(12.25, 8);
    hand->click(Qt::LeftButton);
    QCOMPARE(scene->bone->segmentCount(), 2);
    moveTo(12, 8);
    hand->click(Qt::LeftButton);
    hand->keyUp("Shift_L");
    QCOMPARE(scene->bone->segmentCount(), 1);
}

void ViewContourEventsTest::stepsOfGuess_areThoseOfTheAnalyzedObject()
{
    FineObject fine;
    scene->composition->addImageObject(&fine); // shown, but not analyzed
    ViewScene::line(scene->bone, firstZ, {{20, 5.5}, {20, 7.5}, {20, 9.5}});
    scene->view->setInteractBaseModeGuess();
    moveTo(20.375, 9.5); // nearer than half a step of 1 mm
    hand->click(Qt::LeftButton);
    moveTo(20, 20.5);
    hand->click(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    QVERIFY(scene->bone->segment(0)->lastPoint().y() > 18.0);
}

void ViewContourEventsTest::trace_isAttractedByEnds()
{
    ViewScene::line(scene->surface, firstZ, {{10, 30}, {15, 30}}); // the other fragment of the same object
    traceMode();
    draw({{15.5, 29.5}, {10, 20}, {10.5, 29.5}}); // ends within half a step
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(points(0), (QList<QPointF>{{15, 30}, {10, 20}, {10, 30}}));
}

void ViewContourEventsTest::traceWithAlt_isAttractedByContours()
{
    ViewScene::line(scene->surface, firstZ, {{4, 30}, {10, 30}, {16, 30}});
    traceMode();
    moveTo(11, 31);
    hand->keyDown("Alt_L");
    hand->press(Qt::RightButton);
    moveTo(8, 20); // nothing near: freehand
    hand->keyUp("Alt_L");
    moveTo(9, 29); // near, but without Alt
    hand->release(Qt::RightButton);
    QCOMPARE(points(0), (QList<QPointF>{{10, 30}, {8, 20}, {9, 29}}));
}

void ViewContourEventsTest::traceMoveWithAlt_isAttractedByContours()
{
    ViewScene::line(scene->surface, firstZ, {{4, 30}, {10, 30}, {16, 30}});
    traceMode();
    moveTo(8, 20);
    hand->press(Qt::RightButton);
    hand->keyDown("Alt_L");
    moveTo(9, 29); // two steps around include (10, 30)
    hand->keyUp("Alt_L");
    hand->release(Qt::RightButton);
    QCOMPARE(points(0), (QList<QPointF>{{8, 20}, {10, 30}}));
}

void ViewContourEventsTest::traceGoingBack_takesPointsAway()
{
    traceMode();
    draw({{5, 5}, {10, 6}, {15, 9}, {10, 6}});
    QCOMPARE(points(0), (QList<QPointF>{{5, 5}, {10, 6}}));
}

void ViewContourEventsTest::traceHighlight_isForTheActiveSegment()
{
    SlicedContoursSegment *other = ViewScene::line(scene->bone, firstZ, {{5, 35}, {10, 35}});
    traceMode();
    moveTo(10, 10);
    hand->press(Qt::RightButton);
    QStackedSliceView *view = scene->view;
    QVERIFY(view->overrides(other, 4, 0) && view->overrides(other, 5, 0) && view->overrides(other, 9, 0));
    QCOMPARE(view->value(scene->state().activeSegment, 4, 0), 1u);
    QCOMPARE(view->value(other, 4, 0), 0u);
    QCOMPARE(view->value(other, 5, 0), 0u);
    QCOMPARE(view->value(other, 9, 0), 2u);
    QVERIFY(!view->overrides(other, 7, 0)); // the composition's matter
    QVERIFY(view->overrides(scene->bone, 2, 0));
    hand->release(Qt::RightButton);
}

void ViewContourEventsTest::traceRelease_replacesWhatLiesBetween()
{
    ViewScene::line(scene->bone, firstZ, {{5, 10}, {7, 10}, {9, 10}, {11, 10}, {13, 10}, {15, 10}});
    traceMode();
    // A bulge from vertex 7 to vertex 13: 6 mm are lost, less than 16; nothing is asked.
    DialogDriver driver;
    draw({{7.25, 10.25}, {10, 13}, {13.25, 10.25}});
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(points(0), (QList<QPointF>{{5, 10}, {7.25, 10.25}, {10, 13}, {13.25, 10.25}, {15, 10}}));
}

void ViewContourEventsTest::traceRelease_asksBeforeMuchIsLost()
{
    SlicedContoursSegment *u = addU();
    const int before = u->pointCount();
    traceMode();
    DialogDriver driver;
    driver.expectBox(QMessageBox::Question, appName, "74 mm will be replaced.", QMessageBox::Cancel);
    draw({{2, 4}, {6, 4}});
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(u->pointCount(), before);
    driver.expectBox(QMessageBox::Question, appName, "74 mm will be replaced.", QMessageBox::Ok);
    draw({{2, 4}, {6, 4}});
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(u->pointCount(), 6); // (2, 2), (2, 3), the piece, (6, 3), (6, 2)
    QVERIFY(!scene->state().activeSegment && !scene->state().anchorSegment);
}

void ViewContourEventsTest::traceRelease_ofALongPiece_asksNothing()
{
    // 20 mm and the edges of 2 mm beside both vertices are lost, more than 16, but the piece has
    // 2 * sqrt(100 + 64) = 25.6 mm, and 24 is not more than twice of that.
    ViewScene::line(scene->bone, firstZ, {{3, 10}, {5, 10}, {15, 10}, {25, 10}, {27, 10}});
    traceMode();
    DialogDriver driver;
    draw({{5.25, 10.25}, {15, 18}, {25, 10.25}});
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(points(0), (QList<QPointF>{{3, 10}, {5.25, 10.25}, {15, 18}, {25, 10.25}, {27, 10}}));
}

void ViewContourEventsTest::traceRelease_asksOnlyAboveSixteenSteps()
{
    FineObject fine; // 16 steps are 4 mm
    scene->composition->addImageObject(&fine);
    // A piece of 1 mm from the second to the last but one: 1 + 0.5 + 1 + 0.5 + 1 mm are lost.
    ViewScene::line(scene->bone, firstZ, {{10, 10}, {10, 11}, {10, 11.5}, {11, 11.5}, {11, 11}, {11, 10}});
    traceMode();
    DialogDriver driver;
    draw({{10, 11}, {11, 11}});
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(points(0), (QList<QPointF>{{10, 10}, {10, 11}, {11, 11}, {11, 10}}));
    // 1 + 0.625 + 1 + 0.625 + 1 mm.
    ViewScene::line(scene->bone, firstZ,
                    {{30, 10}, {30, 11}, {30, 11.625}, {31, 11.625}, {31, 11}, {31, 10}});
    driver.expectBox(QMessageBox::Question, appName, "4.25 mm will be replaced.", QMessageBox::Cancel);
    draw({{30, 11}, {31, 11}});
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(points(1).size(), 6);
}

void ViewContourEventsTest::traceRelease_ofAPieceFromFreeSpace_goesIntoTheLineAtItsEnd()
{
    ViewScene::line(scene->bone, firstZ, {{5, 10}, {7, 10}, {9, 10}, {11, 10}, {13, 10}});
    traceMode();
    draw({{11, 20}, {9.25, 10.25}}); // leaves (9, 10) on the side of (11, 10)
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(points(0), (QList<QPointF>{{5, 10}, {7, 10}, {9, 10}, {9.25, 10.25}, {11, 20}}));
}

void ViewContourEventsTest::traceRelease_ofAPieceThatItsStartRefuses_goesIntoTheLineAtItsEnd()
{
    SlicedContoursSegment *start = ViewScene::line(scene->bone, firstZ, {{4, 10}, {10, 10}, {16, 10}});
    ViewScene::line(scene->bone, firstZ, {{5, 30}, {7, 30}, {9, 30}, {11, 30}, {13, 30}});
    traceMode();
    moveTo(11.25, 11.25); // in the box of 1.5 mm around (10, 10), but 1.77 mm away
    hand->press(Qt::RightButton);
    QCOMPARE(scene->state().anchorSegment.data(), start);
    moveTo(9.25, 29.75);
    hand->release(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 2);
    QCOMPARE(points(0), (QList<QPointF>{{4, 10}, {10, 10}, {16, 10}}));
    QCOMPARE(points(1), (QList<QPointF>{{5, 30}, {7, 30}, {9, 30}, {9.25, 29.75}, {11.25, 11.25}}));
}

void ViewContourEventsTest::traceRelease_joinsTwoLinesThroughThePiece()
{
    ViewScene::line(scene->bone, firstZ, {{4, 10}, {7, 10}, {10, 10}});
    ViewScene::line(scene->bone, firstZ, {{24, 12}, {27, 12}, {30, 12}});
    traceMode();
    // From the inner vertex (7, 10) to the inner vertex (27, 12); 3 mm are lost at each end.
    draw({{7.25, 10.25}, {17, 15}, {27, 12.25}});
    QCOMPARE(scene->bone->segmentCount(), 1);
    const QList<QPointF> joined = points(0);
    QCOMPARE(joined.first() == QPointF(4, 10) || joined.last() == QPointF(4, 10), true);
    QVERIFY(joined.contains(QPointF(17, 15)));
    QCOMPARE(joined.first() == QPointF(30, 12) || joined.last() == QPointF(30, 12), true);
}

void ViewContourEventsTest::traceTwoHalves_closeALoop()
{
    traceMode();
    draw({{5, 5}, {15, 5}, {15, 15}});
    scene->edit(2);
    draw({{15.25, 15.25}, {5, 15}, {5.25, 5.25}}); // both ends snap
    scene->contour->addFragmentReference(scene->surface);
    QCOMPARE(scene->surface->segmentCount(), 1);
    QCOMPARE(ViewScene::pointsOf(scene->surface->segment(0)), (QList<QPointF>{{15, 15}, {5, 15}, {5, 5}}));
    QCOMPARE(scene->contour->areaAt(firstZ), 100.0f);
    QCOMPARE(shoelace({{5, 5}, {15, 5}, {15, 15}, {5, 15}}), 100.0);
}

void ViewContourEventsTest::traceAtZ0_withATurnedCamera_staysOnOneLevel()
{
    scene->view->rotate(0.3, 0.4, 0.0, true, true);
    scene->view->setWorkingZ(0.0f);
    traceMode();
    for (int i = 0; i < 3; ++i) {
        hand->drag(Qt::RightButton, {100 + 37 * i, 100}, {110 + 37 * i, 140});
        QCOMPARE(scene->bone->segment(i)->z(), 0.0f);
    }
}

void ViewContourEventsTest::modeSwitchDuringATrace_leavesNoSinglePoint()
{
    traceMode();
    moveTo(10, 10);
    hand->press(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    hand->keyDown("space");
    QCOMPARE(scene->bone->segmentCount(), 0);
    hand->keyUp("space");
    hand->release(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 0);
    // A line of two points stays, and is no longer traced.
    moveTo(10, 10);
    hand->press(Qt::RightButton);
    moveTo(12, 15);
    hand->key("z");
    QVERIFY(!scene->state().activeSegment);
    moveTo(20, 30);
    hand->release(Qt::RightButton);
    QCOMPARE(points(0), (QList<QPointF>{{10, 10}, {12, 15}}));
}

void ViewContourEventsTest::secondButtonDuringATrace_leavesNoSinglePoint()
{
    traceMode();
    moveTo(10, 10);
    hand->press(Qt::RightButton);
    hand->press(Qt::LeftButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    hand->release(Qt::LeftButton);
    hand->release(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 0);
}

void ViewContourEventsTest::closingWhileTracing_letsGo()
{
    traceMode();
    moveTo(20, 10);
    hand->press(Qt::LeftButton);
    QVERIFY(scene->state().activeSegment && !scene->state().edgeMarkers.empty());
    scene->composition->detachFrom(scene->contours.get());
    QVERIFY(!scene->state().activeSegment && scene->state().edgeMarkers.empty());
    scene->contours.reset();
    moveTo(20, 12);
    hand->release(Qt::LeftButton);
    scene->composition->detachFrom(scene->edges.get());
    scene->edges.reset();
    moveTo(20, 14);
    QVERIFY(scene->state().edgeMarkers.empty());
}

void ViewContourEventsTest::guess_needsAStartAndAFragment()
{
    scene->view->setInteractBaseModeGuess();
    moveTo(20, 10);
    DialogDriver driver;
    driver.expectBox(QMessageBox::Information, appName,
                     "Use the left button of the mouse first to set a start point.", QMessageBox::Ok);
    moveTo(20, 10);
    hand->clickIntoDialog(Qt::RightButton);
    QVERIFY2(driver.verify(), driver.report());
    hand->click(Qt::LeftButton);
    QVERIFY(scene->state().guessStartSet);
    QCOMPARE(scene->state().guessStart, (std::array<float, 3>{20.0f, 10.0f, 1.0f}));
    scene->edit(-1);
    driver.expectBox(QMessageBox::Warning, appName,
                     "Guessing edges requires a Sliced Contours Fragment to be selected for editing.",
                     QMessageBox::Ok);
    moveTo(20, 15);
    hand->clickIntoDialog(Qt::RightButton);
    QVERIFY2(driver.verify(), driver.report());
    QVERIFY(scene->state().guessStartSet);
}

void ViewContourEventsTest::guessWithoutGuide_walksStraightAlongTheEdge()
{
    scene->view->setInteractBaseModeGuess();
    moveTo(20.5, 8.5);
    hand->click(Qt::LeftButton);
    moveTo(19.5, 30.5);
    QSignalSpy updated(scene->bone, qOverload<QObject *>(&SlicedContoursFragment::updated));
    hand->click(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(updated.count(), 1); // at the end
    const QList<QPointF> line = points(0);
    for (const QPointF &point : line)
        QVERIFY(std::abs(point.x() - 20.0) < 0.1);
    QVERIFY(std::abs(line.first().y() - 8.5) < 1.1 && line.last().y() > 28.0);
    QVERIFY(!scene->state().guessStartSet);
}

void ViewContourEventsTest::guessWithGuide_followsTheNeighbouringSlice()
{
    // The guide lies one slice above, 2 mm beside the edge.
    ViewScene::line(scene->bone, 3.0f, {{22, 5}, {22, 15}, {22, 25}, {22, 35}});
    scene->view->setInteractBaseModeGuess();
    moveTo(20, 8.5);
    hand->click(Qt::LeftButton);
    moveTo(20, 30.5);
    hand->click(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 2);
    QCOMPARE(scene->bone->segment(1)->z(), firstZ);
    for (const QPointF &point : points(1))
        QVERIFY(std::abs(point.x() - 20.0) < 0.1);
}

void ViewContourEventsTest::guessNextToOneVertexOfTheGuide_isFinite()
{
    ViewScene::line(scene->bone, 3.0f, {{22, 20}, {39, 20}});
    scene->view->setInteractBaseModeGuess();
    moveTo(20, 18.5);
    hand->click(Qt::LeftButton);
    moveTo(20, 23.5);
    hand->click(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 2);
    for (const QPointF &point : points(1))
        QVERIFY(std::isfinite(point.x()) && std::isfinite(point.y()) && std::abs(point.x() - 20.0) < 0.1);
}

void ViewContourEventsTest::guessEnd_snapsWithinTwoMillimetres()
{
    EdgeRail rail; // steps of 0.25 mm, which do not count here
    scene->composition->addImageObject(&rail);
    scene->composition->setData(scene->composition->index(3, ImageComposition::AnalyzeColumn), true);
    scene->view->setInteractBaseModeGuess();
    moveTo(10, 10);
    hand->click(Qt::LeftButton);
    moveTo(11, 10); // 1.5 mm from the strong point
    hand->click(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(points(0), (QList<QPointF>{{10, 10}, {12.5, 10}}));
}

void ViewContourEventsTest::guess_extendsTheSegmentAtItsStart()
{
    SlicedContoursSegment *old = ViewScene::line(scene->bone, firstZ, {{20, 5.5}, {20, 7.5}, {20, 9.5}});
    scene->view->setInteractBaseModeGuess();
    moveTo(20, 9.5);
    hand->click(Qt::LeftButton);
    moveTo(20, 20.5);
    hand->click(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(scene->bone->segment(0), old);
    QVERIFY(old->lastPoint().y() > 18.0);
    QVERIFY(!scene->state().anchorSegment);
}

void ViewContourEventsTest::guessWhereNoEdgesAre_saysSo()
{
    scene->view->setInteractBaseModeGuess();
    moveTo(5, 10);
    hand->click(Qt::LeftButton);
    DialogDriver driver;
    driver.expectBox(QMessageBox::Information, appName, "Unable to guess a segment.", QMessageBox::Ok);
    moveTo(5, 12);
    hand->clickIntoDialog(Qt::RightButton);
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(scene->bone->segmentCount(), 0);
    QVERIFY(!scene->state().guessStartSet);
}

void ViewContourEventsTest::guess_paintsOnce()
{
    scene->composition->addImageObject(scene->contours.get()); // two rows tell of each change
    scene->view->setInteractBaseModeGuess();
    moveTo(20.5, 8.5);
    hand->click(Qt::LeftButton);
    moveTo(19.5, 30.5);
    QTRY_VERIFY(!scene->state().repaintPending);
    int paints = 0;
    const QObject counter; // ends the connection before paints goes
    connect(scene->view, &QOpenGLWidget::aboutToCompose, &counter, [&] { ++paints; });
    hand->press(Qt::RightButton);
    QCOMPARE(scene->bone->segmentCount(), 1);
    QCOMPARE(paints, 1);
    hand->release(Qt::RightButton);
}

void ViewContourEventsTest::guessStart_survivesOtherModes()
{
    scene->view->setInteractBaseModeGuess();
    hand->click(Qt::LeftButton);
    hand->key("z");
    hand->key("t");
    QVERIFY(scene->state().guessStartSet);
}

void ViewContourEventsTest::erase_needsShiftAndAFragment()
{
    ViewScene::line(scene->bone, firstZ, {{10, 10}, {15, 10}});
    scene->view->setInteractBaseModeErase();
    DialogDriver driver;
    driver.expectBox(QMessageBox::Warning, appName,
                     "Erasing single contour points not yet implemented. Hold the Shift key and click to "
                     "erase a contour segment.",
                     QMessageBox::Ok);
    moveTo(10, 10);
    hand->clickIntoDialog(Qt::LeftButton);
    QVERIFY2(driver.verify(), driver.report());
    scene->edit(-1);
    driver.expectBox(QMessageBox::Warning, appName,
                     "Erasing requires a Sliced Contours Fragment to be selected for editing.",
                     QMessageBox::Ok);
    moveTo(10, 10);
    hand->keyDown("Shift_L");
    hand->clickIntoDialog(Qt::LeftButton);
    hand->keyUp("Shift_L");
    QVERIFY2(driver.verify(), driver.report());
    QCOMPARE(scene->bone->segmentCount(), 1);
}

void ViewContourEventsTest::erase_deletesSegmentsUnderTheCursor()
{
    ViewScene::line(scene->bone, firstZ, {{10, 10}, {15, 10}});
    ViewScene::line(scene->bone, firstZ, {{10.25, 10.25}, {10, 30}});
    ViewScene::line(scene->bone, firstZ, {{12, 11}, {30, 30}});
    ViewScene::line(scene->bone, 3.0f, {{10, 10}, {15, 10}});      // another slice
    ViewScene::line(scene->surface, firstZ, {{10, 10}, {15, 10}}); // another fragment
    scene->view->setInteractBaseModeErase();
    moveTo(10, 10);
    hand->keyDown("Shift_L");
    hand->click(Qt::MiddleButton); // any button
    QCOMPARE(scene->bone->segmentCount(), 2);
    QCOMPARE(scene->surface->segmentCount(), 1);
    moveTo(36, 36);
    hand->click(Qt::LeftButton);
    hand->keyUp("Shift_L");
    QCOMPARE(scene->bone->segmentCount(), 2);
}

void ViewContourEventsTest::viewDeletedDuringAQuestion_isSafe()
{
    addU();
    traceMode();
    const QPoint from = ViewScene::pixel(2, 4);
    const QPoint to = ViewScene::pixel(6, 4);
    QTest::mousePress(scene->view, Qt::RightButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, to, scene->view->mapToGlobal(to), Qt::NoButton, Qt::RightButton,
                     Qt::NoModifier);
    QApplication::sendEvent(scene->view, &move);
    bool asked = false;
    QTimer::singleShot(300, this, [&] {
        asked = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr;
        delete scene->view.data();
    });
    QTest::mouseRelease(scene->view, Qt::RightButton, {}, to);
    QTRY_VERIFY(scene->view.isNull());
    QVERIFY(asked);
}

// Objects go in any order, announced as the image manager does it, while a view paints and a hand traces.
void ViewContourEventsTest::randomOrdersOfClosing_whileShown()
{
    for (unsigned seed = 0; seed < 12; ++seed) {
        std::mt19937 random(seed);
        const auto present = std::make_unique<ViewScene>();
        present->view->resize(ViewScene::size, ViewScene::size);
        present->view->show();
        QVERIFY(QTest::qWaitForWindowExposed(present->view));
        present->view->resetView();
        ViewScene::line(present->bone, firstZ, {{5, 5}, {15, 5}, {15, 15}});
        for (int row = 0; row < 3; ++row)
            present->composition->pod(row)->setDisplayScope(3 + static_cast<int>(random() % 5));
        present->view->setInteractBaseModeTrace();
        std::vector<std::function<void()>> closings{
            [&] {
                present->composition->detachFrom(present->image.get());
                present->edges ? present->edges->detachFrom(present->image.get()) : void();
                present->image.reset();
            },
            [&] {
                present->composition->detachFrom(present->contours.get());
                present->contours.reset();
            },
            [&] {
                present->composition->detachFrom(present->edges.get());
                present->edges.reset();
            }};
        std::shuffle(closings.begin(), closings.end(), random);
        for (const auto &close : closings) {
            if (present->contours)
                QTest::mousePress(present->view, Qt::LeftButton, {},
                                  {160, 100 + static_cast<int>(random() % 99)});
            const QPoint to(160, 100 + static_cast<int>(random() % 99));
            QMouseEvent move(QEvent::MouseMove, to, present->view->mapToGlobal(to), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(present->view, &move);
            close();
            present->view->repaintNow();
            QApplication::sendEvent(present->view, &move);
            QTest::mouseRelease(present->view, Qt::LeftButton, {}, to);
            present->view->resetView();
            QTest::qWait(30);
        }
        QCOMPARE(present->composition->podCount(), 0);
        QVERIFY(!present->state().activeSegment && !present->state().anchorSegment);
    }
}

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    ViewContourEventsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ViewContourEventsTest.moc"
