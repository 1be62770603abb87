#include "objects/manager/ImageManager.h"

#include "Common/Progress.h"
#include "objects/MervImageObject.h"
#include "objects/manager/LoadProgress.h"
#include "platform/FileNames.h"
#include "serialization/dialogs/ListChoiceDialog.h"
#include "serialization/dialogs/SliceDistanceDialog.h"
#include "serialization/dicom/DicomDirectory.h"
#include "serialization/dicom/DicomExport.h"
#include "serialization/dicom/DicomLoader.h"

#include <QApplication>
#include <QDir>

#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr const char *patientName = "Patient's Name";

// Shares of the time of a load, each counted from the start.
constexpr double scanShare = 0.3;
constexpr double readingShare = 0.85; // of one series; the pictures of its slices take the rest

QString patientOf(const MERV::Image &image)
{
    return QString::fromStdString(image.getMetaData(patientName));
}

// Runs one step of a DICOM route; an exception counts as a failure.
template <class Step>
auto withoutException(const Step &step) -> decltype(step())
{
    try {
        return step();
    } catch (const std::exception &exception) {
        std::cerr << exception.what() << std::endl;
        return {};
    }
}

// Runs one stage of a load, which ends at this share of its time.
template <class Step>
auto withShare(double end, const Step &step) -> decltype(step())
{
    const MERV::ProgressStage stage(end);
    return step();
}

// Runs `load` and makes an object with the label that labelOf gives for what was loaded. Null on failure,
// also when the memory suffices for the voxels but not for the pictures of their slices.
template <class Load, class LabelOf>
std::unique_ptr<MervImageObject> newVolume(const Load &load, const LabelOf &labelOf, const QString &directory,
                                           QObject *parent)
{
    return withoutException([&]() -> std::unique_ptr<MervImageObject> {
        auto image = withShare(readingShare, load);
        if (!image)
            return nullptr;
        const QString label = labelOf(*image);
        auto object = std::make_unique<MervImageObject>(image.release(), directory, parent);
        object->setLabel(label);
        return object;
    });
}

// What is in the directory; null when the memory does not suffice.
std::unique_ptr<dicom::DicomDirectory> readDirectory(const QString &directory)
{
    const LoadProgress progress(QDir::toNativeSeparators(directory));
    return withoutException(
        [&] { return std::make_unique<dicom::DicomDirectory>(narrowPath(directory), false); });
}

// Each series of the directory, null where it cannot be one image. The objects have the parent.
std::vector<std::unique_ptr<MervImageObject>> readAllSeries(const QString &directory, QObject *parent)
{
    const LoadProgress progress(QDir::toNativeSeparators(directory));
    const std::string path = narrowPath(directory);
    const auto contents = withShare(scanShare, [&] { return readDirectory(directory); });
    const std::size_t count = contents ? contents->series().size() : 0;
    std::vector<std::unique_ptr<MervImageObject>> objects;
    for (std::size_t i = 0; i < count; ++i) {
        const double part = static_cast<double>(i + 1) / static_cast<double>(count);
        const MERV::ProgressStage stage(scanShare + (1.0 - scanShare) * part);
        std::cout << "Loading Series #" << i << " ..." << std::endl;
        const auto load = [&] {
            return dicom::loadSeries(path, *contents, static_cast<int>(i), false, true);
        };
        objects.push_back(newVolume(load, patientOf, directory, parent));
        if (!objects.back())
            std::cout << "Could not load series #" << i << "in" << path << std::endl;
    }
    return objects;
}

// Row of the answer; nothing when the user cancels.
std::optional<std::size_t> chooseRow(const QString &title, const QString &label, const QStringList &entries)
{
    ListChoiceDialog dialog(title, label, entries, QApplication::activeWindow());
    if (dialog.exec() != QDialog::Accepted || dialog.chosenRow() < 0)
        return std::nullopt;
    return static_cast<std::size_t>(dialog.chosenRow());
}

