#pragma once

#include <QMessageBox>

// Runs a message box with an Ok button. Its text may hold names and paths of users: never taken for rich
// text.
void showPlainBox(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text);
