// tevora-demo --phantom DIR   writes the phantom series and its truth below DIR
// tevora-demo DIR             writes it below DIR, then drives Tevora through the main job and judges the
// result

#include "demo/PhantomSeries.h"
#include "demo/PhantomTruth.h"
#include "demo/pilot/DemoScript.h"
#include "demo/pilot/Result.h"
#include "shell/Startup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

namespace {

// The slices that are worked on, in a row; the last one is guessed from the one before it.
constexpr int firstSlice = 7, sliceCount = 9;
constexpr int outlinePieces = 400;

Polyline inWorld(const std::vector<demo::Point> &points, const demo::PhantomParameters &parameters)
{
    Polyline line;
    for (const demo::Point &point : points) {
        const demo::Point world = demo::programWorld(parameters, point);
        line.push_back(QPointF(world[0], world[1]));
    }
    return line;
}

std::vector<TrueSlice> trueSlices(const demo::PhantomParameters &parameters)
{
    const demo::PhantomBody body(parameters);
    const demo::PhantomTruth truth = demo::phantomTruth(parameters);
    std::vector<TrueSlice> slices;
    for (int slice = firstSlice; slice < firstSlice + sliceCount; ++slice) {
        const double z = demo::slicePlaneMm(parameters, slice);
        const demo::SliceOutline outline = demo::cartilageOutline(body, z, outlinePieces);
        slices.push_back({z, inWorld(outline.boneSide, parameters), inWorld(outline.surfaceSide, parameters),
                          truth.areaMm2[std::size_t(slice)]});
    }
    return slices;
}

bool writePhantom(const QString &folder, const demo::PhantomParameters &parameters)
{
    if (demo::writePhantomSeries(QFile::encodeName(folder).toStdString(), parameters))
        return true;
    std::cerr << "The phantom could not be written to " << folder.toStdString() << std::endl;
    return false;
}

// Prints what was found, and keeps it beside what was saved.
bool judge(const QString &output, const DemoScript &script, const std::vector<TrueSlice> &slices,
           const demo::PhantomParameters &parameters)
{
    const demo::TracedTruth truth = demo::tracedTruth(parameters, firstSlice, sliceCount);
    std::ostringstream areas, measures;
    const bool contoursAreGood = judgeContours(areas, output, script, slices);
    const bool measuresAreGood = judgeMeasures(measures, output, truth, parameters.spacingMm[2]);
    const auto verdict = [](bool good) { return good ? " as true as they should be.\n" : " NOT true.\n"; };
    std::cout << areas.str() << "The contours are" << verdict(contoursAreGood) << measures.str()
              << "The measures are" << verdict(measuresAreGood);
    std::ofstream(QFile::encodeName(output + "/areas.txt").toStdString()) << areas.str();
    std::ofstream(QFile::encodeName(output + "/measures.txt").toStdString()) << measures.str();
    return contoursAreGood && measuresAreGood;
}

int runDemo(const QString &folder, int argc, char **argv)
{
    // The pilot finds menus and buttons by their English texts, and reads numbers with a point.
    qputenv("LC_ALL", "C.UTF-8");
    const demo::PhantomParameters parameters;
    const QString output = QDir(folder).absolutePath();
    if (!QDir().mkpath(output) || !writePhantom(output, parameters))
        return 1;
    // What an earlier run left would only raise a question about overwriting.
    const char *saved[] = {"knee.slic",
                           "knee.txt",
                           "areas.txt",
                           "mask.mhd",
                           "mask.raw",
                           "measures.txt",
                           "thickness.txt",
                           "minimum-thickness.txt",
                           "thickness-metrics.txt"};
    for (const char *name : saved)
        QFile::remove(output + '/' + name);
    const std::vector<TrueSlice> slices = trueSlices(parameters);
    DemoScript script(output + "/series", output, slices, parameters.spacingMm[0]);

    bool finished = false;
    std::thread pilot;
    prepareApplication();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const auto startPilot = [&] {
        pilot = std::thread([&] {
            try {
                script.run();
                finished = true;
            } catch (const std::exception &fault) {
                std::cerr << "The demo stopped: " << fault.what() << std::endl;
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(), [] { QCoreApplication::exit(1); }, Qt::QueuedConnection);
            }
        });
    };
    runApplication(argc, argv, startPilot);
    pilot.join();
    if (!finished)
        return 1;

    return judge(output, script, slices, parameters) ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        if (argc == 3 && std::string(argv[1]) == "--phantom")
            return writePhantom(QFile::decodeName(argv[2]), demo::PhantomParameters()) ? 0 : 1;
        if (argc == 2)
            return runDemo(QFile::decodeName(argv[1]), argc, argv);
    } catch (const std::exception &fault) {
        std::cerr << "The demo cannot run: " << fault.what() << std::endl;
        return 1;
    }
    std::cerr << "usage: tevora-demo [--phantom] DIR" << std::endl;
    return 2;
}
