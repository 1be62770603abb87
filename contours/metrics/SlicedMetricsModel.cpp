#include "contours/metrics/SlicedMetricsModel.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/metrics/SlicedMetrics.h"
#include "objects/SparselySampledImageObject.h"

namespace {

// The parameters lie at the positions (0, 0, k) of a thickness measurement's samples.
constexpr int thicknessParameterCount = 4;
// "Total" and "Total (corrected)".
constexpr int totalRowCount = 2;

} // namespace

SlicedMetricsModel::SlicedMetricsModel(ImageObject *imageObject, QObject *parent)
    : QAbstractTableModel(parent)
    , contours(dynamic_cast<SlicedContoursObject *>(imageObject))
    , samples(dynamic_cast<SparselySampledImageObject *>(imageObject))
{
    if (contours) {
        zValues = zLevels(*contours);
        connect(contours, qOverload<QObject *>(&SlicedContoursObject::updated), this,
                &SlicedMetricsModel::update);
        connect(contours, &SlicedContoursObject::structureChanged, this, &SlicedMetricsModel::update);
    } else if (imageObject != nullptr) {
        connect(imageObject, qOverload<>(&ImageObject::updated), this, &SlicedMetricsModel::update);
    }
    if (imageObject != nullptr)
        connect(imageObject, &QObject::destroyed, this, &SlicedMetricsModel::update);
    rows = countRows(zValues);
    columns = countColumns();
}

int SlicedMetricsModel::countRows(const QList<float> &levels) const
{
    if (contours)
        return static_cast<int>(levels.size()) + totalRowCount;
    return samples ? thicknessParameterCount : 1;
}

int SlicedMetricsModel::countColumns() const
{
    return contours ? contours->contourCount() + contours->fragmentCount() : 1;
}

void SlicedMetricsModel::detachFrom(ImageObject *closing)
{
    if (closing == nullptr || (contours != closing && samples != closing))
        return;
    closing->disconnect(this);
    contours = nullptr;
    samples = nullptr;
    update();
}

void SlicedMetricsModel::update()
{
    const int oldRows = rows;
    const int oldColumns = columns;
    QList<float> newLevels = contours ? zLevels(*contours) : QList<float>();
    const int newRows = countRows(newLevels);
    const int newColumns = countColumns();
    // Counts and levels change together between the two halves of an announcement, since views read cells at
    // once.
    const auto takeRows = [&] {
        rows = newRows;
        zValues.swap(newLevels);
    };
    if (newRows > oldRows) {
        beginInsertRows({}, oldRows, newRows - 1);
        takeRows();
        endInsertRows();
    } else if (newRows < oldRows) {
        beginRemoveRows({}, newRows, oldRows - 1);
        takeRows();
        endRemoveRows();
    } else {
        takeRows();
    }
    if (newColumns > oldColumns) {
        beginInsertColumns({}, oldColumns, newColumns - 1);
        columns = newColumns;
        endInsertColumns();
    } else if (newColumns < oldColumns) {
        beginRemoveColumns({}, newColumns, oldColumns - 1);
        columns = newColumns;
        endRemoveColumns();
    }
    if (newRows == oldRows && newColumns == oldColumns && columns > 0)
        emit dataChanged(index(0, 0), index(rows - 1, columns - 1));
    emit headerDataChanged(Qt::Vertical, 0, rows - 1);
}

QModelIndex SlicedMetricsModel::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

int SlicedMetricsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rows;
}

int SlicedMetricsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

Qt::ItemFlags SlicedMetricsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid() || (!contours && !samples))
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

QVariant SlicedMetricsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    if (contours)
        return contoursText(index.row(), index.column());
    if (samples)
        return sampleText(index.row());
    return tr("Sliced metrics cannot be computed for this image.");
}

QString SlicedMetricsModel::contoursText(int row, int column) const
{
    if (row < 0 || row >= zValues.size() + totalRowCount)
        return {};
    const int contourCount = contours->contourCount();
    if (column < contourCount)
        return contourText(row, column);
    return fragmentText(row, column - contourCount);
}

QString SlicedMetricsModel::contourText(int row, int index) const
{
    const SlicedContour *contour = contours->contour(index);
    if (contour == nullptr)
        return {};
    if (row < zValues.size())
        return tr("%L1 mm^2").arg(static_cast<double>(contour->areaAt(zValues[row])));
    const float volume =
        row == zValues.size() ? slabVolume(*contour, zValues) : correctedVolume(*contour, zValues);
    return tr("%L1 mm^3").arg(static_cast<double>(volume));
}

QString SlicedMetricsModel::fragmentText(int row, int index) const
{
    const SlicedContoursFragment *fragment = contours->fragment(index);
    if (fragment == nullptr)
        return {};
    if (row < zValues.size())
        return tr("%L1 mm").arg(static_cast<double>(sectionLength(*fragment, zValues[row])));
    if (row == zValues.size())
        return tr("%L1 mm^2").arg(static_cast<double>(sweptArea(*fragment, zValues)));
    return tr("unavailable");
}

QString SlicedMetricsModel::sampleText(int row) const
{
    if (row < 0 || row >= thicknessParameterCount)
        return tr("Thickness parameters");
    return tr("%L1 mm").arg(samples->sampleAt({0.0, 0.0, static_cast<double>(row)}));
}

QVariant SlicedMetricsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal)
        return role == Qt::DisplayRole ? QVariant(columnLabel(section)) : QVariant();
    if (contours)
        return verticalContoursHeader(section, role);
    if (samples)
        return verticalSamplesHeader(section, role);
    return role == Qt::DisplayRole ? QVariant(QString()) : QVariant();
}

QString SlicedMetricsModel::columnLabel(int column) const
{
    if (!contours || column < 0)
        return {};
    if (const SlicedContour *contour = contours->contour(column))
        return contour->label();
    const SlicedContoursFragment *fragment = contours->fragment(column - contours->contourCount());
    return fragment != nullptr ? fragment->label() : QString();
}

QVariant SlicedMetricsModel::verticalContoursHeader(int row, int role) const
{
    if (row >= 0 && row < zValues.size()) {
        const auto z = static_cast<double>(zValues[row]);
        if (role == Qt::DisplayRole)
            return tr("at z = %L1 mm").arg(z);
        if (role == Qt::ToolTipRole)
            return tr("area/length of section at z = %L1 mm").arg(z);
        return {};
    }
    if (role != Qt::DisplayRole)
        return {};
    if (row == zValues.size())
        return tr("Total");
    return row == zValues.size() + 1 ? QVariant(tr("Total (corrected)")) : QVariant();
}

QVariant SlicedMetricsModel::verticalSamplesHeader(int row, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    switch (row) {
    case 0:
        return tr("MaxThicknes"); // spelled so on purpose
    case 1:
        return tr("AvMaxThickness");
    case 2:
        return tr("MeanThickness");
    case 3:
        return tr("StdThickness");
    default:
        return tr("Thickness parameters");
    }
}
