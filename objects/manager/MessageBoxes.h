#pragma once

#include <QMessageBox>

class QString;

// Message boxes of the image manager: without parent, titled with the application's name, and in plain text,
// since they carry names and paths of the user.
namespace MessageBoxes {

void setUp(QMessageBox &box, QMessageBox::Icon icon, const QString &text, const QString &informativeText);
// Shows a box with the one button Ok until it is answered.
void show(QMessageBox::Icon icon, const QString &text, const QString &informativeText = QString());

} // namespace MessageBoxes
