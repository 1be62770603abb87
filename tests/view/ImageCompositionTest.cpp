#include "view/ImageComposition.h"

#include "contours/EdgePointSet.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/TriMeshObject.h"
#include "objects/MervImageObject.h"
#include "objects/SparselySampledImageObject.h"
#include "platform/OpenGl.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/TestVolume.h"
#include "view/EnhancedQTreeView.h"
#include "view/GraphicsPod.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <utility>

namespace {

constexpr Qt::ItemFlags enabled = Qt::ItemIsEnabled;
constexpr Qt::ItemFlags edited = Qt::ItemIsEnabled | Qt::ItemIsEditable;
constexpr Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
constexpr Qt::ItemFlags all = Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemIsSelectable;

MervImageObject *newImage(const QString &name, int channels = 1, int depth = 4)
{
    auto volume = newVolume(MERV::TypeUChar, {4, 3, depth, 1, channels});
    volume->setSpacing(0.5f, 2.0f, 3.0f, 1.0f);
    auto *image = new MervImageObject(volume.release(), "/somewhere/" + name + ".mhd");
    return image;
}

// An object of its own kind with settable answers.
class ProbeObject : public ImageObject
{
public:
    explicit ProbeObject(const QString &name)
        : ImageObject(name, nullptr)
    {}
    float step = 1.0f;
    float extent = 0.0f;
    bool content = true;
    std::function<float(float)> next = [](float z) { return z; };
    std::function<float(float)> previous = [](float z) { return z; };

    float granularity() const override { return step; }
    float extentX() const override { return extent; }
    bool hasContent() const override { return content; }
    float nextSignificantZ(float z) const override { return next(z); }
    float previousSignificantZ(float z) const override { return previous(z); }
};

// The model tester wants no flags for the invalid index, where a composition answers "enabled" on purpose.
class TestedComposition : public ImageComposition
{
public:
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return index.isValid() ? ImageComposition::flags(index) : Qt::NoItemFlags;
    }
};

// Row 0 an image, row 1 contours (children: contour, two fragments), row 2 edge points, row 3 another object,
// rows 4 to 6 an image of three components.
struct Scene
{
    std::unique_ptr<MervImageObject> image{newImage("knee")};
    std::unique_ptr<SlicedContoursObject> contours{new SlicedContoursObject("lines")};
    SlicedContour *contour = contours->newContour("cartilage");
    SlicedContoursFragment *bone = contours->newFragment("bone side");
    SlicedContoursFragment *surface = contours->newFragment("surface side");
    std::unique_ptr<EdgePointSet> edges{new EdgePointSet("edges", nullptr)};
    std::unique_ptr<ProbeObject> probe{new ProbeObject("probe")};
    std::unique_ptr<MervImageObject> vectors{newImage("vectors", 3)};
    TestedComposition composition;

    Scene()
    {
        composition.addImageObject(image.get());
        composition.addImageObject(contours.get());
        composition.addImageObject(edges.get());
        composition.addImageObject(probe.get());
        composition.addImageObject(vectors.get());
    }

    // "row" or "row/child"
    QModelIndex at(const QString &path, int column) const
    {
        const QStringList rows = path.split('/');
        QModelIndex parent;
        if (rows.size() == 2)
            parent = composition.index(rows[0].toInt(), 0);
        return composition.index(rows.last().toInt(), column, parent);
    }
    QVariant show(const QString &path, int column, int role = Qt::DisplayRole) const
    {
        return at(path, column).data(role);
    }
};

} // namespace

class ImageCompositionTest : public QObject
{
    Q_OBJECT

private slots:
    void emptyComposition_hasDefaults();
    void rows_arePodsAndTheChildrenOfContours();
    void parentOfAChild_isTheRowOfItsContours();
    void headers_data();
    void headers();
    void flags_data();
    void flags();
    void cells_data();
    void cells();
    void swatches_areOpaque();
    void icons_followTheKind();
    void threeComponents_areRedGreenAndBlue();
    void oneComponent_isWhite();
    void imageWithoutVoxels_getsNoRow();
    void nullObject_isRefused();
    void madeUpColors_areFixed();
    void scopes_data();
    void scopes();
    void setData_data();
    void setData();
    void setData_unknownCases_changeNothing();
    void opacity_isBoundedAndReadsBack();
    void colorOfAChild_keepsItsOpacity();
    void addedContour_shiftsTheColorsOfFragments();
    void analyzedRow_isSetByAnyValue();
    void editedFragment_isOneAtATime();
    void nextForEditing_goesRoundInARing();
    void nextForEditing_withoutOrWithOneFragment();
    void significantZ_takesTheNearestOfObjectsWithContent();
    void granularityAndExtent_overAllPods();
    void queries_reachContoursAndTheAnalyzedObject();
    void advice_ofPodAndComposition();
    void renderCalls_handOnTheAdvisorAndRestoreIt();
    void renderCalls_areHandedOnInTheColorOfThePod();
    void addedObject_isAnnouncedOncePerRow();
    void addedObject_isAnnouncedBeforeAndAfter();
    void hiddenPod_drawsNothing();
    void updated_isForwardedOncePerObject();
    void updatedOfAColoring_comesFromItsSources();
    void closing_removesRowsAndKeepsOthers();
    void closing_movesTheAnalyzedRow();
    void closingContours_letsGoOfTheEditedFragment();
    void closingWithOpenEditors_inATree();
    void openEditors_followTheModelWithoutWritingToIt();
    void scopeEditor_writesTheChosenScope();
    void deletionWithoutAnnouncement_removesRows();
    void newFragments_appearAndKeepEditorsOnTheirRows();
    void windowedImage_followsRowThenAnalysisThenFirst();
    void randomOrdersOfClosing();
};

void ImageCompositionTest::emptyComposition_hasDefaults()
{
    ImageComposition composition;
    QCOMPARE(composition.granularity(), 1.0f);
    QCOMPARE(composition.analyzedGranularity(), 1.0f);
    QCOMPARE(composition.extentX(), 0.0f);
    QVERIFY(!composition.hasChildren());
    QCOMPARE(composition.podCount(), 0);
    QVERIFY(composition.pod(0) == nullptr);
    QVERIFY(composition.analyzedObject() == nullptr);
    QVERIFY(composition.editedObject() == nullptr);
    QVERIFY(!composition.index(0, 0).isValid());
    const std::unique_ptr<EdgePointList> none(composition.edgePointsNear(0, 0, 0, 100));
    QVERIFY(none && none->isEmpty());
    QCOMPARE(composition.nextSignificantZ(5.0f), 5.0f);
    QCOMPARE(composition.previousSignificantZ(5.0f), 5.0f);
    QCOMPARE(composition.columnCount(), 7);
}

