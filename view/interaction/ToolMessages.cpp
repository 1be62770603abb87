#include "view/interaction/ToolMessages.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPointer>

namespace {

// The parent may be deleted while the box is open, and the box with it.
int run(QWidget *parent, QMessageBox::Icon icon, const QString &text, QMessageBox::StandardButtons buttons)
{
    const QPointer<QMessageBox> box =
        new QMessageBox(icon, QCoreApplication::applicationName(), text, buttons, parent);
    box->setTextFormat(Qt::PlainText);
    const int answer = box->exec();
    delete box;
    return answer;
}

} // namespace

void ToolMessages::warn(QWidget *parent, const QString &text)
{
    run(parent, QMessageBox::Warning, text, QMessageBox::Ok);
}

void ToolMessages::inform(QWidget *parent, const QString &text)
{
    run(parent, QMessageBox::Information, text, QMessageBox::Ok);
}

bool ToolMessages::confirm(QWidget *parent, const QString &text)
{
    return run(parent, QMessageBox::Question, text, QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}
