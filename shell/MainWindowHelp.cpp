#include "shell/MainWindow.h"

#include "shell/AcknowledgementDialog.h"
#include "shell/HelpViewer.h"

#include <QAction>
#include <QMessageBox>
#include <QPushButton>

void MainWindow::showHelp()
{
    if (helpViewer != nullptr) {
        delete helpViewer; // helpClosed() clears the pointer and the check mark
        return;
    }
    helpViewer = new HelpViewer;
    connect(helpViewer, &QObject::destroyed, this, &MainWindow::helpClosed);
    helpViewer->show();
    showHelpAction->setChecked(true);
}

// Called while the window is being destroyed: only its address may be used.
void MainWindow::helpClosed(QObject *object)
{
    if (object != helpViewer)
        return;
    helpViewer = nullptr;
    showHelpAction->setChecked(false);
}

void MainWindow::about()
{
    QMessageBox box(QMessageBox::Information, tr("About Tevora"),
                    QString("Tevora") + "\n" + "[Tevora Suite]" + "\n\n" + tr("by the Tevora developers") +
                        "\n\n" + tr("compiled using Qt version") + " " + "4.6.4" + " " + tr("as of") + " " +
                        "2011-06-23");
    box.setTextFormat(Qt::PlainText);
    box.addButton(tr("OK"), QMessageBox::AcceptRole);
    box.exec();
}

void MainWindow::showAcknowledgement()
{
    auto *dialog = new AcknowledgementDialog(this); // stays a child of the window
    dialog->exec();
}
