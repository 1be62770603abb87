#pragma once

#include "demo/xtest/XTestDevice.h"

#include <QRect>
#include <QString>

// What a user's hands do with the windows of the program, each as a few events of the X server: choosing
// entries, filling in dialogs, dragging rows, editing cells. Looks up where things stand and waits until they
// are there; throws std::runtime_error when something does not come up. For the pilot's thread.
class Gestures
{
public:
    // Pictures of the screen go to the folder, numbered in order.
    explicit Gestures(QString pictureFolder);

    XTestDevice &mouse() { return device; }

    void picture(const QString &name);

    void chooseEntry(const QString &menu, const QString &entry, const QString &inner = QString());
    void pressButton(const QString &windowTitle, const QString &text);
    // A button that opens the dialog's answer: waits for the dialog of this title first and for its end.
    void answerQuestion(const QString &title, const QString &buttonText);
    // Types the path and, if one is given, picks the filter that begins with the text before.
    void answerFileDialog(const QString &title, const QString &path, const QString &filter = QString());

    // Rows of the image list, from 0.
    void selectRow(int row);
    void dragRowIntoView(int row);

    // Cells of the composition's tree in the newest viewer; child -1 means the row itself.
    void tick(int row, int child, int column, bool on = true);
    void chooseInCell(int row, int column, const QString &entry);
    void typeIntoCell(int row, int column, const QString &text);

    void drag(const QPoint &from, const QPoint &to, XTestDevice::Button button = XTestDevice::Left);
    // Moves and sizes the window with this title until its frame fits.
    void place(const QString &windowTitle, const QRect &frame);

private:
    void type(const QString &text); // in place of what a line of text holds

    QString folder;
    XTestDevice device;
    int pictures = 0;
};
