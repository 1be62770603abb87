#include "shell/MainWindow.h"

#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshAligner.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "objects/manager/ImageManager.h"
#include "shell/ReportedFailure.h"
#include "view/QStackedSliceViewer.h"

#include <QFileDialog>
#include <QMessageBox>

#include <initializer_list>
#include <memory>

namespace {

using Definition = TriMeshDistanceMeasurer::Definition;

// What the first contour and everything without a code of its own become in a raster.
struct RasterCodes
{
    int firstContour;
    int byDefault;
};
constexpr RasterCodes codesOfNewSegmentation = {127, -1};
constexpr RasterCodes codesOfLoadedContour = {1, -128};

// A pattern with "%s" in place of a name. The name is put in as it is, also where it holds a "%1".
QString named(QString pattern, const QString &name)
{
    return pattern.replace("%s", name);
}

SlicedContoursObject *newSegmentation(const MervImageObject &volume)
{
    return new SlicedContoursObject(named(MainWindow::tr("Segmentation of %s"), volume.displayName()),
                                    nullptr);
}

void addFragments(SlicedContoursObject &contours, SlicedContour &contour,
                  std::initializer_list<QString> labels)
{
    for (const QString &label : labels)
        contour.addFragmentReference(contours.newFragment(label));
}

// A raster with the grid of the volume. It stays empty until the contours change, on purpose.
void addRasterizer(ImageManager &manager, SlicedContoursObject *contours, const MERV::Image &grid,
                   const RasterCodes &codes)
{
    auto rasterizer = std::make_unique<BitPlaneRasterizerObject>(
        contours, grid.getWidth(), grid.getHeight(), grid.getDepth(), grid.getSpacing(0), grid.getSpacing(1),
        grid.getSpacing(2), nullptr);
    if (const SlicedContour *first = contours->contour(0))
        rasterizer->setBitCode(first, codes.firstContour);
    rasterizer->setDefaultBitCode(codes.byDefault);
    manager.addImage(rasterizer.release());
}

SlicedContoursTriangulator *addTriangulator(ImageManager &manager, SlicedContoursObject *contours)
{
    auto *triangulator = new SlicedContoursTriangulator(contours, nullptr);
    manager.addImage(triangulator);
    return triangulator;
}

TriMeshDistanceMeasurer *addMeasurer(ImageManager &manager, TriMeshFragment *base, TriMeshFragment *remote,
                                     Definition definition, const QString &label)
{
    auto *measurer = new TriMeshDistanceMeasurer(base, remote, definition, label, nullptr);
    manager.addImage(measurer);
    return measurer;
}

void addColoring(ImageManager &manager, TriMeshFragment *fragment, TriMeshDistanceMeasurer *samples,
                 const QString &label)
{
    manager.addImage(new ColoringTriMeshRenderer(fragment, samples, label, nullptr));
}

// Two measurements from bone to surface and the bone side in their colours.
void addThickness(ImageManager &manager, TriMeshFragment *bone, TriMeshFragment *surface,
                  Definition definitionOfMinimum, const QString &volumeLabel)
{
    TriMeshDistanceMeasurer *thickness =
        addMeasurer(manager, bone, surface, TriMeshDistanceMeasurer::AlongNormal,
                    named(MainWindow::tr("thickness of %s"), volumeLabel));
    TriMeshDistanceMeasurer *minimum =
        addMeasurer(manager, bone, surface, definitionOfMinimum,
                    named(MainWindow::tr("minimum thickness of %s"), volumeLabel));
    addColoring(manager, bone, thickness,
                MainWindow::tr("coloring of %1 according to thickness").arg(bone->displayName()));
    addColoring(manager, bone, minimum,
                MainWindow::tr("coloring of %1 according to minimum thickness").arg(bone->displayName()));
}

void segmentPatella(ImageManager &manager, MervImageObject &volume, QStackedSliceViewer &viewer,
                    MainWindow *window)
{
    SlicedContoursObject *contours = newSegmentation(volume);
    SlicedContour *cartilage = contours->newContour(MainWindow::tr("patellar cartilage"));
    addFragments(*contours, *cartilage,
                 {MainWindow::tr("cartilage bone interface"), MainWindow::tr("cartilage surface")});
    manager.addImage(contours);
    auto *extractor = new ConventionalSliceEdgePointExtractor(&volume);
    manager.addImage(extractor);
    viewer.addObject(extractor);
    addRasterizer(manager, contours, *volume.voxels(), codesOfNewSegmentation);
    const SlicedContoursTriangulator *triangulator = addTriangulator(manager, contours);
    const auto answer = QMessageBox::question(
        window, MainWindow::tr("Start Segmentation of Patella ..."),
        MainWindow::tr("Do you want the thickness to be automatically calculated? Note that this might "
                       "impact performance during segmentation."),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer == QMessageBox::Yes)
        addThickness(manager, triangulator->triangulationOf(contours->fragment(0)),
                     triangulator->triangulationOf(contours->fragment(1)),
                     TriMeshDistanceMeasurer::MinimalDistance, volume.label());
    viewer.addObject(contours);
}

// No edge points and no thickness here. The tibia has no code of its own in the raster.
void segmentFemurAndTibia(ImageManager &manager, const MervImageObject &volume, QStackedSliceViewer &viewer)
{
    SlicedContoursObject *contours = newSegmentation(volume);
    SlicedContour *femur = contours->newContour(MainWindow::tr("femoral cartilage"));
    SlicedContour *tibia = contours->newContour(MainWindow::tr("tibial cartilage"));
    addFragments(
        *contours, *femur,
        {MainWindow::tr("femoral cartilage bone interface"), MainWindow::tr("femoral cartilage surface")});
    addFragments(
        *contours, *tibia,
        {MainWindow::tr("tibial cartilage bone interface"), MainWindow::tr("tibial cartilage surface")});
    manager.addImage(contours);
    addRasterizer(manager, contours, *volume.voxels(), codesOfNewSegmentation);
    addTriangulator(manager, contours);
    viewer.addObject(contours);
}

// The aligned copy of the free fragment is the aligner's fragment 0.
void alignDrawnFragments(ImageManager &manager, const MervImageObject &volume, QStackedSliceViewer &viewer)
{
    auto *contours = new SlicedContoursObject(MainWindow::tr("Fragments in %1").arg(volume.label()), nullptr);
    const SlicedContoursFragment *base = contours->newFragment(MainWindow::tr("base"));
    const SlicedContoursFragment *free = contours->newFragment(MainWindow::tr("free"));
    manager.addImage(contours);
    const SlicedContoursTriangulator *triangulator = addTriangulator(manager, contours);
    TriMeshFragment *baseMesh = triangulator->triangulationOf(base);
    auto *aligner = new TriMeshAligner(baseMesh, triangulator->triangulationOf(free), nullptr);
    manager.addImage(aligner);
    TriMeshDistanceMeasurer *distance =
        addMeasurer(manager, baseMesh, aligner->fragment(0), TriMeshDistanceMeasurer::MinimalDistance,
                    MainWindow::tr("distance of aligned from base fragment"));
    addColoring(manager, baseMesh, distance,
                MainWindow::tr("coloring of base fragment according to distance of aligned fragment"));
    viewer.addObject(contours);
}

} // namespace

