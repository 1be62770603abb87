#pragma once

#include <QDialog>
#include <QString>

class QFormLayout;
class QLineEdit;
class ImageObject;

// Shows what an image object is and lets the user rename it: accepting stores a changed name. Does not own
// the object, which must outlive the dialog. Main thread.
class ImagePropertiesDialog : public QDialog
{
    Q_OBJECT

public:
    ImagePropertiesDialog(ImageObject *object, QWidget *parent);

    void accept() override;

    // The object's first significant z positions (mm, at most 10) in the user's locale, joined by "; ", or
    // "- none -".
    static QString significantPositions(const ImageObject &object);

private:
    QWidget *newGeneralPage();
    QWidget *newPropertiesPage();
    void addVoxelRows(QFormLayout &form);
    void addRow(QFormLayout &form, const QString &title, const QString &value);

    ImageObject *image;
    QLineEdit *nameEdit = nullptr;
};
