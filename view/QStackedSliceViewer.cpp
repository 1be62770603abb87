#include "view/QStackedSliceViewer.h"

#include "objects/ImageObject.h"
#include "objects/manager/ImageManager.h"
#include "platform/HasOpenGl.h"
#include "view/EnhancedQTreeView.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QDataStream>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QMimeData>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

// Columns of the composition whose values are edited by widgets that are always open.
constexpr int displayColumn = 1, analyzeColumn = 4, editColumn = 5, scopeColumn = 6;

} // namespace

QStackedSliceViewer::QStackedSliceViewer(ImageManager *manager, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , imageManager(manager)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Stacked Slice Viewer"));
    setWindowIcon(QIcon(":/icons/eye.png"));
    setAcceptDrops(true);

    composition = new ImageComposition(this);
    view = new QStackedSliceView(nullptr, composition);
    manager->addClosingListener(composition,
                                [this](ImageObject *closing) { composition->detachFrom(closing); });
    buildModeToolBar();
    buildTree();
    buildLayout();
    connectModes();
    if (hasOpenGl())
        setFocusProxy(view);
    connect(view, &QStackedSliceView::currentCoordinatesChanged, this,
            &QStackedSliceViewer::updateCoordinates);
}

// The view draws the composition, so it goes first.
QStackedSliceViewer::~QStackedSliceViewer()
{
    delete view;
    delete compositionTree;
    delete composition;
}

QStackedSliceView *QStackedSliceViewer::stackedSliceView() const
{
    return view;
}

QAction *QStackedSliceViewer::addMode(const QString &text, const QString &toolTip)
{
    QAction *action = modeToolBar->addAction(text);
    action->setCheckable(true);
    action->setToolTip(toolTip);
    modeActions->addAction(action);
    return action;
}

void QStackedSliceViewer::buildModeToolBar()
{
    modeToolBar = new QToolBar(this);
    modeActions = new QActionGroup(this);
    perspectiveAction = addMode(tr("Perspective"), tr("allows to adjust the parameters of the projection"));
    perspectiveAction->setStatusTip(tr("test tip"));
    windowAction = addMode(tr("Window"), tr("allows to adjust brightness and contrast"));
    moveAction = addMode(tr("Move"), tr("enables moving the displayed image around the screen"));
    zoomAction = addMode(tr("Zoom"), tr("allows to adjust the magnification of the display"));
    traceAction =
        addMode(tr("Trace"), tr("enables drawing contours along automatically detected edge points"));
    // Guess bears the tip of Erase, and Erase none, as the readers know them.
    guessAction = addMode(tr("Guess"), tr("can be used to delete contour points or segments"));
    eraseAction = addMode(tr("Erase"), QString());
    loadAction = addMode(tr("Load"), tr("enables loading contours of all slices"));
    modeActions->setEnabled(true);
    moveAction->setChecked(true); // the view's base mode at start

    commandToolBar = new QToolBar(this);
    screenshotAction = commandToolBar->addAction(tr("Screenshot"));
    connect(screenshotAction, &QAction::triggered, this, &QStackedSliceViewer::saveScreenshot);
}

// Entering a mode checks its action; an action sets the base mode, which the view refuses when it is the
// present mode: so a temporary mode only moves the check mark.
void QStackedSliceViewer::connectModes()
{
    struct Mode
    {
        QAction *action;
        void (QStackedSliceView::*entered)();
        void (QStackedSliceView::*setBase)();
    };
    using View = QStackedSliceView;
    const Mode modes[] = {
        {windowAction, &View::interactModeWindowEntered, &View::setInteractBaseModeWindow},
        {perspectiveAction, &View::interactModePerspectiveEntered, &View::setInteractBaseModePerspective},
        {moveAction, &View::interactModeMoveEntered, &View::setInteractBaseModeMove},
        {zoomAction, &View::interactModeZoomEntered, &View::setInteractBaseModeZoom},
        {traceAction, &View::interactModeTraceEntered, &View::setInteractBaseModeTrace},
        {guessAction, &View::interactModeGuessEntered, &View::setInteractBaseModeGuess},
        {eraseAction, &View::interactModeEraseEntered, &View::setInteractBaseModeErase},
        {loadAction, &View::interactModeLoadEntered, &View::setInteractBaseModeLoad},
    };
    for (const Mode &mode : modes) {
        connect(view, mode.entered, mode.action, &QAction::trigger);
        connect(mode.action, &QAction::triggered, view, mode.setBase);
    }
    connect(view, &View::interactBaseModeMoveSet, moveAction, &QAction::trigger);
    connect(view, &View::interactBaseModeZoomSet, zoomAction, &QAction::trigger);
    connect(view, &View::interactBaseModeTraceSet, traceAction, &QAction::trigger);
}

