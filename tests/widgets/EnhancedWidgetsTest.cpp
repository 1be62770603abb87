#include "view/EnhancedQCheckBox.h"
#include "view/EnhancedQComboBox.h"
#include "view/EnhancedQTableView.h"
#include "view/EnhancedQTreeView.h"

#include <QAbstractTableModel>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

#include <algorithm>

namespace {

// One row: a boolean, a list with a current text, a plain text, a boolean that may not be edited.
class MixedModel : public QAbstractTableModel
{
public:
    bool flag = false;
    QString choice = "two";
    QString text = "plain";
    int writes = 0;
    int lastRole = -1;

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 1; }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 4; }
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        const Qt::ItemFlags all = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
        return index.column() == 3 ? all : all | Qt::ItemIsEditable;
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        switch (index.column()) {
        case 0:
        case 3:
            return flag;
        case 1:
            return role == Qt::EditRole ? QVariant(QStringList{"one", "two", "three"}) : QVariant(choice);
        default:
            return text;
        }
    }
    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        ++writes;
        lastRole = role;
        if (index.column() == 0)
            flag = value.toBool();
        else if (index.column() == 1)
            choice = value.toString();
        else
            text = value.toString();
        emit dataChanged(index, index);
        return true;
    }
};

} // namespace

class EnhancedWidgetsTest : public QObject
{
    Q_OBJECT

private slots:
    void checkBox_emitsItselfOnProgrammaticAndUserChanges()
    {
        EnhancedQCheckBox box;
        QSignalSpy changed(&box, qOverload<QWidget *>(&EnhancedQCheckBox::stateChanged));
        box.setChecked(true);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).value<QWidget *>(), &box);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
        QVERIFY(!box.isChecked());
        QVERIFY(changed.count() >= 2);
        QCOMPARE(changed.last().at(0).value<QWidget *>(), &box);
    }

    void comboBox_emitsItselfWhenTheIndexChanges()
    {
        EnhancedQComboBox box;
        box.addItems({"a", "b"});
        QSignalSpy changed(&box, qOverload<QWidget *>(&EnhancedQComboBox::currentIndexChanged));
        box.setCurrentIndex(1);
        box.setCurrentIndex(1);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).value<QWidget *>(), &box);
    }

    void editorOfACellWithoutValue_doesNotWidenItsColumn()
    {
        QStandardItemModel model(1, 2);
        model.setItem(0, 1, new QStandardItem("a value"));
        EnhancedQTreeView tree;
        tree.setModel(&model);
        tree.setRootIsDecorated(false);
        tree.setIndentation(0);
        for (const int column : {0, 1})
            tree.openPersistentEditor(model.index(0, column));
        tree.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tree));
        tree.resizeColumnToContents(0);
        tree.resizeColumnToContents(1);
        const QWidget *without = tree.indexWidget(model.index(0, 0));
        const QWidget *with = tree.indexWidget(model.index(0, 1));
        QVERIFY(without);
        QVERIFY(without->sizeHint().width() > 60); // what a line asks for
        QVERIFY(tree.columnWidth(0) <=
                std::max(tree.header()->minimumSectionSize(), without->maximumWidth()));
        QVERIFY(tree.columnWidth(1) >= with->sizeHint().width());
    }

    void editors_followTheTypeOfTheEditValue()
    {
        MixedModel model;
        EnhancedQTreeView tree;
        tree.setModel(&model);
        for (int column = 0; column < 4; ++column)
            tree.openPersistentEditor(model.index(0, column));
        tree.resize(600, 200);
        tree.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tree));

        const auto at = [&](int column) { return tree.indexWidget(model.index(0, column)); };
        QVERIFY(qobject_cast<EnhancedQCheckBox *>(at(0)));
        QVERIFY(qobject_cast<EnhancedQComboBox *>(at(1)));
        QVERIFY(qobject_cast<QLineEdit *>(at(2)));
        QCOMPARE(at(3), nullptr);
        QCOMPARE(qobject_cast<EnhancedQComboBox *>(at(1))->currentText(), QString("two"));
        QCOMPARE(model.writes, 0);
    }

    void aChangeCommitsAtOnce_andARefreshCommitsNothing()
    {
        MixedModel model;
        EnhancedQTreeView tree;
        tree.setModel(&model);
        tree.openPersistentEditor(model.index(0, 0));
        tree.openPersistentEditor(model.index(0, 1));
        tree.resize(600, 200);
        tree.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tree));
        auto *check = qobject_cast<EnhancedQCheckBox *>(tree.indexWidget(model.index(0, 0)));
        auto *combo = qobject_cast<EnhancedQComboBox *>(tree.indexWidget(model.index(0, 1)));

        QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
        QVERIFY(model.flag);
        QCOMPARE(model.lastRole, int(Qt::EditRole));
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(model.choice, QString("three"));
        const int writes = model.writes;

        // The view asks the delegate to fill all editors again; nothing may be written back by that.
        emit model.dataChanged({}, {});
        QCOMPARE(model.writes, writes);
        QVERIFY(model.flag);
        QCOMPARE(combo->count(), 3);
    }

    void comboKeepsItsTextWhenTheDisplayTextIsNotInTheList()
    {
        MixedModel model;
        EnhancedQTreeView tree;
        tree.setModel(&model);
        tree.openPersistentEditor(model.index(0, 1));
        auto *combo = qobject_cast<EnhancedQComboBox *>(tree.indexWidget(model.index(0, 1)));
        QVERIFY(combo);
        model.choice = "unknown";
        emit model.dataChanged(model.index(0, 1), model.index(0, 1));
        QCOMPARE(combo->currentText(), QString("two"));
    }

    void copy_hasATabBeforeEachHeader_crLfBehindThem_andALoneCrBetweenRows()
    {
        QStandardItemModel model(2, 2);
        model.setHorizontalHeaderLabels({"A", "B"});
        model.setItem(0, 0, new QStandardItem("a"));
        model.setItem(0, 1, new QStandardItem("b"));
        model.setItem(1, 0, new QStandardItem("c"));
        model.setItem(1, 1, new QStandardItem(QString("d") + QChar(0) + "e"));
        EnhancedQTableView table;
        table.setModel(&model);
        table.selectAll();
        table.copySelectionToClipboard();
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("\tA\tB\r\n1\ta\tb\r2\tc\td e"));
    }

    void copy_takesTheFirstRangeOnly_andNothingWithoutASelection()
    {
        QStandardItemModel model(3, 1);
        for (int row = 0; row < 3; ++row)
            model.setItem(row, 0, new QStandardItem(QString::number(row)));
        EnhancedQTableView table;
        table.setModel(&model);
        QGuiApplication::clipboard()->setText("before");
        table.copySelectionToClipboard();
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("before"));
        auto *selection = table.selectionModel();
        selection->select(model.index(2, 0), QItemSelectionModel::Select);
        selection->select(model.index(0, 0), QItemSelectionModel::Select);
        table.copySelectionToClipboard();
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("\t1\r\n3\t2"));
    }
};

QTEST_MAIN(EnhancedWidgetsTest)
#include "EnhancedWidgetsTest.moc"
