#include "demo/pilot/Gestures.h"

#include "demo/pilot/ScreenLocator.h"

#include <QImage>

#include <iostream>
#include <utility>

using namespace ScreenLocator;

namespace {

// A list that has just opened takes no release of the button for the time of a double click.
constexpr int listOpensMilliseconds = 700;

} // namespace

Gestures::Gestures(QString pictureFolder)
    : folder(std::move(pictureFolder))
{}

void Gestures::picture(const QString &name)
{
    pause(150);
    const QString path = QString("%1/%2-%3.png").arg(folder).arg(++pictures, 2, 10, QChar('0')).arg(name);
    device.screenshot().save(path);
    std::cout << "picture " << path.toStdString() << std::endl;
}

void Gestures::chooseEntry(const QString &menu, const QString &entry, const QString &inner)
{
    device.click(waitFor("menu " + menu, [&] { return menuTitle(menu); }));
    device.click(waitFor("entry " + entry, [&] { return menuEntry(entry); }));
    if (!inner.isNull())
        device.click(waitFor("entry " + inner, [&] { return menuEntry(inner); }));
}

void Gestures::pressButton(const QString &windowTitle, const QString &text)
{
    device.click(waitFor("button " + text, [&] { return button(windowTitle, text); }));
    pause(100);
}

void Gestures::answerQuestion(const QString &title, const QString &buttonText)
{
    waitUntil("the question " + title, [&] { return dialogIsOpen(title); });
    pause(200);
    picture("question");
    pressButton(title, buttonText);
    waitUntil("the end of the question " + title, [&] { return !dialogIsOpen(title); });
}

void Gestures::type(const QString &text)
{
    device.pressKey("Control_L");
    device.tapKey("a");
    device.releaseKey("Control_L");
    device.type(text);
}

void Gestures::answerFileDialog(const QString &title, const QString &path, const QString &filter)
{
    waitUntil("dialog " + title, [&] { return dialogIsOpen(title); });
    pause(200);
    if (!filter.isNull()) {
        device.click(waitFor("the filters", [] { return fileFilters(); }));
        pause(listOpensMilliseconds);
        device.click(waitFor("filter " + filter, [&] { return openListEntry(filter); }));
        pause(200);
        device.click(waitFor("the file name", [] { return fileName(); }));
    }
    type(path);
    pause(100);
    picture("dialog");
    // The first Return may only close a list of completions.
    for (int attempt = 0; attempt < 5 && ask([&] { return dialogIsOpen(title); }); ++attempt) {
        device.tapKey("Return");
        pause(600);
    }
    waitUntil("end of dialog " + title, [&] { return !dialogIsOpen(title); });
}

void Gestures::selectRow(int row)
{
    device.click(waitFor("row of the image list", [&] { return imageRow(row); }));
    pause(100);
}

void Gestures::dragRowIntoView(int row)
{
    const QPoint from = waitFor("row of the image list", [&] { return imageRow(row); });
    const QPoint to = waitFor("the view", [] { return sliceView(); }).center();
    device.carry(from, to);
    pause(500);
}

void Gestures::tick(int row, int child, int column, bool on)
{
    if (ask([&] { return treeBoxIsChecked(row, child, column); }) == on)
        return;
    device.click(waitFor("a check box of the tree", [&] { return treeCheckBox(row, child, column); }));
    waitUntil("a check mark", [&] { return treeBoxIsChecked(row, child, column) == on; });
}

void Gestures::chooseInCell(int row, int column, const QString &entry)
{
    device.click(waitFor("a list in the tree", [&] { return treeCell(row, column); }));
    pause(listOpensMilliseconds);
    device.click(waitFor("entry " + entry, [&] { return openListEntry(entry); }));
    pause(500);
}

void Gestures::typeIntoCell(int row, int column, const QString &text)
{
    device.click(waitFor("a cell of the tree", [&] { return treeCell(row, column); }));
    pause(250);
    type(text);
    device.tapKey("Return");
    pause(250);
}

void Gestures::drag(const QPoint &from, const QPoint &to, XTestDevice::Button button)
{
    device.moveTo(from);
    pause(60);
    device.press(button);
    pause(40);
    for (int i = 1; i <= 8; ++i) {
        device.moveTo(from + (to - from) * i / 8);
        pause(25);
    }
    pause(60);
    device.release(button);
    pause(300);
}

// Moves with the Super key held and sizes by the lower right corner, as often as the window manager needs.
void Gestures::place(const QString &title, const QRect &wanted)
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
