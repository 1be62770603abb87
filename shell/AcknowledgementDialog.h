#pragma once

#include <QDialog>

class QComboBox;
class QTextBrowser;

// Tells, in a language of the user's choice, how to mention the program in a publication.
class AcknowledgementDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AcknowledgementDialog(QWidget *parent);

public slots:
    // Shows the remark in the language of the combo box's item.
    void showMessage(int index);

private:
    QTextBrowser *browser; // child; keeps the documents of all earlier calls
    QComboBox *languages;  // child; item data are the language codes
};
