#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

// The small dialogs of the commands on meshes and images. Each call builds one without a parent, runs it and
// deletes it, and answers nothing when the user cancels. Labels of objects are shown as plain text.
class CommandDialogs
{
    Q_DECLARE_TR_FUNCTIONS(CommandDialogs)

public:
    struct RowPair
    {
        int base;
        int other;
    };

    struct FragmentPairTexts
    {
        QString title;
        QString explanation;
        QString base;
        QString other;
    };

    // Two lists of the same names, which start on the first and on the second row. Nothing without names.
    static std::optional<RowPair> askForFragmentPair(const FragmentPairTexts &texts,
                                                     const QStringList &names);

    // A TriMeshDistanceMeasurer::Definition.
    static std::optional<int> askForThicknessDefinition(const QString &baseLabel);

    // The row of the fragment to be coloured. Nothing without fragments.
    static std::optional<int> askForColoredFragment(const QString &meshLabel,
                                                    const QStringList &fragmentLabels);

    // As typed: what is no number is 0.
    struct RasterGrid
    {
        float voxelX, voxelY, voxelZ; // mm
        int width, height, depth;     // voxels
    };
    static std::optional<RasterGrid> askForRasterGrid(const QString &sourceLabel);

    // The axis 0 to 4, of those that can be mirrored. Nothing if there are none.
    static std::optional<int> askForMirrorAxis(const QString &imageLabel,
                                               const std::array<bool, 5> &mirrorable);
};
