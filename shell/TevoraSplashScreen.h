#pragma once

#include <QFont>
#include <QSplashScreen>

#include <memory>

// The picture shown during start-up, with a progress bar and a line of text in its lower white area.
class TevoraSplashScreen : public QSplashScreen
{
    Q_OBJECT

public:
    TevoraSplashScreen();

    // progress from 0 to 1. A null text keeps the present one, an empty one blanks the line. Repaints at
    // once, so that the state is seen before the next step of the start-up runs.
    void setProgress(float progress, const QString &message);

protected:
    // Paints in logical pixels of the splash image, which is 640 x 480 of them on every screen.
    void drawContents(QPainter *painter) override;

private:
    QString message;
    float progress = 0.0f;
    std::unique_ptr<QFont> font; // made at the first paint
};
