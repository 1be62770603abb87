#include "shell/HelpViewer.h"

#include "shell/help/Help.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTextDocument>
#include <QTextEdit>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int defaultWidth = 240;

// The pages say what their words are (class "label": a text of the program, "key", "mouse"), this how they
// look.
constexpr const char *pageStyle = "h2 { font-size: large; } h3 { font-size: medium; }"
                                  "ol, ul { margin-left: 18px; -qt-list-indent: 0; }"
                                  "li { margin-bottom: 3px; }";

} // namespace

HelpViewer::HelpViewer()
    : page(new QTextEdit(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    page->setReadOnly(true);
    page->document()->setDefaultStyleSheet(pageStyle);
    // Pictures lie beside the pages.
    page->document()->setBaseUrl(QUrl::fromLocalFile(Help::instance()->pageDirectory().absolutePath() + "/"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0); // all of the strip for the page
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
