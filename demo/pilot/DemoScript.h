#pragma once

#include "demo/pilot/TracePath.h"
#include "demo/xtest/XTestDevice.h"

#include <QRect>
#include <QString>

#include <vector>

class QWidget;

// True outline of the cartilage on one slice of the loaded volume, in the program's world mm: the line at the
// bone and the line at the surface, both from the same end to the other, and the area between them in mm^2.
struct TrueSlice
{
    double zMm = 0.0;
    Polyline bone;
    Polyline surface;
    double areaMm2 = 0.0;
};

// Drives the real windows through the main job as a user would, from a thread beside the GUI: opens the
// series, sets up the contours, traces, guesses, erases and saves. Looks up where things stand; every action
// is an event of the X server. Throws std::runtime_error when something does not come up.
class DemoScript
{
public:
    // seriesFolder is opened; knee.slic, its metrics and the screenshots go to outputFolder.
    DemoScript(QString seriesFolder, QString outputFolder, std::vector<TrueSlice> slices, double pixelMm);

    void run();

    QString contoursFile() const { return outputFolder + "/knee.slic"; }
    // Area in mm^2 that the hand's own path encloses on a traced slice; 0 for a slice that was guessed.
    double handArea(std::size_t slice) const { return handAreas.at(slice); }

private:
    enum Side
    {
        BoneSide = 0,
        SurfaceSide = 1
    };

    void openSeries();
    void showInView();
    void arrangeWindows();
    void makeContours();
    void extractEdgePoints();
    void dragIntoViewer();
    void chooseAnalyzedAndEdited();
    void measureScale();
    void traceSlices();
    void guessSlice();
    void eraseAndTraceAgain();
    void save();
    void quit();

    void chooseEntry(const QString &menu, const QString &entry, const QString &inner = QString());
    void answerFileDialog(const QString &title, const QString &path);
    void selectRow(int row);
    void addFragment(const QString &name);
    void dragRow(int row);
    void tick(int row, int child, int column);
    void edit(Side side);
    void pressMode(const QString &name);
    void goToSlice(const TrueSlice &slice);
    void drag(const QPoint &from, const QPoint &to);
    void place(const QString &windowTitle, const QRect &frame);

    void trace(std::size_t slice, Side side, std::uint32_t seed);
    // Moves the mouse to a position in the slice and waits until the program has noticed.
    void pointAt(const QPointF &worldMm);
    QPoint toScreen(const QPointF &worldMm) const;
    void picture(const QString &name);

    QString seriesFolder, outputFolder;
    std::vector<TrueSlice> slices;
    std::vector<double> handAreas;
    double pixelMm;
    XTestDevice device;
    int pictures = 0;
    // Screen pixel = offset + factor * world mm, per axis, as read from the position label.
    double offsetX = 0, offsetY = 0, factorX = 1, factorY = 1;
};