void MainWindow::runProcedure(const std::function<void(MervImageObject &, QStackedSliceViewer &)> &build)
{
    ImageObject *object = currentObject();
    if (object == nullptr)
        return;
    auto *viewer = new QStackedSliceViewer(manager, this); // deletes itself on close
    viewer->addObject(object);
    auto *volume = dynamic_cast<MervImageObject *>(object);
    if (volume != nullptr && volume->voxels() != nullptr)
        reportFailure([&] { build(*volume, *viewer); });
    viewer->show();
    viewer->resetView();
}

void MainWindow::startSegmentation()
{
    runProcedure([this](MervImageObject &volume, QStackedSliceViewer &viewer) {
        segmentPatella(*manager, volume, viewer, this);
    });
}

void MainWindow::startSegmentationFemurTibia()
{
    runProcedure([this](const MervImageObject &volume, QStackedSliceViewer &viewer) {
        segmentFemurAndTibia(*manager, volume, viewer);
    });
}

void MainWindow::testMeshAlignment()
{
    runProcedure([this](const MervImageObject &volume, QStackedSliceViewer &viewer) {
        alignDrawnFragments(*manager, volume, viewer);
    });
}

// Takes the last object of the list, also when the user has loaded nothing. Where that does not fit, the
// viewer stays hidden. The second measurement is like the first one, whatever its name. All on purpose.
void MainWindow::loadContour()
{
    ImageObject *object = currentObject();
    if (object == nullptr)
        return;
    auto *viewer = new QStackedSliceViewer(manager, this); // deletes itself on close
    viewer->addObject(object);
    manager->loadInteractively();
    auto *loaded = dynamic_cast<SlicedContoursObject *>(manager->image(manager->imageCount() - 1));
    const auto *volume = dynamic_cast<MervImageObject *>(object);
    if (loaded == nullptr || loaded->fragmentCount() != 2 || volume == nullptr || volume->voxels() == nullptr)
        return;
    reportFailure([&] {
        addRasterizer(*manager, loaded, *volume->voxels(), codesOfLoadedContour);
        const SlicedContoursTriangulator *triangulator = addTriangulator(*manager, loaded);
        addThickness(*manager, triangulator->triangulationOf(loaded->fragment(0)),
                     triangulator->triangulationOf(loaded->fragment(1)), TriMeshDistanceMeasurer::AlongNormal,
                     volume->label());
        viewer->addObject(loaded);
    });
    viewer->show();
    viewer->resetView();
}

// The file is loaded twice: the second copy then shows the volume inside the segmented region.
void MainWindow::loadSegmentation()
{
    ImageObject *object = currentObject();
    if (object == nullptr)
        return;
    const QString path = QFileDialog::getOpenFileName(this, tr("Load the segmentation"), farUp,
                                                      tr("all supported Files (*.mhd; *.bmp; *.vis; *.hdr)\n"
                                                         "Meta Images (*.mhd)\n"
                                                         "Windows Bitmaps (*.bmp)\n"
                                                         "Tallowbrook VIS Files (*.vis)\n"
                                                         "Analyze Image (*.hdr)"));
    ImageObject *first = manager->loadFile(path, nullptr);
    ImageObject *second = manager->loadFile(path, nullptr);
    if (first == nullptr || second == nullptr)
        return;
    second->setLabel(tr("Reload of %1").arg(first->label()));
    const auto *image = dynamic_cast<MervImageObject *>(object);
    const auto *mask = dynamic_cast<MervImageObject *>(first);
    auto *overlay = dynamic_cast<MervImageObject *>(second);
    if (image == nullptr || mask == nullptr || overlay == nullptr || image->voxels() == nullptr ||
        mask->voxels() == nullptr)
        return;
    {
        // The volume may be a raster that its worker is about to rewrite. No worker has the overlay, whose
        // own lock is taken inside.
        const auto lock = image->lockVoxels();
        overlay->copyMaskedVoxels(*mask->voxels(), *image->voxels());
    }
    overlay->invalidateTextures();
    emit overlay->updated();
}
