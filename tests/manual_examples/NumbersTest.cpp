#include "Common/Image.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshAligner.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "objects/ImagePropertiesDialog.h"
#include "objects/manager/MetricsText.h"
#include "tests/manual_examples/WorkedStack.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/ManualText.h"
#include "tests/support/RasterRun.h"

#include <QLocale>
#include <QTest>

#include <algorithm>
#include <map>

namespace {

// What the program shows of one stack, by the name that the manual's table gives it.
using Shown = std::map<QString, QString>;

// Every cell of a metrics window: "<column>, <row>", for a measurement "<label>, <row>".
void showMetrics(ImageObject &object, const QString &label, Shown &shown)
{
    const SlicedMetricsModel model(&object);
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int column = 0; column < model.columnCount(); ++column) {
            const QString header = model.headerData(column, Qt::Horizontal).toString();
            shown[(header.isEmpty() ? label : header) + ", " +
                  model.headerData(row, Qt::Vertical).toString()] =
                model.data(model.index(row, column)).toString();
        }
    }
}

void showThickness(TriMeshFragment *base, TriMeshFragment *remote, int definition, const QString &label,
                   Shown &shown)
{
    TriMeshDistanceMeasurer measurer(base, remote, definition, label);
    if (QTest::qWaitFor([&] { return !measurer.isPending(); }))
        showMetrics(measurer, label, shown);
}

// The rasterizer as the command sets it up, in voxels of 0.5 x 0.5 x 1.5 mm.
void showMask(SlicedContoursObject &contours, Shown &shown)
{
    BitPlaneRasterizerObject mask(&contours, 24, 16, WorkedStack::slices, 0.5f, 0.5f, 1.5f);
    mask.setBitCode(contours.contour(0), 127);
    mask.setDefaultBitCode(-1);
    RasterRuns runs(mask);
    if (!runs.run())
        return;
    const std::vector<unsigned char> bytes = rasterBytes(mask);
    const auto inside = std::count(bytes.begin(), bytes.end(), 127);
    const auto sliceBytes = static_cast<std::ptrdiff_t>(bytes.size()) / WorkedStack::slices;
    const auto inFirst = std::count(bytes.begin(), bytes.begin() + sliceBytes, 127);
    shown["mask, voxels of 127 in the first slice"] = QString::number(inFirst);
    shown["mask, voxels of 127"] = QString::number(inside);
    shown["mask, voxels of other codes"] =
        QString::number(std::count_if(bytes.begin(), bytes.end(), [](int b) { return b != 0 && b != 127; }));
    shown["mask, volume"] = QString("%1 mm^3").arg(static_cast<double>(inside) * 0.5 * 0.5 * 1.5);
}

void showAlignment(TriMeshFragment *base, TriMeshFragment *free, Shown &shown)
{
    const CapturedOutput output;
    const TriMeshAligner aligner(base, free);
    const QString text = output.standardOutput();
    const QString before = "Iteration #0; rms distance of free to base fragment is ";
    if (text.startsWith(before))
        shown["alignment, rms distance at \"Iteration #0\""] =
            text.mid(before.size(), text.indexOf('\n') - before.size());
}

// The third and the fourth slice show what the second one shows; the manual's table leaves them out.
void leaveOutRepeated(Shown &shown)
{
    for (const char *column : {"cartilage", "bone", "surface", "left end", "right end"}) {
        const QString row = QString("%1, at z = %2 mm").arg(column);
        for (const char *z : {"3.75", "5.25"}) {
            QCOMPARE(shown[row.arg(z)], shown[row.arg("2.25")]);
            shown.erase(row.arg(z));
        }
    }
}

Shown shownOf(WorkedStack &stack)
{
    Shown shown;
    showMetrics(stack.object, QString(), shown);
    leaveOutRepeated(shown);
    // The first cell of the first line of the table of metrics.
    const SlicedMetricsModel model(&stack.object);
    shown["metrics file, first cell"] = QString::fromUtf8(MetricsText::text(model)).section('\t', 0, 0);
    shown["\"Dimensions [mm×mm×mm]:\""] = QString("%1×%2×%3")
                                              .arg(stack.object.extentX())
                                              .arg(stack.object.extentY())
                                              .arg(stack.object.extentZ());
    shown["\"Significant z Positions [mm]:\""] = ImagePropertiesDialog::significantPositions(stack.object);
    SlicedContoursTriangulator meshes(&stack.object);
    TriMeshFragment *bone = meshes.triangulationOf(stack.bone);
    TriMeshFragment *surface = meshes.triangulationOf(stack.surface);
    showThickness(bone, surface, TriMeshDistanceMeasurer::AlongNormal, "thickness", shown);
    showThickness(bone, surface, TriMeshDistanceMeasurer::MinimalDistance, "minimum thickness", shown);
    showMask(stack.object, shown);
    showAlignment(surface, bone, shown);
    return shown;
}

} // namespace

// The page on numbers: its worked case, computed by the program.
class NumbersTest : public QObject
{
    Q_OBJECT

private slots:
    static void workedCase_isWhatTheProgramShows_data();
    static void workedCase_isWhatTheProgramShows();
};

void NumbersTest::workedCase_isWhatTheProgramShows_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<double>("right");
    QTest::addColumn<bool>("firstIsOpen");
    QTest::newRow("plate") << 1 << 2.0 << false;
    QTest::newRow("wedge") << 2 << 5.0 << false;
    QTest::newRow("wedge with an open outline") << 3 << 5.0 << true;
}

void NumbersTest::workedCase_isWhatTheProgramShows()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QFETCH(int, column);
    QFETCH(double, right);
    QFETCH(bool, firstIsOpen);
    WorkedStack stack(column == 1 ? 2.0 : 1.0, right, firstIsOpen);
    Shown shown = shownOf(stack);
    const std::vector<manual::Row> rows = manual::table(manual::page("numbers.md"), "worked case");
    for (const manual::Row &row : rows) {
        const QString name = QString::fromStdString(row.at(0));
        const auto number = shown.find(name);
        QVERIFY2(number != shown.end(), qPrintable("the program shows no " + name));
        QCOMPARE(name + ": " + QString::fromStdString(row.at(static_cast<std::size_t>(column))),
                 name + ": " + number->second);
        shown.erase(number);
    }
    for (const auto &[name, number] : shown)
        QFAIL(qPrintable("the manual leaves out " + name + ": " + number));
}

QTEST_MAIN(NumbersTest)
#include "NumbersTest.moc"
