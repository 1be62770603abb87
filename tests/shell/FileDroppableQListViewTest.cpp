#include "serialization/dialogs/FileDroppableQListView.h"

#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>
#include <QUrl>

namespace {

class DropModel : public QStringListModel
{
public:
    bool answer = true;
    int drops = 0;
    int row = 0, column = 0;
    bool rootParent = false;
    Qt::DropAction action = Qt::IgnoreAction;

    bool dropMimeData(const QMimeData *, Qt::DropAction dropAction, int dropRow, int dropColumn,
                      const QModelIndex &parent) override
    {
        ++drops;
        action = dropAction;
        row = dropRow;
        column = dropColumn;
        rootParent = !parent.isValid();
        return answer;
    }
};

class OpenList : public FileDroppableQListView
{
public:
    using FileDroppableQListView::dragEnterEvent;
    using FileDroppableQListView::dragMoveEvent;
    using FileDroppableQListView::dropEvent;
};

} // namespace

class FileDroppableQListViewTest : public QObject
{
    Q_OBJECT

    QMimeData files, text;

private slots:
    void initTestCase()
    {
        files.setUrls({QUrl::fromLocalFile("/tmp/a.mhd")});
        text.setText("no file");
    }

    void enterAndMove_acceptInAnyCase_andCopyOnlyFiles()
    {
        struct Row
        {
            const QMimeData *data;
            Qt::DropActions possible;
            bool withModel;
            Qt::DropAction entered, moved;
        };
        const Row rows[] = {
            {&files, Qt::CopyAction | Qt::MoveAction, true, Qt::CopyAction, Qt::CopyAction},
            {&files, Qt::CopyAction, false, Qt::CopyAction, Qt::IgnoreAction},
            {&files, Qt::MoveAction, true, Qt::IgnoreAction, Qt::IgnoreAction},
            {&text, Qt::CopyAction, true, Qt::IgnoreAction, Qt::IgnoreAction},
        };
        for (const Row &row : rows) {
            OpenList list;
            DropModel model;
            if (row.withModel)
                list.setModel(&model);
            QDragEnterEvent enter(QPoint(5, 5), row.possible, row.data, Qt::LeftButton, Qt::NoModifier);
            enter.ignore();
            list.dragEnterEvent(&enter);
            QVERIFY(enter.isAccepted());
            QCOMPARE(enter.dropAction(), row.entered);
            QDragMoveEvent move(QPoint(5, 5), row.possible, row.data, Qt::LeftButton, Qt::NoModifier);
            move.ignore();
            list.dragMoveEvent(&move);
            QVERIFY(move.isAccepted());
            QCOMPARE(move.dropAction(), row.moved);
        }
    }

    void drop_goesToTheModelsRoot_andKeepsTheActionOnlyOnSuccess()
    {
        OpenList list;
        DropModel model;
        list.setModel(&model);
        for (const bool answer : {true, false}) {
            model.answer = answer;
            QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
            drop.setDropAction(Qt::CopyAction);
            drop.ignore();
            list.dropEvent(&drop);
            QVERIFY(drop.isAccepted());
            QCOMPARE(drop.dropAction(), answer ? Qt::CopyAction : Qt::IgnoreAction);
        }
        QCOMPARE(model.drops, 2);
        QCOMPARE(model.action, Qt::CopyAction);
        QCOMPARE(model.row, -1);
        QCOMPARE(model.column, -1);
        QVERIFY(model.rootParent);
    }

    void focus_isSignalled()
    {
        QWidget window;
        QWidget other(&window);
        other.setFocusPolicy(Qt::StrongFocus);
        FileDroppableQListView list(&window);
        QSignalSpy focused(&list, &FileDroppableQListView::focusIn);
        window.show();
        other.setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const int before = int(focused.count());
        list.setFocus();
        QTRY_COMPARE(int(focused.count()), before + 1);
    }
};

QTEST_MAIN(FileDroppableQListViewTest)
#include "FileDroppableQListViewTest.moc"
