#include "shell/MainWindow.h"

#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "shell/PlainBox.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>

namespace {

QString askForDirectory(const QString &caption)
{
    return QFileDialog::getExistingDirectory(nullptr, caption, QDir::currentPath(),
                                             QFileDialog::ShowDirsOnly);
}

} // namespace

void MainWindow::openFile()
{
    manager->loadInteractively();
}

void MainWindow::openFileObsolete()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open a single file"), farUp,
                                     tr("all supported Files (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)\n"
                                        "DICOM Images (*.dcm)\n"
                                        "Meta Images (*.mhd)\n"
                                        "Windows Bitmaps (*.bmp)\n"
                                        "Tallowbrook VIS Files (*.vis)\n"
                                        "Analyze Image (*.hdr)"));
    manager->loadFile(path, nullptr);
}

void MainWindow::openDicomSeries()
{
    const QString directory = askForDirectory(tr("Select a directory containing the series."));
    QProgressDialog progress(tr("Checking directory …"), QString(), 0, 3, this);
    progress.setWindowTitle(tr("Opening DICOM series …"));
    progress.setValue(1);
    if (!directory.isEmpty() && QFileInfo(directory).isDir()) {
        if (confirmSeriesCount(manager->countDicomSeries(directory))) {
            progress.setLabelText(tr("Loading data\u00A0…"));
            progress.setValue(2);
            manager->loadDicomSeries(directory);
        }
    }
    progress.setValue(3);
}

bool MainWindow::confirmSeriesCount(int count)
{
    const QString title = QCoreApplication::applicationName();
    if (count == 0) {
        showPlainBox(nullptr, QMessageBox::Warning, title,
                     tr("No DICOM series could be found at this location in the file system."));
        return false;
    }
    if (count == 1)
        return true;
    QMessageBox box(QMessageBox::Information, title,
                    tr("%1 DICOM series will be loaded.", nullptr, count).arg(count), QMessageBox::NoButton);
    QPushButton *ok = box.addButton(tr("OK"), QMessageBox::AcceptRole);
    box.setEscapeButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    box.setDefaultButton(ok);
    box.exec();
    return box.clickedButton() == ok;
}

void MainWindow::openDicomSeries2()
{
    const QString directory = askForDirectory(tr("Select a directory containing the series."));
    if (!directory.isEmpty())
        manager->loadDicomSeriesInteractively(directory);
}

void MainWindow::closeImage()
{
    manager->closeImage(currentIndex());
}

void MainWindow::saveFile()
{
    manager->saveImage(currentIndex());
}

void MainWindow::saveDicomSeries()
{
    const Selection selected = selection();
    auto *image = dynamic_cast<MervImageObject *>(selected.current);
    if (selected.count != 1 || image == nullptr)
        return;
    const QString directory = askForDirectory(tr("Select a directory to save the series."));
    if (directory.isEmpty())
        return;
    if (manager->saveDicomSeries(image, directory))
        QDir::setCurrent(directory);
    else
        showPlainBox(nullptr, QMessageBox::Warning, tr("Save as Dicom series"),
                     tr("The image could not be saved to:\n\n%1").arg(directory));
}
