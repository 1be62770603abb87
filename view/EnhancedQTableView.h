#pragma once

#include <QTableView>

// A table whose selection can be copied as text.
class EnhancedQTableView : public QTableView
{
    Q_OBJECT

public:
    explicit EnhancedQTableView(QWidget *parent = nullptr)
        : QTableView(parent)
    {}

public slots:
    // Puts the first range of the selection on the clipboard: a line of column headers, each behind a tab,
    // ended by CR LF, then the rows, each its row header and the cells behind tabs, separated by a lone CR.
    // Nulls become blanks. Does nothing without a selection.
    void copySelectionToClipboard();
};
