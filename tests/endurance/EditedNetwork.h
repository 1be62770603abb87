#pragma once

#include "tests/endurance/ContourEditor.h"
#include "tests/endurance/Watched.h"

#include <QPointer>

#include <memory>
#include <vector>

class ImageComposition;
class ImageManager;
class ImageObject;
class MetricsTable;
class ModelComplaints;
class QAbstractItemModelTester;
class SlicedContoursTriangulator;
class SlicedMetricsModel;
class TriMeshDistanceMeasurer;
class TriMeshFragment;

// Contours under a random hand with all that follows them: meshes, measurements, colourings, a raster, tables
// of metrics and the tree of a view. Parts come and go, and the contours are now and then saved, read back
// and gone on with. Needs a QApplication; OpenGL is used where there is some. Main thread.
//
// What is checked throws Violation. The destructor closes everything that came to the manager.
class EditedNetwork
{
public:
    // What the checks have seen, for tests that want to know that it was not nothing.
    struct Tally
    {
        long steps = 0;
        long faces = 0;    // compared one by one
        long samples = 0;  // likewise
        long outlines = 0; // areas above 0 in tables
        long files = 0;    // read back
        long closed = 0;   // objects
    };

    // Without workers there are no measurements and no raster, which makes it a hundred times as fast.
    EditedNetwork(ImageManager &imageManager, EditSource &decisions, bool hasWorkers);
    ~EditedNetwork();

    // Steps with all checks until there are no more decisions; then closeAll().
    void runToTheEnd();
    // One edit, or one part that comes, goes or is changed.
    void step();

    // The lines, the meshes and the tree are what they must be after the edits so far.
    void verify();
    // The same of the tables' cells, and of a file that the contours are written to.
    void verifyMetrics();
    void verifyFile();
    // Waits for the workers and compares the measurements with plain scans of the meshes.
    void verifyMeasurements();
    // Closes all but the contours: no one listens to them any more. Then closes them too.
    void closeAll();

    const Tally &tally() const { return seen; }

private:
    struct Measurement
    {
        QPointer<TriMeshDistanceMeasurer> measurer;
        QPointer<TriMeshFragment> base, remote;
        int definition;
    };

    template <class Object>
    std::vector<Object *> all() const;
    void begin(SlicedContoursObject *newObject, PlainContours model);
    void close(int row);
    void show(ImageObject *image);
    void watchTree();

    void changeNetwork();
    void addTriangulator();
    void addMeasurement();
    void addRaster();
    void addTable();
    void removeTable();
    void closeOne();
    void setBitCodes();
    void changeView();
    void editNext();
    void reload();

    int listeners() const;
    void verifyMesh(const SlicedContoursTriangulator &triangulator);
    void verifyTree() const;
    void verifyMeasurement(const Measurement &measurement);
    void awaitWorkers() const;

    ImageManager &manager;
    EditSource &source;
    const bool withWorkers;
    std::unique_ptr<ModelComplaints> complaints;
    std::unique_ptr<ImageComposition> composition;
    std::unique_ptr<QAbstractItemModelTester> compositionTester;
    SlicedContoursObject *object = nullptr;           // the manager's
    Watched<SlicedContoursObject> *watched = nullptr; // the same, unless it was read from a file
    int ownListeners = 0;
    std::unique_ptr<ContourEditor> editor;
    std::vector<std::unique_ptr<MetricsTable>> tables;
    std::vector<Measurement> measurements;
    Tally seen;
};
