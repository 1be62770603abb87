#include "shell/HelpViewer.h"

#include "shell/help/Help.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
constexpr int defaultWidth = 240;
}

HelpViewer::HelpViewer()
    : page(new QTextEdit(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    page->setReadOnly(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(page);

    connect(Help::instance(), &Help::textChanged, this, &HelpViewer::setText);
    setWindowTitle(tr("Help - %1").arg(QCoreApplication::applicationName()));
    setText(Help::instance()->currentText());

    // A strip along the right edge of the screen unless the user has put it elsewhere.
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QRect available = screen != nullptr ? screen->availableGeometry() : QRect();
    QSettings settings;
    settings.beginGroup("HelpWindow");
    move(settings.value("Position", QPoint(available.width() - defaultWidth, available.top())).toPoint());
    resize(settings.value("Size", QSize(defaultWidth, available.height())).toSize());
}

HelpViewer::~HelpViewer()
{
    QSettings settings;
    settings.beginGroup("HelpWindow");
    settings.setValue("Position", pos());
    settings.setValue("Size", size());
}

void HelpViewer::setText(const QString &html)
{
    page->setHtml(html);
}
