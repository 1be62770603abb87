#include "shell/CommandDialogs.h"

#include "meshes/TriMeshDistanceMeasurer.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleValidator>
#include <QGridLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <limits>

namespace {

constexpr int longestEntry = 10; // characters

QLabel *plainLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel *wrappingLabel(const QString &text)
{
    QLabel *label = plainLabel(text);
    label->setWordWrap(true);
    return label;
}

// Ok accepts whatever stands in the fields.
QDialogButtonBox *buttonRow(QDialog &dialog)
{
    auto *buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, &dialog);
    QObject::connect(buttons->button(QDialogButtonBox::Ok), &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(buttons->button(QDialogButtonBox::Cancel), &QPushButton::clicked, &dialog,
                     &QDialog::reject);
    return buttons;
}

QListWidget *nameList(const QStringList &names, int currentRow)
{
    auto *list = new QListWidget;
    list->addItems(names);
    list->setCurrentRow(currentRow);
    return list;
}

// The text of a button takes "&" for the mark of a key.
QString withoutMnemonics(QString label)
{
    return label.replace("&", "&&");
}

struct GridEntry
{
    QString caption;
    QString preset;
};

// Numbers as QString::toFloat() and toInt() read them, whatever the user's locale: with a point and without
// separators of thousands.
QLocale plainNumbers()
{
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    return locale;
}

// A caption and an entry below what the layout holds.
QLineEdit *addEntry(QGridLayout &layout, const GridEntry &entry, QValidator *validator)
{
    auto *edit = new QLineEdit(entry.preset);
    edit->setMaxLength(longestEntry);
    validator->setParent(edit);
    validator->setLocale(plainNumbers());
    edit->setValidator(validator);
    const int row = layout.rowCount();
    layout.addWidget(new QLabel(entry.caption), row, 0);
    layout.addWidget(edit, row, 1);
    return edit;
}

QLineEdit *addVoxelSize(QGridLayout &layout, const GridEntry &entry)
{
    constexpr double smallest = 0.001;
    constexpr double largest = static_cast<double>(std::numeric_limits<float>::max());
    return addEntry(layout, entry, new QDoubleValidator(smallest, largest, 4));
}

QLineEdit *addVoxelCount(QGridLayout &layout, const GridEntry &entry)
{
    return addEntry(layout, entry, new QIntValidator(1, 2048));
}

} // namespace

std::optional<CommandDialogs::RowPair> CommandDialogs::askForFragmentPair(const FragmentPairTexts &texts,
                                                                          const QStringList &names)
{
    QDialog dialog;
    dialog.setWindowTitle(texts.title);
    auto *layout = new QGridLayout(&dialog);
    layout->addWidget(plainLabel(texts.explanation), 0, 0, 1, 2);
    layout->addWidget(plainLabel(texts.base), 1, 0);
    layout->addWidget(plainLabel(texts.other), 1, 1);
    QListWidget *base = nameList(names, 0);
    QListWidget *other = nameList(names, names.size() >= 2 ? 1 : 0);
    layout->addWidget(base, 2, 0);
    layout->addWidget(other, 2, 1);
    layout->addWidget(buttonRow(dialog), 3, 0, 1, 2);
    if (dialog.exec() != QDialog::Accepted || base->currentRow() < 0 || other->currentRow() < 0)
        return std::nullopt;
    return RowPair{base->currentRow(), other->currentRow()};
}

std::optional<int> CommandDialogs::askForThicknessDefinition(const QString &baseLabel)
{
    QDialog dialog;
    dialog.setWindowTitle(tr("Select Thickness Definition"));
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(plainLabel(
        tr("The thickness of an irregularly shaped object may be defined in several ways. Select the "
           "definition to be used in this thickness measurement.")));
    auto *perpendicular = new QRadioButton(tr("perpendicular to %1").arg(withoutMnemonics(baseLabel)));
    perpendicular->setChecked(true);
    layout->addWidget(perpendicular);
    layout->addWidget(new QRadioButton(tr("minimal distance")));
    layout->addWidget(buttonRow(dialog));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return perpendicular->isChecked() ? TriMeshDistanceMeasurer::PerpendicularToBase
                                      : TriMeshDistanceMeasurer::MinimalDistance;
}

