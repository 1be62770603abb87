#include "objects/manager/ImageManager.h"

#include "tests/manager/Fakes.h"
#include "tests/support/PrivateSettings.h"

#include <QDataStream>
#include <QIcon>
#include <QItemSelectionModel>
#include <QListView>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

namespace {

QIcon plainIcon(Qt::GlobalColor colour)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(colour);
    return QIcon(pixmap);
}

QRgb centreOf(const QVariant &icon)
{
    return icon.value<QIcon>().pixmap(16, 16).toImage().pixel(8, 8);
}

// Counts every signal of the model by which a view could hear of a change.
struct ModelSpies
{
    explicit ModelSpies(ImageManager *manager)
        : layout(manager, &QAbstractItemModel::layoutChanged)
        , inserted(manager, &QAbstractItemModel::rowsInserted)
        , removed(manager, &QAbstractItemModel::rowsRemoved)
        , columns(manager, &QAbstractItemModel::columnsInserted)
        , data(manager, &QAbstractItemModel::dataChanged)
        , reset(manager, &QAbstractItemModel::modelReset)
        , header(manager, &QAbstractItemModel::headerDataChanged)
    {}
    qsizetype others() const
    {
        return inserted.count() + removed.count() + columns.count() + data.count() + reset.count() +
               header.count();
    }
    QSignalSpy layout, inserted, removed, columns, data, reset, header;
};

} // namespace

class ImageManagerModelTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private slots:
    void emptyManager_hasTheNameColumnAlone()
    {
        const ImageManager manager(nullptr);
        QCOMPARE(manager.imageCount(), 0);
        QCOMPARE(manager.rowCount(), 0);
        QCOMPARE(manager.columnCount(), 1);
        QCOMPARE(manager.image(0), nullptr);
        QCOMPARE(manager.image(-1), nullptr);
        QCOMPARE(manager.image(QModelIndex()), nullptr);
    }

    void manager_isAChildOfItsParent()
    {
        QObject window;
        const auto *manager = new ImageManager(&window);
        QCOMPARE(manager->parent(), &window);
    }

    void data_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("role");
        QTest::addColumn<QVariant>("expected");
        const QVariant alignment(0x0001 | 0x0080); // left, vertically centred
        const QVariant none;
        // Row 0: a volume with "Echo Time" 6.3; row 1: a volume without it; row 2: another object; row 3 is
        // gone.
        QTest::newRow("name") << 0 << 0 << int(Qt::DisplayRole) << QVariant("knee");
        QTest::newRow("name to edit") << 0 << 0 << int(Qt::EditRole) << QVariant("knee");
        QTest::newRow("tool tip") << 2 << 0 << int(Qt::ToolTipRole) << QVariant("fake");
        QTest::newRow("name of other") << 2 << 0 << int(Qt::DisplayRole) << QVariant("fake");
        QTest::newRow("status tip") << 0 << 0 << int(Qt::StatusTipRole) << none;
        QTest::newRow("check state") << 0 << 0 << int(Qt::CheckStateRole) << none;
        QTest::newRow("alignment") << 0 << 0 << int(Qt::TextAlignmentRole) << alignment;
        QTest::newRow("alignment of property") << 1 << 1 << int(Qt::TextAlignmentRole) << alignment;
        QTest::newRow("alignment of gone row") << 3 << 0 << int(Qt::TextAlignmentRole) << alignment;
        QTest::newRow("property") << 0 << 1 << int(Qt::DisplayRole) << QVariant("6.3");
        QTest::newRow("second property") << 0 << 2 << int(Qt::DisplayRole) << QVariant("Müller");
        QTest::newRow("missing property") << 1 << 1 << int(Qt::DisplayRole) << QVariant(QString(""));
        QTest::newRow("property to edit") << 0 << 1 << int(Qt::EditRole) << none;
        QTest::newRow("property tool tip") << 0 << 1 << int(Qt::ToolTipRole) << none;
        QTest::newRow("property icon") << 0 << 1 << int(Qt::DecorationRole) << none;
        QTest::newRow("property of other") << 2 << 1 << int(Qt::DisplayRole) << none;
        QTest::newRow("column beyond") << 0 << 3 << int(Qt::DisplayRole) << none;
        QTest::newRow("gone row") << 3 << 0 << int(Qt::DisplayRole) << none;
        QTest::newRow("gone row to edit") << 3 << 0 << int(Qt::EditRole) << none;
        QTest::newRow("property of gone row") << 3 << 1 << int(Qt::DisplayRole) << none;
    }

    void data()
    {
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(int, role);
        ImageManager manager(nullptr);
        manager.addImage(newVolume(2, 2, 2, {"Echo Time", "6.3", "Patient's Name", "Müller"}));
        manager.addImage(newVolume(2, 2, 1));
        manager.addImage(new FakeImage("fake"));
        manager.addImage(new FakeImage("to be closed"));
        manager.image(0)->setLabel("knee");
        const QModelIndex index = manager.index(row, column);
        QVERIFY(index.isValid());
        manager.closeImage(manager.index(3, 0));
        QTEST(manager.data(index, role), "expected");
        QCOMPARE(manager.data(QModelIndex(), role), QVariant());
    }

    void flags_followTheTable()
    {
        ImageManager manager(nullptr);
        manager.addImage(new FakeImage);
        manager.addImage(new FakeImage);
        const QModelIndex gone = manager.index(1, 0);
        manager.closeImage(gone);
        const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
        QCOMPARE(manager.flags(QModelIndex()), Qt::ItemFlags(Qt::ItemIsEnabled | Qt::ItemIsDropEnabled));
        QCOMPARE(manager.flags(manager.index(0, 0)), common | Qt::ItemIsEditable);
        QCOMPARE(manager.flags(gone), common);
    }

    void propertyColumns_areFlaggedEditableButCannotBeSet()
    {
        ImageManager manager(nullptr);
        manager.addImage(newVolume(1, 1, 1, {"Key", "value"}));
        const QModelIndex property = manager.index(0, 1);
        QVERIFY(manager.flags(property).testFlag(Qt::ItemIsEditable));
        QVERIFY(!manager.setData(property, "other"));
        QCOMPARE(manager.data(property).toString(), QString("value"));
    }

    void headers()
    {
        ImageManager manager(nullptr);
        manager.addImage(newVolume(1, 1, 1, {"Echo Time", "1"}));
        QCOMPARE(manager.headerData(0, Qt::Horizontal).toString(), QString("File Name"));
        QCOMPARE(manager.headerData(1, Qt::Horizontal).toString(), QString("Echo Time"));
        QCOMPARE(manager.headerData(2, Qt::Horizontal), QVariant());
        QCOMPARE(manager.headerData(-1, Qt::Horizontal), QVariant());
        QCOMPARE(manager.headerData(0, Qt::Vertical), QVariant());
        QCOMPARE(manager.headerData(0, Qt::Horizontal, Qt::EditRole), QVariant());
    }

    void model_isFlatAndCountsTheSameForAnyParent()
    {
        ImageManager manager(nullptr);
        manager.addImage(newVolume(1, 1, 1, {"Key", "value"}));
        const QModelIndex index = manager.index(0, 0);
        QVERIFY(index.isValid());
        QCOMPARE(index.internalPointer(), nullptr);
        QVERIFY(manager.index(0, 99).isValid()); // whatever the column
        QVERIFY(!manager.index(1, 0).isValid());
        QVERIFY(!manager.index(-1, 0).isValid());
        QVERIFY(!manager.index(0, 0, index).isValid());
        QVERIFY(!manager.parent(index).isValid());
        QCOMPARE(manager.rowCount(index), 1);
        QCOMPARE(manager.columnCount(index), 2);
    }

    void setData_renamesAndEmitsNothing()
    {
        ImageManager manager(nullptr);
        manager.addImage(new FakeImage("old"));
        const ModelSpies spies(&manager);
        const QModelIndex index = manager.index(0, 0);
        QVERIFY(!manager.setData(index, "new", Qt::DisplayRole));
        QVERIFY(!manager.setData(QModelIndex(), "new"));
        QCOMPARE(manager.image(0)->label(), QString("old"));
        QVERIFY(manager.setData(index, "new"));
        QCOMPARE(manager.image(0)->label(), QString("new"));
        QCOMPARE(spies.layout.count() + spies.others(), qsizetype(0));
    }

    void addAndClose_emitOneLayoutChangedAndNothingElse()
    {
        ImageManager manager(nullptr);
        const ModelSpies spies(&manager);
        manager.addImage(newVolume(1, 1, 1, {"Key", "value"}));
        QCOMPARE(spies.layout.count(), 1);
        manager.closeImage(manager.index(0, 0));
        QCOMPARE(spies.layout.count(), 2);
        QCOMPARE(spies.others(), qsizetype(0));
    }

    void addImage_ignoresNull()
    {
        ImageManager manager(nullptr);
        const ModelSpies spies(&manager);
        manager.addImage(nullptr);
        QCOMPARE(manager.imageCount(), 0);
        QCOMPARE(spies.layout.count(), 0);
    }

    void columns_areTheNamesInOrderOfFirstSight()
    {
        ImageManager manager(nullptr);
        manager.addImage(newVolume(1, 1, 1, {"m", "1", "b", "2"})); // a map: b comes first
        manager.addImage(newVolume(1, 1, 1, {"a", "3", "B", "4", "m", "5"}));
        QStringList names;
        for (int i = 1; i < manager.columnCount(); ++i)
            names << manager.headerData(i, Qt::Horizontal).toString();
        QCOMPARE(names, QStringList({"b", "m", "B", "a"})); // upper case is another name
        QCOMPARE(manager.data(manager.index(1, 2)).toString(), QString("5"));
    }

    void closingAnImage_keepsItsColumns()
    {
        ImageManager manager(nullptr);
        manager.addImage(newVolume(1, 1, 1, {"Key", "value"}));
        QCOMPARE(manager.columnCount(), 2);
        manager.closeImage(manager.index(0, 0));
        QCOMPARE(manager.columnCount(), 2);
        QCOMPARE(manager.rowCount(), 0);
    }

    void volumeWithoutVoxels_isListedWithEmptyProperties()
    {
        ImageManager manager(nullptr);
        manager.addImage(newVolume(1, 1, 1, {"Key", "value"}));
        manager.addImage(new MervImageObject(nullptr, QString(), nullptr));
        QCOMPARE(manager.data(manager.index(1, 1)), QVariant(QString("")));
    }

    void closeImage_ofAnInvalidIndex_doesNothing()
    {
        ImageManager manager(nullptr);
        manager.addImage(new FakeImage);
        manager.addImage(new FakeImage);
        const QModelIndex gone = manager.index(1, 0);
        manager.closeImage(gone);
        const ModelSpies spies(&manager);
        manager.closeImage(QModelIndex());
        manager.closeImage(gone);
        QCOMPARE(manager.imageCount(), 1);
        QCOMPARE(spies.layout.count(), 0);
    }

    void closeImage_deletesTheObjectAfterAllOthersLetGo()
    {
        ImageManager manager(nullptr);
        bool deleted = false;
        auto *derived = new FakeImage("derived");
        auto *source = new FakeImage("source");
        source->deleted = &deleted;
        derived->sourceList = {source};
        manager.addImage(derived);
        manager.addImage(source);
        int calls = 0;
        QObject holder;
        manager.addClosingListener(&holder, [&](ImageObject *closing) {
            ++calls;
            QCOMPARE(closing, source);
            QVERIFY(!deleted);                                   // still whole
            QCOMPARE(manager.imageCount(), 1);                   // and no longer listed
            QCOMPARE(derived->letGoOf, QStringList({"source"})); // objects first, views then
        });
        manager.closeImage(manager.index(1, 0));
        QCOMPARE(calls, 1);
        QVERIFY(deleted);
        QVERIFY(derived->sources().isEmpty());
    }

    // Views still show them at the end of the program, and may paint while they go.
    void end_letsGoOfTheManagersOwnImages()
    {
        auto manager = std::make_unique<ImageManager>(nullptr);
        bool deleted = false, derivedDeleted = false;
        auto derived = std::make_unique<FakeImage>("derived");
        derived->deleted = &derivedDeleted;
        auto *source = new FakeImage("source");
        source->deleted = &deleted;
        source->setParent(manager.get());
        derived->sourceList = {source};
        manager->addImage(derived.get());
        manager->addImage(source);
        int calls = 0;
        QObject holder;
        manager->addClosingListener(&holder, [&](ImageObject *closing) {
            ++calls;
            QCOMPARE(closing, source);
            QVERIFY(!deleted);
            QCOMPARE(derived->letGoOf, QStringList({"source"}));
        });
        manager.reset();
        QCOMPARE(calls, 1);
        QVERIFY(deleted);
        QVERIFY(!derivedDeleted);
        QVERIFY(derived->sources().isEmpty());
    }

    void closingListener_endsWithItsHolder()
    {
        ImageManager manager(nullptr);
        manager.addImage(new FakeImage);
        int calls = 0;
        auto holder = std::make_unique<QObject>();
        auto doomed = std::make_unique<QObject>();
        manager.addClosingListener(holder.get(), [&](ImageObject *) {
            ++calls;
            doomed.reset(); // a listener may delete another holder
        });
        manager.addClosingListener(doomed.get(), [&](ImageObject *) { calls += 100; });
        manager.closeImage(manager.index(0, 0));
        QCOMPARE(calls, 1);
        holder.reset();
        manager.addImage(new FakeImage);
        manager.closeImage(manager.index(0, 0));
        QCOMPARE(calls, 1);
    }

    void closeImage_movesPersistentIndexesWithTheirImages()
    {
        ImageManager manager(nullptr);
        for (const char *name : {"a", "b", "c"})
            manager.addImage(new FakeImage(name));
        const QPersistentModelIndex first = manager.index(0, 0);
        const QPersistentModelIndex closed = manager.index(1, 0);
        const QPersistentModelIndex last = manager.index(2, 0);
        manager.closeImage(manager.index(1, 0));
        QVERIFY(!closed.isValid());
        QCOMPARE(first.data().toString(), QString("a"));
        QCOMPARE(last.data().toString(), QString("c"));
        QCOMPARE(last.row(), 1);
    }

    void selectionInAView_staysOnItsImages()
    {
        ImageManager manager(nullptr);
        for (const char *name : {"a", "b", "c"})
            manager.addImage(new FakeImage(name));
        QListView view;
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        view.setModel(&manager);
        QItemSelectionModel *selection = view.selectionModel();
        selection->setCurrentIndex(manager.index(1, 0), QItemSelectionModel::Select);
        selection->select(manager.index(2, 0), QItemSelectionModel::Select);
        manager.closeImage(manager.index(1, 0));
        // "c" has moved up and is the one selected; nothing is current, so that a second command to close
        // does not take the next image.
        QCOMPARE(selection->selectedIndexes(), QModelIndexList({manager.index(1, 0)}));
        QVERIFY(!selection->currentIndex().isValid());
        manager.closeImage(selection->currentIndex());
        QCOMPARE(manager.imageCount(), 2);
        manager.addImage(new FakeImage("d"));
        QCOMPARE(selection->selectedIndexes(), QModelIndexList({manager.index(1, 0)}));
    }

    void icons_comeFromTheFirstProviderThatAccepts()
    {
        ImageManager manager(nullptr);
        FakeIconProvider red("a", plainIcon(Qt::red));
        FakeIconProvider green("a", plainIcon(Qt::green));
        FakeIconProvider blue("b", plainIcon(Qt::blue));
        manager.addIconProvider(&red);
        manager.addIconProvider(&green);
        manager.addIconProvider(&blue);
        manager.addImage(new FakeImage("a"));
        manager.addImage(new FakeImage("b"));
        QCOMPARE(centreOf(manager.data(manager.index(0, 0), Qt::DecorationRole)), qRgb(255, 0, 0));
        QCOMPARE(centreOf(manager.data(manager.index(1, 0), Qt::DecorationRole)), qRgb(0, 0, 255));
    }

    void providerOfAnotherKind_isIgnored()
    {
        class OtherProvider : public AbstractIconProvider
        {
        } other;
        ImageManager manager(nullptr);
        manager.addIconProvider(&other);
        manager.addIconProvider(nullptr);
        manager.addImage(new FakeImage);
        QVERIFY(!manager.data(manager.index(0, 0), Qt::DecorationRole).value<QIcon>().isNull());
    }

    void defaultIcon_isGreyWithTwoFrames()
    {
        ImageManager manager(nullptr);
        manager.addImage(new FakeImage);
        const auto icon = manager.data(manager.index(0, 0), Qt::DecorationRole).value<QIcon>();
        QCOMPARE(icon.availableSizes(), QList<QSize>({QSize(32, 32)}));
        const QImage picture = icon.pixmap(32, 32).toImage();
        const QRgb black = qRgb(0, 0, 0);
        const QRgb grey = QColor(Qt::gray).rgb();
        // A frame of "width" w from x is drawn at x and at x + w: 0 and 31, 2 and 29.
        for (const int frame : {0, 2, 29, 31}) {
            QCOMPARE(picture.pixel(frame, 15), black);
            QCOMPARE(picture.pixel(15, frame), black);
        }
        for (const int ground : {1, 3, 15, 28, 30}) {
            QCOMPARE(picture.pixel(ground, 15), grey);
            QCOMPARE(picture.pixel(15, ground), grey);
        }
        manager.addImage(new FakeImage);
        QCOMPARE(manager.data(manager.index(1, 0), Qt::DecorationRole).value<QIcon>().cacheKey(),
                 icon.cacheKey());
    }

    void dragData_areRowNumbersAsDecimalStrings()
    {
        ImageManager manager(nullptr);
        for (int i = 0; i < 12; ++i)
            manager.addImage(new FakeImage);
        QCOMPARE(manager.mimeTypes(), QStringList({"application/tevora.imageObjectIndex"}));
        const std::unique_ptr<QMimeData> data(
            manager.mimeData({manager.index(11, 0), QModelIndex(), manager.index(2, 0)}));
        QCOMPARE(data->formats(), manager.mimeTypes());
        // A QString in a data stream: byte count as 32 bits, then UTF-16, both big-endian.
        const QByteArray expected("\0\0\0\4\0001\0001\0\0\0\2\0002", 14);
        QCOMPARE(data->data("application/tevora.imageObjectIndex"), expected);
        const std::unique_ptr<QMimeData> empty(manager.mimeData({}));
        QCOMPARE(empty->data("application/tevora.imageObjectIndex"), QByteArray());
    }
};

QTEST_MAIN(ImageManagerModelTest)
#include "ImageManagerModelTest.moc"
