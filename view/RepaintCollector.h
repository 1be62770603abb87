#pragma once

#include "view/QStackedSliceView.h"

#include <QPointer>

#include <utility>

// While it lives, immediate repaints of the view wait; at its end they become one. For operations that change
// much at once. Not across message boxes: the view would stand still.
class RepaintCollector
{
public:
    explicit RepaintCollector(QStackedSliceView &collectedView)
        : view(&collectedView)
    {
        ++view->collectingRepaints;
    }
    ~RepaintCollector()
    {
        if (!view)
            return;
        --view->collectingRepaints;
        if (view->collectingRepaints == 0 && std::exchange(view->repaintCollected, false))
            view->repaintNow();
    }
    RepaintCollector(const RepaintCollector &) = delete;
    RepaintCollector &operator=(const RepaintCollector &) = delete;

private:
    QPointer<QStackedSliceView> view;
};
