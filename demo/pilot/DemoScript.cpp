#include "demo/pilot/DemoScript.h"

#include "demo/pilot/ScreenLocator.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <optional>
#include <utility>

namespace {

using namespace ScreenLocator;

// Rows of the image list and of the composition, in the order in which the script makes them.
constexpr int volumeRow = 0, contoursRow = 1, pointsRow = 2;
constexpr int pointsPod = 2, contoursPod = 3; // the volume stands twice: shown in the view, and dragged
constexpr int analyzeColumn = 4, editColumn = 5;

constexpr double handStepMm = 0.35;

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
{}

void DemoScript::run()
{
    waitFor("the main window", [] { return menuTitle("File"); });
    pause(500);
    picture("start");
    openSeries();
    showInView();
    arrangeWindows();
    makeContours();
    extractEdgePoints();
    dragIntoViewer();
    chooseAnalyzedAndEdited();
    measureScale();
    traceSlices();
    guessSlice();
    eraseAndTraceAgain();
    save();
    quit();
}

void DemoScript::picture(const QString &name)
{
    pause(150);
    const QString path =
        QString("%1/%2-%3.png").arg(outputFolder).arg(++pictures, 2, 10, QChar('0')).arg(name);
    device.screenshot().save(path);
    std::cout << "picture " << path.toStdString() << std::endl;
}

void DemoScript::chooseEntry(const QString &menu, const QString &entry, const QString &inner)
{
    device.click(waitFor("menu " + menu, [&] { return menuTitle(menu); }));
    device.click(waitFor("entry " + entry, [&] { return menuEntry(entry); }));
    if (!inner.isNull())
        device.click(waitFor("entry " + inner, [&] { return menuEntry(inner); }));
}

void DemoScript::answerFileDialog(const QString &title, const QString &path)
{
    waitUntil("dialog " + title, [&] { return dialogIsOpen(title); });
    pause(200);
    device.pressKey("Control_L");
    device.tapKey("a");
    device.releaseKey("Control_L");
    device.type(path);
    pause(100);
    picture("dialog");
    // The first Return may only close a list of completions.
    for (int attempt = 0; attempt < 5 && ask([&] { return dialogIsOpen(title); }); ++attempt) {
        device.tapKey("Return");
        pause(600);
    }
    waitUntil("end of dialog " + title, [&] { return !dialogIsOpen(title); });
}

void DemoScript::openSeries()
{
    chooseEntry("File", "Open Dicom Series ...");
    answerFileDialog("Select a directory containing the series.", seriesFolder);
    waitUntil("the volume", [] { return imageCount() == 1; });
    picture("opened");
}

void DemoScript::selectRow(int row)
{
    device.click(waitFor("row of the image list", [&] { return imageRow(row); }));
    pause(100);
}

void DemoScript::showInView()
{
    selectRow(volumeRow);
    chooseEntry("View", "Show in new view ...");
    waitFor("the viewer", [] { return sliceView(); });
    pause(800);
    picture("view");
}

void DemoScript::drag(const QPoint &from, const QPoint &to)
{
    device.moveTo(from);
    pause(60);
    device.press(XTestDevice::Left);
    pause(40);
    for (int i = 1; i <= 8; ++i) {
        device.moveTo(from + (to - from) * i / 8);
        pause(25);
    }
    pause(60);
    device.release(XTestDevice::Left);
    pause(300);
}

// Moves with the Super key held and sizes by the lower right corner, as often as the window manager needs.
void DemoScript::place(const QString &title, const QRect &wanted)
{
    const quintptr window = waitFor("the window " + title, [&] { return windowId(title); });
    const auto near = [](const QPoint &a, const QPoint &b) { return (a - b).manhattanLength() <= 8; };
    for (int attempt = 0; attempt < 12; ++attempt) {
        QRect now = device.frameOf(window);
        if (!near(now.topLeft(), wanted.topLeft())) {
            const QPoint grip(now.width() / 2, now.height() / 3);
            device.pressKey("Super_L");
            drag(now.topLeft() + grip, wanted.topLeft() + grip);
            device.releaseKey("Super_L");
            now = device.frameOf(window);
        }
        if (!near(now.bottomRight(), wanted.bottomRight()))
            drag(now.bottomRight() - QPoint(1, 1), wanted.bottomRight());
        now = device.frameOf(window);
        if (near(now.bottomRight(), wanted.bottomRight()))
            return;
    }
    picture("not-placed");
    const QRect now = device.frameOf(window);
    fail(QString("the place of %1, which is at %2, %3 and %4 x %5")
             .arg(title)
             .arg(now.x())
             .arg(now.y())
             .arg(now.width())
             .arg(now.height()));
}

void DemoScript::arrangeWindows()
{
    place("Tevora", QRect(QPoint(0, 0), QPoint(430, 580)));
    place("Stacked Slice Viewer", QRect(QPoint(440, 0), QPoint(1272, 1012)));
    // A double click fits the picture to the larger view.
    const QPoint centre = waitFor("the view", [] { return sliceView(); }).center();
    device.click(centre);
    device.click(centre);
    pause(1500);
    picture("arranged");
}

void DemoScript::addFragment(const QString &name)
{
    chooseEntry("Image", "Add fragment ...");
    waitUntil("the question for a name", [] { return dialogIsOpen("Tevora"); });
    pause(150);
    device.type(name);
    device.tapKey("Return");
    waitUntil("the end of the question", [] { return !dialogIsOpen("Tevora"); });
}

void DemoScript::makeContours()
{
    chooseEntry("Image", "New", "New sliced contours");
    waitUntil("the contours", [] { return imageCount() == 2; });
    selectRow(contoursRow);
    addFragment("bone side");
    addFragment("surface side");
    picture("contours");
}

void DemoScript::extractEdgePoints()
{
    selectRow(volumeRow);
    chooseEntry("Image", "Extract Edge Points ...");
    waitUntil("the edge points", [] { return imageCount() == 3; });
    picture("edge-points");
}

void DemoScript::dragRow(int row)
{
    const QPoint from = waitFor("row of the image list", [&] { return imageRow(row); });
    const QPoint to = waitFor("the view", [] { return sliceView(); }).center();
    device.moveTo(from);
    pause(80);
    device.press(XTestDevice::Left);
    pause(80);
    for (int i = 1; i <= 8; ++i) {
        device.moveTo(from + (to - from) * i / 8);
        pause(40);
    }
    device.moveTo(to + QPoint(1, 0));
    pause(150);
    device.release(XTestDevice::Left);
    pause(500);
}

void DemoScript::dragIntoViewer()
{
    for (const int row : {volumeRow, pointsRow, contoursRow})
        dragRow(row);
    waitFor("the fragments in the tree", [] { return treeCheckBox(contoursPod, 1, editColumn); });
    picture("dragged");
}

void DemoScript::tick(int row, int child, int column)
{
    if (ask([&] { return treeBoxIsChecked(row, child, column); }))
        return;
    device.click(waitFor("a check box of the tree", [&] { return treeCheckBox(row, child, column); }));
    waitUntil("a check mark", [&] { return treeBoxIsChecked(row, child, column); });
}

void DemoScript::edit(Side side)
{
    tick(contoursPod, side, editColumn);
}

void DemoScript::chooseAnalyzedAndEdited()
{
    tick(pointsPod, -1, analyzeColumn);
    edit(BoneSide);
    picture("ticked");
}

// Two positions of the mouse and what the label says of them give the scale, as a user would find it.
void DemoScript::measureScale()
{
    const QRect view = waitFor("the view", [] { return sliceView(); });
    const QPoint a = view.center() - QPoint(view.width() / 4, view.height() / 4);
    const QPoint b = view.center() + QPoint(view.width() / 4, view.height() / 4);
    const auto positionAt = [&](const QPoint &point) {
        device.moveTo(point - QPoint(3, 3));
        pause(150);
        device.moveTo(point);
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
    device.moveTo(toScreen(world));
    for (int waited = 0; waited < 150 && ask([] { return coordinates(); }) == before; waited += 4)
        pause(4);
}

void DemoScript::goToSlice(const TrueSlice &slice)
{
    const QRect view = waitFor("the view", [] { return sliceView(); });
    device.moveTo(view.center());
    pause(60);
    device.moveTo(view.center() + QPoint(1, 1));
    pause(100);
    for (int step = 0; step < 200; ++step) {
        const auto position = readPosition();
        if (position && std::abs(position->z - slice.zMm) < 0.01)
            return;
        const bool up = !position || position->z < slice.zMm;
        const QString before = ask([] { return coordinates(); });
        device.press(up ? XTestDevice::WheelUp : XTestDevice::WheelDown);
        device.release(up ? XTestDevice::WheelUp : XTestDevice::WheelDown);
        for (int waited = 0; waited < 500 && ask([] { return coordinates(); }) == before; waited += 10)
            pause(10);
    }
    fail("the slice");
}

void DemoScript::pressMode(const QString &name)
{
    device.click(waitFor("button " + name, [&] { return button("Stacked Slice Viewer", name); }));
    pause(100);
}

void DemoScript::trace(std::size_t slice, Side side, std::uint32_t seed)
{
    edit(side);
    goToSlice(slices[slice]);
    // Outside of the cartilage on both sides, so that the hand's own area is clearly too large.
    const Polyline &line = side == BoneSide ? slices[slice].bone : slices[slice].surface;
    const Polyline &other = side == BoneSide ? slices[slice].surface : slices[slice].bone;
    const double left = enclosedArea(unsteadyPath(line, 1, pixelMm, handStepMm, seed), other);
    const double right = enclosedArea(unsteadyPath(line, -1, pixelMm, handStepMm, seed), other);
    const Polyline path = unsteadyPath(line, left > right ? 1 : -1, pixelMm, handStepMm, seed);
    pointAt(path.front());
    pause(60);
    device.press(XTestDevice::Left);
    pause(40);
    for (const QPointF &point : path)
        pointAt(point);
    device.release(XTestDevice::Left);
    pause(100);
}

void DemoScript::traceSlices()
{
    pressMode("Trace");
    for (std::size_t slice = 0; slice < slices.size(); ++slice) {
        if (slice + 1 == slices.size())
            break; // the last one is guessed
        const auto seed = std::uint32_t(100 * slice + 7);
        trace(slice, BoneSide, seed);
        if (slice == 0)
            picture("traced-bone-side");
        trace(slice, SurfaceSide, seed + 1);
        const auto hand = [&](const Polyline &line, const Polyline &other, std::uint32_t s) {
            const Polyline left = unsteadyPath(line, 1, pixelMm, handStepMm, s);
            const Polyline right = unsteadyPath(line, -1, pixelMm, handStepMm, s);
            return enclosedArea(left, other) > enclosedArea(right, other) ? left : right;
        };
        handAreas[slice] = enclosedArea(hand(slices[slice].bone, slices[slice].surface, seed),
                                        hand(slices[slice].surface, slices[slice].bone, seed + 1));
        picture(QString("traced-slice-%1").arg(slice + 1));
    }
}

void DemoScript::guessSlice()
{
    const TrueSlice &slice = slices.back();
    pressMode("Guess");
    for (const Side side : {BoneSide, SurfaceSide}) {
        edit(side);
        goToSlice(slice);
        const Polyline &line = side == BoneSide ? slice.bone : slice.surface;
        pointAt(line.front());
        device.click(toScreen(line.front()), XTestDevice::Left);
        pointAt(line.back());
        device.click(toScreen(line.back()), XTestDevice::Right);
        pause(300);
    }
    picture("guessed");
}

// Erases the line at the surface of the first slice and traces it anew with another hand.
void DemoScript::eraseAndTraceAgain()
{
    edit(SurfaceSide);
    pressMode("Erase");
    goToSlice(slices.front());
    picture("before-erasing");
    const Polyline &line = slices.front().surface;
    device.pressKey("Shift_L");
    // A click must come within half a voxel of a point of the line: some clicks along a piece of it.
    const Polyline fine = unsteadyPath(line, 1, 0.0, 0.1, 1);
    const std::size_t middle = fine.size() / 2;
    for (std::size_t i = middle; i < std::min(middle + 12, fine.size()); ++i)
        device.click(toScreen(fine[i]));
    device.releaseKey("Shift_L");
    picture("erased");
    pressMode("Trace");
    trace(0, SurfaceSide, 4711);
    picture("traced-again");
}

void DemoScript::save()
{
    selectRow(contoursRow);
    chooseEntry("File", "Save as Single File ...");
    answerFileDialog("Save Image as", contoursFile());
    waitUntil("the contour file", [this] { return QFileInfo::exists(contoursFile()); });
    pause(500);
    picture("saved");
}

void DemoScript::quit()
{
    chooseEntry("File", "Exit");
}
