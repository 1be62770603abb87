#include "shell/MainWindow.h"

#include "contours/SlicedContoursObject.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshObject.h"
#include "objects/MervImageObject.h"
#include "objects/SliceSelector.h"
#include "shell/help/Help.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

namespace {

bool isMesh(ImageObject *object)
{
    return dynamic_cast<TriMeshObject *>(object) != nullptr;
}

bool isThicknessMeasurement(ImageObject *object)
{
    return dynamic_cast<TriMeshDistanceMeasurer *>(object) != nullptr;
}

} // namespace

// Menu roles stay off, so that every entry keeps its place on all systems.
void MainWindow::buildMenus()
{
    buildFileMenu();
    buildImageMenu();
    buildViewMenu();
    buildProceduresMenu();
    buildHelpMenu();
    buildUnlistedActions();
    for (QAction *action : findChildren<QAction *>())
        action->setMenuRole(QAction::NoRole);
}

void MainWindow::buildFileMenu()
{
    fileMenu = menuBar()->addMenu(tr("&File"));
    connect(fileMenu, &QMenu::aboutToShow, this, &MainWindow::configureFileMenu);
    openFileAction = fileMenu->addAction(tr("&Open Single File ..."), this, &MainWindow::openFile);
    openFileAction->setShortcut(QKeySequence("Ctrl+O"));
    openDicomSeriesAction =
        fileMenu->addAction(tr("Open &Dicom Series ..."), this, &MainWindow::openDicomSeries);
    openDicomSeries2Action = fileMenu->addAction(tr("Open Dicom Series with Input Filter ..."), this,
                                                 &MainWindow::openDicomSeries2);
    fileMenu->addSeparator();
    closeImageAction = fileMenu->addAction(tr("Close Image"), this, &MainWindow::closeImage);
    fileMenu->addSeparator();
    saveFileAction = fileMenu->addAction(tr("&Save as Single File ..."), this, &MainWindow::saveFile);
    saveFileAction->setShortcut(QKeySequence("Ctrl+S"));
    saveDicomSeriesAction =
        fileMenu->addAction(tr("Save as Dicom Series ..."), this, &MainWindow::saveDicomSeries);
    fileMenu->addSeparator();
    exitAction = fileMenu->addAction(tr("E&xit"), this, &MainWindow::exit);
}

void MainWindow::buildImageMenu()
{
    imageMenu = menuBar()->addMenu(tr("Image"));
    connect(imageMenu, &QMenu::aboutToShow, this, &MainWindow::configureImageMenu);
    QMenu *newMenu = imageMenu->addMenu(tr("New"));
    newSlicedContoursAction =
        newMenu->addAction(tr("New sliced contours"), this, &MainWindow::newSlicedContours);
    newSliceSelectorAction =
        newMenu->addAction(tr("New slice selector"), this, &MainWindow::newSliceSelector);
    imageMenu->addSeparator();
    addFragmentAction = imageMenu->addAction(tr("Add fragment ..."), this, &MainWindow::addFragment);
    imageMenu->addSeparator();
    extractEdgePointsAction =
        imageMenu->addAction(tr("Extract Edge Points ..."), this, &MainWindow::extractEdgePoints);
    triangulateAction = imageMenu->addAction(tr("Triangulate"), this, &MainWindow::triangulateSlicedContours);
    alignMeshAction = imageMenu->addAction(tr("Align"), this, &MainWindow::alignMesh);
    measureThicknessAction =
        imageMenu->addAction(tr("Measure Thickness ..."), this, &MainWindow::measureThickness);
    measureThicknessAction->setEnabled(false);
    colorTriangulationAction =
        imageMenu->addAction(tr("Color Triangulation"), this, &MainWindow::colorTriangulation);
    colorTriangulationAction->setEnabled(false);
    rasterizeImageAction = imageMenu->addAction(tr("Rasterize ..."), this, &MainWindow::rasterizeImage);
    imageMenu->addSeparator();
    mirrorImageAction = imageMenu->addAction(tr("Mirror ..."), this, &MainWindow::mirrorImage);
    imageMenu->addSeparator();
    setSelectorPlaneAction =
        imageMenu->addAction(tr("Set selector plane ..."), this, &MainWindow::setSelectorPlane);
}

void MainWindow::buildViewMenu()
{
    viewMenu = menuBar()->addMenu(tr("View"));
    connect(viewMenu, &QMenu::aboutToShow, this, &MainWindow::configureViewMenu);
    newViewAction = viewMenu->addAction(tr("Show in new view ..."), this, qOverload<>(&MainWindow::newView));
    newMetricsViewAction =
        viewMenu->addAction(tr("Show metrics ..."), this, qOverload<>(&MainWindow::newMetricsView));
    viewMenu->addSeparator();
    showCenterOfMassAction =
        viewMenu->addAction(tr("Show center of mass ..."), this, &MainWindow::showCenterOfMass);
    viewMenu->addSeparator();
    showImagePropertiesAction =
        viewMenu->addAction(tr("Properties ..."), this, &MainWindow::showImageProperties);
}

