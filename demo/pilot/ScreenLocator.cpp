#include "demo/pilot/ScreenLocator.h"

#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "meshes/RasterizerObject.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "objects/manager/ImageManager.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "shell/MainWindow.h"
#include "view/EnhancedQCheckBox.h"
#include "view/EnhancedQTreeView.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTableView>
#include <QToolButton>

#include <chrono>
#include <cmath>
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

template <class Object>
const Object *firstOf(const MainWindow *window)
{
    for (int row = 0; window != nullptr && row < window->imageManager()->imageCount(); ++row)
        if (const auto *object = qobject_cast<const Object *>(window->imageManager()->image(row)))
            return object;
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

std::optional<QPoint> treeCell(int row, int column)
{
    const auto *viewer = visibleWindow<QStackedSliceViewer>();
    if (viewer == nullptr)
        return {};
    const auto *tree = viewer->findChild<EnhancedQTreeView *>();
    const QRect area =
        tree->visualRect(tree->model()->index(row, column)).intersected(tree->viewport()->rect());
    if (!area.isValid())
        return {};
    return tree->viewport()->mapToGlobal(area.center());
}

namespace {

template <class Widget>
std::optional<QPoint> partOfFileDialog(const char *name)
{
    const QWidget *dialog = QApplication::activeModalWidget();
    const auto *part = dialog == nullptr ? nullptr : dialog->findChild<Widget *>(name);
    return part == nullptr || !part->isVisible() ? std::nullopt : std::optional(centreOf(*part));
}

} // namespace

std::optional<QPoint> fileFilters()
{
    return partOfFileDialog<QComboBox>("fileTypeCombo");
}

std::optional<QPoint> fileName()
{
    return partOfFileDialog<QLineEdit>("fileNameEdit");
}

std::optional<QPoint> openListEntry(const QString &text)
{
    const QWidget *popup = QApplication::activePopupWidget();
    const auto *list = popup == nullptr ? nullptr : popup->findChild<QAbstractItemView *>();
    for (int row = 0; list != nullptr && row < list->model()->rowCount(); ++row) {
        const QModelIndex index = list->model()->index(row, 0);
        const QRect area = list->visualRect(index).intersected(list->viewport()->rect());
        if (index.data().toString().startsWith(text) && area.isValid())
            return list->viewport()->mapToGlobal(area.center());
    }
    return {};
}

QStringList metricsWindows()
{
    QStringList titles;
    for (const QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && qobject_cast<const SlicedMetricsViewer *>(window) != nullptr)
            titles.append(window->windowTitle());
    return titles;
}

QStringList metricsTable(const QString &title)
{
    QStringList lines;
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->windowTitle() != title)
            continue;
        const QAbstractItemModel *model = window->findChild<QTableView *>()->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            QString line = model->headerData(row, Qt::Vertical).toString();
            for (int column = 0; column < model->columnCount(); ++column)
                line += '\t' + model->index(row, column).data().toString();
            lines.append(line);
        }
    }
    return lines;
}

std::optional<std::pair<QPointF, QPointF>> lineEnds(int fragmentIndex, double zMm)
{
    const auto *window = visibleWindow<MainWindow>();
    const auto *contours = firstOf<SlicedContoursObject>(window);
    const auto *fragment = contours == nullptr ? nullptr : contours->fragment(fragmentIndex);
    for (int i = 0; fragment != nullptr && i < fragment->segmentCount(); ++i) {
        const SlicedContoursSegment *line = fragment->segment(i);
        if (std::abs(double(line->z()) - zMm) < 0.01 && line->pointCount() > 1)
            return std::pair(line->point(0), line->point(line->pointCount() - 1));
    }
    return {};
}

bool workersAreIdle()
{
    const auto *window = visibleWindow<MainWindow>();
    for (int row = 0; window != nullptr && row < window->imageManager()->imageCount(); ++row) {
        const ImageObject *object = window->imageManager()->image(row);
        const auto *measurer = qobject_cast<const TriMeshDistanceMeasurer *>(object);
        const auto *raster = qobject_cast<const RasterizerObject *>(object);
        if ((measurer != nullptr && measurer->isPending()) || (raster != nullptr && raster->isStale()))
            return false;
    }
    return window != nullptr;
}

} // namespace ScreenLocator