std::optional<int> CommandDialogs::askForColoredFragment(const QString &meshLabel,
                                                         const QStringList &fragmentLabels)
{
    QDialog dialog;
    dialog.setWindowTitle(tr("Color %1").arg(meshLabel));
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(plainLabel(tr("Select the fragment of %1 you want to be colored.").arg(meshLabel)));
    QListWidget *list = nameList(fragmentLabels, 0);
    layout->addWidget(list);
    layout->addWidget(buttonRow(dialog));
    if (dialog.exec() != QDialog::Accepted || list->currentRow() < 0)
        return std::nullopt;
    return list->currentRow();
}

std::optional<CommandDialogs::RasterGrid> CommandDialogs::askForRasterGrid(const QString &sourceLabel)
{
    QDialog dialog;
    dialog.setWindowTitle(tr("Set up rasterization of %1").arg(sourceLabel));
    auto *layout = new QGridLayout(&dialog);
    layout->addWidget(wrappingLabel(tr("%1 will be rasterized to a rectilinear grid image. Enter the grid "
                                       "spacing and grid size (in voxels) below.")
                                        .arg(sourceLabel)),
                      0, 0, 1, 2);
    const QLineEdit *voxelX = addVoxelSize(*layout, {tr("voxel x size [mm]:"), "0.3125"});
    const QLineEdit *voxelY = addVoxelSize(*layout, {tr("voxel y size [mm]:"), "0.3125"});
    const QLineEdit *voxelZ = addVoxelSize(*layout, {tr("voxel z size [mm]:"), "1.5"});
    const QLineEdit *width = addVoxelCount(*layout, {tr("rastered image x size [voxels]:"), "512"});
    const QLineEdit *height = addVoxelCount(*layout, {tr("rastered image y size [voxels]:"), "512"});
    const QLineEdit *depth = addVoxelCount(*layout, {tr("rastered image z size [voxels]:"), "56"});
    layout->addWidget(buttonRow(dialog), layout->rowCount(), 0, 1, 2);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return RasterGrid{voxelX->text().toFloat(), voxelY->text().toFloat(), voxelZ->text().toFloat(),
                      width->text().toInt(),    height->text().toInt(),   depth->text().toInt()};
}

std::optional<int> CommandDialogs::askForMirrorAxis(const QString &imageLabel,
                                                    const std::array<bool, 5> &mirrorable)
{
    QDialog dialog;
    dialog.setWindowTitle(tr("Mirror %1").arg(imageLabel));
    auto *layout = new QVBoxLayout(&dialog);
    // "orthgonal" is how the users know this text.
    layout->addWidget(wrappingLabel(
        tr("Select the axis to be mirrored. %1 will be mirrored against the (hyper-)plane orthgonal to this "
           "axis located at the image's center with respect to this axis.")
            .arg(imageLabel)));
    const std::array<QRadioButton *, 5> axes = {new QRadioButton(tr("x")), new QRadioButton(tr("y")),
                                                new QRadioButton(tr("z")), new QRadioButton(tr("t")),
                                                new QRadioButton(tr("c"))};
    QRadioButton *first = nullptr;
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        axes[axis]->setEnabled(mirrorable[axis]);
        if (mirrorable[axis] && first == nullptr)
            first = axes[axis];
        layout->addWidget(axes[axis]);
    }
    if (first != nullptr)
        first->setChecked(true);
    layout->addWidget(buttonRow(dialog));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        if (axes[axis]->isChecked())
            return static_cast<int>(axis);
    }
    return std::nullopt;
}
