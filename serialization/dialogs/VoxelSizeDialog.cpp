#include "serialization/dialogs/VoxelSizeDialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace {

constexpr int longestEntry = 10; // characters

} // namespace

VoxelSizeDialog::VoxelSizeDialog(const std::array<int, 3> &counts, QWidget *parent)
    : QDialog(parent)
{
    auto *layout = new QGridLayout(this);
    auto *explanation = new QLabel(
        tr("The image being loaded consists of %1x%2x%3 voxels without information on physical dimensions. "
           "Enter "
           "one voxel's dimensions.")
            .arg(QString::number(counts[0]), QString::number(counts[1]), QString::number(counts[2])));
    explanation->setWordWrap(true);
    layout->addWidget(explanation, 0, 0, 1, 3);
    entries = {addEntry(layout, 1, tr("voxel x size:")), addEntry(layout, 2, tr("voxel y size:")),
               addEntry(layout, 3, tr("voxel z size:"))};
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    layout->addWidget(buttons, 4, 0, 1, 3);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QLineEdit *VoxelSizeDialog::addEntry(QGridLayout *layout, int row, const QString &text)
{
    auto *entry = new QLineEdit("1.0");
    entry->setMaxLength(longestEntry);
    layout->addWidget(new QLabel(text), row, 0);
    layout->addWidget(entry, row, 1);
    layout->addWidget(new QLabel(tr("mm")), row, 2);
    return entry;
}

std::array<float, 3> VoxelSizeDialog::voxelSize() const
{
    return {entries[0]->text().toFloat(), entries[1]->text().toFloat(), entries[2]->text().toFloat()};
}

std::optional<std::array<float, 3>> VoxelSizeDialog::ask(const std::array<int, 3> &counts)
{
    VoxelSizeDialog dialog(counts);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.voxelSize();
}
