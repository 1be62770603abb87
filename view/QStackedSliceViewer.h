#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>

class EnhancedQTreeView;
class ImageComposition;
class ImageManager;
class ImageObject;
class QAction;
class QActionGroup;
class QHBoxLayout;
class QLabel;
class QSplitter;
class QStackedSliceView;
class QStatusBar;
class QToolBar;
class QVBoxLayout;

// The window around a stacked slice view: the view above the tree of its composition, tool bars for the
// interaction modes and the screenshot, and the position of the cursor. Takes image objects dragged out of
// the image list. Deletes itself on close; owns the composition. GUI thread.
class QStackedSliceViewer : public QWidget
{
    Q_OBJECT

public:
    // manager is asked for dropped objects and announces closed ones; not owned.
    QStackedSliceViewer(ImageManager *manager, QWidget *parent);
    ~QStackedSliceViewer() override;

    // Adds the object to the composition and opens the editors of its row. Nothing if the composition
    // refuses.
    void addObject(ImageObject *object);

    ImageComposition *imageComposition() const { return composition; }
    QStackedSliceView *stackedSliceView() const;

    QSize sizeHint() const override { return {800, 600}; }

public slots:
    void resetView();
    // Asks for a file and saves the picture of the view, in the pixels of the screen: as JPEG for a name
    // ending in ".jpg", else as PNG.
    void saveScreenshot();
    void updateCoordinates();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void buildModeToolBar();
    QAction *addMode(const QString &text, const QString &toolTip);
    void connectModes();
    void buildTree();
    void buildLayout();
    // Opens the persistent editors of children that appeared under a contours object and shows them; a row
    // that the user has collapsed stays so otherwise.
    void openChildEditors(int row);
    void openAllChildEditors();
    void fitColumns();

    QPointer<QStackedSliceView> view; // deletes itself when closed in full screen
    QStatusBar *statusBar = nullptr;
    QLabel *coordinatesLabel = nullptr;
    QVBoxLayout *mainLayout = nullptr;
    QHBoxLayout *toolLayout = nullptr;
    QSplitter *splitter = nullptr;
    EnhancedQTreeView *compositionTree = nullptr;
    QToolBar *modeToolBar = nullptr;
    QToolBar *commandToolBar = nullptr;
    QActionGroup *modeActions = nullptr;
    QAction *moveAction = nullptr;
    QAction *perspectiveAction = nullptr;
    QAction *zoomAction = nullptr;
    QAction *traceAction = nullptr;
    QAction *windowAction = nullptr;
    QAction *guessAction = nullptr;
    QAction *eraseAction = nullptr;
    QAction *loadAction = nullptr;
    QAction *screenshotAction = nullptr;
    ImageComposition *composition = nullptr; // deleted after the view
    ImageManager *imageManager = nullptr;
};
