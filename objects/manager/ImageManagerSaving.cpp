#include "objects/manager/ImageManager.h"

#include "objects/MervImageObject.h"
#include "objects/manager/FileFilters.h"
#include "objects/manager/LoadProgress.h"
#include "objects/manager/MessageBoxes.h"
#include "objects/manager/MetricsText.h"
#include "serialization/framework/FileSystemImageObjectSerializer.h"
#include "serialization/framework/StreamImageObjectSerializer.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPushButton>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>

namespace {

enum class Answer
{
    Retry,
    DifferentFile,
    Abort
};

Answer askAfterFailure(const QString &path)
{
    QMessageBox box;
    MessageBoxes::setUp(
        box, QMessageBox::Warning,
        ImageManager::tr("The image could not be saved to") + "\n\n" + path + "\n\n",
        ImageManager::tr(
            "You can retry saving to this file, give a different file name, or abort saving the image."));
    const QPushButton *retry = box.addButton(ImageManager::tr("Retry"), QMessageBox::AcceptRole);
    QPushButton *differentFile = box.addButton(ImageManager::tr("Different File"), QMessageBox::ActionRole);
    box.addButton(QMessageBox::Abort);
    box.setDefaultButton(differentFile);
    box.setEscapeButton(QMessageBox::Abort);
    box.exec();
    if (box.clickedButton() == retry)
        return Answer::Retry;
    return box.clickedButton() == differentFile ? Answer::DifferentFile : Answer::Abort;
}

// Asks for the path, starting from `path`, and for one of the filters, starting from `filter`. False when
// cancelled.
bool askForPath(const QStringList &filters, QString &path, qsizetype &filter)
{
    QString selected = FileFilters::withMatchingPatterns(filters[filter]);
    path =
        QFileDialog::getSaveFileName(nullptr, ImageManager::tr("Save Image as"), path,
                                     FileFilters::dialogText(filters), &selected, FileFilters::dialogOptions);
    filter = FileFilters::selectedIndex(filters, selected);
    return !path.isEmpty();
}

// Copies contours that their metrics are about to overwrite, and says so. False when that is not possible.
bool keepContours(const QString &path)
{
    const QString copy = MetricsText::keepCopy(path);
    if (copy.isEmpty()) {
        std::cerr << "The metrics are not written, for they would overwrite the contours in "
                  << qPrintable(path) << std::endl;
    } else {
        std::cerr << "The metrics overwrite the contours in " << qPrintable(path) << ", which are kept in "
                  << qPrintable(copy) << std::endl;
    }
    return !copy.isEmpty();
}

// Runs a serializer. Volumes, which may be large and are locked meanwhile, are written in a thread of their
// own.
bool serialize(ImageObject *image, const QString &path, const std::function<bool()> &write)
{
    if (dynamic_cast<MervImageObject *>(image) == nullptr)
        return write();
    const LoadProgress progress(QDir::toNativeSeparators(path));
    return LoadProgress::runApart(write);
}

QStringList saveFiltersOf(const QList<AbstractImageObjectSerializer *> &serializers)
{
    QStringList filters;
    for (AbstractImageObjectSerializer *serializer : serializers)
        filters.append(FileFilters::saveFilter(*serializer));
    return filters;
}

QString proposedPath(AbstractImageObjectSerializer &serializer, ImageObject *image)
{
    return QDir::currentPath() + "/" + serializer.defaultName(image) + "." + serializer.extension();
}

void setCurrentDirectoryOf(const QString &path)
{
    QDir::setCurrent(QFileInfo(path).absolutePath());
}

} // namespace

bool ImageManager::saveImage(const QModelIndex &index)
{
    return saveImage(image(index));
}

QList<AbstractImageObjectSerializer *> ImageManager::serializersFor(ImageObject *image) const
{
    QList<AbstractImageObjectSerializer *> applicable;
    std::copy_if(
        serializers.begin(), serializers.end(), std::back_inserter(applicable),
        [image](AbstractImageObjectSerializer *serializer) { return serializer->canSerialize(image); });
    return applicable;
}

bool ImageManager::saveImage(ImageObject *image)
{
    const QList<AbstractImageObjectSerializer *> applicable = serializersFor(image);
    if (applicable.isEmpty()) {
        MessageBoxes::show(
            QMessageBox::Critical,
            tr("The image cannot be saved for there is no serializer installed to handle this type "
               "of image."));
        return false;
    }
    const QStringList filters = saveFiltersOf(applicable);
    QString path = proposedPath(*applicable.first(), image);
    qsizetype filter = 0;
    bool ask = true;
    for (;;) {
        if (ask && !askForPath(filters, path, filter))
            return false;
        ask = true;
        emit aboutToWrite();
        const Written written = write(applicable[filter], image, path);
        if (written == Written::Stream || written == Written::FileSystem)
            emit imageWritten(image, applicable[filter]);
        switch (written) {
        case Written::Stream:
            setCurrentDirectoryOf(filters[filter].contains("slic") ? writeMetrics(image, path) : path);
            return true;
        case Written::FileSystem:
            return true; // neither moves the current directory nor writes metrics
        case Written::NotOpened:
            MessageBoxes::show(QMessageBox::Warning,
                               tr("The selected file could not be opened for writing."));
            setCurrentDirectoryOf(path);
            break;
        case Written::Failed:
            const Answer answer = askAfterFailure(path);
            if (answer == Answer::Abort)
                return false;
            ask = answer != Answer::Retry;
        }
    }
}

ImageManager::Written ImageManager::write(AbstractImageObjectSerializer *serializer, ImageObject *image,
                                          const QString &path)
{
    try {
        if (auto *toStream = dynamic_cast<StreamImageObjectSerializer *>(serializer)) {
            std::ofstream stream(QFileInfo(path).filesystemFilePath(), std::ios::binary | std::ios::trunc);
            if (!stream.is_open() || stream.fail())
                return Written::NotOpened;
            const bool written = serialize(image, path, [&] { return toStream->serialize(image, stream); });
            stream.close(); // what is still in the buffer may not fit
            return written && !stream.fail() ? Written::Stream : Written::Failed;
        }
        auto *toFiles = dynamic_cast<FileSystemImageObjectSerializer *>(serializer);
        const auto writeFiles = [&] { return toFiles->serialize(image, path.toStdWString().c_str()); };
        const bool written = toFiles != nullptr && serialize(image, path, writeFiles);
        return written ? Written::FileSystem : Written::Failed;
    } catch (const std::exception &exception) {
        std::cerr << exception.what() << std::endl;
        return Written::Failed;
    }
}

// Writes the table of metrics of contours just saved and returns its path. A table that cannot be opened is
// not reported.
QString ImageManager::writeMetrics(ImageObject *image, const QString &contoursPath) const
{
    const QAbstractItemModel *model = metricsModelFactory ? metricsModelFactory(image) : nullptr;
    if (model == nullptr)
        return contoursPath;
    QString metricsPath = MetricsText::path(contoursPath);
    // On purpose the table takes the place of the contours when their name holds neither word; but nothing is
    // lost by that.
    if (QFileInfo(metricsPath) == QFileInfo(contoursPath) && !keepContours(contoursPath))
        return contoursPath;
    std::ofstream stream(QFileInfo(metricsPath).filesystemFilePath());
    const QByteArray text = MetricsText::text(*model);
    stream.write(text.constData(), text.size());
    return metricsPath;
}
