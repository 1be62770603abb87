#pragma once

#include "tests/endurance/PlainContours.h"

#include <memory>

class ImageManager;
class ImageObject;
class QAbstractItemModelTester;
class SlicedContoursObject;
class SlicedMetricsModel;

// A table of metrics as a window would show it, under the toolkit's model tester.
class MetricsTable
{
public:
    // Lets go of the object when the manager closes it.
    MetricsTable(ImageObject *measured, ImageManager &manager);
    ~MetricsTable();

    // If this is the table of `contours`: throws Violation unless all cells say what the plain model yields.
    // Of other tables, only that all cells can be read. The number of areas above 0.
    int verify(const SlicedContoursObject *contours, const PlainContours &plain) const;

private:
    void readAll() const;
    void verifyCell(int row, int column, double expected, const QString &unit) const;

    const void *source; // an address, perhaps of an object that has gone
    bool isDetached = false;
    std::unique_ptr<SlicedMetricsModel> model;
    std::unique_ptr<QAbstractItemModelTester> tester;
};
