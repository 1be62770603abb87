#pragma once

#include <QList>
#include <QPointer>

class QWidget;

// Where a widget sits while it fills the screen by itself: takes it out of its splitter or layout and puts it
// back to the same place.
class FullScreenPlace
{
public:
    // Detaches the widget from its parent. It is hidden then.
    explicit FullScreenPlace(QWidget &widget);

    // Puts the widget back: into the splitter or box layout of its former parent, else just as a child of it.
    // Nothing if there was no parent or it is gone.
    void restore(QWidget &widget) const;

private:
    QPointer<QWidget> savedParent;
    int savedParentIndex = -1; // in the splitter or layout
    QList<int> splitterSizes;
};
