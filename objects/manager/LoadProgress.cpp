#include "objects/manager/LoadProgress.h"

#include "Common/Progress.h"

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QProgressDialog>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <system_error>

namespace {

constexpr qint64 patienceMs = 1000; // shorter loads show nothing
constexpr qint64 repaintMs = 50;    // between two passes over the events
constexpr int longestPassMs = 20;
constexpr int nameWidth = 360; // pixels
constexpr int stepParts = 100; // of a step of the dialog's bar

qint64 steadyMs()
{
    using std::chrono::milliseconds;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<milliseconds>(now).count();
}

LoadProgress::Clock clockMs = steadyMs;

// Passes the progress of one thread on to another one.
class ProgressRelay : public MERV::ProgressListener
{
public:
    explicit ProgressRelay(std::atomic<double> &fraction)
        : reached(fraction)
    {}
    void progressed(double fraction) override { reached = fraction; }

private:
    std::atomic<double> &reached;
};

// The dialog of the command that loads, if it has one.
QProgressDialog *dialogOfCommand()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *dialog = qobject_cast<QProgressDialog *>(widget);
        if (dialog != nullptr && !dialog->wasCanceled())
            return dialog;
    }
    return nullptr;
}

void showName(QProgressDialog &dialog, const QString &name)
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setText(label->fontMetrics().elidedText(name, Qt::ElideMiddle, nameWidth));
    dialog.setLabel(label);
}

// It takes no input: there is nothing to cancel, and the focus stays where it is.
QProgressDialog *newDialog(const QString &name)
{
    auto *dialog = new QProgressDialog(QString(), QString(), 0, 1, QApplication::activeWindow());
    dialog->setWindowTitle(QCoreApplication::applicationName());
    dialog->setAttribute(Qt::WA_ShowWithoutActivating);
    dialog->setMinimumWidth(nameWidth + 40);
    showName(*dialog, name);
    return dialog;
}

} // namespace

class LoadProgress::Display : public MERV::ProgressListener
{
public:
    explicit Display(const QString &shownName)
        : name(shownName)
        , startedMs(clockMs())
    {
        current = this;
    }
    ~Display() override
    {
        close();
        current = nullptr;
    }
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    void setName(const QString &newName)
    {
        name = newName;
        if (own)
            showName(*own, name);
    }

    void progressed(double fraction) override
    {
        const qint64 nowMs = clockMs();
        if (nowMs - startedMs < patienceMs)
            return;
        if (!bar)
            open();
        else if (nowMs - handledMs < repaintMs)
            return;
        if (bar)
            bar->setValue(static_cast<int>((step + fraction) * stepParts));
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, longestPassMs);
        handledMs = clockMs();
    }
    void paused() override { close(); }
    void resumed() override { startedMs = clockMs(); }

    static Display *current; // null when nothing is being loaded

private:
    void open()
    {
        QProgressDialog *dialog = dialogOfCommand();
        if (dialog == nullptr)
            dialog = own = newDialog(name);
        // Through the dialog itself, a new value may handle all events, those of the user among them.
        bar = dialog->findChild<QProgressBar *>();
        if (bar) {
            lowest = bar->minimum();
            highest = bar->maximum();
            step = std::max(lowest, bar->value()); // below the lowest one before the first
            bar->setRange(lowest * stepParts, highest * stepParts);
        }
        dialog->show();
    }

    // Leaves the dialog of the command as it was, but for being seen.
    void close()
    {
        if (bar && !own) {
            bar->setRange(lowest, highest);
            bar->setValue(step);
        }
        bar.clear();
        delete own;
    }

    QString name;
    qint64 startedMs;
    qint64 handledMs = 0;
    QPointer<QProgressDialog> own;
    QPointer<QProgressBar> bar; // null before a second has passed
    int lowest = 0;
    int highest = 1;
    int step = 0;
};

LoadProgress::Display *LoadProgress::Display::current = nullptr;

LoadProgress::LoadProgress(const QString &name)
{
    if (Display::current != nullptr)
        Display::current->setName(name);
    else
        display = std::make_unique<Display>(name);
}

LoadProgress::~LoadProgress() = default;

bool LoadProgress::isActive()
{
    return Display::current != nullptr;
}

bool LoadProgress::runApart(const std::function<bool()> &work)
{
    constexpr std::chrono::milliseconds pollInterval(20);
    constexpr double parts = 1000;
    std::atomic<double> reached{0.0};
    std::future<bool> result;
    try {
        result = std::async(std::launch::async, [&] {
            const ProgressRelay relay(reached);
            return work();
        });
    } catch (const std::system_error &) {
        return work(); // the system gives no more threads
    }
    while (result.wait_for(pollInterval) != std::future_status::ready)
        MERV::reportProgress(static_cast<std::uint64_t>(parts * reached), static_cast<std::uint64_t>(parts));
    return result.get();
}

void LoadProgress::setClock(Clock newClock)
{
    clockMs = newClock != nullptr ? newClock : steadyMs;
}
