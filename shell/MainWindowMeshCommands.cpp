#include "shell/MainWindow.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursObject.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshAligner.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "objects/manager/ImageManager.h"
#include "shell/CommandDialogs.h"
#include "shell/PlainBox.h"
#include "shell/ReportedFailure.h"

#include <QCoreApplication>

#include <memory>

namespace {

constexpr int contourCode = 127; // of every contour in a raster
constexpr int defaultCode = -1;
constexpr int wholeObjectCode = 255; // of anything but contours

// The fragments of several meshes in one list, and the names by which the user tells them apart.
struct NamedFragments
{
    QStringList names;
    QList<TriMeshFragment *> fragments;

    void append(const TriMeshObject &mesh)
    {
        for (int i = 0; i < mesh.meshCount(); ++i) {
            fragments.append(mesh.fragment(i));
            names.append(QString("%1 (%2)").arg(mesh.fragment(i)->label(), mesh.label()));
        }
    }
};

} // namespace

void MainWindow::triangulateSlicedContours()
{
    if (auto *contours = dynamic_cast<SlicedContoursObject *>(currentObject()))
        manager->addImage(new SlicedContoursTriangulator(contours, nullptr));
}

bool MainWindow::hasFragments(const TriMeshObject &mesh)
{
    if (mesh.meshCount() > 0)
        return true;
    showPlainBox(this, QMessageBox::Warning, QCoreApplication::applicationName(),
                 tr("%1 is empty, but would have to contain at least one fragment.").arg(mesh.label()));
    return false;
}

void MainWindow::alignMesh()
{
    const Selection selected = selection();
    const auto *first = dynamic_cast<TriMeshObject *>(selected.first);
    const auto *second = dynamic_cast<TriMeshObject *>(selected.second);
    const bool fits = first != nullptr && (selected.count == 1 || (selected.count == 2 && second != nullptr));
    if (!fits || !hasFragments(*first) || (second != nullptr && !hasFragments(*second)))
        return;
    NamedFragments choice;
    if (second != nullptr)
        choice.append(*second);
    choice.append(*first);
    const auto rows = CommandDialogs::askForFragmentPair(
        {tr("Mesh Fragment Alignment"), tr("The free fragment will be aligned to the base fragment."),
         tr("base fragment"), tr("free fragment")},
        choice.names);
    if (!rows)
        return;
    manager->addImage(
        new TriMeshAligner(choice.fragments[rows->base], choice.fragments[rows->other], nullptr));
}

// Other objects may be selected beside the meshes.
void MainWindow::measureThickness()
{
    const QList<TriMeshObject *> meshes = selectedMeshes();
    if (meshes.isEmpty() || meshes.size() > 2)
        return;
    NamedFragments choice;
    for (const TriMeshObject *mesh : meshes)
        choice.append(*mesh);
    if (choice.fragments.isEmpty()) {
        showPlainBox(this, QMessageBox::Warning, QCoreApplication::applicationName(),
                     tr("No mesh fragments found in selection. Thickness can therefore not be measured."));
        return;
    }
    const auto rows = CommandDialogs::askForFragmentPair(
        {tr("Thickness Measurement"),
         tr("The thickness will be measured between two fragments (which may be the same). The thickness "
            "values will be assigned to points on the base fragment."),
         tr("base fragment"), tr("remote fragment")},
        choice.names);
    if (!rows)
        return;
    TriMeshFragment *base = choice.fragments[rows->base];
    const auto definition = CommandDialogs::askForThicknessDefinition(base->label());
    if (!definition)
        return;
    // The label is German in every language.
    manager->addImage(new TriMeshDistanceMeasurer(base, choice.fragments[rows->other], *definition,
                                                  "neue Dickenmessung", nullptr));
}

void MainWindow::colorTriangulation()
{
    const Selection selected = selection();
    if (selected.count != 2)
        return;
    const auto *mesh = dynamic_cast<TriMeshObject *>(selected.first);
    auto *thickness = dynamic_cast<TriMeshDistanceMeasurer *>(selected.second);
    if (mesh == nullptr) {
        mesh = dynamic_cast<TriMeshObject *>(selected.second);
        thickness = dynamic_cast<TriMeshDistanceMeasurer *>(selected.first);
    }
    if (mesh == nullptr || thickness == nullptr)
        return;
    QStringList labels;
    for (int i = 0; i < mesh->meshCount(); ++i)
        labels.append(mesh->fragment(i)->label());
    const auto row = CommandDialogs::askForColoredFragment(mesh->label(), labels);
    if (!row)
        return;
    manager->addImage(new ColoringTriMeshRenderer(
        mesh->fragment(*row), thickness,
        tr("Coloring of %1 according to %2").arg(mesh->label(), thickness->label()), nullptr));
}

void MainWindow::rasterizeImage()
{
    ImageObject *object = currentObject();
    if (object == nullptr)
        return;
    const auto grid = CommandDialogs::askForRasterGrid(object->label());
    if (!grid)
        return;
    reportFailure([&] {
        auto rasterizer =
            std::make_unique<BitPlaneRasterizerObject>(object, grid->width, grid->height, grid->depth,
                                                       grid->voxelX, grid->voxelY, grid->voxelZ, nullptr);
        if (const auto *contours = dynamic_cast<SlicedContoursObject *>(object)) {
            for (int i = 0; i < contours->contourCount(); ++i)
                rasterizer->setBitCode(contours->contour(i), contourCode);
            rasterizer->setDefaultBitCode(defaultCode);
        } else {
            rasterizer->setBitCode(object, wholeObjectCode);
        }
        rasterizer->invalidateRasterization();
        manager->addImage(rasterizer.release());
    });
}
