#pragma once

#include <QAbstractTableModel>
#include <QPointer>

class ImageObject;
class SlicedContoursObject;
class SparselySampledImageObject;

// A table of the measures of one image object: for contours, per slice and in total, the area inside each
// contour and the length of each fragment; for samples of a thickness measurement its four parameters; for
// any other object, and once the source has gone, a single cell that says so. Numbers are computed at each
// read and follow the locale. Borrows the source. Main thread.
class SlicedMetricsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit SlicedMetricsModel(ImageObject *imageObject, QObject *parent = nullptr);

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    // Lets go of the source if it is the object that is about to be closed.
    void detachFrom(ImageObject *closing);

public slots:
    // Reads the source anew. New rows come at the end of the table, wherever their level lies.
    void update();

private:
    int countRows(const QList<float> &levels) const;
    int countColumns() const;
    QString contoursText(int row, int column) const;
    QString contourText(int row, int contour) const;
    QString fragmentText(int row, int fragment) const;
    QString sampleText(int row) const;
    QVariant verticalContoursHeader(int row, int role) const;
    QVariant verticalSamplesHeader(int row, int role) const;
    QString columnLabel(int column) const;

    // At most one of these is set.
    QPointer<SlicedContoursObject> contours;
    QPointer<SparselySampledImageObject> samples;
    QList<float> zValues; // the levels of the contours, rising
    int rows = 0;
    int columns = 0;
};