void ImageCompositionTest::rows_arePodsAndTheChildrenOfContours()
{
    Scene scene;
    QAbstractItemModelTester tester(&scene.composition,
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(scene.composition.rowCount(), 7);
    QCOMPARE(scene.composition.rowCount(scene.at("1", 0)), 3);
    for (const char *leaf : {"0", "2", "3", "4", "1/0", "1/1"})
        QCOMPARE(scene.composition.rowCount(scene.at(leaf, 0)), 0);
    QCOMPARE(scene.composition.columnCount(scene.at("1", 0)), 7);
    QCOMPARE(scene.at("0", 3).internalPointer(), static_cast<GraphicsObject *>(scene.image.get()));
    QCOMPARE(scene.at("1/0", 0).internalPointer(), static_cast<GraphicsObject *>(scene.contour));
    QCOMPARE(scene.at("1/2", 0).internalPointer(), static_cast<GraphicsObject *>(scene.surface));
    QVERIFY(!scene.at("7", 0).isValid());
    QVERIFY(!scene.at("1/3", 0).isValid());
    QVERIFY(!scene.composition.index(-1, 0).isValid());
}

void ImageCompositionTest::parentOfAChild_isTheRowOfItsContours()
{
    Scene scene;
    QCOMPARE(scene.at("1/2", 5).parent(), scene.at("1", 0));
    QVERIFY(!scene.at("1", 0).parent().isValid());
    QVERIFY(!scene.at("6", 0).parent().isValid());
}

void ImageCompositionTest::headers_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<QString>("text");
    const std::pair<int, const char *> texts[] = {
        {0, "Image"}, {1, "Display"},       {2, "Color"},        {3, "Opacity [%]"},    {4, "Analyze"},
        {5, "Edit"},  {6, "Display Scope"}, {7, "Display Mode"}, {999, "Input Filter"}, {8, ""}};
    for (const auto &[section, text] : texts)
        QTest::addRow("%d", section) << section << QString(text);
}

void ImageCompositionTest::headers()
{
    QFETCH(int, section);
    QFETCH(QString, text);
    ImageComposition composition;
    QCOMPARE(composition.headerData(section, Qt::Horizontal).toString(), text);
    QVERIFY(!composition.headerData(section, Qt::Vertical).isValid());
    QVERIFY(!composition.headerData(section, Qt::Horizontal, Qt::EditRole).isValid());
}

void ImageCompositionTest::flags_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QList<int>>("expected"); // columns 0 to 7
    const auto row = [](const char *path, std::initializer_list<Qt::ItemFlags> flags) {
        QList<int> expected;
        for (const Qt::ItemFlags flag : flags)
            expected << static_cast<int>(flag.toInt());
        QTest::addRow("%s", path) << QString(path) << expected;
    };
    row("0", {all, edited, all, all, edited, plain, edited, edited});     // image
    row("1", {all, edited, plain, plain, plain, plain, edited, edited});  // contours object
    row("2", {all, edited, plain, plain, edited, plain, edited, edited}); // edge points
    row("3", {all, edited, plain, plain, plain, plain, edited, edited});  // any other object
    row("5", {all, edited, all, all, edited, plain, edited, edited});     // a component
    row("1/0", {all, plain, all, all, plain, edited, plain, plain});      // contour
    row("1/1", {all, plain, all, all, plain, edited, plain, plain});      // fragment
}

void ImageCompositionTest::flags()
{
    QFETCH(QString, path);
    QFETCH(QList<int>, expected);
    Scene scene;
    for (int column = 0; column < expected.size(); ++column)
        QCOMPARE(std::pair(column, static_cast<int>(scene.at(path, column).flags().toInt())),
                 std::pair(column, expected[column]));
    QCOMPARE(ImageComposition().flags(QModelIndex()), enabled);
}

void ImageCompositionTest::cells_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");
    const auto row = [](const char *path, int column, int role, const QVariant &expected) {
        QTest::addRow("%s column %d role %d", path, column, role)
            << QString(path) << column << role << expected;
    };
    constexpr int display = Qt::DisplayRole, edit = Qt::EditRole, whatsThis = 5, check = 10, toolTip = 3;
    const QVariant none;
    const QStringList scopes{"Point",  "Point and adjacent", "Slice",        "Slice and adjacent",
                             "Volume", "Volume behind",      "Volume before"};
    for (const int role : {display, edit, whatsThis}) {
        row("0", 0, role, "knee");
        row("1", 0, role, "lines");
        row("1/0", 0, role, "cartilage");
        row("1/2", 0, role, "surface side");
        row("2", 0, role, "edges");
        row("5", 0, role, "vectors");
    }
    row("0", 0, toolTip, none);
    for (const int role : {display, edit}) {
        row("0", 2, role, "#ffffff");
        row("4", 2, role, "#ff0000");
        row("5", 2, role, "#00ff00");
        row("6", 2, role, "#0000ff");
        row("1", 2, role, none);
        row("2", 2, role, none);
        row("3", 2, role, none);
        // Colour k for child row k; n = k + 1: (149 n, 49 n, 219 n) mod 256.
        row("1/0", 2, role, "#9531db"); // 149, 49, 219
        row("1/1", 2, role, "#2a62b6"); // 42, 98, 182
        row("1/2", 2, role, "#bf9391"); // 191, 147, 145
        row("0", 3, role, 100);
        row("1/2", 3, role, 100);
        row("1", 3, role, none);
        row("2", 4, role, false);
        row("0", 4, role, none);
        row("1/1", 5, role, false);
        row("1/0", 5, role, none);
        row("0", 5, role, none);
        row("0", 999, role, "[none]");
    }
    row("0", 4, whatsThis, "Only edge point sets can be analyzed.");
    row("1", 4, whatsThis, "Only edge point sets can be analyzed.");
    row("2", 4, whatsThis, none);
    row("1/1", 5, check, 0);
    row("1/0", 5, check, none);
    row("0", 1, display, none);
    row("0", 1, edit, true);
    row("1/1", 1, edit, none);
    row("0", 6, display, "Slice");
    row("0", 6, edit, scopes);
    row("1/1", 6, display, none);
    row("0", 7, display, none);
    row("0", 7, edit, none);
}

