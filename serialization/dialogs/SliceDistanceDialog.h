#pragma once

#include "serialization/dicom/DicomDirectory.h"

#include <QDialog>

class QRadioButton;
class QVBoxLayout;

// Asks which of the answers to the slice distance of a series to rely on. An answer of 0 is not offered; the
// first one offered is chosen at the start. GUI thread.
class SliceDistanceDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SliceDistanceDialog(const dicom::SliceDistances &distances, QWidget *parent = nullptr);

    // The chosen distance in mm; that of the slice locations, even 0, when nothing is chosen.
    double distanceMm() const;

private:
    QRadioButton *insertChoice(QVBoxLayout *layout, const QString &text, double resultMm);

    dicom::SliceDistances results;
    QRadioButton *locationButton;
    QRadioButton *libraryButton;
    QRadioButton *positionButton;
};
