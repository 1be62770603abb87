#include "objects/ImagePropertiesDialog.h"

#include "Common/Image.h"
#include "objects/MervImageObject.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include <limits>
#include <list>
#include <string>

namespace {

constexpr int shownPositions = 10;

QString typeName(int imageType)
{
    switch (imageType) {
    case ImageTypePixmap:
        return ImagePropertiesDialog::tr("pixmap image");
    case ImageTypeContours:
        return ImagePropertiesDialog::tr("Sliced contours");
    default:
        return ImagePropertiesDialog::tr("unknown"); // also for meshes
    }
}

template <class Number>
QString triple(Number x, Number y, Number z)
{
    return ImagePropertiesDialog::tr("%1×%2×%3")
        .arg(QString::number(x), QString::number(y), QString::number(z));
}

QTableWidgetItem *newCell(const std::string &text)
{
    auto *cell = new QTableWidgetItem(QString::fromStdString(text));
    cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return cell;
}

} // namespace

ImagePropertiesDialog::ImagePropertiesDialog(ImageObject *object, QWidget *parent)
    : QDialog(parent)
    , image(object)
{
    setWindowTitle(tr("Properties of %1").arg(image->label()));
    auto *tabs = new QTabWidget(this);
    tabs->addTab(newGeneralPage(), tr("General"));
    tabs->addTab(newPropertiesPage(), tr("Properties"));
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &ImagePropertiesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ImagePropertiesDialog::reject);
    auto *column = new QVBoxLayout(this);
    column->addWidget(tabs);
    column->addWidget(buttons);
}

void ImagePropertiesDialog::accept()
{
    if (nameEdit->isModified() && nameEdit->text() != image->label())
        image->setLabel(nameEdit->text());
    QDialog::accept();
}

QString ImagePropertiesDialog::significantPositions(const ImageObject &object)
{
    const auto *volume = qobject_cast<const MervImageObject *>(&object);
    float z = object.firstSignificantZ();
    if (z == std::numeric_limits<float>::max() || (volume != nullptr && volume->voxels() == nullptr))
        return tr("- none -");
    QStringList texts;
    while (true) {
        texts.append(tr("%L1").arg(static_cast<double>(z)));
        const float next = object.nextSignificantZ(z);
        if (!(next > z) || texts.size() == shownPositions)
            return texts.join(QStringLiteral("; "));
        z = next;
    }
}

QWidget *ImagePropertiesDialog::newGeneralPage()
{
    auto *page = new QWidget;
    auto *form = new QFormLayout(page);
    nameEdit = new QLineEdit(image->label(), page);
    nameEdit->setFocus();
    form->addRow(tr("Name:"), nameEdit);
    addRow(*form, tr("Image type:"), typeName(image->imageType()));
    if (const auto *functional = qobject_cast<FunctionalImageObject *>(image))
        addRow(*form, tr("Signature:"), functional->signature());
    addRow(*form, tr("Dimensions [mm×mm×mm]:"), triple(image->extentX(), image->extentY(), image->extentZ()));
    addVoxelRows(*form);
    addRow(*form, tr("Granularity [mm]:"), QString::number(image->granularity()));
    addRow(*form, tr("Significant z Positions [mm]:"), significantPositions(*image));
    return page;
}

void ImagePropertiesDialog::addVoxelRows(QFormLayout &form)
{
    const auto *volume = qobject_cast<MervImageObject *>(image);
    if (volume == nullptr || volume->voxels() == nullptr)
        return;
    const MERV::Image &voxels = *volume->voxels();
    addRow(form, tr("Dimensions [Pixel×Pixel×Pixel]:"),
           triple(voxels.getWidth(), voxels.getHeight(), voxels.getDepth()));
    addRow(form, tr("Spacing [mm×mm×mm]:"),
           triple(voxels.getSpacing(0), voxels.getSpacing(1), voxels.getSpacing(2)));
}

void ImagePropertiesDialog::addRow(QFormLayout &form, const QString &title, const QString &value)
{
    auto *text = new QLabel(form.parentWidget());
    text->setTextFormat(Qt::PlainText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text->setText(value);
    form.addRow(title, text);
}

QWidget *ImagePropertiesDialog::newPropertiesPage()
{
    auto *table = new QTableWidget(0, 2);
    table->setHorizontalHeaderLabels({tr("Property"), tr("Value")});
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    const auto *volume = qobject_cast<MervImageObject *>(image);
    if (volume == nullptr || volume->voxels() == nullptr)
        return table;
    std::list<std::string> keys;
    volume->voxels()->getMetaDataKeys(keys);
    table->setRowCount(static_cast<int>(keys.size()));
    int row = 0;
    for (const std::string &key : keys) {
        table->setItem(row, 0, newCell(key));
        table->setItem(row, 1, newCell(volume->voxels()->getMetaData(key)));
        ++row;
    }
    return table;
}