void ImageCompositionTest::cells()
{
    QFETCH(QString, path);
    QFETCH(int, column);
    QFETCH(int, role);
    QFETCH(QVariant, expected);
    Scene scene;
    const QVariant actual = scene.show(path, column, role);
    QCOMPARE(actual.typeId(), expected.typeId());
    QCOMPARE(actual, expected);
    QVERIFY(!scene.composition.data(QModelIndex(), role).isValid());
}

void ImageCompositionTest::swatches_areOpaque()
{
    Scene scene;
    scene.composition.pod(0)->setColor(QColor(10, 20, 30, 40));
    scene.composition.setData(scene.at("1/1", 3), 0);
    const QPixmap image = scene.show("0", 2, Qt::DecorationRole).value<QPixmap>();
    QCOMPARE(image.size(), QSize(16, 16));
    QCOMPARE(image.toImage().pixelColor(8, 8), QColor(10, 20, 30, 255));
    const QPixmap child = scene.show("1/1", 2, Qt::DecorationRole).value<QPixmap>();
    QCOMPARE(child.toImage().pixelColor(0, 15), QColor(42, 98, 182, 255));
    QVERIFY(!scene.show("1", 2, Qt::DecorationRole).isValid());
}

void ImageCompositionTest::icons_followTheKind()
{
    Scene scene;
    const QPixmap image = scene.show("0", 0, Qt::DecorationRole).value<QPixmap>();
    const QPixmap fragment = scene.show("1/1", 0, Qt::DecorationRole).value<QPixmap>();
    QCOMPARE(image.toImage(), QPixmap(":/icons/pixmapimage.png").toImage());
    QCOMPARE(fragment.toImage(), QPixmap(":/icons/slicedcontoursfragment.png").toImage());
    QVERIFY(!image.isNull() && !fragment.isNull());
    for (const char *path : {"1", "1/0", "2", "3"})
        QVERIFY(!scene.show(path, 0, Qt::DecorationRole).isValid());
}

void ImageCompositionTest::threeComponents_areRedGreenAndBlue()
{
    Scene scene;
    const QColor colors[] = {QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255)};
    for (int component = 0; component < 3; ++component) {
        GraphicsPod *pod = scene.composition.pod(4 + component);
        QCOMPARE(pod->object(), scene.vectors.get());
        QCOMPARE(pod->component(), component);
        QCOMPARE(pod->colors(), QList<QColor>{colors[component]});
    }
}

void ImageCompositionTest::oneComponent_isWhite()
{
    Scene scene;
    QCOMPARE(scene.composition.pod(0)->colors(), QList<QColor>{QColor(255, 255, 255)});
    QCOMPARE(scene.composition.pod(0)->component(), 0);
    // A pod of a group has no colour of its own, and one of a whole image is white.
    QVERIFY(scene.composition.pod(1)->colors().isEmpty());
    QCOMPARE(scene.composition.pod(1)->component(), -1);
    QCOMPARE(GraphicsPod(scene.image.get()).colors(), QList<QColor>{QColor(255, 255, 255)});
}

void ImageCompositionTest::imageWithoutVoxels_getsNoRow()
{
    MervImageObject empty(nullptr, "/x/empty.mhd");
    ImageComposition composition;
    QSignalSpy added(&composition, &ImageComposition::imageAdded);
    QVERIFY(composition.addImageObject(&empty));
    QCOMPARE(composition.podCount(), 0);
    QCOMPARE(added.count(), 0);
}

void ImageCompositionTest::nullObject_isRefused()
{
    ImageComposition composition;
    QVERIFY(!composition.addImageObject(nullptr));
    QCOMPARE(composition.podCount(), 0);
}

void ImageCompositionTest::madeUpColors_areFixed()
{
    Scene scene;
    GraphicsPod *pod = scene.composition.pod(0);
    QVERIFY(!pod->color(-1).isValid());
    pod->color(5);
    QCOMPARE(pod->colors().size(), 6);
    QCOMPARE(pod->color(), QColor(255, 255, 255, 255));
    QCOMPARE(pod->color(1), QColor(42, 98, 182, 255)); // n = 2
    QCOMPARE(pod->color(5), QColor(126, 38, 34, 255)); // n = 6: 894, 294, 1314 mod 256
}

void ImageCompositionTest::scopes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("scope");
    QTest::addColumn<QString>("shown");
    const std::tuple<const char *, int, const char *> rows[] = {
        {"(hide)", 0, "(hidden)"},
        {"(hidden)", 0, "(hidden)"},
        {"Point", 1, "Point"},
        {"Point and adjacent", 2, "Point and adjacent"},
        {"Slice", 3, "Slice"},
        {"Slice and adjacent", 4, "Slice and adjacent"},
        {"Volume", 5, "Volume"},
        {"Volume behind", 6, "unknown"}, // only the first six have a shown name
        {"Volume before", 7, "unknown"}};
    for (const auto &[name, scope, shown] : rows)
        QTest::addRow("%s", name) << QString(name) << scope << QString(shown);
}

void ImageCompositionTest::scopes()
{
    QFETCH(QString, name);
    QFETCH(int, scope);
    QFETCH(QString, shown);
    Scene scene;
    QSignalSpy changed(&scene.composition, &ImageComposition::dataChanged);
    QSignalSpy updated(&scene.composition, &ImageComposition::updated);
    QVERIFY(scene.composition.setData(scene.at("3", 6), name));
    QCOMPARE(scene.composition.pod(3)->displayScope(), scope);
    QCOMPARE(scene.show("3", 6).toString(), shown);
    QCOMPARE(scene.show("3", 6, Qt::EditRole).toStringList().size(), 7);
    QCOMPARE(changed.count(), 0); // the pod announces itself
    QCOMPARE(updated.count(), 1);
    QVERIFY(!scene.composition.setData(scene.at("3", 6), name.toUpper() + "?"));
    QCOMPARE(scene.composition.pod(3)->displayScope(), scope);
}

