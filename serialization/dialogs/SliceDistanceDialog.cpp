#include "serialization/dialogs/SliceDistanceDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

SliceDistanceDialog::SliceDistanceDialog(const dicom::SliceDistances &distances, QWidget *parent)
    : QDialog(parent)
    , results(distances)
{
    setWindowTitle(tr("Select Slice Distance Algorithm"));
    setModal(true);
    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(tr("There are several ways to determine the slice distance of the Dicom series. "
                                "Select on which algorithm's result to rely."));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout->addWidget(label);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    layout->addWidget(buttons);
    // Each goes directly under the label and takes the check mark, so the last one stands first.
    locationButton =
        insertChoice(layout, tr("Slice Location based algorithm; result: %1 mm"), results.location);
    libraryButton = insertChoice(layout, tr("GDCM internal algorithm; result: %1 mm"), results.library);
    positionButton =
        insertChoice(layout, tr("Image Position (Patient) based algorithm; result: %1 mm"), results.position);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QRadioButton *SliceDistanceDialog::insertChoice(QVBoxLayout *layout, const QString &text, double resultMm)
{
    if (resultMm == 0.0)
        return nullptr;
    auto *button = new QRadioButton(text.arg(resultMm));
    layout->insertWidget(1, button);
    button->setChecked(true);
    return button;
}

double SliceDistanceDialog::distanceMm() const
{
    if (positionButton != nullptr && positionButton->isChecked())
        return results.position;
    if (libraryButton != nullptr && libraryButton->isChecked())
        return results.library;
    return results.location;
}