void QStackedSliceViewer::buildTree()
{
    compositionTree = new EnhancedQTreeView(this);
    compositionTree->setToolTip(tr("Image Composition Tree"));
    compositionTree->setModel(composition);
    compositionTree->setEditTriggers(QAbstractItemView::CurrentChanged | QAbstractItemView::SelectedClicked);
    compositionTree->setSelectionBehavior(QAbstractItemView::SelectItems);
    compositionTree->setColumnWidth(0, 200);
    compositionTree->setColumnWidth(displayColumn, 32);
    fitColumns();
    connect(compositionTree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) {
                QModelIndex top = current;
                while (top.parent().isValid())
                    top = top.parent();
                composition->setCurrentRow(top.isValid() ? top.row() : -1);
            });
    connect(composition, &QAbstractItemModel::layoutChanged, this, &QStackedSliceViewer::openAllChildEditors);
}

void QStackedSliceViewer::buildLayout()
{
    toolLayout = new QHBoxLayout;
    toolLayout->addWidget(modeToolBar);
    toolLayout->addWidget(commandToolBar);
    toolLayout->addStretch(1);

    splitter = new QSplitter(Qt::Vertical, this);
    splitter->setContentsMargins(8, 4, 8, 0);
    // A view that cannot draw stays outside of all windows.
    splitter->addWidget(hasOpenGl() ? view.data() : new QWidget);
    splitter->addWidget(compositionTree);
    splitter->setStretchFactor(0, 1);
    splitter->setCollapsible(0, false);

    statusBar = new QStatusBar(this);
    coordinatesLabel = new QLabel(statusBar);
    statusBar->addPermanentWidget(coordinatesLabel);

    mainLayout = new QVBoxLayout(this);
    mainLayout->setContentsMargins(0, 0, 0, 0);
    mainLayout->addLayout(toolLayout);
    mainLayout->addWidget(splitter, 1);
    mainLayout->addWidget(statusBar);
}

void QStackedSliceViewer::addObject(ImageObject *object)
{
    if (!composition->addImageObject(object))
        return;
    const int row = composition->podCount() - 1;
    if (row < 0)
        return;
    for (const int column : {displayColumn, analyzeColumn, editColumn, scopeColumn})
        compositionTree->openPersistentEditor(composition->index(row, column));
    openChildEditors(row);
    compositionTree->expand(composition->index(row, 0));
    fitColumns();
}

void QStackedSliceViewer::fitColumns()
{
    for (int column = 2; column <= editColumn; ++column)
        compositionTree->resizeColumnToContents(column);
    compositionTree->doItemsLayout(); // rows grow with the editors that were opened
}

void QStackedSliceViewer::openChildEditors(int row)
{
    const QModelIndex top = composition->index(row, 0);
    for (int child = 0; child < composition->rowCount(top); ++child) {
        const QModelIndex cell = composition->index(child, editColumn, top);
        if (compositionTree->isPersistentEditorOpen(cell))
            continue;
        compositionTree->openPersistentEditor(cell);
        compositionTree->expand(top);
    }
}

void QStackedSliceViewer::openAllChildEditors()
{
    for (int row = 0; row < composition->podCount(); ++row)
        if (compositionTree->isPersistentEditorOpen(composition->index(row, displayColumn)))
            openChildEditors(row);
}

void QStackedSliceViewer::resetView()
{
    compositionTree->expandAll();
    if (view)
        view->resetView();
}

void QStackedSliceViewer::updateCoordinates()
{
    if (view)
        coordinatesLabel->setText(view->coordinatesText());
}

void QStackedSliceViewer::saveScreenshot()
{
    if (!view)
        return;
    // Without alpha, as it stands on the screen: converting would brighten translucent pixels.
    QImage picture = view->grabFramebuffer();
    picture.reinterpretAsFormat(QImage::Format_RGB32);
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Save Screenshot as"), QCoreApplication::applicationDirPath(),
                                     tr("JPEG Image (*.jpg)\nPortable Network Graphics (*.png)"));
    if (path.isEmpty())
        return;
    emit imageManager->aboutToWrite();
    picture.save(path, path.endsWith(".jpg", Qt::CaseInsensitive) ? "JPG" : "PNG");
}

void QStackedSliceViewer::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasFormat(ImageManager::indexMimeType()))
        event->acceptProposedAction();
}

void QStackedSliceViewer::dropEvent(QDropEvent *event)
{
    QDataStream stream(event->mimeData()->data(ImageManager::indexMimeType()));
    while (!stream.atEnd()) {
        QString text;
        stream >> text;
        if (stream.status() != QDataStream::Ok)
            break;
        bool isNumber = false;
        const int row = text.toInt(&isNumber, 10);
        if (ImageObject *object = isNumber ? imageManager->image(row) : nullptr)
            addObject(object);
    }
    event->acceptProposedAction();
}
