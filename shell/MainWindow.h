#pragma once

#include <QMainWindow>
#include <QModelIndex>

#include <functional>

class EnhancedQTableView;
class FileDroppableQListView;
class HelpViewer;
class ImageManager;
class ImageObject;
class ImageRelationsGraph;
class MervImageObject;
class QAction;
class QMenu;
class QSplitter;
class QStackedSliceViewer;
class QTabWidget;
class TriMeshObject;

// The root of the user interface: the list of images with its table of properties and the relations graph,
// and the menus. Every command enters through a slot and works on the selection of the image list as it is at
// that moment; what a menu offers is computed when the menu opens, from the number and the classes of the
// selected images. Owns the image manager. GUI thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    ImageManager *imageManager() const { return manager; }

public slots:
    void newView();
    void newView(const QModelIndex &index);
    void newMetricsView();
    void newMetricsView(const QModelIndex &index);
    void startSegmentation();
    void startSegmentationFemurTibia();
    void loadContour();
    void loadSegmentation();
    void testMeshAlignment();
    void showCenterOfMass();
    void showImageProperties();
    void showEdgePointHistograms();
    void openFile();
    void openFileObsolete();
    void openDicomSeries();
    void openDicomSeries2();
    void closeImage();
    void saveDicomSeries();
    void saveFile();
    void exit();
    void newSlicedContours();
    void newSliceSelector();
    void addFragment();
    void triangulateSlicedContours();
    void extractEdgePoints();
    void alignMesh();
    void measureThickness();
    void colorTriangulation();
    void rasterizeImage();
    void mirrorImage();
    void setSelectorPlane();
    void showHelp();
    void about();
    void showAcknowledgement();
    void helpClosed(QObject *object);
    void configureFileMenu();
    void configureImageMenu();
    void configureViewMenu();
    void configureProceduresMenu();
    void configureHelpMenu();
    void imageListFocusIn();

protected:
    // Ends the program as the menu does; the window itself is not closed.
    void closeEvent(QCloseEvent *event) override;

private:
    // What the enabling rules and the commands ask of the image list. The objects are those of the first two
    // selected indexes; current is the object at the selection model's current index. All may be null.
    struct Selection
    {
        int count = 0;
        ImageObject *current = nullptr;
        ImageObject *first = nullptr;
        ImageObject *second = nullptr;

        // Exactly one index is selected and the current object is of the class.
        template <class Class>
        bool oneIs() const
        {
            return count == 1 && dynamic_cast<Class *>(current);
        }
    };
    Selection selection() const;
    QModelIndex currentIndex() const;
    ImageObject *currentObject() const;
    // Of all selected indexes, in the order of the selection.
    QList<TriMeshObject *> selectedMeshes() const;

    // Where the file dialogs of the unlisted commands start, as their users know it.
    static constexpr const char *farUp = "../../../../../";

    // MainWindowMenus.cpp
    void buildMenus();
    void buildFileMenu();
    void buildImageMenu();
    void buildViewMenu();
    void buildProceduresMenu();
    void buildHelpMenu();
    void buildUnlistedActions();

    // MainWindow.cpp
    void buildImageList();
    void buildTabs();
    void readSettings();
    void writeSettings() const;

    // True when an image is loaded; otherwise tells the user that no view can be opened.
    bool canOpenView();
    // True if it has any; otherwise tells the user that it is empty.
    bool hasFragments(const TriMeshObject &mesh);
    // Opens a viewer on the current object, if there is one. If that is a volume, `build` wires a network of
    // objects around it before the viewer is shown.
    void runProcedure(const std::function<void(MervImageObject &, QStackedSliceViewer &)> &build);
    // Asks the user when there are no or several series; true to go on.
    bool confirmSeriesCount(int count);

    QMenu *fileMenu = nullptr;
    QMenu *imageMenu = nullptr;
    QMenu *viewMenu = nullptr;
    QMenu *proceduresMenu = nullptr;
    QMenu *helpMenu = nullptr;

    QAction *openFileAction = nullptr;
    QAction *openDicomSeriesAction = nullptr;
    QAction *openDicomSeries2Action = nullptr;
    QAction *closeImageAction = nullptr;
    QAction *saveFileAction = nullptr;
    QAction *saveDicomSeriesAction = nullptr;
    QAction *exitAction = nullptr;
    QAction *newSlicedContoursAction = nullptr;
    QAction *newSliceSelectorAction = nullptr;
    QAction *addFragmentAction = nullptr;
    QAction *extractEdgePointsAction = nullptr;
    QAction *triangulateAction = nullptr;
    QAction *alignMeshAction = nullptr;
    QAction *measureThicknessAction = nullptr;
    QAction *colorTriangulationAction = nullptr;
    QAction *rasterizeImageAction = nullptr;
    QAction *mirrorImageAction = nullptr;
    QAction *setSelectorPlaneAction = nullptr;
    QAction *newViewAction = nullptr;
    QAction *newMetricsViewAction = nullptr;
    QAction *showCenterOfMassAction = nullptr;
    QAction *showImagePropertiesAction = nullptr;
    QAction *startSegmentationAction = nullptr;
    QAction *startSegmentationFemurTibiaAction = nullptr;
    QAction *testMeshAlignmentAction = nullptr;
    QAction *showHelpAction = nullptr;
    QAction *showAcknowledgementAction = nullptr;
    QAction *aboutAction = nullptr;
    QAction *aboutQtAction = nullptr;
    // These stand in no menu.
    QAction *openFileObsoleteAction = nullptr;
    QAction *showEdgePointHistogramsAction = nullptr;
    QAction *loadContourAction = nullptr;
    QAction *loadSegmentationAction = nullptr;

    QSplitter *splitter = nullptr;
    QTabWidget *tabs = nullptr;
    FileDroppableQListView *imageList = nullptr;
    EnhancedQTableView *propertiesTable = nullptr;
    ImageRelationsGraph *relationsGraph = nullptr;
    ImageManager *manager = nullptr;
    HelpViewer *helpViewer = nullptr; // deletes itself on close, see helpClosed()
};
