#include "shell/TevoraSplashScreen.h"

#include "resources/Resources.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPen>

TevoraSplashScreen::TevoraSplashScreen()
    : QSplashScreen(Resources::picture(":/images/splashscreen.png", qGuiApp->devicePixelRatio()))
{
    setWindowFlags(windowFlags() | Qt::WindowStaysOnTopHint);
}

void TevoraSplashScreen::setProgress(float newProgress, const QString &newMessage)
{
    progress = newProgress;
    if (!newMessage.isNull())
        message = newMessage;
    repaint();
}

void TevoraSplashScreen::drawContents(QPainter *painter)
{
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter->fillRect(16, 290, 610, 40, Qt::white);
    painter->setPen(QPen(QColor(130, 130, 130), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(18, 310, 606, 15);
    painter->fillRect(20, 312, int(602.0 * double(progress)), 11, QColor(0, 129, 158));
    if (!font)
        font = std::make_unique<QFont>("DIN 1451 Mittelschrift", -1, -1, false);
    painter->setFont(*font);
    painter->drawText(17, 300, message);
}