void ImageCompositionTest::setData_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("answer");
    QTest::addColumn<int>("dataChanges");
    QTest::addColumn<int>("updates");
    QTest::addColumn<QVariant>("shown"); // in the edit role
    const auto row = [](const char *path, int column, const QVariant &value, bool answer, int dataChanges,
                        int updates, const QVariant &shown) {
        QTest::addRow("%s column %d", path, column)
            << QString(path) << column << value << answer << dataChanges << updates << shown;
    };
    row("0", 0, "renamed", true, 0, 1, "renamed");
    row("1/0", 0, "renamed", true, 0, 1, "renamed");
    row("1/1", 0, "renamed", true, 0, 1, "renamed");
    row("1", 0, "renamed", true, 0, 1, "lines"); // groups and edge points keep their names
    row("2", 0, "renamed", true, 0, 1, "edges");
    row("0", 1, false, true, 1, 1, false);
    row("0", 2, "#102030", true, 1, 2, "#102030"); // the pod announces itself, too
    row("1/1", 2, "#102030", true, 1, 1, "#102030");
    row("0", 3, 50, true, 1, 2, 50);
    row("1/1", 3, 50, true, 1, 1, 50);
    row("2", 4, false, true, 1, 0, true); // the value does not count
    row("1/1", 4, true, false, 0, 0, QVariant());
    row("1/1", 5, true, true, 1, 0, true);
    row("1/1", 5, false, true, 1, 0, false);
    row("1/1", 6, "Volume", false, 0, 0, QVariant());
    row("0", 7, 1, false, 0, 0, QVariant());
    row("0", 999, "Sobel", true, 1, 2, "Sobel");
}

void ImageCompositionTest::setData()
{
    QFETCH(QString, path);
    QFETCH(int, column);
    QFETCH(QVariant, value);
    QFETCH(bool, answer);
    QFETCH(int, dataChanges);
    QFETCH(int, updates);
    QFETCH(QVariant, shown);
    for (const int role : {Qt::EditRole, Qt::DisplayRole, Qt::UserRole}) { // no role matters
        Scene scene;
        QSignalSpy changed(&scene.composition, &ImageComposition::dataChanged);
        QSignalSpy updated(&scene.composition, &ImageComposition::updated);
        QCOMPARE(scene.composition.setData(scene.at(path, column), value, role), answer);
        QCOMPARE(changed.count(), dataChanges);
        QCOMPARE(updated.count(), updates);
        QCOMPARE(scene.show(path, column, Qt::EditRole), shown);
    }
}

void ImageCompositionTest::setData_unknownCases_changeNothing()
{
    Scene scene;
    QVERIFY(!scene.composition.setData(QModelIndex(), "x"));
    QVERIFY(!scene.composition.setData(scene.at("0", 8), "x"));
    QVERIFY(scene.composition.setData(scene.at("0", 999), "Prewitt"));
    QCOMPARE(scene.show("0", 999).toString(), "[none]");
    QVERIFY(!scene.composition.setData(scene.at("1/0", 1), false));
}

void ImageCompositionTest::opacity_isBoundedAndReadsBack()
{
    Scene scene;
    const std::tuple<QVariant, float, int> cases[] = {
        {250, 1.0f, 100}, {-5, 0.0f, 0}, {50, 0.5f, 50}, {"abc", 0.0f, 0}, {"100", 1.0f, 100}};
    for (const char *path : {"0", "1/2"})
        for (const auto &[value, alpha, shown] : cases) {
            QVERIFY(scene.composition.setData(scene.at(path, 3), value));
            QCOMPARE(scene.show(path, 3).toInt(), shown);
            const QColor color =
                QString(path) == "0" ? scene.composition.pod(0)->color() : scene.composition.pod(1)->color(2);
            QVERIFY(std::abs(color.alphaF() - alpha) < 1e-4f);
        }
    // A new colour takes the old opacity over.
    scene.composition.setData(scene.at("0", 3), 50);
    scene.composition.setData(scene.at("0", 2), "#010203");
    QCOMPARE(scene.show("0", 3).toInt(), 50);
}

void ImageCompositionTest::colorOfAChild_keepsItsOpacity()
{
    Scene scene;
    scene.composition.setData(scene.at("1/2", 3), 50);
    scene.composition.setData(scene.at("1/2", 2), "red");
    QCOMPARE(scene.show("1/2", 2).toString(), "#ff0000");
    QCOMPARE(scene.show("1/2", 3).toInt(), 50);
    QCOMPARE(scene.show("1/1", 2).toString(), "#2a62b6"); // the neighbour's is as it was
}

// Colours go by position, on purpose: contours come first and push fragments on.
void ImageCompositionTest::addedContour_shiftsTheColorsOfFragments()
{
    Scene scene;
    QCOMPARE(scene.show("1/1", 2).toString(), "#2a62b6");
    scene.contours->newContour("second");
    QCOMPARE(scene.show("1/1", 0).toString(), "second");
    QCOMPARE(scene.show("1/1", 2).toString(), "#2a62b6");
    QCOMPARE(scene.show("1/2", 0).toString(), "bone side");
    QCOMPARE(scene.show("1/2", 2).toString(), "#bf9391");
}

void ImageCompositionTest::analyzedRow_isSetByAnyValue()
{
    Scene scene;
    QCOMPARE(scene.composition.analyzedRow(), 0);
    QCOMPARE(scene.composition.analyzedObject(), scene.image.get());
    QCOMPARE(scene.composition.analyzedGranularity(), 0.5f);
    QSignalSpy changed(&scene.composition, &ImageComposition::dataChanged);
    QVERIFY(scene.composition.setData(scene.at("2", 4), false));
    QCOMPARE(scene.composition.analyzedObject(), scene.edges.get());
    QCOMPARE(scene.show("2", 4).toBool(), true);
    QCOMPARE(changed[0][0].toModelIndex(), scene.at("0", 4));
    QCOMPARE(changed[0][1].toModelIndex(), scene.at("6", 4));
    // Of several rows of one object the first is taken.
    QVERIFY(scene.composition.setData(scene.at("6", 4), true));
    QCOMPARE(scene.composition.analyzedRow(), 4);
}

void ImageCompositionTest::editedFragment_isOneAtATime()
{
    Scene scene;
    QSignalSpy changed(&scene.composition, &ImageComposition::dataChanged);
    scene.composition.setData(scene.at("1/1", 5), true);
    QCOMPARE(scene.composition.editedObject(), scene.bone);
    QCOMPARE(changed[0][0].toModelIndex(), scene.at("1/0", 5));
    QCOMPARE(changed[0][1].toModelIndex(), scene.at("1/2", 5));
    scene.composition.setData(scene.at("1/2", 5), true);
    QCOMPARE(scene.composition.editedObject(), scene.surface);
    QCOMPARE(scene.show("1/1", 5, Qt::CheckStateRole).toInt(), 0);
    QCOMPARE(scene.show("1/2", 5, Qt::CheckStateRole).toInt(), 2);
    scene.composition.setData(scene.at("1/1", 5), false); // of any row
    QVERIFY(scene.composition.editedObject() == nullptr);
}

