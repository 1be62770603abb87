#include "demo/pilot/ScreenLocator.h"

#include "objects/manager/ImageManager.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "shell/MainWindow.h"
#include "view/EnhancedQCheckBox.h"
#include "view/EnhancedQTreeView.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolButton>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

template <class Window>
Window *visibleWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *window = qobject_cast<Window *>(widget); window != nullptr && window->isVisible())
            return window;
    return nullptr;
}

QPoint centreOf(const QWidget &widget)
{
    return widget.mapToGlobal(widget.rect().center());
}

QString plain(QString text)
{
    return text.remove('&');
}

QWidget *treeEditor(int row, int child, int column)
{
    const auto *viewer = visibleWindow<QStackedSliceViewer>();
    if (viewer == nullptr)
        return nullptr;
    auto *tree = viewer->findChild<EnhancedQTreeView *>();
    QModelIndex parent;
    if (child >= 0) {
        parent = tree->model()->index(row, 0);
        row = child;
    }
    const QModelIndex index = tree->model()->index(row, column, parent);
    return tree->indexWidget(index);
}

} // namespace

namespace ScreenLocator {

void pause(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void fail(const QString &what)
{
    throw std::runtime_error(("waited in vain: " + what).toStdString());
}

void waitUntil(const QString &what, const std::function<bool()> &question, int milliseconds)
{
    waitFor(
        what, [&]() -> std::optional<bool> { return question() ? std::optional<bool>(true) : std::nullopt; },
        milliseconds);
}

std::optional<QPoint> menuTitle(const QString &text)
{
    const auto *window = visibleWindow<MainWindow>();
    if (window == nullptr)
        return {};
    const QMenuBar *bar = window->menuBar();
    for (QAction *action : bar->actions())
        if (plain(action->text()) == text)
            return bar->mapToGlobal(bar->actionGeometry(action).center());
    return {};
}

std::optional<QPoint> menuEntry(const QString &text)
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *menu = qobject_cast<QMenu *>(widget);
        if (menu == nullptr || !menu->isVisible())
            continue;
        for (QAction *action : menu->actions())
            if (plain(action->text()) == text && action->isEnabled())
                return menu->mapToGlobal(menu->actionGeometry(action).center());
    }
    return {};
}

std::optional<QPoint> button(const QString &windowTitle, const QString &text)
{
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->windowTitle() != windowTitle)
            continue;
        for (const QAbstractButton *candidate : window->findChildren<QAbstractButton *>())
            if (plain(candidate->text()) == text && candidate->isVisible() && candidate->isEnabled())
                return centreOf(*candidate);
    }
    return {};
}

bool dialogIsOpen(const QString &title)
{
    const auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    return dialog != nullptr && dialog->isVisible() && dialog->isActiveWindow() &&
           dialog->windowTitle() == title;
}

std::optional<QPoint> imageRow(int row)
{
    const auto *window = visibleWindow<MainWindow>();
    if (window == nullptr)
        return {};
    const auto *list = window->findChild<FileDroppableQListView *>();
    const QRect area = list->visualRect(list->model()->index(row, 0));
    if (!area.isValid())
        return {};
    return list->viewport()->mapToGlobal(area.intersected(list->viewport()->rect()).center());
}

int imageCount()
{
    const auto *window = visibleWindow<MainWindow>();
    return window == nullptr ? 0 : window->imageManager()->imageCount();
}

std::optional<quintptr> windowId(const QString &title)
{
    for (const QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle() == title)
            return window->winId();
    return {};
}

std::optional<QRect> sliceView()
{
    const auto *viewer = visibleWindow<QStackedSliceViewer>();
    if (viewer == nullptr || viewer->stackedSliceView() == nullptr)
        return {};
    const QWidget *view = viewer->stackedSliceView();
    return QRect(view->mapToGlobal(QPoint(0, 0)), view->size());
}

std::optional<QPoint> treeCheckBox(int row, int child, int column)
{
    const auto *box = qobject_cast<EnhancedQCheckBox *>(treeEditor(row, child, column));
    if (box == nullptr || !box->isVisible())
        return {};
    return box->mapToGlobal(QPoint(8, box->height() / 2));
}

bool treeBoxIsChecked(int row, int child, int column)
{
    const auto *box = qobject_cast<EnhancedQCheckBox *>(treeEditor(row, child, column));
    return box != nullptr && box->isChecked();
}

QString coordinates()
{
    const auto *viewer = visibleWindow<QStackedSliceViewer>();
    if (viewer == nullptr)
        return {};
    for (const QLabel *label : viewer->findChild<QStatusBar *>()->findChildren<QLabel *>())
        if (label->text().startsWith("x = "))
            return label->text();
    return {};
}

} // namespace ScreenLocator