const dicom::DicomSeries *chooseSeries(const dicom::DicomDirectory &contents)
{
    QStringList entries;
    for (const dicom::DicomSeries &series : contents.series()) {
        const dicom::DicomHeader &first = *series.files.front();
        entries.append(ImageManager::tr("%1; %2").arg(
            QString::fromStdString(first.text(dicom::tags::patientName)),
            QString::fromStdString(first.text(dicom::tags::seriesDescription))));
    }
    if (entries.isEmpty())
        return nullptr;
    const std::optional<std::size_t> row = chooseRow(ImageManager::tr("Select Series"), QString(), entries);
    return row ? &contents.series()[*row] : nullptr;
}

std::optional<std::string> chooseEchoTime(const dicom::DicomSeries &series)
{
    const std::vector<std::string> times = dicom::echoTimes(series);
    QStringList entries;
    for (const std::string &time : times)
        entries.append(QString::fromStdString(time));
    const std::optional<std::size_t> row =
        chooseRow(ImageManager::tr("Select Echo Time"),
                  ImageManager::tr("Select the echo time to be loaded."), entries);
    return row ? std::optional(times[*row]) : std::nullopt;
}

std::optional<double> chooseSliceDistance(const dicom::FileList &files)
{
    const dicom::SliceDistances distances = dicom::sliceDistances(files);
    if (files.size() == 1)
        return distances.library;
    SliceDistanceDialog dialog(distances, QApplication::activeWindow());
    return dialog.exec() == QDialog::Accepted ? std::optional(dialog.distanceMm()) : std::nullopt;
}

} // namespace

ImageObject *ImageManager::loadDicomSeriesInteractively(const QString &directory)
{
    const std::string path = narrowPath(directory);
    const auto contents = readDirectory(directory);
    const dicom::DicomSeries *series = contents ? chooseSeries(*contents) : nullptr;
    if (series == nullptr)
        return nullptr;
    const std::optional<std::string> echoTime = chooseEchoTime(*series);
    if (!echoTime)
        return nullptr;
    dicom::FileList files = dicom::filesWithEchoTime(*series, *echoTime);
    dicom::orderFiles(files, dicom::Order::direct);
    const std::optional<double> distanceMm = chooseSliceDistance(files);
    if (!distanceMm)
        return nullptr;
    std::unique_ptr<MervImageObject> object;
    {
        const LoadProgress progress(QDir::toNativeSeparators(directory));
        object = newVolume(
            [&] { return dicom::loadFiles(files, *distanceMm, true); },
            [&](const MERV::Image &image) {
                return tr("%1 (tE = %2 ms)").arg(patientOf(image), QString::fromStdString(*echoTime));
            },
            directory, nullptr);
    }
    if (!object) {
        std::cout << "Could not load series " << series->uid << " in " << path << std::endl;
        return nullptr;
    }
    ImageObject *added = object.release();
    addImage(added);
    QDir::setCurrent(directory);
    return added;
}

int ImageManager::countDicomSeries(const QString &directory) const
{
    const auto contents = readDirectory(directory);
    return contents ? static_cast<int>(contents->series().size()) : 0;
}

// These images are appended without a look at their properties, so they add no columns until another image
// brings them; and a series that fails puts the last image of the list into the result once more. Both are on
// purpose. The list changes when all are read: events are handled meanwhile.
QList<ImageObject *> ImageManager::loadDicomSeries(const QString &directory)
{
    std::vector<std::unique_ptr<MervImageObject>> objects = readAllSeries(directory, this);
    QList<ImageObject *> loaded;
    if (!objects.empty())
        emit layoutAboutToBeChanged();
    for (std::unique_ptr<MervImageObject> &object : objects) {
        if (object)
            images.append(object.release());
        if (!images.isEmpty())
            loaded.append(images.last());
    }
    if (!objects.empty())
        emit layoutChanged();
    QDir::setCurrent(directory);
    return loaded;
}

bool ImageManager::saveDicomSeries(MervImageObject *image, const QString &directory)
{
    if (image == nullptr || image->voxels() == nullptr)
        return false;
    emit aboutToWrite();
    const LoadProgress progress(QDir::toNativeSeparators(directory));
    return withoutException([&] {
        return LoadProgress::runApart([&] {
            const auto lock = image->lockVoxels(); // no worker writes them meanwhile
            return dicom::saveDicomSeries(*image->voxels(), narrowPath(directory));
        });
    });
}