void ImageCompositionTest::nextForEditing_goesRoundInARing()
{
    Scene scene;
    SlicedContoursObject empty("without fragments");
    SlicedContoursObject more("more");
    SlicedContoursFragment *third = more.newFragment("third");
    scene.composition.addImageObject(&empty);
    scene.composition.addImageObject(&more);
    QSignalSpy changed(&scene.composition, &ImageComposition::dataChanged);
    const CapturedOutput captured;
    for (GraphicsObject *expected : {scene.bone, scene.surface, third, scene.bone, scene.surface}) {
        QVERIFY(scene.composition.selectNextGraphicsObjectForEditing());
        QCOMPARE(scene.composition.editedObject(), expected);
    }
    QCOMPARE(changed.count(), 5);
    QVERIFY(!changed[0][0].toModelIndex().isValid() && !changed[0][1].toModelIndex().isValid());
    QCOMPARE(captured.standardOutput(),
             QString("Selecting next graphics object for editing ...\n").repeated(5));
}

void ImageCompositionTest::nextForEditing_withoutOrWithOneFragment()
{
    const CapturedOutput captured;
    ImageComposition composition;
    QVERIFY(!composition.selectNextGraphicsObjectForEditing());
    SlicedContoursObject contours("one");
    composition.addImageObject(&contours);
    QVERIFY(!composition.selectNextGraphicsObjectForEditing());
    contours.newFragment("only");
    QVERIFY(composition.selectNextGraphicsObjectForEditing());
    QVERIFY(!composition.selectNextGraphicsObjectForEditing());
    QCOMPARE(composition.editedObject(), contours.fragment(0));
}

void ImageCompositionTest::significantZ_takesTheNearestOfObjectsWithContent()
{
    ImageComposition composition;
    ProbeObject far("far"), near("near"), empty("empty"), still("still");
    far.next = [](float z) { return z + 5.0f; };
    far.previous = [](float z) { return z - 5.0f; };
    near.next = [](float z) { return z + 2.0f; };
    near.previous = [](float z) { return z + 1.0f; }; // not below: does not count
    empty.content = false;
    empty.next = [](float z) { return z + 0.5f; };
    empty.previous = [](float z) { return z - 0.5f; };
    for (ImageObject *object : std::initializer_list<ImageObject *>{&far, &near, &empty, &still})
        composition.addImageObject(object);
    QCOMPARE(composition.nextSignificantZ(10.0f), 12.0f);
    QCOMPARE(composition.previousSignificantZ(10.0f), 5.0f);
    far.next = near.next = [](float z) { return z - 1.0f; };
    QCOMPARE(composition.nextSignificantZ(10.0f), 10.0f);
}

void ImageCompositionTest::granularityAndExtent_overAllPods()
{
    ImageComposition composition;
    ProbeObject coarse("coarse"), fine("fine");
    coarse.step = 3.0f;
    coarse.extent = 20.0f;
    fine.step = 0.25f;
    fine.extent = -4.0f;
    composition.addImageObject(&coarse);
    QCOMPARE(composition.granularity(), 3.0f);
    composition.addImageObject(&fine);
    QCOMPARE(composition.granularity(), 0.25f);
    QCOMPARE(composition.analyzedGranularity(), 3.0f);
    QCOMPARE(composition.extentX(), 20.0f);
    QCOMPARE(composition.extentY(), 0.0f);
    QCOMPARE(composition.extentZ(), 0.0f);
    // 4 x 3 x 4 voxels of 0.5 x 2 x 3 mm.
    Scene scene;
    QCOMPARE(scene.composition.extentX(), 2.0f);
    QCOMPARE(scene.composition.extentY(), 6.0f);
    QCOMPARE(scene.composition.extentZ(), 12.0f);
}

void ImageCompositionTest::queries_reachContoursAndTheAnalyzedObject()
{
    Scene scene;
    SlicedContoursSegment *line = scene.bone->newSegment({1, 1}, 2.0f);
    line->addPointBack({2, 1});
    line->addPointBack({3, 2});
    QCOMPARE(scene.composition.contourPointsNear({2, 1, 2}, 0.5f).size(), 1);
    QCOMPARE(scene.composition.contourPointsNear({2, 1, 2}, 1.0f).size(), 3);
    QVERIFY(scene.composition.editedEndPointsNear({2, 1, 2}, 1.0f).isEmpty());
    scene.composition.setData(scene.at("1/2", 5), true); // the other fragment: its contours object counts
    QCOMPARE(scene.composition.editedEndPointsNear({2, 1, 2}, 1.0f).size(), 2);
    scene.composition.setData(scene.at("1/0", 5), true); // a contour is no fragment
    QVERIFY(scene.composition.editedEndPointsNear({2, 1, 2}, 1.0f).isEmpty());
    const std::unique_ptr<QList<GraphicsObject *>> here(scene.composition.objectsNear(1, 1, 2, 0.5f));
    // The image, the segment and its fragment, and the second image once per pod.
    const QList<GraphicsObject *> expected{
        scene.image.get(), line, scene.bone, scene.vectors.get(), scene.vectors.get(), scene.vectors.get()};
    QCOMPARE(*here, expected);
}

void ImageCompositionTest::advice_ofPodAndComposition()
{
    Scene scene;
    ImageComposition &composition = scene.composition;
    GraphicsPod *component = composition.pod(5);
    // A pod answers its component for any object, and its colour for its own.
    QVERIFY(component->overrides(scene.probe.get(), 0, 0));
    QCOMPARE(component->value(scene.vectors.get(), 0, 0), 1u);
    QCOMPARE(component->value(scene.vectors.get(), 2, 0), 0xff00ff00u);
    QVERIFY(!component->overrides(scene.probe.get(), 2, 0));
    QCOMPARE(component->value(scene.probe.get(), 2, 0), 0u);
    QVERIFY(!composition.pod(1)->overrides(scene.contours.get(), 0, 0));
    // The pod of a group has no colour before it was painted.
    QCOMPARE(composition.pod(1)->value(scene.contours.get(), 2, 0), 0xff9531dbu);

    QVERIFY(composition.overrides(scene.surface, 2, 0));
    QCOMPARE(composition.value(scene.surface, 2, 0), 0xffbf9391u);
    QVERIFY(composition.overrides(scene.contour, 2, 0));
    QCOMPARE(composition.value(scene.contour, 2, 0), 0xff9531dbu);
    QVERIFY(!composition.overrides(scene.surface, 4, 0));
    for (const int key : {0, 1, 2})
        QVERIFY(composition.overrides(scene.image.get(), key, 0));
    QVERIFY(!composition.overrides(scene.image.get(), 5, 0));
    QCOMPARE(composition.value(scene.image.get(), 1, 0), 1u);
    QCOMPARE(composition.value(scene.image.get(), 2, 0), 0xffffffffu);
    QCOMPARE(composition.value(scene.image.get(), 0, 0), 0u);
    QVERIFY(!composition.overrides(scene.probe.get(), 2, 0));
    // What is not shown here has no advice.
    SlicedContoursObject elsewhere("elsewhere");
    QVERIFY(!composition.overrides(elsewhere.newFragment("f"), 2, 0));
    SlicedContoursFragment orphan;
    QVERIFY(!composition.overrides(&orphan, 2, 0));
    QCOMPARE(composition.value(&orphan, 2, 0), 0u);
}

