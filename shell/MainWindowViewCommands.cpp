#include "shell/MainWindow.h"

#include "contours/metrics/SlicedMetricsModel.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "objects/ImageObject.h"
#include "objects/ImagePropertiesDialog.h"
#include "objects/manager/ImageManager.h"
#include "objects/manager/ImageRelationsGraph.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "view/EnhancedQTableView.h"
#include "view/QStackedSliceViewer.h"

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

void MainWindow::showCenterOfMass() {}

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
