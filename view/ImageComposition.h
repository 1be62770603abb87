#pragma once

#include "contours/SegmentGuess.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/Vector3.h"

#include <QAbstractItemModel>
#include <QList>
#include <QPixmap>
#include <QPointer>

#include <optional>
#include <utility>
#include <vector>

class GraphicsObject;
class GraphicsPod;
class ImageObject;
class MervImageObject;
class SlicedContoursObject;

// What one view shows and how: a tree model with a top-level row per pod, and below the row of a contours
// object its contours, then its fragments. An index points to the object (not the pod) that its row stands
// for. Also the advisor for the colours of all that it shows, and the place where the view's tools ask about
// all shown objects at once. Owns its pods, not the objects. GUI thread. Whoever closes image objects calls
// detachFrom() first.
class ImageComposition : public QAbstractItemModel, public GraphicsObjectRenderAdvisor, public EdgePointSource
{
    Q_OBJECT

public:
    // The columns. The last one lies far beyond columnCount() and thus in no view, on purpose; Display Mode
    // has a header but no cell in a view either.
    enum Column : int
    {
        ImageColumn = 0,
        DisplayColumn = 1,
        ColorColumn = 2,
        OpacityColumn = 3,
        AnalyzeColumn = 4,
        EditColumn = 5,
        DisplayScopeColumn = 6,
        DisplayModeColumn = 7,
        InputFilterColumn = 999
    };

    explicit ImageComposition(QObject *parent = nullptr);
    ~ImageComposition() override;

    // Adds a pod for the object, or one per component of a voxel image. False for a null object.
    bool addImageObject(ImageObject *object);
    // Before closing is deleted: removes its pods, lets go of it and of its parts. Emits objectClosing(), and
    // if it was shown layoutChanged() and updated().
    void detachFrom(ImageObject *closing);

    int podCount() const;
    // Null out of range.
    GraphicsPod *pod(int row) const;

    // The largest extent of all shown objects in mm, at least 0.
    float extentX() const;
    float extentY() const;
    float extentZ() const;
    // The smallest meaningful step of all shown objects in mm; 1 if nothing is shown.
    float granularity() const;
    // That of the analyzed object; 1 without one.
    float analyzedGranularity() const override;

    // Null when the analyzed row does not exist.
    ImageObject *analyzedObject() const;
    int analyzedRow() const { return analyzed; }
    GraphicsObject *editedObject() const;
    // Makes the next fragment of all shown contours the edited one, in a ring. False if that changes nothing.
    bool selectNextGraphicsObjectForEditing();

    // The top-level row that is current in the tree, -1 without one.
    int currentRow() const { return current; }
    void setCurrentRow(int row);
    // The image whose window the mouse changes: that of the current row, and nothing if that is no image.
    // Without a current row the analyzed one (edge points stand for their image), else the first image.
    MervImageObject *windowedImage() const;

    // The analyzed object's edge points whose coordinates all lie within radius (mm); an empty list without
    // an analyzed object. The caller owns the list, not the points.
    EdgePointList *edgePointsNear(float x, float y, float z, float radius) override;
    // What is under the position. The caller owns the list, not the objects.
    QList<GraphicsObject *> *objectsNear(float x, float y, float z, float radius) const;
    // The nearest z above (below) that an object with content names; z itself if there is none.
    float nextSignificantZ(float z) const;
    float previousSignificantZ(float z) const;
    // Points of all shown contours, coordinates within radius.
    QList<Vector3> contourPointsNear(const Vector3 &point, float radius) const;
    // End points in the contours object of the edited fragment; empty if no fragment is edited.
    QList<Vector3> editedEndPointsNear(const Vector3 &point, float radius) const;

    // Any row and column >= 0 of an existing row, also columns beyond columnCount().
    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    // The role is ignored.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    bool overrides(GraphicsObject *object, int key, int subKey) override;
    std::uint32_t value(GraphicsObject *object, int key, int subKey) override;

signals:
    void imageAdded();
    void updated();
    // The object is about to be deleted; it is still whole.
    void objectClosing(ImageObject *closing);

public slots:
    void componentUpdated();

private:
    // A child row: the pod row of its contours object and its row below that.
    struct ChildPlace
    {
        int podRow;
        int childRow;
    };

    void appendPod(ImageObject *object, int component);
    void followStructure(ImageObject *object);
    void structureChanged();
    void removePods(ImageObject *closing);
    void remapPersistentIndexes(const std::vector<int> &newRows);

    GraphicsObject *objectAt(const QModelIndex &index) const;
    std::optional<ChildPlace> childPlace(const void *child) const;
    SlicedContoursObject *contoursAt(int row) const;
    int rowOf(const GraphicsObject *object) const;
    GraphicsPod *podOf(const GraphicsObject *object) const;
    GraphicsPod *topPod(const QModelIndex &index) const;
    std::optional<std::pair<GraphicsPod *, int>> colorPlace(const QModelIndex &index) const;
    std::optional<std::pair<GraphicsPod *, int>> advisedColorPlace(GraphicsObject *object, int key) const;

    QVariant nameData(GraphicsObject *object, int role) const;
    QVariant colorData(const QModelIndex &index, int role) const;
    QVariant opacityData(const QModelIndex &index, int role) const;
    QVariant analyzeData(const QModelIndex &index, int role) const;
    QVariant editData(GraphicsObject *object, int role) const;
    QVariant podData(GraphicsPod &pod, int column, int role) const;

    bool setName(const QModelIndex &index, const QString &name);
    bool setColor(const QModelIndex &index, const QString &name);
    bool setOpacity(const QModelIndex &index, double percent);
    bool setAnalyzed(const QModelIndex &index);
    bool setEdited(const QModelIndex &index, bool on);
    bool setPodData(GraphicsPod &pod, const QModelIndex &index, const QVariant &value);
    bool storeColor(const QModelIndex &index, const QColor &color);
    bool editNext(GraphicsObject *next);

    // In logical pixels: the delegate of the tree lays pictures out by their pixels, whatever their ratio.
    QPixmap imageIcon;
    QPixmap fragmentIcon;
    QList<GraphicsPod *> pods; // one per top-level row
    int analyzed = 0;
    QPointer<GraphicsObject> edited;
    int current = -1;
};

// guessSegment() with the edge points of the composition's analyzed object.
SlicedContoursSegment *guessSegment(SlicedContoursSegment *target, const QList<Vector3> &path,
                                    ImageComposition *composition);
