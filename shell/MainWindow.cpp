#include "shell/MainWindow.h"

#include "meshes/TriMeshObject.h"
#include "objects/ImageObject.h"
#include "objects/manager/ImageManager.h"
#include "objects/manager/ImageRelationsGraph.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "shell/HelpViewer.h"
#include "shell/PlainToolTipDelegate.h"
#include "shell/Registration.h"
#include "shell/help/Help.h"
#include "view/EnhancedQTableView.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QIcon>
#include <QItemSelectionModel>
#include <QMenuBar>
#include <QSettings>
#include <QSplitter>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

MainWindow::MainWindow()
{
    buildMenus();
    manager = new ImageManager(this);
    buildImageList();
    buildTabs();
    // The layout does not count the menu bar, of which a first start would show only half.
    setMinimumWidth(std::max(menuBar()->sizeHint().width(), minimumSizeHint().width()));
    setWindowTitle(QCoreApplication::applicationName());
    setWindowIcon(QIcon(":/icons/tevora.png"));
    registerFormats(*manager);
    readSettings();
}

MainWindow::~MainWindow()
{
    writeSettings();
    delete helpViewer;
    delete manager; // while the window that listens to it is whole
}

void MainWindow::buildImageList()
{
    imageList = new FileDroppableQListView;
    connect(imageList, &FileDroppableQListView::focusIn, this, &MainWindow::imageListFocusIn);
    imageList->setModel(manager);
    imageList->setViewMode(QListView::ListMode);
    imageList->setIconSize(QSize(32, 32));
    imageList->setWrapping(true);
    imageList->setResizeMode(QListView::Adjust);
    imageList->setTextElideMode(Qt::ElideMiddle);
    imageList->setGridSize(QSize(400, 40));
    imageList->setMovement(QListView::Free);
    imageList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    imageList->setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed);
    imageList->setDragDropMode(QAbstractItemView::DragDrop);
    imageList->setAcceptDrops(true);
    imageList->setDropIndicatorShown(true);
    imageList->setItemDelegate(new PlainToolTipDelegate(imageList));
}

void MainWindow::buildTabs()
{
    propertiesTable = new EnhancedQTableView;
    propertiesTable->setModel(manager);
    propertiesTable->setItemDelegate(new PlainToolTipDelegate(propertiesTable));
    auto *toolBar = new QToolBar;
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QAction *copy = toolBar->addAction(tr("Copy"));
    copy->setToolTip(tr("Copies the selection from the properties table to the clipboard"));
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, propertiesTable, &EnhancedQTableView::copySelectionToClipboard);

    auto *tablePage = new QWidget;
    auto *tableLayout = new QVBoxLayout(tablePage);
    tableLayout->addWidget(toolBar, 0);
    tableLayout->addWidget(propertiesTable, 1);

    auto *innerTabs = new QTabWidget;
    innerTabs->setTabPosition(QTabWidget::North);
    innerTabs->setUsesScrollButtons(false); // the window is never too small for the tabs
    innerTabs->setElideMode(Qt::ElideNone);
    innerTabs->addTab(imageList, tr("Icon View"));
    innerTabs->addTab(tablePage, tr("Properties Table"));
    tabs = new QTabWidget;
    tabs->setTabPosition(QTabWidget::West);
    tabs->setUsesScrollButtons(false);
    tabs->setElideMode(Qt::ElideNone);
    tabs->addTab(innerTabs, tr("Image List"));

    relationsGraph = new ImageRelationsGraph(manager);
    splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(tabs);
    splitter->addWidget(relationsGraph);
    connect(imageList, &QAbstractItemView::activated, this,
            qOverload<const QModelIndex &>(&MainWindow::newView));
    setCentralWidget(splitter);
}

// A first start has no values: the window then goes to (0, 0) with its smallest size, on purpose.
void MainWindow::readSettings()
{
    QSettings settings;
    settings.beginGroup("MainWindow");
    move(settings.value("Position").toPoint());
    resize(settings.value("Size").toSize());
    splitter->restoreState(settings.value("SplitterLayout").toByteArray());
}

void MainWindow::writeSettings() const
{
    QSettings settings;
    settings.beginGroup("MainWindow");
    settings.setValue("Size", size());
    settings.setValue("Position", pos());
    settings.setValue("SplitterLayout", splitter->saveState());
}

QModelIndex MainWindow::currentIndex() const
{
    return imageList->selectionModel()->currentIndex();
}

ImageObject *MainWindow::currentObject() const
{
    return manager->image(currentIndex());
}

MainWindow::Selection MainWindow::selection() const
{
    const QModelIndexList indexes = imageList->selectionModel()->selection().indexes();
    Selection result;
    result.count = int(indexes.size());
    result.current = currentObject();
    if (result.count > 0)
        result.first = manager->image(indexes.at(0));
    if (result.count > 1)
        result.second = manager->image(indexes.at(1));
    return result;
}

QList<TriMeshObject *> MainWindow::selectedMeshes() const
{
    QList<TriMeshObject *> meshes;
    for (const QModelIndex &index : imageList->selectionModel()->selection().indexes()) {
        if (auto *mesh = dynamic_cast<TriMeshObject *>(manager->image(index)))
            meshes.append(mesh);
    }
    return meshes;
}

void MainWindow::exit()
{
    QCoreApplication::exit(0);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    exit();
    event->ignore();
}

void MainWindow::imageListFocusIn()
{
    Help::instance()->showTopic("main_window_image_list");
}
