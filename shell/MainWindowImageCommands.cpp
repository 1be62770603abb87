#include "shell/MainWindow.h"

#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "objects/MervImageObject.h"
#include "objects/SliceSelector.h"
#include "objects/manager/ImageManager.h"

#include <QCoreApplication>
#include <QInputDialog>

#include <memory>

void MainWindow::newSlicedContours()
{
    manager->addImage(new SlicedContoursObject(tr("new sliced contours"), nullptr));
}

void MainWindow::newSliceSelector()
{
    auto *source = dynamic_cast<MervImageObject *>(currentObject());
    if (source == nullptr)
        return;
    auto selector = std::make_unique<SliceSelector>(source, SliceDirection::Z, 0.0);
    selector->setLabel(tr("selected slice from %1").arg(source->label()));
    manager->addImage(selector.release());
}

// A cancelled or empty answer adds a fragment with an empty name, on purpose.
void MainWindow::addFragment()
{
    auto *contours = dynamic_cast<SlicedContoursObject *>(currentObject());
    if (contours == nullptr)
        return;
    contours->newFragment(QInputDialog::getText(this, QCoreApplication::applicationName(),
                                                tr("Enter a name for the new fragment:")));
}

void MainWindow::extractEdgePoints()
{
    if (auto *image = dynamic_cast<MervImageObject *>(currentObject()))
        manager->addImage(new ConventionalSliceEdgePointExtractor(image));
}

// The commands on meshes and rasters have their entries; what they work on is not part of the program yet.
void MainWindow::triangulateSlicedContours() {}

void MainWindow::alignMesh() {}

void MainWindow::measureThickness() {}

void MainWindow::colorTriangulation() {}

void MainWindow::rasterizeImage() {}

void MainWindow::mirrorImage() {}

void MainWindow::setSelectorPlane() {}
