#include "tests/endurance/MetricsTable.h"

#include "contours/SlicedContoursObject.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "objects/manager/ImageManager.h"
#include "tests/endurance/PlainMetrics.h"
#include "tests/endurance/Watched.h"

#include <QAbstractItemModelTester>
#include <QLocale>

MetricsTable::MetricsTable(ImageObject *measured, ImageManager &manager)
    : source(measured)
    , model(std::make_unique<SlicedMetricsModel>(measured))
    , tester(std::make_unique<QAbstractItemModelTester>(
          model.get(), QAbstractItemModelTester::FailureReportingMode::Warning))
{
    manager.addClosingListener(model.get(), [this](ImageObject *closing) {
        isDetached = isDetached || closing == source;
        model->detachFrom(closing);
    });
}

MetricsTable::~MetricsTable() = default;

void MetricsTable::readAll() const
{
    for (int row = 0; row < model->rowCount(); ++row)
        for (int column = 0; column < model->columnCount(); ++column)
            require(!model->index(row, column).data().toString().isEmpty(), "an empty cell");
    require(!isDetached || model->rowCount() == 1, "a table outlives its source");
}

// The texts have six digits, and the real sums run in single precision.
void MetricsTable::verifyCell(int row, int column, double expected, const QString &unit) const
{
    const QString text = model->index(row, column).data().toString();
    require(text.endsWith(' ' + unit), "unit of a cell: " + text.toStdString());
    bool isNumber = false;
    const double shown = QLocale().toDouble(text.chopped(unit.size() + 1), &isNumber);
    require(isNumber && std::abs(shown - expected) <= 1e-4 * std::abs(expected) + 1e-6,
            "a cell says " + text.toStdString() + " where the lines give " + std::to_string(expected));
}

int MetricsTable::verify(const SlicedContoursObject *contours, const PlainContours &plain) const
{
    readAll();
    if (isDetached || contours == nullptr || contours != source)
        return 0;
    const PlainMetrics metrics(plain);
    const auto levels = static_cast<int>(metrics.zLevels().size());
    const auto contourCount = static_cast<int>(plain.contours.size());
    require(model->rowCount() == levels + 2, "rows of the table");
    require(model->columnCount() == contourCount + static_cast<int>(plain.fragments.size()),
            "columns of the table");
    int outlines = 0;
    for (int column = 0; column < contourCount; ++column) {
        const PlainContour &contour = plain.contours[static_cast<std::size_t>(column)];
        for (int row = 0; row < levels; ++row) {
            const double area = metrics.area(contour, metrics.zLevels()[static_cast<std::size_t>(row)]);
            verifyCell(row, column, area, "mm^2");
            outlines += area > 0.0 ? 1 : 0;
        }
        verifyCell(levels, column, metrics.volume(contour), "mm^3");
        verifyCell(levels + 1, column, metrics.correctedVolume(contour), "mm^3");
    }
    for (int column = contourCount; column < model->columnCount(); ++column) {
        const PlainFragment &fragment = plain.fragments[static_cast<std::size_t>(column - contourCount)];
        for (int row = 0; row < levels; ++row)
            verifyCell(row, column,
                       metrics.length(fragment, metrics.zLevels()[static_cast<std::size_t>(row)]), "mm");
        verifyCell(levels, column, metrics.sweptArea(fragment), "mm^2");
    }
    return outlines;
}