void MainWindow::buildProceduresMenu()
{
    proceduresMenu = menuBar()->addMenu(tr("Procedures"));
    connect(proceduresMenu, &QMenu::aboutToShow, this, &MainWindow::configureProceduresMenu);
    startSegmentationAction = proceduresMenu->addAction(tr("Start Segmentation of Patella ..."), this,
                                                        &MainWindow::startSegmentation);
    startSegmentationFemurTibiaAction = proceduresMenu->addAction(
        tr("Start Segmentation of Femur and Tibia ..."), this, &MainWindow::startSegmentationFemurTibia);
    proceduresMenu->addSeparator();
    testMeshAlignmentAction =
        proceduresMenu->addAction(tr("Test Mesh Alignment ..."), this, &MainWindow::testMeshAlignment);
}

void MainWindow::buildHelpMenu()
{
    helpMenu = menuBar()->addMenu(tr("Help"));
    connect(helpMenu, &QMenu::aboutToShow, this, &MainWindow::configureHelpMenu);
    showHelpAction = helpMenu->addAction(tr("Show Online Help"), this, &MainWindow::showHelp);
    showHelpAction->setCheckable(true);
    showAcknowledgementAction =
        helpMenu->addAction(tr("How to Acknowledge ..."), this, &MainWindow::showAcknowledgement);
    aboutAction = helpMenu->addAction(tr("About Tevora ..."), this, &MainWindow::about);
    aboutQtAction = helpMenu->addAction(tr("About Qt ..."), qApp, &QApplication::aboutQt);
}

void MainWindow::buildUnlistedActions()
{
    openFileObsoleteAction = new QAction(tr("Open Single File (obsolete) ..."), this);
    connect(openFileObsoleteAction, &QAction::triggered, this, &MainWindow::openFileObsolete);
    showEdgePointHistogramsAction = new QAction(tr("Show edge point histograms"), this);
    connect(showEdgePointHistogramsAction, &QAction::triggered, this, &MainWindow::showEdgePointHistograms);
    loadContourAction = new QAction(tr("Load Contour of Patella..."), this);
    connect(loadContourAction, &QAction::triggered, this, &MainWindow::loadContour);
    loadSegmentationAction = new QAction(tr("Load Segmentation of Patella ..."), this);
    connect(loadSegmentationAction, &QAction::triggered, this, &MainWindow::loadSegmentation);
}

void MainWindow::configureFileMenu()
{
    const Selection selected = selection();
    closeImageAction->setEnabled(selected.count >= 1);
    saveFileAction->setEnabled(selected.count == 1);
    saveDicomSeriesAction->setEnabled(selected.oneIs<MervImageObject>());
    Help::instance()->showTopic("menu_file");
}

void MainWindow::configureImageMenu()
{
    const Selection selected = selection();
    const bool oneVolume = selected.oneIs<MervImageObject>();
    const bool oneContours = selected.oneIs<SlicedContoursObject>();
    const bool meshes = (selected.count == 1 && isMesh(selected.current)) ||
                        (selected.count == 2 && isMesh(selected.first) && isMesh(selected.second));
    const bool meshAndThickness =
        selected.count == 2 && ((isMesh(selected.first) && isThicknessMeasurement(selected.second)) ||
                                (isThicknessMeasurement(selected.first) && isMesh(selected.second)));
    newSliceSelectorAction->setEnabled(oneVolume);
    addFragmentAction->setEnabled(oneContours);
    extractEdgePointsAction->setEnabled(oneVolume);
    triangulateAction->setEnabled(oneContours);
    alignMeshAction->setEnabled(meshes);
    measureThicknessAction->setEnabled(meshes);
    colorTriangulationAction->setEnabled(meshAndThickness);
    rasterizeImageAction->setEnabled(selected.count == 1);
    mirrorImageAction->setEnabled(oneVolume);
    setSelectorPlaneAction->setEnabled(selected.oneIs<SliceSelector>());
    Help::instance()->showTopic("menu_image");
}

void MainWindow::configureViewMenu()
{
    const Selection selected = selection();
    newViewAction->setEnabled(selected.count == 1);
    newMetricsViewAction->setEnabled(selected.count == 1);
    showCenterOfMassAction->setEnabled(selected.oneIs<MervImageObject>());
    showImagePropertiesAction->setEnabled(currentIndex().isValid());
    Help::instance()->showTopic("menu_view");
}

void MainWindow::configureProceduresMenu()
{
    const Selection selected = selection();
    const bool oneVolume = selected.oneIs<MervImageObject>();
    startSegmentationAction->setEnabled(oneVolume);
    startSegmentationFemurTibiaAction->setEnabled(oneVolume);
    testMeshAlignmentAction->setEnabled(oneVolume);
    loadContourAction->setEnabled(selected.count == 1);
    loadSegmentationAction->setEnabled(selected.count == 1);
    Help::instance()->showTopic("menu_procedures");
}

void MainWindow::configureHelpMenu()
{
    Help::instance()->showTopic("menu_help");
}
