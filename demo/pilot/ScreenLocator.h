#pragma once

#include <QCoreApplication>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <optional>
#include <utility>

class QWidget;

// Where things stand on the screen, asked from the pilot's thread: each question runs in the GUI thread and
// only looks. Positions are pixels of the screen.
namespace ScreenLocator {

// Counts how often questions and answers go over to the other thread. The toolkit's queue has put both sides
// in order already; a sanitizer of threads, which does not look into the toolkit, sees the order here.
inline std::atomic<unsigned> crossings{0};

// Part of what is handed to the toolkit's queue, behind all else: made whole before the other thread reads
// it, and at its end only when that has done so.
struct Crossing
{
    Crossing() = default;
    Crossing(const Crossing &) { ++crossings; }
    Crossing &operator=(const Crossing &) = delete;
    ~Crossing() { ++crossings; }
};

// Runs a question in the GUI thread and waits for the answer.
template <class Question>
auto ask(Question question)
{
    decltype(question()) answer{};
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [asked = &question, given = &answer, crossing = Crossing()] {
            ++crossings;
            *given = (*asked)();
            ++crossings;
        },
        Qt::BlockingQueuedConnection);
    ++crossings;
    return answer;
}

// Waits until the question has an answer; throws std::runtime_error with `what` after the time.
template <class Question>
auto waitFor(const QString &what, Question question, int milliseconds = 20000);

void waitUntil(const QString &what, const std::function<bool()> &question, int milliseconds = 20000);

// Centre of the title in the menu bar of the active main window, and of an entry of the open menu.
std::optional<QPoint> menuTitle(const QString &text);
std::optional<QPoint> menuEntry(const QString &text);
// Centre of a button with this text in a window or dialog of this title.
std::optional<QPoint> button(const QString &windowTitle, const QString &text);
// True when a dialog with this title is open and takes input.
bool dialogIsOpen(const QString &title);
// Centre of a row of the image list.
std::optional<QPoint> imageRow(int row);
int imageCount();
// The X window of the visible window with this title.
std::optional<quintptr> windowId(const QString &title);
// Area of the slice view in the newest viewer.
std::optional<QRect> sliceView();
// Centre of the check box in the composition's tree; child -1 means the row itself.
std::optional<QPoint> treeCheckBox(int row, int child, int column);
bool treeBoxIsChecked(int row, int child, int column);
// Centre of a cell of the composition's tree, in a top-level row.
std::optional<QPoint> treeCell(int row, int column);
// The box of filters and the line for the name in the open file dialog.
std::optional<QPoint> fileFilters();
std::optional<QPoint> fileName();
// Centre of the first entry that begins with the text, in the list that a box has opened.
std::optional<QPoint> openListEntry(const QString &text);
// The table in the window of metrics with this title, a line per row: header, tab, cells. Empty without one.
QStringList metricsTable(const QString &title);
// Titles of the open windows of metrics.
QStringList metricsWindows();
// Both ends of the line that a fragment (from 0) of the first contours has at this z, as the view shows them.
std::optional<std::pair<QPointF, QPointF>> lineEnds(int fragment, double zMm);
// Whether the measurements and rasters have caught up with what they are made from.
bool workersAreIdle();
// The text of the viewer's position label.
QString coordinates();

void pause(int milliseconds);
[[noreturn]] void fail(const QString &what);

} // namespace ScreenLocator

template <class Question>
auto ScreenLocator::waitFor(const QString &what, Question question, int milliseconds)
{
    for (int waited = 0; waited < milliseconds; waited += 20) {
        if (auto answer = ask(question))
            return *answer;
        pause(20);
    }
    fail(what);
}
