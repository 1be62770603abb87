#pragma once

#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "tests/support/TestVolume.h"
#include "view/EnhancedQTreeView.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QAction>
#include <QActionGroup>
#include <QLabel>
#include <QPointer>
#include <QSplitter>
#include <QStatusBar>
#include <QTest>

#include <utility>

// An image manager with a volume of 40 x 40 x 5 voxels of 1 x 1 x 2 mm (dark for x < 20, bright beyond), a
// volume of three components, contours (one contour, three fragments), and edge points of the first volume;
// and a viewer that shows none of them yet.
class ViewerScene
{
public:
    enum Row : int // in the list of images
    {
        VolumeRow = 0,
        ColorsRow = 1,
        ContoursRow = 2,
        EdgesRow = 3
    };
    static constexpr double extentMm = 40.0;

    ViewerScene()
    {
        auto dark =
            newVolume(MERV::TypeUShort, {40, 40, 5}, [](int x, int, int) { return x < 20 ? 0 : 200; });
        dark->setSpacing(1.0f, 1.0f, 2.0f, 1.0f);
        volume = new MervImageObject(dark.release(), "/somewhere/knee.mhd");
        colors = new MervImageObject(newVolume(MERV::TypeUChar, {4, 4, 2, 1, 3}).release(), "/x/colors.mhd");
        contours = new SlicedContoursObject("lines");
        contour = contours->newContour("cartilage");
        for (const char *label : {"one", "two", "three"})
            contours->newFragment(label);
        edges = new ConventionalSliceEdgePointExtractor(volume);
        for (ImageObject *object : std::initializer_list<ImageObject *>{volume, colors, contours, edges})
            manager.addImage(object);
        openViewer();
    }
    ~ViewerScene()
    {
        delete viewer;
        while (manager.imageCount() > 0)
            manager.closeImage(manager.index(0, 0));
    }
    ViewerScene(const ViewerScene &) = delete;
    ViewerScene &operator=(const ViewerScene &) = delete;

    void openViewer() { viewer = new QStackedSliceViewer(&manager, nullptr); }

    // False if the window does not come up.
    bool show()
    {
        viewer->show();
        viewer->activateWindow();
        const bool isUp = QTest::qWaitForWindowActive(viewer);
        viewer->move(40, 40);
        view()->setFocus();
        QTest::qWait(50);
        return isUp;
    }

    QStackedSliceView *view() const { return viewer->stackedSliceView(); }
    ImageComposition *composition() const { return viewer->imageComposition(); }
    EnhancedQTreeView *tree() const { return viewer->findChild<EnhancedQTreeView *>(); }
    QLabel *coordinatesLabel() const
    {
        return viewer->findChild<QStatusBar *>()->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    }
    QList<QAction *> modes() const { return viewer->findChild<QActionGroup *>()->actions(); }
    QString checkedMode() const
    {
        const QAction *checked = viewer->findChild<QActionGroup *>()->checkedAction();
        return checked != nullptr ? checked->text() : QString();
    }
    QAction *action(const QString &text) const
    {
        for (QAction *found : viewer->findChildren<QAction *>())
            if (found->text() == text)
                return found;
        return nullptr;
    }
    // The cell of a row of the tree, or of a child row below it.
    QModelIndex cell(int row, int column) const { return composition()->index(row, column); }
    QModelIndex childCell(int row, int child, int column) const
    {
        return composition()->index(child, column, composition()->index(row, 0));
    }
    QWidget *editor(const QModelIndex &index) const { return tree()->indexWidget(index); }
    // The columns of a row whose editors are open all the time.
    QList<int> openEditors(int row) const
    {
        QList<int> columns;
        for (int column = 0; column < composition()->columnCount(); ++column)
            if (tree()->isPersistentEditorOpen(cell(row, column)))
                columns.append(column);
        return columns;
    }

    ImageManager manager{nullptr};
    MervImageObject *volume = nullptr;
    MervImageObject *colors = nullptr;
    SlicedContoursObject *contours = nullptr;
    SlicedContour *contour = nullptr;
    ConventionalSliceEdgePointExtractor *edges = nullptr;
    QPointer<QStackedSliceViewer> viewer;
};
