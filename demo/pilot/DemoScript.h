#pragma once

#include "demo/pilot/Gestures.h"
#include "demo/pilot/TracePath.h"

#include <QImage>
#include <QRect>
#include <QString>

#include <functional>
#include <vector>

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
// series, starts the segmentation of the patella with its thickness, traces, guesses, erases, looks at what
// follows from the contours, and saves all of it; then takes the pictures of the help pages. Every action is
// an event of the X server. Throws std::runtime_error when something does not come up.
class DemoScript
{
public:
    // seriesFolder is opened; what is saved and the screenshots go to outputFolder, the pictures of the help
    // pages to its folder "help".
    DemoScript(QString seriesFolder, QString outputFolder, std::vector<TrueSlice> slices, double pixelMm);

    void run();

    // Names of the files that the script leaves in the output folder.
    static constexpr const char *contoursName = "knee.slic";
    static constexpr const char *maskName = "mask.mhd";
    static constexpr const char *thicknessName = "thickness.txt";
    static constexpr const char *minimalThicknessName = "minimum-thickness.txt";
    static constexpr const char *metricsName = "thickness-metrics.txt";

    // Area in mm^2 that the hand's own path encloses on a traced slice; 0 for a slice that was guessed.
    double handArea(std::size_t slice) const { return handAreas.at(slice); }

private:
    enum Side
    {
        BoneSide = 0,
        SurfaceSide = 1
    };

    void openSeries();
    void startSegmentation();
    void arrangeViewer();
    void chooseAnalyzedAndEdited();
    void measureScale();
    void traceSlices();
    void guessSlice(const TrueSlice &slice);
    void eraseAndTraceAgain();
    void waitForWorkers();
    void lookAtMask();
    void lookAtThickness();
    void lookAtRelations();
    void showMetrics(int row);
    void save();
    void quit();

    // The pictures of the help pages (DemoScriptHelp.cpp).
    void pictureForHelp();
    void pictureSurface();
    void pictureWindowMode();
    void pictureZoomAndTrace(std::size_t slice);
    void pictureEraseAndGuess(std::size_t slice);
    QRect aroundPatella(double widthMm, double heightMm) const;
    void keepForHelp(const QString &name, const QImage &picture) const;

    void edit(Side side);
    void pressMode(const QString &name);
    void goToSlice(const TrueSlice &slice);
    Polyline handPath(std::size_t slice, Side side, std::uint32_t seed) const;
    Polyline betweenEndsOfBone(const Polyline &path, double zMm) const;
    void enlarge(const Polyline &line);
    void fit();
    void eraseLine(const Polyline &line);
    // Calls onTheWay, if there is one, behind two thirds of the line, with the button still held.
    void trace(std::size_t slice, Side side, std::uint32_t seed, const std::function<void()> &onTheWay = {});
    // Moves the mouse to a position in the slice and waits until the program has noticed.
    void pointAt(const QPointF &worldMm);
    QPoint toScreen(const QPointF &worldMm) const;
    QString inOutput(const char *name) const { return outputFolder + '/' + name; }

    QString seriesFolder, outputFolder;
    std::vector<TrueSlice> slices;
    std::vector<double> handAreas;
    double pixelMm;
    Gestures hands;
    // Screen pixel = offset + factor * world mm, per axis, as read from the position label.
    double offsetX = 0, offsetY = 0, factorX = 1, factorY = 1;
};