namespace {

// Notes how it is asked to draw, and asks back. Hides its colour from GL: nothing is drawn.
class RecordingObject : public ImageObject
{
public:
    QStringList calls;
    GraphicsObjectRenderAdvisor *advisor = nullptr;
    std::uint32_t advised = 0;

    void renderPoint(GraphicsObjectRenderAdvisor *given, float x, float y, float z) override
    {
        note(QString("point %1 %2 %3").arg(x).arg(y).arg(z), given);
    }
    bool renderPlane(GraphicsObjectRenderAdvisor *given, const double plane[4]) override
    {
        note(QString("plane %1 %2 %3 %4").arg(plane[0]).arg(plane[1]).arg(plane[2]).arg(plane[3]), given);
        return true;
    }
    void render(GraphicsObjectRenderAdvisor *given) override
    {
        note("render", given);
        if (inner)
            std::exchange(inner, nullptr)();
        advisedAtEnd = ask(given);
    }
    void renderBox(GraphicsObjectRenderAdvisor *given, float xMin, float xMax, float yMin, float yMax,
                   float zMin, float zMax) override
    {
        note(QString("box %1 %2 %3 %4 %5 %6").arg(xMin).arg(xMax).arg(yMin).arg(yMax).arg(zMin).arg(zMax),
             given);
    }

    std::function<void()> inner; // called once by render()
    std::uint32_t advisedAtEnd = 0;
    std::array<GLubyte, 4> color{};

private:
    std::uint32_t ask(GraphicsObjectRenderAdvisor *given)
    {
        return given->overrides(this, 9, 0) ? given->value(this, 9, 0) : 0;
    }
    void note(const QString &call, GraphicsObjectRenderAdvisor *given)
    {
        calls << call;
        advisor = given;
        advised = ask(given);
        std::array<GLfloat, 4> current{};
        glGetFloatv(GL_CURRENT_COLOR, current.data());
        for (std::size_t i = 0; i < 4; ++i)
            color[i] = static_cast<GLubyte>(std::lround(current[i] * 255.0f));
    }
};

class FixedAdvisor : public GraphicsObjectRenderAdvisor
{
public:
    bool overrides(GraphicsObject *, int, int) override { return true; }
    std::uint32_t value(GraphicsObject *, int, int) override { return answer; }
    std::uint32_t answer = 77;
};

} // namespace

void ImageCompositionTest::renderCalls_handOnTheAdvisorAndRestoreIt()
{
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    QVERIFY(context.create() && context.makeCurrent(&surface));
    RecordingObject object;
    GraphicsPod pod(&object);
    FixedAdvisor advisor;
    pod.render(&advisor);
    QCOMPARE(object.calls, QStringList{"render"});
    QCOMPARE(object.advisor, static_cast<GraphicsObjectRenderAdvisor *>(&pod));
    QCOMPARE(object.advised, 77u);
    QVERIFY(!pod.overrides(&object, 9, 0)); // no advisor outside a render call
    QCOMPARE(pod.colors().size(), 1);       // color(0) was taken
    // Within a render call another one with another advisor, and then the first one again.
    FixedAdvisor other;
    other.answer = 88;
    object.inner = [&] { pod.renderPoint(&other, 1, 2, 3); };
    pod.render(&advisor);
    QCOMPARE(object.advised, 88u);
    QCOMPARE(object.advisedAtEnd, 77u);
    context.doneCurrent();
}

void ImageCompositionTest::renderCalls_areHandedOnInTheColorOfThePod()
{
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    QVERIFY(context.create() && context.makeCurrent(&surface));
    RecordingObject object;
    GraphicsPod pod(&object);
    pod.setColor(QColor(10, 20, 30, 40));
    FixedAdvisor advisor;
    const double plane[4] = {1, 2, 3, 4};
    const auto drawAll = [&] {
        pod.renderPoint(&advisor, 1, 2, 3);
        pod.renderPlane(&advisor, plane);
        pod.render(&advisor);
        pod.renderBox(&advisor, 1, 2, 3, 4, 5, 6);
    };
    drawAll();
    const QStringList allCalls{"point 1 2 3", "plane 1 2 3 4", "render", "box 1 2 3 4 5 6"};
    QCOMPARE(object.calls, allCalls);
    QCOMPARE(object.color, (std::array<GLubyte, 4>{10, 20, 30, 40}));
    pod.setDisplay(false);
    drawAll();
    QCOMPARE(object.calls, allCalls);
    context.doneCurrent();
}

void ImageCompositionTest::addedObject_isAnnouncedOncePerRow()
{
    QStringList announced; // outlives all that writes to it
    const std::unique_ptr<MervImageObject> vectors(newImage("vectors", 3));
    ImageComposition composition;
    connect(&composition, &ImageComposition::imageAdded, this, [&] {
        announced << QString("added %1").arg(composition.podCount());
        composition.pod(composition.podCount() - 1)->setDisplay(true); // is followed already
    });
    connect(&composition, &ImageComposition::updated, this, [&] { announced << "updated"; });
    connect(&composition, &ImageComposition::layoutChanged, this, [&] { announced << "layout"; });
    QVERIFY(composition.addImageObject(vectors.get()));
    QCOMPARE(announced,
             (QStringList{"added 1", "updated", "added 2", "updated", "added 3", "updated", "layout"}));
}

void ImageCompositionTest::addedObject_isAnnouncedBeforeAndAfter()
{
    const std::unique_ptr<MervImageObject> first(newImage("first", 1)), second(newImage("second", 3));
    TestedComposition composition;
    QAbstractItemModelTester tester(&composition, QAbstractItemModelTester::FailureReportingMode::QtTest);
    int rowsBefore = -1;
    connect(&composition, &ImageComposition::layoutAboutToBeChanged, this,
            [&] { rowsBefore = composition.rowCount(); });
    QVERIFY(composition.addImageObject(first.get()));
    QCOMPARE(rowsBefore, 0);
    QVERIFY(composition.addImageObject(second.get()));
    QCOMPARE(rowsBefore, 1);
    QCOMPARE(composition.rowCount(), 4);
}

