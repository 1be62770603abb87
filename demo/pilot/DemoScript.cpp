#include "demo/pilot/DemoScript.h"

#include "demo/pilot/DemoRows.h"
#include "demo/pilot/ScreenLocator.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <optional>
#include <utility>

namespace {

using namespace ScreenLocator;

using namespace DemoRows;

const QString procedure = "Start Segmentation of Patella ...";
constexpr double handStepMm = 0.35, backMm = 0.4;
constexpr int workersMilliseconds = 60000;

struct Position
{
    double x, y, z;
};

std::optional<Position> readPosition()
{
    static const QRegularExpression pattern("x = (\\S+) mm; y = (\\S+) mm; z = (\\S+) mm");
    const auto match = pattern.match(ask([] { return coordinates(); }));
    if (!match.hasMatch())
        return {};
    return Position{match.captured(1).toDouble(), match.captured(2).toDouble(), match.captured(3).toDouble()};
}

} // namespace

DemoScript::DemoScript(QString series, QString output, std::vector<TrueSlice> trueSlices, double pixel)
    : seriesFolder(std::move(series))
    , outputFolder(std::move(output))
    , slices(std::move(trueSlices))
    , handAreas(slices.size(), 0.0)
    , pixelMm(pixel)
    , hands(outputFolder)
{}

void DemoScript::run()
{
    waitFor("the main window", [] { return menuTitle("File"); });
    pause(500);
    hands.picture("start");
    hands.place("Tevora", besideTheViewer());
    openSeries();
    startSegmentation();
    arrangeViewer();
    chooseAnalyzedAndEdited();
    measureScale();
    traceSlices();
    guessSlice(slices.back());
    hands.picture("guessed");
    eraseAndTraceAgain();
    waitForWorkers();
    lookAtMask();
    lookAtThickness();
    lookAtRelations();
    save();
    pictureForHelp(); // of lines that are not saved any more
    quit();
}

void DemoScript::openSeries()
{
    hands.chooseEntry("File", "Open Dicom Series ...");
    hands.answerFileDialog("Select a directory containing the series.", seriesFolder);
    waitUntil("the volume", [] { return imageCount() == 1; });
    hands.picture("opened");
}

void DemoScript::startSegmentation()
{
    hands.selectRow(volumeRow);
    hands.chooseEntry("Procedures", procedure);
    hands.answerQuestion(procedure, "Yes");
    waitUntil("the network", [] { return imageCount() == rowCount; });
    waitFor("the viewer", [] { return sliceView(); });
    pause(800);
    hands.picture("procedure");
}

void DemoScript::arrangeViewer()
{
    hands.place("Stacked Slice Viewer", viewerPlace());
    fit();
    hands.picture("arranged");
}

// A double click fits the picture to the view.
void DemoScript::fit()
{
    const QPoint centre = waitFor("the view", [] { return sliceView(); }).center();
    hands.mouse().click(centre);
    hands.mouse().click(centre);
    pause(1500);
}

void DemoScript::edit(Side side)
{
    hands.tick(contoursPod, contourCount + side, editColumn);
}

void DemoScript::chooseAnalyzedAndEdited()
{
    hands.tick(pointsPod, -1, analyzeColumn);
    edit(BoneSide);
    hands.picture("ticked");
}

// Two positions of the mouse and what the label says of them give the scale, as a user would find it.
void DemoScript::measureScale()
{
    const QRect view = waitFor("the view", [] { return sliceView(); });
    const QPoint a = view.center() - QPoint(view.width() / 4, view.height() / 4);
    const QPoint b = view.center() + QPoint(view.width() / 4, view.height() / 4);
    const auto positionAt = [&](const QPoint &point) {
        hands.mouse().moveTo(point - QPoint(3, 3));
        pause(150);
        hands.mouse().moveTo(point);
        pause(250);
        const auto position = readPosition();
        if (!position)
            fail("the position of the cursor");
        return *position;
    };
    const Position first = positionAt(a), second = positionAt(b);
    factorX = (b.x() - a.x()) / (second.x - first.x);
    factorY = (b.y() - a.y()) / (second.y - first.y);
    offsetX = a.x() - factorX * first.x;
    offsetY = a.y() - factorY * first.y;
}

QPoint DemoScript::toScreen(const QPointF &world) const
{
    return {int(std::lround(offsetX + factorX * world.x())), int(std::lround(offsetY + factorY * world.y()))};
}

void DemoScript::pointAt(const QPointF &world)
{
    const QString before = ask([] { return coordinates(); });
    hands.mouse().moveTo(toScreen(world));
    for (int waited = 0; waited < 150 && ask([] { return coordinates(); }) == before; waited += 4)
        pause(4);
}

