#include "shell/MainWindow.h"

#include "contours/metrics/SlicedMetricsModel.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "objects/ImageObject.h"
#include "objects/ImagePropertiesDialog.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "objects/manager/ImageRelationsGraph.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "shell/CenterOfMass.h"
#include "shell/PlainBox.h"
#include "view/EnhancedQTableView.h"
#include "view/QStackedSliceViewer.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMessageBox>

bool MainWindow::canOpenView()
{
    if (manager->imageCount() > 0)
        return true;
    QMessageBox::information(this, tr("Tevora"), tr("Cannot open new view. No image loaded."),
                             QMessageBox::Ok);
    return false;
}

void MainWindow::newView()
{
    if (canOpenView())
        newView(currentIndex());
}

void MainWindow::newView(const QModelIndex &index)
{
    ImageObject *object = manager->image(index);
    if (object == nullptr)
        return;
    auto *viewer = new QStackedSliceViewer(manager, this); // deletes itself on close
    viewer->addObject(object);
    viewer->show();
    viewer->resetView();
}

// Its message speaks of a view too, on purpose.
void MainWindow::newMetricsView()
{
    if (canOpenView())
        newMetricsView(currentIndex());
}

void MainWindow::newMetricsView(const QModelIndex &index)
{
    ImageObject *object = manager->image(index);
    if (object == nullptr)
        return;
    auto *viewer = new SlicedMetricsViewer(object, nullptr); // deletes itself on close
    manager->addClosingListener(viewer,
                                [viewer](ImageObject *closing) { viewer->model()->detachFrom(closing); });
    viewer->show();
}

void MainWindow::showCenterOfMass()
{
    const auto *object = dynamic_cast<MervImageObject *>(currentObject());
    auto *voxels =
        object != nullptr ? dynamic_cast<MERV::ImageBase<unsigned short> *>(object->voxels()) : nullptr;
    if (voxels == nullptr)
        return;
    QGuiApplication::clipboard()->setText(inPlaneCentersOfMass(*voxels));
    showPlainBox(this, QMessageBox::Information, tr("Center of Mass of %1").arg(object->label()),
                 tr("In-plane Centers of Mass of %1 (voxel values minus 100) copied to clipboard.")
                     .arg(object->label()));
}

void MainWindow::showImageProperties()
{
    ImageObject *object = currentObject();
    if (object == nullptr)
        return;
    ImagePropertiesDialog dialog(object, this);
    dialog.exec();
    // A new name is announced by nobody.
    imageList->viewport()->update();
    propertiesTable->viewport()->update();
    relationsGraph->update();
}

void MainWindow::showEdgePointHistograms() {}
