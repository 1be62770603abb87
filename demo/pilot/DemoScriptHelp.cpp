// The pictures of the help pages. They show no words, so that one set serves all languages.
#include "demo/pilot/DemoRows.h"
#include "demo/pilot/DemoScript.h"
#include "demo/pilot/HelpPicture.h"
#include "demo/pilot/ScreenLocator.h"

#include <QCursor>
#include <QDir>

#include <iostream>

namespace {

using namespace DemoRows;
using namespace ScreenLocator;

constexpr std::size_t shownSlice = 4; // of those that are traced
constexpr std::uint32_t helpSeed = 99;

// The middle of the view, this part of its width and height.
QRect middleOfView(double width, double height)
{
    const QRect view = waitFor("the view", [] { return sliceView(); });
    QRect area(0, 0, int(view.width() * width), int(view.height() * height));
    area.moveCenter(view.center());
    return area;
}

} // namespace

void DemoScript::pictureForHelp()
{
    if (!QDir().mkpath(inOutput("help")))
        fail("the folder of the pictures for the help pages");
    hands.place("Tevora", besideTheViewer());
    hands.place("Stacked Slice Viewer", viewerPlace());
    pictureSurface();
    hands.tick(coloringPod, -1, displayColumn, false);
    hands.tick(contoursPod, -1, displayColumn);
    fit();
    measureScale();
    goToSlice(slices[shownSlice]);
    hands.tick(rasterPod, -1, displayColumn);
    keepForHelp("mask", HelpPicture::ofArea(hands.mouse().screenshot(), aroundPatella(46, 32)));
    hands.tick(rasterPod, -1, displayColumn, false);
    pictureWindowMode();
    pictureEraseAndGuess(shownSlice);
    pictureZoomAndTrace(shownSlice);
}

void DemoScript::keepForHelp(const QString &name, const QImage &picture) const
{
    const QString path = inOutput("help/") + name + ".png";
    if (!picture.save(path))
        fail("the picture " + path);
    std::cout << "picture " << path.toStdString() << std::endl;
}

// On the screen, as wide and as high as asked for, around what is traced.
QRect DemoScript::aroundPatella(double widthMm, double heightMm) const
{
    const Polyline &line = slices[shownSlice].bone;
    const QPointF centre = (line.front() + line.back()) / 2.0, half(widthMm / 2.0, heightMm / 2.0);
    return QRect(toScreen(centre - half), toScreen(centre + half)).normalized();
}

// The surface in its colours: alone, as it was left, then behind the box of the perspective, then on its
// slice.
void DemoScript::pictureSurface()
{
    const QRect area = middleOfView(0.72, 0.56).translated(30, -30);
    const QPoint centre = area.center();
    keepForHelp("thickness", HelpPicture::ofArea(hands.mouse().screenshot(), area));
    pressMode("Perspective");
    hands.drag(centre, centre + QPoint(0, 80), XTestDevice::Right);
    hands.drag(centre, centre + QPoint(120, -60));
    keepForHelp("perspective", HelpPicture::ofArea(hands.mouse().screenshot(), area));
    for (const XTestDevice::Button button : {XTestDevice::Left, XTestDevice::Right}) {
        hands.mouse().click(centre, button);
        hands.mouse().click(centre, button);
        pause(600);
    }
    hands.tick(volumePod, -1, displayColumn);
    pressMode("Move");
    fit();
    hands.drag(centre, centre + QPoint(30, -90), XTestDevice::Right);
    hands.drag(centre, centre + QPoint(0, 110));
    pause(300);
    keepForHelp("space", HelpPicture::ofArea(hands.mouse().screenshot(), middleOfView(0.8, 0.66)));
}

void DemoScript::pictureWindowMode()
{
    const QRect area = aroundPatella(46, 32);
    const QPoint centre = area.center();
    hands.tick(contoursPod, -1, displayColumn, false);
    // The mask's row was the current one, whose window would be set.
    hands.mouse().click(waitFor("the volume's row", [] { return treeCell(volumePod, opacityColumn); }));
    hands.mouse().tapKey("Return");
    const QImage before = HelpPicture::ofArea(hands.mouse().screenshot(), area);
    pressMode("Window");
    hands.drag(centre, centre + QPoint(340, 0));
    keepForHelp("contrast", HelpPicture::halves(before, HelpPicture::ofArea(hands.mouse().screenshot(), area)));
    hands.mouse().click(centre);
    hands.mouse().click(centre);
    hands.tick(contoursPod, -1, displayColumn);
    pause(300);
}

// Both lines of the slice go and are guessed from the slice beside it.
void DemoScript::pictureEraseAndGuess(std::size_t slice)
{
    const QRect area = aroundPatella(46, 22);
    const auto lookAt = [&] {
        pause(300);
        return HelpPicture::ofArea(hands.mouse().screenshot(), area);
    };
    pressMode("Erase");
    edit(SurfaceSide);
    goToSlice(slices[slice]);
    const QImage both = lookAt();
    eraseLine(slices[slice].surface);
    keepForHelp("erase", HelpPicture::stacked(both, lookAt()));
    edit(BoneSide);
    eraseLine(slices[slice].bone);
    const QImage none = lookAt();
    guessSlice(slices[slice]);
    keepForHelp("guess", HelpPicture::stacked(none, lookAt()));
}

// Enlarges the cartilage with the rectangle, and traces its surface anew.
void DemoScript::pictureZoomAndTrace(std::size_t slice)
{
    pressMode("Erase");
    edit(SurfaceSide);
    goToSlice(slices[slice]);
    eraseLine(slices[slice].surface);
    pressMode("Zoom");
    const QRect area = aroundPatella(46, 32), chosen = aroundPatella(40, 22);
    hands.mouse().moveTo(chosen.topLeft());
    pause(60);
    hands.mouse().press(XTestDevice::Left);
    for (int i = 1; i <= 8; ++i) {
        hands.mouse().moveTo(chosen.topLeft() + (chosen.bottomRight() - chosen.topLeft()) * i / 8);
        pause(40);
    }
    pause(200);
    keepForHelp("zoom", HelpPicture::ofArea(hands.mouse().screenshot(), area));
    hands.mouse().release(XTestDevice::Left);
    pause(1500);
    measureScale();
    pressMode("Trace");
    trace(slice, SurfaceSide, helpSeed, [this] {
        pause(300);
        const QPoint at = ask([] { return QCursor::pos(); });
        QRect seen(0, 0, HelpPicture::widthPixels, 135);
        seen.moveCenter(at);
        keepForHelp("trace", HelpPicture::ofArea(hands.mouse().screenshot(), seen));
    });
}
