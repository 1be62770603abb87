#include "contours/metrics/SlicedMetricsModel.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/SlicedMetrics.h"
#include "objects/SparselySampledImageObject.h"

#include <QAbstractItemModelTester>
#include <QLocale>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <memory>

namespace {

using Fragment = SlicedContoursFragment;
using Tester = QAbstractItemModelTester;

SlicedContoursSegment *addLine(Fragment *fragment, float z, const std::vector<QPointF> &points)
{
    auto *segment = new SlicedContoursSegment(points.front(), z);
    for (auto point = points.begin() + 1; point != points.end(); ++point)
        segment->addPointBack(*point);
    fragment->addSegment(segment);
    return segment;
}

// A rectangle from (0, 0) to (width, height) at z: three sides in the first fragment, the fourth in the
// second.
void addRectangle(Fragment *three, Fragment *one, float z, double width, double height)
{
    addLine(three, z, {{0, 0}, {width, 0}, {width, height}, {0, height}});
    addLine(one, z, {{0, height}, {0, 0}});
}

// A contour "patella" of the fragments "bone" and "surface".
struct Patella
{
    SlicedContoursObject object;
    SlicedContour *contour = object.newContour("patella");
    Fragment *bone = object.newFragment("bone");
    Fragment *surface = object.newFragment("surface");

    Patella()
    {
        contour->addFragmentReference(bone);
        contour->addFragmentReference(surface);
    }
};

QString cell(const SlicedMetricsModel &model, int row, int column)
{
    return model.data(model.index(row, column)).toString();
}

QStringList column(const SlicedMetricsModel &model, int index)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(cell(model, row, index));
    return texts;
}

QStringList rowHeaders(const SlicedMetricsModel &model)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.headerData(row, Qt::Vertical).toString());
    return texts;
}

} // namespace

class SlicedMetricsModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
    void cleanup() { init(); }

    void spacingIsHalfTheDistanceOfTheNeighbours()
    {
        const QList<float> three{0.0f, 1.0f, 3.0f};
        QCOMPARE(sliceSpacing(three, 0.0f), 1.0f);
        QCOMPARE(sliceSpacing(three, 1.0f), 1.5f);
        QCOMPARE(sliceSpacing(three, 3.0f), 2.0f);
        QCOMPARE(sliceSpacing(three, 2.0f), 0.0f);
        QCOMPARE(sliceSpacing(three, std::nextafter(1.0f, 2.0f)), 0.0f);
        QCOMPARE(sliceSpacing({3.0f, 4.5f}, 3.0f), 1.5f);
        QCOMPARE(sliceSpacing({3.0f, 4.5f}, 4.5f), 1.5f);
        QCOMPARE(sliceSpacing({3.0f}, 3.0f), 0.0f);
        QCOMPARE(sliceSpacing({}, 3.0f), 0.0f);
    }

    void correctedVolume_data()
    {
        QTest::addColumn<QList<float>>("areas");
        QTest::addColumn<QList<float>>("levels");
        QTest::addColumn<float>("volume");
        QTest::newRow("no level") << QList<float>{} << QList<float>{} << 0.0f;
        QTest::newRow("one level") << QList<float>{10} << QList<float>{1} << 0.0f;
        // (8 * 1.5 + 16 * 1.5) * 9 / 8 = 36 * 9 / 8
        QTest::newRow("two levels") << QList<float>{8, 16} << QList<float>{3, 4.5} << 40.5f;
        // 0 below 24: 24 * 1 * (2/3 + 1/24) = 17; above 24: 24 * 9 / 8 = 27
        QTest::newRow("lower end empty") << QList<float>{0, 24} << QList<float>{0, 1} << 44.0f;
        QTest::newRow("upper end empty") << QList<float>{24, 0} << QList<float>{0, 1} << 44.0f;
        // D = 1, 1.5, 2: 8 * 1 * 9/8 + 10 * 1.5 + 16 * 2 * 9/8 = 9 + 15 + 36
        QTest::newRow("three levels") << QList<float>{8, 10, 16} << QList<float>{0, 1, 3} << 60.0f;
        // 0 / 0 counts as 0: nothing at the lower end; above: 0 below, 12 * 1 * 9/8 = 13.5 (12 / 0 is
        // infinite)
        QTest::newRow("undefined ratio") << QList<float>{0, 0, 12} << QList<float>{0, 1, 2} << 13.5f;
        QTest::newRow("all empty") << QList<float>{0, 0} << QList<float>{0, 1} << 0.0f;
        // The corrected volume may exceed the plain one, 8 + 8: (8 + 8) * 9 / 8.
        QTest::newRow("exceeds the slabs") << QList<float>{8, 8} << QList<float>{0, 1} << 18.0f;
    }
    void correctedVolume()
    {
        QFETCH(QList<float>, areas);
        QFETCH(QList<float>, levels);
        QFETCH(float, volume);
        QCOMPARE(::correctedVolume(areas, levels), volume);
    }

    // Rectangles of 4 x 2, 4 x 3 and 4 x 5 at z = 0, 1, 3, so D = 1, 1.5, 2. Areas 8, 12, 20.
    // The bone has the sides width + height + width: 10, 11, 13; the surface the fourth: 2, 3, 5.
    // V = 8 + 18 + 40 = 66. Vc = 8 * 9/8 + 18 + 40 * 9/8 = 9 + 18 + 45 = 72.
    // S(bone) = 10 + 16.5 + 26 = 52.5; S(surface) = 2 + 4.5 + 10 = 16.5.
    void tableOfThreeLevels()
    {
        Patella p;
        addRectangle(p.bone, p.surface, 3.0f, 4, 5);
        addRectangle(p.bone, p.surface, 0.0f, 4, 2);
        addRectangle(p.bone, p.surface, 1.0f, 4, 3);
        const SlicedMetricsModel model(&p.object);
        QCOMPARE(model.rowCount(), 5);
        QCOMPARE(model.columnCount(), 3);
        QCOMPARE(column(model, 0), (QStringList{"8 mm^2", "12 mm^2", "20 mm^2", "66 mm^3", "72 mm^3"}));
        QCOMPARE(column(model, 1), (QStringList{"10 mm", "11 mm", "13 mm", "52.5 mm^2", "unavailable"}));
        QCOMPARE(column(model, 2), (QStringList{"2 mm", "3 mm", "5 mm", "16.5 mm^2", "unavailable"}));
        QCOMPARE(rowHeaders(model),
                 (QStringList{"at z = 0 mm", "at z = 1 mm", "at z = 3 mm", "Total", "Total (corrected)"}));
    }

    // Several segments of a fragment on one level add up; an open line has a length and no area.
    void openLinesHaveNoArea()
    {
        Patella p;
        addLine(p.bone, 2.0f, {{0, 0}, {3, 4}});
        addLine(p.bone, 2.0f, {{10, 0}, {10, 1}, {12, 1}});
        addLine(p.surface, 3.5f, {{0, 0}, {1, 0}});
        const SlicedMetricsModel model(&p.object);
        QCOMPARE(column(model, 0), (QStringList{"0 mm^2", "0 mm^2", "0 mm^3", "0 mm^3"}));
        // 8 * 1.5
        QCOMPARE(column(model, 1), (QStringList{"8 mm", "0 mm", "12 mm^2", "unavailable"}));
        QCOMPARE(column(model, 2), (QStringList{"0 mm", "1 mm", "1.5 mm^2", "unavailable"}));
    }

    // The loop pulled first is that of the first segment: an inner loop drawn later does not count, one drawn
    // first is all that counts.
    void onlyTheFirstOfNestedLoopsCounts()
    {
        Patella p;
        addRectangle(p.bone, p.surface, 0.0f, 10, 10);
        addLine(p.bone, 0.0f, {{2, 2}, {4, 2}, {4, 4}});
        addLine(p.surface, 0.0f, {{4, 4}, {2, 4}, {2, 2}});
        const SlicedMetricsModel model(&p.object);
        QCOMPARE(cell(model, 0, 0), QString("100 mm^2"));
        Patella q;
        addLine(q.bone, 0.0f, {{2, 2}, {4, 2}, {4, 4}});
        addLine(q.surface, 0.0f, {{4, 4}, {2, 4}, {2, 2}});
        addRectangle(q.bone, q.surface, 0.0f, 10, 10);
        QCOMPARE(cell(SlicedMetricsModel(&q.object), 0, 0), QString("4 mm^2"));
    }

    void oneLevelHasNoVolume()
    {
        Patella p;
        addRectangle(p.bone, p.surface, 7.0f, 2, 2);
        const SlicedMetricsModel model(&p.object);
        QCOMPARE(column(model, 0), (QStringList{"4 mm^2", "0 mm^3", "0 mm^3"}));
        QCOMPARE(column(model, 1), (QStringList{"6 mm", "0 mm^2", "unavailable"}));
    }

    void emptyContoursHaveTwoRows()
    {
        Patella p;
        const SlicedMetricsModel model(&p.object);
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(rowHeaders(model), (QStringList{"Total", "Total (corrected)"}));
        QCOMPARE(column(model, 0), (QStringList{"0 mm^3", "0 mm^3"}));
        QCOMPARE(column(model, 1), (QStringList{"0 mm^2", "unavailable"}));
        SlicedContoursObject bare;
        const SlicedMetricsModel none(&bare);
        QCOMPARE(none.rowCount(), 2);
        QCOMPARE(none.columnCount(), 0);
    }

    void headersNameColumnsAndLevels()
    {
        Patella p;
        addLine(p.bone, 4.5f, {{0, 0}, {1, 0}});
        const SlicedMetricsModel model(&p.object);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QString("patella"));
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QString("bone"));
        QCOMPARE(model.headerData(2, Qt::Horizontal).toString(), QString("surface"));
        QVERIFY(model.headerData(3, Qt::Horizontal).toString().isEmpty());
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QCOMPARE(model.headerData(0, Qt::Vertical, Qt::ToolTipRole).toString(),
                 QString("area/length of section at z = 4.5 mm"));
        QVERIFY(!model.headerData(1, Qt::Vertical, Qt::ToolTipRole).isValid());
        QVERIFY(!model.headerData(2, Qt::Vertical, Qt::ToolTipRole).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical, Qt::DecorationRole).isValid());
    }

    void onlyTheDisplayRoleHasCells()
    {
        Patella p;
        const SlicedMetricsModel model(&p.object);
        for (const int role : {Qt::EditRole, Qt::ToolTipRole, Qt::DecorationRole, Qt::UserRole})
            QVERIFY(!model.data(model.index(0, 0), role).isValid());
        QVERIFY(!model.data(QModelIndex()).isValid());
        QVERIFY(!model.index(2, 0).isValid());
        QVERIFY(!model.index(0, 3).isValid());
        QVERIFY(!model.index(-1, 0).isValid());
        QCOMPARE(model.rowCount(model.index(0, 0)), 0);
        QCOMPARE(model.columnCount(model.index(0, 0)), 0);
    }

    void flagsTellWhatCanBeSelected()
    {
        Patella p;
        const SlicedMetricsModel contours(&p.object);
        QCOMPARE(contours.flags(contours.index(0, 0)), Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        SparselySampledImageObject samples;
        const SlicedMetricsModel thickness(&samples);
        QCOMPARE(thickness.flags(thickness.index(0, 0)), Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        ImageObject other;
        const SlicedMetricsModel unknown(&other);
        QCOMPARE(unknown.flags(unknown.index(0, 0)), Qt::NoItemFlags);
    }

    void thicknessParametersAreFourRows()
    {
        SparselySampledImageObject samples;
        samples.setSample({0, 0, 0}, 2.5);
        samples.setSample({0, 0, 2}, 1.25);
        samples.setSample({0, 0, 4}, 99.0);
        samples.setSample({1, 0, 1}, 99.0);
        SlicedMetricsModel model(&samples);
        const Tester tester(&model, Tester::FailureReportingMode::QtTest);
        QCOMPARE(model.columnCount(), 1);
        QCOMPARE(column(model, 0), (QStringList{"2.5 mm", "0 mm", "1.25 mm", "0 mm"}));
        QCOMPARE(rowHeaders(model),
                 (QStringList{"MaxThicknes", "AvMaxThickness", "MeanThickness", "StdThickness"}));
        QCOMPARE(model.headerData(4, Qt::Vertical).toString(), QString("Thickness parameters"));
        QVERIFY(model.headerData(0, Qt::Horizontal).toString().isEmpty());
        QVERIFY(!model.headerData(0, Qt::Vertical, Qt::ToolTipRole).isValid());
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        samples.setSample({0, 0, 1}, 0.5);
        emit samples.updated(); // as after a measurement
        QCOMPARE(changed.count(), 1);
        QCOMPARE(cell(model, 1, 0), QString("0.5 mm"));
    }

    void otherSourcesGetOneMessageCell()
    {
        ImageObject other;
        SlicedMetricsModel model(&other);
        const Tester tester(&model, Tester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.columnCount(), 1);
        QCOMPARE(cell(model, 0, 0), QString("Sliced metrics cannot be computed for this image."));
        const SlicedMetricsModel none(nullptr);
        QCOMPARE(cell(none, 0, 0), QString("Sliced metrics cannot be computed for this image."));
    }

    // A level between two others: one row comes in at the old end, the totals move down, the new z is in
    // row 1.
    void newLevelInTheMiddleInsertsARowAtTheEnd()
    {
        Patella p;
        addLine(p.bone, 0.0f, {{0, 0}, {1, 0}});
        addLine(p.bone, 4.0f, {{0, 0}, {1, 0}});
        SlicedMetricsModel model(&p.object);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        // A view reads every cell and header as soon as it hears of the row.
        QStringList seen;
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [&] { seen = rowHeaders(model) + column(model, 1); });
        addLine(p.bone, 1.0f, {{0, 0}, {2, 0}});
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted[0][1].toInt(), 4);
        QCOMPARE(inserted[0][2].toInt(), 4);
        QCOMPARE(removed.count(), 0);
        QCOMPARE(changed.count(), 0);
        // D = 1, 2, 3: 1 + 4 + 3 = 8.
        QCOMPARE(seen, (QStringList{"at z = 0 mm", "at z = 1 mm", "at z = 4 mm", "Total", "Total (corrected)",
                                    "1 mm", "2 mm", "1 mm", "8 mm^2", "unavailable"}));
    }

    void deletingAllSegmentsLeavesTwoRows()
    {
        Patella p;
        addRectangle(p.bone, p.surface, 0.0f, 2, 2);
        addRectangle(p.bone, p.surface, 1.0f, 2, 2);
        SlicedMetricsModel model(&p.object);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        for (Fragment *fragment : {p.bone, p.surface})
            while (fragment->segmentCount() > 0)
                delete fragment->segment(0);
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(removed.count(), 2);
        QCOMPARE(removed[1][1].toInt(), 2);
        QCOMPARE(removed[1][2].toInt(), 2);
        QCOMPARE(column(model, 0), (QStringList{"0 mm^3", "0 mm^3"}));
    }

    void editOfALineChangesCells()
    {
        Patella p;
        SlicedContoursSegment *line = addLine(p.bone, 1.0f, {{0, 0}, {1, 0}});
        SlicedMetricsModel model(&p.object);
        const Tester tester(&model, Tester::FailureReportingMode::QtTest);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy headers(&model, &QAbstractItemModel::headerDataChanged);
        line->addPointBack({1, 2});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toModelIndex(), model.index(0, 0));
        QCOMPARE(changed[0][1].toModelIndex(), model.index(2, 2));
        QCOMPARE(cell(model, 0, 1), QString("3 mm"));
        // Another z with the same number of levels: the headers must be read anew.
        headers.clear();
        line->setZ(5.0f);
        QCOMPARE(headers.count(), 1);
        QCOMPARE(headers[0][0].value<Qt::Orientation>(), Qt::Vertical);
        QCOMPARE(rowHeaders(model)[0], QString("at z = 5 mm"));
    }

    void newFragmentsAndContoursAreColumns()
    {
        Patella p;
        SlicedMetricsModel model(&p.object);
        const Tester tester(&model, Tester::FailureReportingMode::QtTest);
        QSignalSpy inserted(&model, &QAbstractItemModel::columnsInserted);
        p.object.newFragment("third");
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted[0][1].toInt(), 3);
        p.object.newContour("second");
        QCOMPARE(model.columnCount(), 5);
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QString("second"));
        delete p.object.fragment(2);
        QCOMPARE(model.columnCount(), 4);
    }

    void closedSourceLeavesTheMessage()
    {
        Patella p;
        addLine(p.bone, 1.0f, {{0, 0}, {1, 0}});
        SlicedMetricsModel model(&p.object);
        ImageObject other;
        model.detachFrom(&other);
        QCOMPARE(model.rowCount(), 3);
        model.detachFrom(&p.object);
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.columnCount(), 1);
        QCOMPARE(cell(model, 0, 0), QString("Sliced metrics cannot be computed for this image."));
        QCOMPARE(model.flags(model.index(0, 0)), Qt::NoItemFlags);
        p.bone->segment(0)->addPointBack({5, 5}); // no longer heard
        QCOMPARE(model.rowCount(), 1);
    }

    void deletedSourceLeavesTheMessage()
    {
        auto samples = std::make_unique<SparselySampledImageObject>();
        SlicedMetricsModel thickness(samples.get());
        samples.reset();
        QCOMPARE(thickness.rowCount(), 1);
        auto p = std::make_unique<Patella>();
        addLine(p->bone, 1.0f, {{0, 0}, {1, 0}});
        SlicedMetricsModel model(&p->object);
        p.reset();
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.columnCount(), 1);
        QCOMPARE(cell(model, 0, 0), QString("Sliced metrics cannot be computed for this image."));
    }

    // 4.5 x 5 at z = 0 and 1.5: each 22.5 * 1.5 = 33.75, together 67.5; corrected 75.9375.
    void numbersFollowTheLocale()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        Patella p;
        addRectangle(p.bone, p.surface, 0.0f, 4.5, 5);
        addRectangle(p.bone, p.surface, 1.5f, 4.5, 5);
        addLine(p.bone, 0.0f, {{0, 100}, {12345, 100}});
        const SlicedMetricsModel model(&p.object);
        QCOMPARE(cell(model, 2, 0), QString("67,5 mm^3"));
        QCOMPARE(cell(model, 3, 0), QString("75,9375 mm^3"));
        QCOMPARE(cell(model, 0, 1), QString("12.359 mm")); // 4.5 + 5 + 4.5 + 12345
        QCOMPARE(rowHeaders(model)[1], QString("at z = 1,5 mm"));
    }

    // A level whose z is no number is none; the walk over the levels ends.
    void zThatIsNoNumberIsNoLevel()
    {
        Patella p;
        addLine(p.bone, NAN, {{0, 0}, {1, 0}});
        const SlicedMetricsModel model(&p.object);
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(column(model, 1), (QStringList{"0 mm^2", "unavailable"}));
    }

    void modelTesterAcceptsAllSources()
    {
        Patella p;
        addRectangle(p.bone, p.surface, 0.0f, 2, 2);
        addRectangle(p.bone, p.surface, 1.0f, 2, 2);
        SlicedMetricsModel model(&p.object);
        const Tester tester(&model, Tester::FailureReportingMode::QtTest);
        p.bone->segment(0)->addPointFront({-5, -5});
        p.object.newContour("x");
        model.detachFrom(&p.object);
    }
};

QTEST_GUILESS_MAIN(SlicedMetricsModelTest)
#include "SlicedMetricsModelTest.moc"
