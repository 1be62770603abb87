#include "shell/MainWindow.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshAligner.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/DrawnBox.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/Sanitized.h"
#include "tests/support/XHand.h"

#include <QDialogButtonBox>
#include <QDoubleValidator>
#include <QGridLayout>
#include <QIntValidator>
#include <QLocale>
#include <QPushButton>

#include <cmath>

namespace {

using MERV::BRep::TriFace;

constexpr int noAnswer = 30; // ms

// The plane z = x from far left to far right: over (x, y) near (10, 10) it lies x above, and x / sqrt(2)
// away.
const TriFace slope({-100, -100, -100}, {200, -100, 200}, {50, 300, 50});

template <class Widget>
Widget *cell(QDialog *dialog, int row, int column)
{
    auto *grid = qobject_cast<QGridLayout *>(dialog->layout());
    QLayoutItem *item = grid != nullptr ? grid->itemAtPosition(row, column) : nullptr;
    return item != nullptr ? qobject_cast<Widget *>(item->widget()) : nullptr;
}

QString textAt(QDialog *dialog, int row, int column)
{
    const auto *label = cell<QLabel>(dialog, row, column);
    return label != nullptr ? label->text() : QString("no label");
}

void clickRow(QListWidget *list, int row)
{
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

QAbstractButton *button(QDialog *dialog, QDialogButtonBox::StandardButton which)
{
    return dialog->findChild<QDialogButtonBox *>()->button(which);
}

// What every dialog here has in common.
void checkFrame(DialogDriver &driver, QDialog *dialog, const QString &title)
{
    driver.check("title", dialog->windowTitle(), title);
    driver.check("parent", dialog->parent() == nullptr ? "none" : "some", "none");
    const auto *row = dialog->findChild<QDialogButtonBox *>();
    driver.check("buttons", QString::number(row->standardButtons()),
                 QString::number(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
    driver.check("orientation", QString::number(row->orientation()), QString::number(Qt::Horizontal));
    for (const QLabel *label : dialog->findChildren<QLabel *>())
        driver.check("rich text", label->textFormat() == Qt::RichText ? "yes" : "no", "no");
}

struct PairWanted
{
    QString title, explanation, other;
    QStringList names;
    int otherRow;
};

void checkPairDialog(DialogDriver &driver, QDialog *dialog, const PairWanted &wanted)
{
    checkFrame(driver, dialog, wanted.title);
    driver.check("explanation", textAt(dialog, 0, 0), wanted.explanation);
    driver.check("spans both columns", textAt(dialog, 0, 1), wanted.explanation);
    driver.check("left caption", textAt(dialog, 1, 0), "base fragment");
    driver.check("right caption", textAt(dialog, 1, 1), wanted.other);
    for (const int column : {0, 1}) {
        const auto *list = cell<QListWidget>(dialog, 2, column);
        driver.check("names", entriesOf(list).join("|"), wanted.names.join("|"));
        driver.check("current row", QString::number(list->currentRow()),
                     QString::number(column == 0 ? 0 : wanted.otherRow));
    }
    driver.check("button row", cell<QDialogButtonBox>(dialog, 3, 0) != nullptr ? "there" : "missing",
                 "there");
}

PairWanted thicknessPair(const QStringList &names, int otherRow)
{
    return {"Thickness Measurement",
            "The thickness will be measured between two fragments (which may be the same). The thickness "
            "values will be assigned to points on the base fragment.",
            "remote fragment", names, otherRow};
}

PairWanted alignmentPair(const QStringList &names, int otherRow)
{
    return {"Mesh Fragment Alignment", "The free fragment will be aligned to the base fragment.",
            "free fragment", names, otherRow};
}

using Command = void (MainWindow::*)();

// Runs a command; true if it ended without a dialog and without a new image.
bool endsSilently(MainWindowScene &scene, Command command)
{
    DialogDriver driver;
    const int imagesBefore = scene.manager().imageCount();
    (scene.window.*command)();
    QTest::qWait(noAnswer);
    return driver.verify() && scene.manager().imageCount() == imagesBefore;
}

// A square of two lines, one per fragment, from (2, 2) to (6, 6).
void drawSquare(SlicedContoursFragment *left, SlicedContoursFragment *right, float z)
{
    SlicedContoursSegment *segment = left->newSegment({2, 2}, z);
    segment->addPointBack({2, 6});
    segment->addPointBack({6, 6});
    segment = right->newSegment({6, 6}, z);
    segment->addPointBack({6, 2});
    segment->addPointBack({2, 2});
}

// The values of a slice, row by row.
QList<int> valuesOf(MERV::Image &image, int slice)
{
    QList<int> values;
    for (int y = 0; y < image.getHeight(); ++y)
        for (int x = 0; x < image.getWidth(); ++x)
            values << static_cast<int>(image.getVoxel(x, y, slice, 0, 0));
    return values;
}

const QStringList rasterCaptions{"voxel x size [mm]:",
                                 "voxel y size [mm]:",
                                 "voxel z size [mm]:",
                                 "rastered image x size [voxels]:",
                                 "rastered image y size [voxels]:",
                                 "rastered image z size [voxels]:"};

} // namespace

class MainWindowMeshCommandsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    // Answers the raster dialog with these texts, typed over the ones that are there.
    static void expectRasterDialog(DialogDriver &driver, const QStringList &texts)
    {
        driver.expect<QDialog>("raster", [&driver, texts](QDialog *dialog) {
            for (int i = 0; i < texts.size(); ++i)
                DialogDriver::type(cell<QLineEdit>(dialog, i + 1, 1), texts[i]);
            driver.click(dialog, button(dialog, QDialogButtonBox::Ok));
        });
    }

private slots:
    void triangulate_addsATriangulationOfTheContours()
    {
        MainWindowScene scene;
        auto *contours = scene.add(new SlicedContoursObject("lines"));
        contours->newFragment("one");
        scene.select({0});
        scene.window.triangulateSlicedContours();
        const auto *triangulator = scene.fromEnd<SlicedContoursTriangulator>();
        QVERIFY(triangulator);
        QCOMPARE(triangulator->label(), QString("Triangulation of lines"));
        QCOMPARE(triangulator->sources(), QList<ImageObject *>{contours});
        QVERIFY(triangulator->parent() == nullptr);
        scene.select({1});
        QVERIFY(endsSilently(scene, &MainWindow::triangulateSlicedContours));
    }

    void measureThickness_asksForFragmentsAndDefinition()
    {
        MainWindowScene scene;
        TriMeshObject *mesh = scene.addMesh("knee %2", {"bone & %1", "surface"});
        mesh->fragment(1)->clear();
        mesh->fragment(1)->addFace(slope);
        scene.select({0});
        DialogDriver driver;
        driver.expect<QDialog>("fragments", [&](QDialog *dialog) {
            checkPairDialog(driver, dialog, thicknessPair({"bone & %1 (knee %2)", "surface (knee %2)"}, 1));
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        driver.expect<QDialog>("definition", [&](QDialog *dialog) {
            checkFrame(driver, dialog, "Select Thickness Definition");
            driver.check("labels", labelsOf(dialog).join("|"),
                         "The thickness of an irregularly shaped object may be defined in several ways. "
                         "Select the definition to be used in this thickness measurement.");
            // The doubled mark shows as one.
            driver.check("choices", radioTextsOf(dialog).join("|"),
                         "perpendicular to bone && %1|minimal distance");
            driver.check("checked", radioTextsOf(dialog).first(),
                         dialog->findChildren<QRadioButton *>().first()->isChecked()
                             ? "perpendicular to bone && %1"
                             : "another one");
            driver.click(dialog, button(dialog, QDialogButtonBox::Ok));
        });
        scene.window.measureThickness();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 2);
        auto *measurer = scene.fromEnd<TriMeshDistanceMeasurer>();
        QVERIFY(measurer);
        QCOMPARE(measurer->label(), QString("neue Dickenmessung"));
        QCOMPARE(measurer->sources(), QList<ImageObject *>{mesh});
        // Straight up from (10, 10, 0) the slope is 10 away, and from (11, 10, 0) 11.
        QTRY_VERIFY(measurer->hasSample({10, 10, 0}));
        QVERIFY(std::abs(measurer->sampleAt({10, 10, 0}) - 10.0) < 1e-9);
        QVERIFY(std::abs(measurer->sampleAt({11, 10, 0}) - 11.0) < 1e-9);
    }

    void measureThickness_byMinimalDistance_fromTheChosenRows()
    {
        MainWindowScene scene;
        TriMeshObject *first = scene.addMesh("first", {"a"});
        TriMeshObject *second = scene.addMesh("second", {"b", "c"});
        first->fragment(0)->clear();
        first->fragment(0)->addFace(slope);
        scene.addVolume("beside", newVolume(MERV::TypeUChar, {2, 2, 2}));
        scene.select({0, 2, 1}); // other images may be selected too
        DialogDriver driver;
        driver.expect<QDialog>("fragments", [&](QDialog *dialog) {
            checkPairDialog(driver, dialog, thicknessPair({"a (first)", "b (second)", "c (second)"}, 1));
            clickRow(cell<QListWidget>(dialog, 2, 0), 2);
            clickRow(cell<QListWidget>(dialog, 2, 1), 0);
            driver.click(dialog, button(dialog, QDialogButtonBox::Ok));
        });
        driver.expect<QDialog>("definition", [&](QDialog *dialog) {
            driver.check("choices", radioTextsOf(dialog).join("|"), "perpendicular to c|minimal distance");
            QTest::mouseClick(radioNamed(dialog, "minimal distance"), Qt::LeftButton, {}, QPoint(8, 8));
            driver.click(dialog, button(dialog, QDialogButtonBox::Ok));
        });
        scene.window.measureThickness();
        QVERIFY2(driver.verify(), driver.report());
        auto *measurer = scene.fromEnd<TriMeshDistanceMeasurer>();
        QVERIFY(measurer);
        QCOMPARE(measurer->sources(), (QList<ImageObject *>{second, first}));
        // The foot of (10, 10, 0) on the slope is (5, 10, 5).
        QTRY_VERIFY(measurer->hasSample({10, 10, 0}));
        QVERIFY(std::abs(measurer->sampleAt({10, 10, 0}) - 10.0 / std::sqrt(2.0)) < 1e-9);
    }

    void measureThickness_ofOneFragment_startsWithItOnBothSides()
    {
        MainWindowScene scene;
        scene.addMesh("mesh", {"only"});
        scene.select({0});
        DialogDriver driver;
        driver.expect<QDialog>("fragments", [&](QDialog *dialog) {
            checkPairDialog(driver, dialog, thicknessPair({"only (mesh)"}, 0));
            driver.click(dialog, button(dialog, QDialogButtonBox::Ok));
        });
        driver.expect<QDialog>("definition", [&](QDialog *dialog) {
            QTest::mouseClick(radioNamed(dialog, "minimal distance"), Qt::LeftButton, {}, QPoint(8, 8));
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        scene.window.measureThickness();
        QVERIFY2(driver.verify(), driver.report());
        auto *measurer = scene.fromEnd<TriMeshDistanceMeasurer>();
        QVERIFY(measurer);
        QTRY_VERIFY(measurer->hasSample({10, 10, 0}));
        QCOMPARE(measurer->sampleAt({10, 10, 0}), 0.0);
    }

    void measureThickness_rejected_measuresNothing()
    {
        MainWindowScene scene;
        scene.addMesh("mesh", {"a", "b"});
        scene.select({0});
        DialogDriver driver;
        driver.expect<QDialog>("fragments", [](QDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        scene.window.measureThickness();
        driver.expect<QDialog>("fragments", [&](QDialog *dialog) {
            driver.click(dialog, button(dialog, QDialogButtonBox::Cancel));
        });
        scene.window.measureThickness();
        driver.expect<QDialog>("fragments", [](QDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Return); });
        driver.expect<QDialog>("definition", [&](QDialog *dialog) {
            driver.click(dialog, button(dialog, QDialogButtonBox::Cancel));
        });
        scene.window.measureThickness();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 1);
    }

    void measureThickness_withoutFragments_saysSo()
    {
        MainWindowScene scene;
        scene.addMesh("empty", {});
        scene.select({0});
        DialogDriver driver;
        driver.expectBox(QMessageBox::Warning, "Tevora",
                         "No mesh fragments found in selection. Thickness can therefore not be measured.",
                         "OK", [&](QMessageBox *box) {
                             QCOMPARE(box->standardButtons(), QMessageBox::Ok);
                             QCOMPARE(box->parent(), &scene.window);
                         });
        scene.window.measureThickness();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 1);
    }

    void alignMesh_asksForBaseAndFree()
    {
        MainWindowScene scene;
        TriMeshObject *mesh = scene.addMesh("mesh", {"a %2", "b"});
        scene.select({0});
        DialogDriver driver;
        driver.expect<QDialog>("alignment", [&](QDialog *dialog) {
            checkPairDialog(driver, dialog, alignmentPair({"a %2 (mesh)", "b (mesh)"}, 1));
            driver.click(dialog, button(dialog, QDialogButtonBox::Ok));
        });
        scene.window.alignMesh();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 2);
        const auto *aligner = scene.fromEnd<TriMeshAligner>();
        QVERIFY(aligner);
        QCOMPARE(aligner->label(), QString("b aligned to a %2"));
        QCOMPARE(aligner->sources(), QList<ImageObject *>{mesh});
        QCOMPARE(scene.output.standardOutput().count("Iteration #"), 50);
    }

    // The fragments of the second object stand before those of the first one.
    void alignMesh_ofTwo_startsWithTheSecond()
    {
        MainWindowScene scene;
        TriMeshObject *first = scene.addMesh("first", {"a", "b"});
        TriMeshObject *second = scene.addMesh("second", {"c"});
        scene.select({0, 1});
        DialogDriver driver;
        driver.expect<QDialog>("alignment", [&](QDialog *dialog) {
            checkPairDialog(driver, dialog, alignmentPair({"c (second)", "a (first)", "b (first)"}, 1));
            clickRow(cell<QListWidget>(dialog, 2, 1), 2);
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        scene.window.alignMesh();
        QVERIFY2(driver.verify(), driver.report());
        const auto *aligner = scene.fromEnd<TriMeshAligner>();
        QVERIFY(aligner);
        QCOMPARE(aligner->label(), QString("b aligned to c"));
        QCOMPARE(aligner->sources(), (QList<ImageObject *>{second, first}));
    }

    void alignMesh_rejected_alignsNothing()
    {
        MainWindowScene scene;
        scene.addMesh("mesh", {"a", "b"});
        scene.select({0});
        DialogDriver driver;
        driver.expect<QDialog>("alignment", [](QDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        scene.window.alignMesh();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 1);
    }

    void alignMesh_withAnEmptyObject_saysWhichOne()
    {
        MainWindowScene scene;
        scene.addMesh("<b>full</b>", {"a"});
        scene.addMesh("<b>empty</b>", {});
        const QString text = "<b>empty</b> is empty, but would have to contain at least one fragment.";
        const std::initializer_list<int> selections[] = {{1}, {1, 0}, {0, 1}};
        for (const auto &rows : selections) {
            scene.select(rows);
            DialogDriver driver;
            driver.expectBox(QMessageBox::Warning, "Tevora", text, "OK", [](QMessageBox *box) {
                QCOMPARE(box->textFormat(), Qt::PlainText);
                QCOMPARE(box->standardButtons(), QMessageBox::Ok);
            });
            scene.window.alignMesh();
            QVERIFY2(driver.verify(), driver.report());
        }
        QCOMPARE(scene.manager().imageCount(), 2);
    }

    // Fragments exist before they have faces, and the dialog lets them through.
    void alignMesh_toAFragmentWithoutFaces_ends()
    {
        MainWindowScene scene;
        TriMeshObject *mesh = scene.addMesh("mesh", {"base", "free"});
        mesh->fragment(0)->clear();
        scene.select({0});
        DialogDriver driver;
        driver.expect<QDialog>("alignment", [](QDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Return); });
        scene.window.alignMesh();
        QVERIFY2(driver.verify(), driver.report());
        const auto *aligner = scene.fromEnd<TriMeshAligner>();
        QVERIFY(aligner);
        const MERV::BRep::Point corner = aligner->fragment(0)->face(0).vertex(1);
        QCOMPARE(corner.x / corner.w, 11.0); // where it was
    }

    void colorTriangulation_data()
    {
        QTest::addColumn<bool>("meshFirst");
        QTest::newRow("mesh, measurement") << true;
        QTest::newRow("measurement, mesh") << false;
    }
    void colorTriangulation()
    {
        QFETCH(bool, meshFirst);
        MainWindowScene scene;
        TriMeshObject *mesh = scene.addMesh("<i>mesh</i> %2", {"a", "b"});
        mesh->fragment(1)->setFaces({TriFace({20, 10, 0}, {28, 10, 0}, {20, 18, 0})});
        auto *measurer = scene.add(new TriMeshDistanceMeasurer(mesh->fragment(0), mesh->fragment(1), "d%1"));
        if (meshFirst)
            scene.select({0, 1});
        else
            scene.select({1, 0});
        DialogDriver driver;
        driver.expect<QDialog>("color", [&](QDialog *dialog) {
            checkFrame(driver, dialog, "Color <i>mesh</i> %2");
            driver.check("label", labelsOf(dialog).join("|"),
                         "Select the fragment of <i>mesh</i> %2 you want to be colored.");
            driver.check("plain", QString::number(dialog->findChild<QLabel *>()->textFormat()),
                         QString::number(Qt::PlainText));
            auto *list = dialog->findChild<QListWidget *>();
            driver.check("fragments", entriesOf(list).join("|"), "a|b");
            driver.check("row", QString::number(list->currentRow()), "0");
            clickRow(list, 1);
            driver.click(dialog, button(dialog, QDialogButtonBox::Ok));
        });
        scene.window.colorTriangulation();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 3);
        auto *coloring = scene.fromEnd<ColoringTriMeshRenderer>();
        QVERIFY(coloring);
        QCOMPARE(coloring->label(), QString("Coloring of <i>mesh</i> %2 according to d%1"));
        QCOMPARE(coloring->sources(), (QList<ImageObject *>{mesh, measurer}));
        const QRectF box = drawnBox(*coloring); // of the chosen fragment
        QVERIFY(!box.isEmpty());
        QVERIFY(QRectF(19.5, 9.5, 9, 9).contains(box));

        driver.expect<QDialog>("color", [](QDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        scene.window.colorTriangulation();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 3);
    }

    void colorTriangulation_withoutFragments_colorsNothing()
    {
        MainWindowScene scene;
        scene.addMesh("mesh", {});
        scene.add(new TriMeshDistanceMeasurer(nullptr, nullptr, "nothing"));
        scene.select({0, 1});
        DialogDriver driver;
        driver.expect<QDialog>("color", [](QDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Return); });
        scene.window.colorTriangulation();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 2);
    }

    void rasterize_hasItsTextsDefaultsAndValidators()
    {
        MainWindowScene scene;
        scene.add(new SlicedContoursObject("<b>a</b> %1"));
        scene.select({0});
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); // numbers keep their point
        DialogDriver driver;
        driver.expect<QDialog>("raster", [&](QDialog *dialog) {
            checkFrame(driver, dialog, "Set up rasterization of <b>a</b> %1");
            const auto *explanation = cell<QLabel>(dialog, 0, 0);
            driver.check("explanation", explanation->text(),
                         "<b>a</b> %1 will be rasterized to a rectilinear grid image. Enter the grid spacing "
                         "and grid size (in voxels) below.");
            driver.check("both columns", textAt(dialog, 0, 1), explanation->text());
            QVERIFY(explanation->wordWrap());
            QCOMPARE(explanation->textFormat(), Qt::PlainText);
            const QStringList presets{"0.3125", "0.3125", "1.5", "512", "512", "56"};
            for (int i = 0; i < 6; ++i) {
                driver.check("caption", textAt(dialog, i + 1, 0), rasterCaptions[i]);
                const auto *edit = cell<QLineEdit>(dialog, i + 1, 1);
                driver.check("preset", edit->text(), presets[i]);
                QCOMPARE(edit->maxLength(), 10);
                QVERIFY(edit->hasAcceptableInput());
            }
            const auto *size =
                qobject_cast<const QDoubleValidator *>(cell<QLineEdit>(dialog, 3, 1)->validator());
            QVERIFY(size);
            QCOMPARE(size->bottom(), 0.001);
            QCOMPARE(size->top(), 3.4028234663852886e38);
            QCOMPARE(size->decimals(), 4);
            const auto *count =
                qobject_cast<const QIntValidator *>(cell<QLineEdit>(dialog, 6, 1)->validator());
            QVERIFY(count);
            QCOMPARE(count->bottom(), 1);
            QCOMPARE(count->top(), 2048);
            // What is typed is judged key by key: no commas, letters and signs, and four decimals at most.
            QLineEdit *edit = cell<QLineEdit>(dialog, 1, 1);
            DialogDriver::type(edit, "0,5x2.76543");
            driver.check("typed size", edit->text(), "052.7654");
            edit = cell<QLineEdit>(dialog, 4, 1);
            DialogDriver::type(edit, "-2a1.0");
            driver.check("typed count", edit->text(), "210");
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        scene.window.rasterizeImage();
        QLocale::setDefault(before);
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 1);
    }

    void rasterize_contours_fillsEachContourWith127()
    {
        MainWindowScene scene;
        auto *contours = scene.add(new SlicedContoursObject("square"));
        for (const char *name : {"one", "two"}) {
            SlicedContour *contour = contours->newContour(name);
            contour->addFragmentReference(contours->newFragment("left"));
            contour->addFragmentReference(contours->newFragment("right"));
        }
        drawSquare(contours->fragment(0), contours->fragment(1), 0.5f);
        drawSquare(contours->fragment(2), contours->fragment(3), 1.5f);
        scene.select({0});
        DialogDriver driver;
        expectRasterDialog(driver, {"1", "1", "1", "8", "7", "2"});
        scene.window.rasterizeImage();
        QVERIFY2(driver.verify(), driver.report());
        auto *rasterizer = scene.fromEnd<BitPlaneRasterizerObject>();
        QVERIFY(rasterizer);
        QCOMPARE(rasterizer->label(), QString("Rasterization of square"));
        QCOMPARE(rasterizer->sources(), QList<ImageObject *>{contours});
        QCOMPARE(int(rasterizer->bitCode(contours->contour(0))), 127);
        QCOMPARE(int(rasterizer->bitCode(contours->contour(1))), 127);
        QCOMPARE(int(rasterizer->bitCode(contours->fragment(0))), 0);
        QCOMPARE(int(rasterizer->value(contours, 2, 8) & 0xff), 255); // the default code
        QTRY_VERIFY(!rasterizer->isStale());
        // The pixels whose middles lie between 2 and 6, in both slices.
        QList<int> square;
        for (int y = 0; y < 7; ++y)
            for (int x = 0; x < 8; ++x)
                square << (x >= 2 && x < 6 && y >= 2 && y < 6 ? 127 : 0);
        QTRY_COMPARE(valuesOf(*rasterizer->voxels(), 0), square);
        QCOMPARE(valuesOf(*rasterizer->voxels(), 1), square);
    }

    void rasterize_anotherObject_hasTheCode255ForItself()
    {
        MainWindowScene scene;
        MervImageObject *volume = scene.addVolume("knee", newVolume(MERV::TypeUChar, {4, 4, 2}));
        scene.select({0});
        DialogDriver driver;
        expectRasterDialog(driver, {"1", "2", "0.5", "4", "3", "2"});
        scene.window.rasterizeImage();
        QVERIFY2(driver.verify(), driver.report());
        auto *rasterizer = scene.fromEnd<BitPlaneRasterizerObject>();
        QVERIFY(rasterizer);
        QCOMPARE(int(rasterizer->bitCode(volume)), 255);
        QCOMPARE(int(rasterizer->value(volume, 2, 8) & 0xff), 0);
        const MERV::Image *voxels = rasterizer->voxels();
        QCOMPARE(voxels->getWidth(), 4);
        QCOMPARE(voxels->getHeight(), 3);
        QCOMPARE(voxels->getDepth(), 2);
        QCOMPARE(voxels->getSpacing(0), 1.0f);
        QCOMPARE(voxels->getSpacing(1), 2.0f);
        QCOMPARE(voxels->getSpacing(2), 0.5f);
        QTRY_VERIFY(!rasterizer->isStale());
    }

    // Keys of the X server: the focus starts at the first field, Tab goes on, Return takes all.
    void rasterize_isWorkedByTheKeyboard()
    {
        MainWindowScene scene;
        scene.add(new SlicedContoursObject("lines"));
        scene.select({0});
        DialogDriver driver;
        driver.expect<QDialog>("raster", [&](QDialog *dialog) {
            QVERIFY(QTest::qWaitForWindowActive(dialog));
            for (int i = 1; i <= 6; ++i) {
                auto *edit = cell<QLineEdit>(dialog, i, 1);
                QTRY_VERIFY(edit->hasFocus());
                if (i == 1)
                    edit->selectAll();
                QCOMPARE(edit->selectedText(), edit->text()); // what is typed takes its place
                XHand hand(edit);
                hand.key(qPrintable(QString::number(i)));
                hand.keyIntoOtherWindow(i < 6 ? "Tab" : "Return");
            }
        });
        scene.window.rasterizeImage();
        QVERIFY2(driver.verify(), driver.report());
        const auto *rasterizer = scene.fromEnd<BitPlaneRasterizerObject>();
        QVERIFY(rasterizer);
        const MERV::Image &voxels = *rasterizer->voxels();
        for (int axis = 0; axis < 3; ++axis) {
            QCOMPARE(voxels.getSpacing(axis), float(axis + 1));
            QCOMPARE(voxels.getDimension(axis), axis + 4);
        }
    }

    // The loop of the dialog ends too, and without a raster.
    void exitWhileTheRasterDialogIsOpen_endsTheProgram()
    {
        MainWindowScene scene;
        scene.add(new SlicedContoursObject("lines"));
        scene.select({0});
        scene.window.show(); // so that the dialog is not the last window, whose end would be the program's
        DialogDriver driver;
        driver.expect<QDialog>("raster", [&](QDialog *) { scene.window.exit(); });
        QTimer::singleShot(0, &scene.window, &MainWindow::rasterizeImage);
        QTimer::singleShot(60000, &scene.window, [] { QCoreApplication::exit(1); }); // no loop without end
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        QCOMPARE(scene.manager().imageCount(), 1);
    }

    // Ok takes what the validators call unfinished.
    void rasterize_withTextsThatAreNoNumbers_takesThemForZero()
    {
        MainWindowScene scene;
        scene.add(new SlicedContoursObject("lines"));
        scene.select({0});
        DialogDriver driver;
        driver.expect<QDialog>("raster", [&](QDialog *dialog) {
            QLineEdit *edit = cell<QLineEdit>(dialog, 1, 1);
            DialogDriver::type(edit, ".");
            driver.check("no number", edit->text(), ".");
            for (const int row : {2, 4}) {
                edit = cell<QLineEdit>(dialog, row, 1);
                edit->setFocus();
                edit->selectAll();
                QTest::keyClick(edit, Qt::Key_Delete);
                driver.check("empty", edit->text(), "");
            }
            driver.click(dialog, button(dialog, QDialogButtonBox::Ok));
        });
        scene.window.rasterizeImage();
        QVERIFY2(driver.verify(), driver.report());
        auto *rasterizer = scene.fromEnd<BitPlaneRasterizerObject>();
        QVERIFY(rasterizer);
        QCOMPARE(rasterizer->voxels()->getSpacing(0), 0.0f);
        QCOMPARE(rasterizer->voxels()->getSpacing(1), 0.0f);
        QCOMPARE(rasterizer->voxels()->getSpacing(2), 1.5f);
        QCOMPARE(rasterizer->voxels()->getWidth(), 0);
        QCOMPARE(rasterizer->voxels()->getHeight(), 512);
        QCOMPARE(rasterizer->voxels()->getDepth(), 56);
        QTRY_VERIFY(!rasterizer->isStale());
    }

    void rasterize_withoutMemory_endsWithALineOnStandardError()
    {
        if (sanitized)
            QSKIP("the sanitizers' allocators do not let a request fail");
        MainWindowScene scene;
        scene.add(new SlicedContoursObject("lines"));
        scene.select({0});
        DialogDriver driver;
        expectRasterDialog(driver, {"1", "1", "1", "2048", "2048", "2048"});
        const QString before = scene.output.standardError();
        {
            const MemoryLimit limit(rlim_t(1) << 31); // the voxels alone are four times as much
            QVERIFY(limit.isSet);
            scene.window.rasterizeImage();
        }
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 1);
        const QString errors = scene.output.standardError().mid(before.size());
        QVERIFY(!errors.trimmed().isEmpty());
        QVERIFY(errors.endsWith('\n'));
    }

    void unfitSelections_endSilently()
    {
        MainWindowScene scene;
        scene.addVolume("volume", newVolume(MERV::TypeUChar, {4, 4, 2}));
        for (const char *label : {"a", "b", "c"})
            scene.addMesh(label, {"one"});
        scene.add(new TriMeshDistanceMeasurer(nullptr, nullptr, "nothing"));
        struct Case
        {
            std::initializer_list<int> rows;
            Command command;
        };
        const Case cases[] = {
            {{}, &MainWindow::measureThickness},
            {{0}, &MainWindow::measureThickness},
            {{1, 2, 3}, &MainWindow::measureThickness},
            {{}, &MainWindow::alignMesh},
            {{0}, &MainWindow::alignMesh},
            {{0, 1}, &MainWindow::alignMesh},
            {{1, 0}, &MainWindow::alignMesh},
            {{1, 2, 3}, &MainWindow::alignMesh},
            {{1}, &MainWindow::colorTriangulation},
            {{1, 2}, &MainWindow::colorTriangulation},
            {{4, 0}, &MainWindow::colorTriangulation},
            {{0, 4}, &MainWindow::colorTriangulation},
            {{1, 4, 2}, &MainWindow::colorTriangulation},
            {{}, &MainWindow::rasterizeImage},
            {{}, &MainWindow::triangulateSlicedContours},
            {{1}, &MainWindow::triangulateSlicedContours},
            {{}, &MainWindow::mirrorImage},
            {{1}, &MainWindow::mirrorImage},
            {{}, &MainWindow::setSelectorPlane},
            {{0}, &MainWindow::setSelectorPlane},
        };
        for (const Case &unfit : cases) {
            scene.select(unfit.rows);
            QVERIFY2(endsSilently(scene, unfit.command), qPrintable(QString("case %1").arg(&unfit - cases)));
        }
    }
};

QTEST_MAIN(MainWindowMeshCommandsTest)
#include "MainWindowMeshCommandsTest.moc"
