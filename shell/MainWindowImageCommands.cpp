#include "shell/MainWindow.h"

#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "objects/MervImageObject.h"
#include "objects/SliceSelector.h"
#include "objects/manager/ImageManager.h"
#include "shell/CommandDialogs.h"
#include "shell/ReportedFailure.h"

#include <QCoreApplication>
#include <QInputDialog>

#include <array>
#include <limits>
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
    reportFailure([&] {
        auto selector = std::make_unique<SliceSelector>(source, SliceDirection::Z, 0.0);
        selector->setLabel(tr("selected slice from %1").arg(source->label()));
        manager->addImage(selector.release());
    });
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
        reportFailure([&] { manager->addImage(new ConventionalSliceEdgePointExtractor(image)); });
}

void MainWindow::mirrorImage()
{
    auto *image = dynamic_cast<MervImageObject *>(currentObject());
    if (image == nullptr)
        return;
    std::array<bool, 5> mirrorable{};
    if (const MERV::Image *voxels = image->voxels()) {
        constexpr std::array<int, 5> dimensions = {0, 1, 2, 3, -1}; // the channels are mirrored as axis 4
        for (std::size_t axis = 0; axis < mirrorable.size(); ++axis)
            mirrorable[axis] = voxels->getDimension(dimensions[axis]) > 1;
    }
    if (const auto axis = CommandDialogs::askForMirrorAxis(image->label(), mirrorable))
        image->mirror(*axis);
}

// A cancelled dialog selects plane 0, on purpose.
void MainWindow::setSelectorPlane()
{
    auto *selector = dynamic_cast<SliceSelector *>(currentObject());
    if (selector == nullptr)
        return;
    constexpr int farthest = std::numeric_limits<int>::max();
    const int plane =
        QInputDialog::getInt(this, tr("Slice Selector"), tr("Set selected plane"), 0, -farthest, farthest, 1);
    selector->setPosition(static_cast<double>(plane));
    selector->update();
}
