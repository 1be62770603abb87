#include "objects/manager/ImageManager.h"

#include "Common/Progress.h"
#include "objects/ImageObject.h"
#include "objects/manager/FileFilters.h"
#include "objects/manager/LoadProgress.h"
#include "objects/manager/MessageBoxes.h"
#include "serialization/framework/ContinuousStreamImageObjectUnserializer.h"
#include "serialization/framework/FileSystemImageObjectUnserializer.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QProgressDialog>
#include <QUrl>

#include <array>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

// Runs one reader; an exception counts as a failure.
template <class Read>
ImageObject *readWith(const Read &read)
{
    try {
        return read();
    } catch (const std::exception &exception) {
        std::cerr << exception.what() << std::endl;
        return nullptr;
    }
}

// Opens a regular file; a directory, which the system would open as well, or a pipe, which would wait for
// ever, does not open.
std::ifstream openFile(const QString &path)
{
    const QFileInfo file(path);
    std::ifstream stream;
    std::error_code error;
    if (file.isFile() && std::filesystem::is_regular_file(file.filesystemFilePath(), error))
        stream.open(file.filesystemFilePath(), std::ios::binary);
    return stream;
}

// Handles the events that are due. False when the program was told to exit meanwhile.
bool processEvents()
{
    constexpr int allHandled = 1; // an exit of the program ends this loop with another code
    QEventLoop loop;
    const auto goOn = [&loop] {
        if (loop.isRunning())
            loop.exit(allHandled);
    };
    QMetaObject::invokeMethod(&loop, goOn, Qt::QueuedConnection);
    return loop.exec() == allHandled;
}

void reportLoaded(int loaded, const QStringList &failed)
{
    if (failed.isEmpty()) {
        MessageBoxes::show(QMessageBox::Information,
                           ImageManager::tr("%n image(s) have been loaded.", nullptr, loaded));
        return;
    }
    const int failures = static_cast<int>(failed.size());
    QString text;
    if (loaded > 0) {
        text = ImageManager::tr("%n image(s) have been successfully loaded, ", nullptr, loaded) +
               ImageManager::tr(
                   "whereas with the following %n image(s), errors occured while attempting to load "
                   "them:",
                   nullptr, failures);
    } else {
        text = ImageManager::tr("Errors occured while attempting to load the following %n image(s):", nullptr,
                                failures);
    }
    MessageBoxes::show(QMessageBox::Warning, text, failed.join(QChar(QChar::ParagraphSeparator)));
}

} // namespace

ImageObject *ImageManager::loadFile(const QString &path, QString *error)
{
    // The current directory moves below, so a relative path would not hold.
    const QString absolutePath = path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
    const LoadProgress progress(QDir::toNativeSeparators(absolutePath));
    QStringList failed; // names of the readers that said yes
    ImageObject *image = loadFromStream(absolutePath, failed, error);
    if (image == nullptr)
        image = loadFromFileSystem(absolutePath, failed);
    if (image != nullptr || error == nullptr)
        return image;
    if (failed.isEmpty())
        *error = tr("There was no appropriate unserializer.");
    else
        *error =
            tr("The following unserializer(s) assured their capability to unserialize this file, but they "
               "failed to do so: %1")
                .arg(failed.join(", "));
    return nullptr;
}

ImageObject *ImageManager::loadFromStream(const QString &path, QStringList &failed, QString *error)
{
    std::ifstream stream = openFile(path);
    if (!stream.is_open() || stream.bad()) {
        if (error != nullptr)
            *error = tr("The file could not be opened for reading.");
        return nullptr;
    }
    std::array<char, ContinuousStreamImageObjectUnserializer::headSize> head{};
    stream.read(head.data(), head.size());
    stream.clear();
    stream.seekg(0);
    QDir::setCurrent(QFileInfo(path).absolutePath());
    for (AbstractImageObjectUnserializer *unserializer : std::as_const(unserializers)) {
        auto *reader = dynamic_cast<ContinuousStreamImageObjectUnserializer *>(unserializer);
        if (reader == nullptr || !reader->canUnserialize(head.data()))
            continue;
        // A reader that failed leaves the stream where it stopped.
        if (ImageObject *image = readWith([&] { return reader->unserialize(stream); })) {
            addImage(image);
            return image;
        }
        failed.append(reader->name());
    }
    return nullptr;
}

ImageObject *ImageManager::loadFromFileSystem(const QString &path, QStringList &failed)
{
    const std::wstring widePath = path.toStdWString();
    for (AbstractImageObjectUnserializer *unserializer : std::as_const(unserializers)) {
        auto *reader = dynamic_cast<FileSystemImageObjectUnserializer *>(unserializer);
        if (reader == nullptr || !reader->canUnserialize(widePath.c_str()))
            continue;
        if (ImageObject *image = readWith([&] { return reader->unserialize(widePath.c_str()); })) {
            addImage(image);
            return image;
        }
        failed.append(reader->name());
    }
    return nullptr;
}

int ImageManager::loadInteractively()
{
    if (unserializers.isEmpty()) {
        MessageBoxes::show(QMessageBox::Critical,
                           tr("No image can be loaded due to no unserializer being installed."));
        return 0;
    }
    const QString filters = FileFilters::dialogText(FileFilters::loadFilters(unserializers));
    const QStringList paths = QFileDialog::getOpenFileNames(nullptr, tr("Load images"), QDir::currentPath(),
                                                            filters, nullptr, FileFilters::dialogOptions);
    if (paths.isEmpty())
        return 0;
    QStringList failed;
    loadFiles(paths, failed);
    const int loaded = static_cast<int>(paths.size() - failed.size());
    reportLoaded(loaded, failed);
    return loaded;
}

// Adds a line for each file that cannot be loaded.
void ImageManager::loadFiles(const QStringList &paths, QStringList &failed)
{
    const LoadProgress progress((QString())); // loadFile() tells the name
    double done = 0;
    for (const QString &path : paths) {
        const MERV::ProgressStage stage(++done / static_cast<double>(paths.size()));
        QString error;
        if (loadFile(path, &error) == nullptr)
            failed.append(tr("%1 (reason: %2)").arg(path, error));
    }
}

bool ImageManager::dropMimeData(const QMimeData *data, Qt::DropAction, int, int, const QModelIndex &)
{
    // A drop may come from another program while the events of a long load are handled.
    const QList<QUrl> urls = data->urls(); // the data may not outlive the events handled below
    if (urls.isEmpty() || LoadProgress::isActive())
        return false;
    QProgressDialog progress(tr("Loading images ..."), tr("Cancel"), 0, static_cast<int>(urls.size()),
                             nullptr);
    progress.setWindowModality(Qt::WindowModal);
    progress.setWindowTitle(QCoreApplication::applicationName());
    progress.setMinimumDuration(0);
    progress.setValue(0);
    bool goOn = processEvents();
    for (int i = 0; goOn && i < urls.size(); ++i) {
        std::cout << qPrintable(urls[i].toString()) << std::endl;
        loadFile(urls[i].toLocalFile(), nullptr);
        progress.setValue(progress.value() + 1);
        goOn = processEvents() && !progress.wasCanceled();
    }
    return true;
}