void ImageCompositionTest::hiddenPod_drawsNothing()
{
    RecordingObject object;
    GraphicsPod pod(&object);
    FixedAdvisor advisor;
    QSignalSpy changed(&pod, &GraphicsPod::configurationChanged);
    pod.setDisplay(false);
    pod.render(&advisor); // needs no context then
    QVERIFY(object.calls.isEmpty());
    QVERIFY(pod.colors().isEmpty());
    pod.setDisplayScope(5);
    pod.setColor(Qt::red);
    pod.setInputFilter(1);
    QCOMPARE(changed.count(), 4);
    QVERIFY(pod.isShowable());
    QCOMPARE(pod.displayMode(), 1);
}

void ImageCompositionTest::updated_isForwardedOncePerObject()
{
    Scene scene;
    QSignalSpy updated(&scene.composition, &ImageComposition::updated);
    emit scene.vectors->updated(); // three pods, one of which is connected
    QCOMPARE(updated.count(), 1);
    scene.bone->newSegment({0, 0}, 1.0f)->addPointBack({1, 0});
    QCOMPARE(updated.count(), 2);
}

void ImageCompositionTest::updatedOfAColoring_comesFromItsSources()
{
    TriMeshObject mesh("mesh", nullptr);
    auto samples = std::make_unique<SparselySampledImageObject>("samples", nullptr);
    ColoringTriMeshRenderer coloring(mesh.addFragment("ribbon"), samples.get(), "coloring");
    ImageComposition composition;
    composition.addImageObject(&coloring);
    QSignalSpy updated(&composition, &ImageComposition::updated);
    emit mesh.updated();
    emit samples->updated();
    emit coloring.updated();
    QCOMPARE(updated.count(), 3);
    samples.reset();
    emit mesh.updated();
    QCOMPARE(updated.count(), 4);
}

