#include "shell/MainWindow.h"

// The guided procedures have their entries; the meshes and rasters that they wire are not part of the program
// yet.
void MainWindow::startSegmentation() {}

void MainWindow::startSegmentationFemurTibia() {}

void MainWindow::loadContour() {}

void MainWindow::loadSegmentation() {}

void MainWindow::testMeshAlignment() {}
