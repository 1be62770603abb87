#include "objects/manager/MessageBoxes.h"

#include <QCoreApplication>
#include <QLabel>
#include <QString>

void MessageBoxes::setUp(QMessageBox &box, QMessageBox::Icon icon, const QString &text,
                         const QString &informativeText)
{
    box.setIcon(icon);
    box.setWindowTitle(QCoreApplication::applicationName());
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setInformativeText(informativeText);
    // The format above concerns the main text alone.
    if (auto *label = box.findChild<QLabel *>("qt_msgbox_informativelabel"))
        label->setTextFormat(Qt::PlainText);
}

void MessageBoxes::show(QMessageBox::Icon icon, const QString &text, const QString &informativeText)
{
    QMessageBox box;
    setUp(box, icon, text, informativeText);
    box.setStandardButtons(QMessageBox::Ok);
    box.exec();
}