void ImageCompositionTest::closing_removesRowsAndKeepsOthers()
{
    Scene scene;
    QAbstractItemModelTester tester(&scene.composition,
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QPersistentModelIndex fragment = scene.at("1/2", 5);
    const QPersistentModelIndex image = scene.at("0", 1);
    const QPersistentModelIndex green = scene.at("5", 2);
    QSignalSpy layout(&scene.composition, &ImageComposition::layoutChanged);
    QSignalSpy updated(&scene.composition, &ImageComposition::updated);
    QList<ImageObject *> announced;
    connect(&scene.composition, &ImageComposition::objectClosing, this,
            [&](ImageObject *closing) { announced << closing; });
    const QList<ImageObject *> expected{scene.image.get()};
    scene.composition.detachFrom(scene.image.get());
    scene.image.reset();
    QCOMPARE(layout.count(), 1);
    QCOMPARE(updated.count(), 1);
    QCOMPARE(announced, expected);
    QCOMPARE(scene.composition.podCount(), 6);
    QVERIFY(!image.isValid());
    QCOMPARE(QModelIndex(fragment), scene.at("0/2", 5));
    QCOMPARE(QModelIndex(green), scene.at("4", 2));
    scene.composition.detachFrom(scene.vectors.get()); // three rows at once
    scene.vectors.reset();
    QVERIFY(!green.isValid());
    QCOMPARE(scene.composition.podCount(), 3);
    // An object that is not shown changes nothing.
    ProbeObject other("other");
    scene.composition.detachFrom(&other);
    QCOMPARE(layout.count(), 2);
    scene.composition.detachFrom(scene.contours.get());
    scene.contours.reset();
    QVERIFY(!fragment.isValid());
}

void ImageCompositionTest::closing_movesTheAnalyzedRow()
{
    Scene scene;
    scene.composition.setData(scene.at("2", 4), true);
    scene.composition.setCurrentRow(3);
    scene.composition.detachFrom(scene.image.get());
    QCOMPARE(scene.composition.analyzedRow(), 1);
    QCOMPARE(scene.composition.analyzedObject(), scene.edges.get());
    QCOMPARE(scene.composition.currentRow(), 2);
    scene.composition.detachFrom(scene.edges.get());
    QCOMPARE(scene.composition.analyzedRow(), 0);
    scene.composition.detachFrom(scene.probe.get());
    QCOMPARE(scene.composition.currentRow(), -1);
}

void ImageCompositionTest::closingContours_letsGoOfTheEditedFragment()
{
    Scene scene;
    scene.composition.setData(scene.at("1/1", 5), true);
    scene.composition.detachFrom(scene.image.get());
    QCOMPARE(scene.composition.editedObject(), scene.bone);
    scene.composition.detachFrom(scene.contours.get());
    QVERIFY(scene.composition.editedObject() == nullptr);
    QVERIFY(scene.composition.editedEndPointsNear({0, 0, 0}, 1.0f).isEmpty());
}

void ImageCompositionTest::closingWithOpenEditors_inATree()
{
    Scene scene;
    QTreeView tree;
    tree.setModel(&scene.composition);
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    tree.expandAll();
    for (int row = 0; row < scene.composition.rowCount(); ++row)
        tree.openPersistentEditor(scene.composition.index(row, 0));
    for (int child = 0; child < 3; ++child)
        tree.openPersistentEditor(scene.at(QString("1/%1").arg(child), 0));
    tree.setCurrentIndex(scene.at("1/1", 2));
    scene.composition.detachFrom(scene.contours.get());
    scene.contours.reset();
    QTest::qWait(50);
    scene.composition.detachFrom(scene.vectors.get());
    scene.vectors.reset();
    QTest::qWait(50);
    QCOMPARE(tree.model()->rowCount(), 3);
    QVERIFY(tree.isPersistentEditorOpen(scene.at("2", 0)));
}

namespace {

// The editors that a viewer keeps open.
void openEditors(EnhancedQTreeView &tree, ImageComposition &composition)
{
    tree.setModel(&composition);
    tree.show();
    for (int row = 0; row < composition.rowCount(); ++row) {
        for (const int column : {1, 4, 5, 6})
            tree.openPersistentEditor(composition.index(row, column));
        const QModelIndex parent = composition.index(row, 0);
        for (int child = 0; child < composition.rowCount(parent); ++child)
            tree.openPersistentEditor(composition.index(child, 5, parent));
    }
    tree.expandAll();
}

} // namespace

void ImageCompositionTest::openEditors_followTheModelWithoutWritingToIt()
{
    const CapturedOutput captured;
    Scene scene;
    SlicedContoursFragment *third = scene.contours->newFragment("third");
    scene.composition.setData(scene.at("2", 4), true);
    EnhancedQTreeView tree;
    openEditors(tree, scene.composition);
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    QCOMPARE(scene.composition.analyzedObject(), scene.edges.get());
    for (GraphicsObject *expected : {scene.bone, scene.surface, third, scene.bone, scene.surface}) {
        QVERIFY(scene.composition.selectNextGraphicsObjectForEditing());
        QTest::qWait(5);
        QCOMPARE(scene.composition.editedObject(), expected);
        QCOMPARE(scene.composition.analyzedObject(), scene.edges.get());
        int checked = 0;
        for (const int child : {1, 2, 3}) {
            auto *box = qobject_cast<QCheckBox *>(tree.indexWidget(scene.at(QString("1/%1").arg(child), 5)));
            QVERIFY(box != nullptr);
            checked += box->isChecked() ? child : 0;
        }
        QCOMPARE(checked, scene.contours->contourCount() + (expected == scene.bone ? 0
                                                            : expected == third    ? 2
                                                                                   : 1));
    }
}

void ImageCompositionTest::scopeEditor_writesTheChosenScope()
{
    Scene scene;
    EnhancedQTreeView tree;
    openEditors(tree, scene.composition);
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    auto *box = qobject_cast<QComboBox *>(tree.indexWidget(scene.at("0", 6)));
    QVERIFY(box != nullptr);
    QCOMPARE(box->currentText(), QString("Slice"));
    QTest::keyClick(box, Qt::Key_End);
    QCOMPARE(scene.composition.pod(0)->displayScope(), 7);
    QCOMPARE(box->currentText(), QString("Volume before")); // shown as "unknown" elsewhere, kept here
    auto *display = qobject_cast<QCheckBox *>(tree.indexWidget(scene.at("3", 1)));
    QTest::keyClick(display, Qt::Key_Space);
    QVERIFY(!scene.composition.pod(3)->display());
}

void ImageCompositionTest::deletionWithoutAnnouncement_removesRows()
{
    Scene scene;
    const QPersistentModelIndex fragment = scene.at("1/1", 0);
    const QPersistentModelIndex probe = scene.at("3", 0);
    scene.contours.reset();
    QCOMPARE(scene.composition.podCount(), 6);
    QVERIFY(!fragment.isValid());
    QCOMPARE(QModelIndex(probe), scene.at("2", 0));
    QCOMPARE(probe.data().toString(), "probe");
}

void ImageCompositionTest::newFragments_appearAndKeepEditorsOnTheirRows()
{
    Scene scene;
    QAbstractItemModelTester tester(&scene.composition,
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QPersistentModelIndex bone = scene.at("1/1", 5);
    QSignalSpy layout(&scene.composition, &ImageComposition::layoutChanged);
    scene.contours->newFragment("third");
    QCOMPARE(layout.count(), 1);
    QCOMPARE(scene.composition.rowCount(scene.at("1", 0)), 4);
    QCOMPARE(bone.row(), 1);
    scene.contours->newContour("second");
    QCOMPARE(bone.row(), 2);
    QCOMPARE(static_cast<GraphicsObject *>(bone.internalPointer()), scene.bone);
    scene.composition.setData(scene.at("1/2", 5), true);
    delete scene.bone;
    QVERIFY(!bone.isValid());
    QVERIFY(scene.composition.editedObject() == nullptr);
    QCOMPARE(scene.composition.rowCount(scene.at("1", 0)), 4);
}

void ImageCompositionTest::windowedImage_followsRowThenAnalysisThenFirst()
{
    Scene scene;
    ImageComposition &composition = scene.composition;
    QCOMPARE(composition.windowedImage(), scene.image.get());
    composition.setData(scene.at("4", 4), true);
    QCOMPARE(composition.windowedImage(), scene.vectors.get());
    composition.setData(scene.at("2", 4), true); // edge points without an image: the first image
    QCOMPARE(composition.windowedImage(), scene.image.get());
    composition.setCurrentRow(5);
    QCOMPARE(composition.windowedImage(), scene.vectors.get());
    composition.setCurrentRow(1); // contours are no image
    QVERIFY(composition.windowedImage() == nullptr);
    composition.setCurrentRow(-1);
    QCOMPARE(composition.windowedImage(), scene.image.get());
}

void ImageCompositionTest::randomOrdersOfClosing()
{
    const CapturedOutput captured;
    for (unsigned seed = 0; seed < 200; ++seed) {
        std::mt19937 random(seed);
        ImageComposition composition;
        QList<ImageObject *> objects;
        for (int i = 0; i < 8; ++i) {
            switch (random() % 4) {
            case 0:
                objects << newImage("image", 1 + static_cast<int>(random() % 3));
                break;
            case 1:
                objects << new EdgePointSet("edges", nullptr);
                break;
            case 2:
                objects << new ProbeObject("probe");
                break;
            default: {
                auto *contours = new SlicedContoursObject("lines");
                contours->newContour("contour");
                contours->newFragment("a")->newSegment({0, 0}, 1.0f);
                contours->newFragment("b");
                objects << contours;
            }
            }
            composition.addImageObject(objects.last());
        }
        QList<QPersistentModelIndex> indexes;
        for (int row = 0; row < composition.rowCount(); ++row) {
            indexes << composition.index(row, static_cast<int>(random() % 7));
            for (int child = 0; child < composition.rowCount(composition.index(row, 0)); ++child)
                indexes << composition.index(child, 5, composition.index(row, 0));
        }
        while (!objects.isEmpty()) {
            composition.selectNextGraphicsObjectForEditing();
            composition.setData(composition.index(static_cast<int>(random() % 8), 4), true);
            ImageObject *closing = objects.takeAt(static_cast<qsizetype>(random()) % objects.size());
            const bool announced = random() % 2 == 0;
            if (announced)
                composition.detachFrom(closing);
            delete closing;
            for (const QPersistentModelIndex &index : indexes)
                QVERIFY(!index.isValid() || !index.data(Qt::WhatsThisRole).isNull() || index.column() != 0);
            QVERIFY(composition.granularity() > 0.0f);
            composition.nextSignificantZ(0.0f);
            QVERIFY(composition.analyzedObject() != nullptr || composition.podCount() == 0);
        }
        QCOMPARE(composition.podCount(), 0);
        QVERIFY(composition.editedObject() == nullptr);
    }
}

QTEST_MAIN(ImageCompositionTest)
#include "ImageCompositionTest.moc"
