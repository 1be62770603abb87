#pragma once

#include <QDialog>

#include <array>
#include <optional>

class QGridLayout;
class QLineEdit;

// Asks for the size of one voxel of an image whose file does not tell it. GUI thread.
class VoxelSizeDialog : public QDialog
{
    Q_OBJECT

public:
    // counts: the numbers of voxels along x, y and z.
    explicit VoxelSizeDialog(const std::array<int, 3> &counts, QWidget *parent = nullptr);

    // The entries in mm along x, y and z. They are not checked: what is no number is 0.
    std::array<float, 3> voxelSize() const;

    // Shows the dialog until it is answered; nothing when it is cancelled.
    static std::optional<std::array<float, 3>> ask(const std::array<int, 3> &counts);

private:
    QLineEdit *addEntry(QGridLayout *layout, int row, const QString &text);

    std::array<QLineEdit *, 3> entries; // x, y, z
};
