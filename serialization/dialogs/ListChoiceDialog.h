#pragma once

#include <QDialog>
#include <QStringList>

class QListWidget;

// A modal question with one list to choose one entry from, OK and Cancel. The first entry is chosen at the
// start. GUI thread.
class ListChoiceDialog : public QDialog
{
    Q_OBJECT

public:
    // An empty label text makes no label.
    ListChoiceDialog(const QString &title, const QString &labelText, const QStringList &entries,
                     QWidget *parent = nullptr);

    // Row of the chosen entry, from 0; -1 when none is chosen.
    int chosenRow() const;

private:
    QListWidget *list;
};