void DemoScript::goToSlice(const TrueSlice &slice)
{
    const QRect view = waitFor("the view", [] { return sliceView(); });
    hands.mouse().moveTo(view.center());
    pause(60);
    hands.mouse().moveTo(view.center() + QPoint(1, 1));
    pause(100);
    for (int step = 0; step < 200; ++step) {
        const auto position = readPosition();
        if (position && std::abs(position->z - slice.zMm) < 0.01)
            return;
        const bool up = !position || position->z < slice.zMm;
        const QString before = ask([] { return coordinates(); });
        hands.mouse().press(up ? XTestDevice::WheelUp : XTestDevice::WheelDown);
        hands.mouse().release(up ? XTestDevice::WheelUp : XTestDevice::WheelDown);
        for (int waited = 0; waited < 500 && ask([] { return coordinates(); }) == before; waited += 10)
            pause(10);
    }
    fail("the slice");
}

void DemoScript::pressMode(const QString &name)
{
    hands.pressButton("Stacked Slice Viewer", name);
}

// Outside of the cartilage on both sides, so that the hand's own area is clearly too large.
Polyline DemoScript::handPath(std::size_t slice, Side side, std::uint32_t seed) const
{
    const Polyline &line = side == BoneSide ? slices[slice].bone : slices[slice].surface;
    const Polyline &other = side == BoneSide ? slices[slice].surface : slices[slice].bone;
    const Polyline left = unsteadyPath(line, 1, pixelMm, handStepMm, seed);
    const Polyline right = unsteadyPath(line, -1, pixelMm, handStepMm, seed);
    return enclosedArea(left, other) > enclosedArea(right, other) ? left : right;
}

// The line at the surface is drawn from end to end of the one at the bone: pressed and released on its end
// points, which attract. It goes around the corner close by, or the mouse would also catch edges behind its
// start; where a line begins with a large step backwards, the ribbon to the next slice fans out from there.
Polyline DemoScript::betweenEndsOfBone(const Polyline &path, double zMm) const
{
    const auto ends = waitFor("the line at the bone", [zMm] { return lineEnds(BoneSide, zMm); });
    auto [from, to] = ends;
    if (lengthOf({to, path.front()}) < lengthOf({from, path.front()}))
        std::swap(from, to);
    Polyline closed = leadingOn(path, from, to, backMm);
    closed.insert(closed.begin(), from);
    closed.push_back(to);
    return closed;
}

void DemoScript::trace(std::size_t slice, Side side, std::uint32_t seed,
                       const std::function<void()> &onTheWay)
{
    edit(side);
    goToSlice(slices[slice]);
    Polyline path = handPath(slice, side, seed);
    if (side == SurfaceSide)
        path = betweenEndsOfBone(path, slices[slice].zMm);
    const std::size_t twoThirds = path.size() * 2 / 3;
    pointAt(path.front());
    pause(60);
    hands.mouse().press(XTestDevice::Left);
    pause(40);
    for (std::size_t i = 0; i < path.size(); ++i) {
        pointAt(path[i]);
        if (onTheWay && i == twoThirds)
            onTheWay();
    }
    hands.mouse().release(XTestDevice::Left);
    pause(100);
}

void DemoScript::traceSlices()
{
    pressMode("Trace");
    for (std::size_t slice = 0; slice + 1 < slices.size(); ++slice) { // the last one is guessed
        const auto seed = std::uint32_t(100 * slice + 7);
        trace(slice, BoneSide, seed);
        if (slice == 0)
            hands.picture("traced-bone-side");
        trace(slice, SurfaceSide, seed + 1);
        handAreas[slice] =
            enclosedArea(handPath(slice, BoneSide, seed), handPath(slice, SurfaceSide, seed + 1));
        hands.picture(QString("traced-slice-%1").arg(slice + 1));
    }
}

void DemoScript::guessSlice(const TrueSlice &slice)
{
    pressMode("Guess");
    for (const Side side : {BoneSide, SurfaceSide}) {
        edit(side);
        goToSlice(slice);
        const Polyline &line = side == BoneSide ? slice.bone : slice.surface;
        pointAt(line.front());
        hands.mouse().click(toScreen(line.front()), XTestDevice::Left);
        pointAt(line.back());
        hands.mouse().click(toScreen(line.back()), XTestDevice::Right);
        pause(300);
    }
}

// A click must come within half a voxel of a point of the line: some clicks along a piece of it.
void DemoScript::eraseLine(const Polyline &line)
{
    hands.mouse().pressKey("Shift_L");
    const Polyline fine = unsteadyPath(line, 1, 0.0, 0.1, 1);
    const std::size_t middle = fine.size() / 2;
    for (std::size_t i = middle; i < std::min(middle + 12, fine.size()); ++i)
        hands.mouse().click(toScreen(fine[i]));
    hands.mouse().releaseKey("Shift_L");
}

