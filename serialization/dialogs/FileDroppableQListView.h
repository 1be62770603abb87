#pragma once

#include <QListView>

// A list that takes files dropped from outside: the drop goes to its model's dropMimeData() as a copy.
class FileDroppableQListView : public QListView
{
    Q_OBJECT

public:
    explicit FileDroppableQListView(QWidget *parent = nullptr)
        : QListView(parent)
    {}

signals:
    void focusIn(); // after the list got the keyboard focus

protected:
    // Both accept the event in any case; the drop action tells whether a drop would do something.
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
};
