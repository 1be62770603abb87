// The interaction modes of a view: who they are, their cursors and help pages, and how one enters them.
#include "view/QStackedSliceView.h"

#include "resources/Resources.h"
#include "shell/help/Help.h"
#include "view/interaction/EraseMode.h"
#include "view/interaction/GuessMode.h"
#include "view/interaction/MoveMode.h"
#include "view/interaction/PerspectiveMode.h"
#include "view/interaction/TraceMode.h"
#include "view/interaction/WindowMode.h"
#include "view/interaction/ZoomMode.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <array>

namespace {

// What goes with entering a mode and with making it the base mode.
struct ModeDescription
{
    InteractMode mode;
    void (QStackedSliceView::*entered)();
    void (QStackedSliceView::*baseSet)();
    const char *helpTopic; // null: none
};

using View = QStackedSliceView;
constexpr std::array<ModeDescription, 9> modeTable{{
    {InteractMode::Perspective, &View::interactModePerspectiveEntered, &View::interactBaseModePerspectiveSet,
     "stacked_slice_view_perspective"},
    {InteractMode::Move, &View::interactModeMoveEntered, &View::interactBaseModeMoveSet,
     "stacked_slice_view_move"},
    {InteractMode::Zoom, &View::interactModeZoomEntered, &View::interactBaseModeZoomSet,
     "stacked_slice_view_zoom"},
    {InteractMode::Draw, &View::interactModeDrawEntered, &View::interactBaseModeDrawSet, nullptr},
    {InteractMode::Window, &View::interactModeWindowEntered, &View::interactBaseModeWindowSet,
     "stacked_slice_view_window"},
    {InteractMode::Trace, &View::interactModeTraceEntered, &View::interactBaseModeTraceSet,
     "stacked_slice_view_trace"},
    {InteractMode::Guess, &View::interactModeGuessEntered, &View::interactBaseModeGuessSet,
     "stacked_slice_view_guess"},
    {InteractMode::Erase, &View::interactModeEraseEntered, &View::interactBaseModeEraseSet,
     "stacked_slice_view_erase"},
    {InteractMode::Load, &View::interactModeLoadEntered, &View::interactBaseModeLoadSet,
     "stacked_slice_view_load"},
}};

const ModeDescription *descriptionOf(InteractMode mode)
{
    const auto found = std::find_if(modeTable.begin(), modeTable.end(),
                                    [mode](const ModeDescription &entry) { return entry.mode == mode; });
    return found != modeTable.end() ? &*found : nullptr;
}

// With its hot spot in the middle.
QCursor pictureCursor(const QString &fileName, double devicePixelRatio)
{
    QPixmap picture = Resources::picture(Resources::cursor(fileName), devicePixelRatio);
    // X11 shows cursors pixel by pixel, and has their hot spots in these.
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        picture.setDevicePixelRatio(1.0);
    return QCursor(picture, -1, -1);
}

QCursor cursorFor(InteractMode mode, const ViewCursors &cursors)
{
    switch (mode) {
    case InteractMode::Move:
        return cursors.hand;
    case InteractMode::Zoom:
        return cursors.magnifier;
    case InteractMode::Window:
        return cursors.window;
    case InteractMode::Draw:
        return Qt::CrossCursor;
    case InteractMode::Erase:
        return Qt::UpArrowCursor;
    default:
        return Qt::ArrowCursor;
    }
}

} // namespace

void QStackedSliceView::loadCursors(double devicePixelRatio)
{
    const auto load = [devicePixelRatio](const char *name) {
        return pictureCursor(QString::fromLatin1(name), devicePixelRatio);
    };
    modeCursors = {load("hand.png"),
                   load("fist.png"),
                   load("magnifier.png"),
                   load("magnifier-plus.png"),
                   load("magnifier-minus.png"),
                   load("window.png")};
    cursorRatio = devicePixelRatio;
}

// Another screen, or another resolution of this one. The toolkit makes the picture anew, empty.
void QStackedSliceView::screenChanged()
{
    const double ratio = screen()->devicePixelRatio();
    if (ratio == cursorRatio)
        return;
    loadCursors(ratio);
    setCursor(cursorFor(viewState.interactMode, modeCursors));
    requestRepaint();
}

void QStackedSliceView::makeModes()
{
    modes[InteractMode::Perspective] = std::make_unique<PerspectiveMode>(*this, viewState);
    modes[InteractMode::Move] = std::make_unique<MoveMode>(*this, viewState);
    modes[InteractMode::Zoom] = std::make_unique<ZoomMode>(*this, viewState);
    modes[InteractMode::Window] = std::make_unique<WindowMode>(*this, viewState);
    modes[InteractMode::Trace] = std::make_unique<TraceMode>(*this, viewState);
    modes[InteractMode::Guess] = std::make_unique<GuessMode>(*this, viewState);
    modes[InteractMode::Erase] = std::make_unique<EraseMode>(*this, viewState);
}

InteractionMode *QStackedSliceView::presentMode() const
{
    const auto found = modes.find(viewState.interactMode);
    return found != modes.end() ? found->second.get() : nullptr;
}

void QStackedSliceView::enterMode(InteractMode mode)
{
    if (mode == viewState.interactMode)
        return;
    if (InteractionMode *left = presentMode())
        left->leave();
    viewState.interactMode = mode;
    announceMode(mode);
    if (InteractionMode *entered = presentMode())
        entered->enter();
}

void QStackedSliceView::announceMode(InteractMode mode)
{
    const ModeDescription *description = descriptionOf(mode);
    if (description == nullptr)
        return;
    setCursor(cursorFor(mode, modeCursors));
    emit(this->*description->entered)();
    if (description->helpTopic != nullptr)
        Help::instance()->showTopic(QString::fromLatin1(description->helpTopic));
}

void QStackedSliceView::setBaseMode(InteractMode mode)
{
    if (viewState.interactBaseMode == mode || viewState.interactMode == mode)
        return;
    viewState.interactBaseMode = mode;
    if (const ModeDescription *description = descriptionOf(mode))
        emit(this->*description->baseSet)();
    enterMode(mode);
}

void QStackedSliceView::setInteractBaseModePerspective()
{
    setBaseMode(InteractMode::Perspective);
}

void QStackedSliceView::setInteractBaseModeMove()
{
    setBaseMode(InteractMode::Move);
}

void QStackedSliceView::setInteractBaseModeZoom()
{
    setBaseMode(InteractMode::Zoom);
}

void QStackedSliceView::setInteractBaseModeTrace()
{
    setBaseMode(InteractMode::Trace);
}

void QStackedSliceView::setInteractBaseModeDraw()
{
    setBaseMode(InteractMode::Draw);
}

void QStackedSliceView::setInteractBaseModeWindow()
{
    setBaseMode(InteractMode::Window);
}

void QStackedSliceView::setInteractBaseModeGuess()
{
    setBaseMode(InteractMode::Guess);
}

void QStackedSliceView::setInteractBaseModeErase()
{
    setBaseMode(InteractMode::Erase);
}

void QStackedSliceView::setInteractBaseModeLoad()
{
    setBaseMode(InteractMode::Load);
}
