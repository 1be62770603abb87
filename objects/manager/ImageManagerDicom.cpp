#include "objects/manager/ImageManager.h"

#include "objects/MervImageObject.h"
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

namespace {

constexpr const char *patientName = "Patient's Name";

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

// Runs `load` and makes an object with the label that labelOf gives for what was loaded. Null on failure,
// also when the memory suffices for the voxels but not for the pictures of their slices.
template <class Load, class LabelOf>
std::unique_ptr<MervImageObject> newVolume(const Load &load, const LabelOf &labelOf, const QString &directory,
                                           QObject *parent)
{
    return withoutException([&]() -> std::unique_ptr<MervImageObject> {
        auto image = load();
        if (!image)
            return nullptr;
        const QString label = labelOf(*image);
        auto object = std::make_unique<MervImageObject>(image.release(), directory, parent);
        object->setLabel(label);
        return object;
    });
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
    const auto contents =
        withoutException([&path] { return std::make_unique<dicom::DicomDirectory>(path, false); });
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
    auto object =
        newVolume([&] { return dicom::loadFiles(files, *distanceMm, true); },
                  [&](const MERV::Image &image) {
                      return tr("%1 (tE = %2 ms)").arg(patientOf(image), QString::fromStdString(*echoTime));
                  },
                  directory, nullptr);
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
    return withoutException([&] { return dicom::countDicomSeries(narrowPath(directory), false); });
}

// These images are appended without a look at their properties, so they add no columns until another image
// brings them; and a series that fails puts the last image of the list into the result once more. Both are on
// purpose.
QList<ImageObject *> ImageManager::loadDicomSeries(const QString &directory)
{
    const std::string path = narrowPath(directory);
    const auto contents =
        withoutException([&path] { return std::make_unique<dicom::DicomDirectory>(path, false); });
    const int count = contents ? static_cast<int>(contents->series().size()) : 0;
    QList<ImageObject *> loaded;
    if (count > 0)
        emit layoutAboutToBeChanged();
    for (int i = 0; i < count; ++i) {
        std::cout << "Loading Series #" << i << " ..." << std::endl;
        auto object = newVolume([&] { return dicom::loadSeries(path, *contents, i, false, true); }, patientOf,
                                directory, this);
        if (object)
            images.append(object.release());
        else
            std::cout << "Could not load series #" << i << "in" << path << std::endl;
        if (!images.isEmpty())
            loaded.append(images.last());
    }
    if (count > 0)
        emit layoutChanged();
    QDir::setCurrent(directory);
    return loaded;
}

bool ImageManager::saveDicomSeries(MervImageObject *image, const QString &directory)
{
    if (image == nullptr || image->voxels() == nullptr)
        return false;
    const auto lock = image->lockVoxels(); // no worker writes them meanwhile
    return withoutException([&] { return dicom::saveDicomSeries(*image->voxels(), narrowPath(directory)); });
}