// Erases the line at the surface of the first slice and traces it anew with another hand.
void DemoScript::eraseAndTraceAgain()
{
    edit(SurfaceSide);
    pressMode("Erase");
    goToSlice(slices.front());
    hands.picture("before-erasing");
    eraseLine(slices.front().surface);
    hands.picture("erased");
    pressMode("Trace");
    trace(0, SurfaceSide, 4711);
    hands.picture("traced-again");
}

void DemoScript::waitForWorkers()
{
    waitUntil(
        "the measurements and the mask", [] { return workersAreIdle(); }, workersMilliseconds);
    pause(300);
}

// The mask in red over the slice.
void DemoScript::lookAtMask()
{
    pressMode("Move");
    goToSlice(slices[slices.size() / 2]);
    hands.dragRowIntoView(rasterRow);
    hands.typeIntoCell(rasterPod, colorColumn, "#ff0000");
    hands.typeIntoCell(rasterPod, opacityColumn, "50");
    hands.picture("mask");
    hands.tick(rasterPod, -1, displayColumn, false);
}

// The bone side of the cartilage in the colours of its minimal thickness, seen from the side.
void DemoScript::lookAtThickness()
{
    for (const int row : {thicknessRow, minimalThicknessRow})
        showMetrics(row);
    hands.dragRowIntoView(minimalColoringRow);
    hands.chooseInCell(coloringPod, scopeColumn, "Volume");
    hands.picture("coloring-and-slice");
    for (const int pod : {volumePod, contoursPod})
        hands.tick(pod, -1, displayColumn, false);
    enlarge(slices[slices.size() / 2].bone);
    const QPoint centre = waitFor("the view", [] { return sliceView(); }).center();
    hands.drag(centre, centre + QPoint(40, -130), XTestDevice::Right);
    // The camera has turned about the lowest slice: what lies higher is seen above the centre.
    hands.drag(centre, centre + QPoint(-60, 230));
    pause(500);
    hands.picture("coloring");
}

// Brings the middle of the line to the centre of the view and makes it larger.
void DemoScript::enlarge(const Polyline &line)
{
    const QPoint centre = waitFor("the view", [] { return sliceView(); }).center();
    hands.drag(toScreen((line.front() + line.back()) / 2.0), centre);
    hands.mouse().moveTo(centre);
    hands.mouse().pressKey("Control_L");
    for (int notch = 0; notch < 2; ++notch) {
        hands.mouse().press(XTestDevice::WheelUp);
        hands.mouse().release(XTestDevice::WheelUp);
        pause(100);
    }
    hands.mouse().releaseKey("Control_L");
    pause(1500);
}

void DemoScript::showMetrics(int row)
{
    const auto before = ask([] { return metricsWindows(); });
    hands.selectRow(row);
    hands.chooseEntry("View", "Show metrics ...");
    waitUntil("the metrics", [&] { return metricsWindows().size() > before.size(); });
    QString title;
    for (const QString &open : ask([] { return metricsWindows(); }))
        title = before.contains(open) ? title : open;
    hands.place(title, QRect(QPoint(0, row == thicknessRow ? 590 : 800), QSize(430, 205)));
    hands.picture("metrics");
    QFile file(inOutput(metricsName));
    if (!file.open(QIODevice::Append))
        fail("the file of metrics");
    file.write((title + '\n' + ask([&] { return metricsTable(title); }).join('\n') + '\n').toUtf8());
}

void DemoScript::lookAtRelations()
{
    const QSize small(532, 402); // its corner for sizing must stay on the screen: first smaller, then away
    hands.place("Stacked Slice Viewer", QRect(QPoint(440, 0), small));
    hands.place("Stacked Slice Viewer", QRect(QPoint(740, 610), small));
    hands.place("Tevora", QRect(QPoint(0, 0), QPoint(1272, 580)));
    hands.picture("relations");
}

void DemoScript::save()
{
    const auto saveRow = [this](int row, const char *name, const QString &filter) {
        hands.selectRow(row);
        hands.chooseEntry("File", "Save as Single File ...");
        hands.answerFileDialog("Save Image as", inOutput(name), filter);
        waitUntil(QString("the file ") + name, [&] { return QFileInfo::exists(inOutput(name)); });
        pause(500);
    };
    saveRow(contoursRow, contoursName, QString());
    saveRow(rasterRow, maskName, "MetaImage");
    saveRow(thicknessRow, thicknessName, QString());
    saveRow(minimalThicknessRow, minimalThicknessName, QString());
    hands.picture("saved");
}

void DemoScript::quit()
{
    hands.chooseEntry("File", "Exit");
}
