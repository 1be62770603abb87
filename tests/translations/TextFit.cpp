#include "tests/translations/TextFit.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTableView>
#include <QToolBar>
#include <QTreeView>

namespace {

class Inspection
{
public:
    explicit Inspection(const QWidget &inspected)
        : window(inspected)
        , isFileDialog(qobject_cast<const QFileDialog *>(&inspected) != nullptr)
    {}

    QStringList run()
    {
        each<QLabel>(&Inspection::checkLabel);
        each<QAbstractButton>(&Inspection::checkButton);
        each<QGroupBox>(&Inspection::checkGroupBox);
        each<QMenuBar>(&Inspection::checkMenuBar);
        each<QToolBar>(&Inspection::checkToolBar);
        if (isFileDialog)
            return faults;
        each<QComboBox>(&Inspection::checkComboBox);
        each<QLineEdit>(&Inspection::checkLineEdit);
        each<QTabBar>(&Inspection::checkTabBar);
        each<QHeaderView>(&Inspection::checkHeader);
        each<QTreeView>(&Inspection::checkTree);
        each<QTableView>(&Inspection::checkTable);
        return faults;
    }

private:
    template <class Widget>
    void each(void (Inspection::*check)(const Widget &))
    {
        for (const Widget *widget : window.findChildren<Widget *>())
            if (widget->isVisible() && widget->window() == &window)
                (this->*check)(*widget);
    }

    void need(const char *what, const QString &text, const QSize &needed, const QSize &given)
    {
        if (needed.width() > given.width() || needed.height() > given.height())
            faults << QString("%1 \"%2\" needs %3 x %4, has %5 x %6")
                          .arg(what, text)
                          .arg(needed.width())
                          .arg(needed.height())
                          .arg(given.width())
                          .arg(given.height());
    }

    static int advance(const QWidget &widget, const QString &text)
    {
        return widget.fontMetrics().size(Qt::TextShowMnemonic, text).width();
    }

    void checkLabel(const QLabel &label)
    {
        if (label.text().isEmpty())
            return;
        if (label.wordWrap())
            need("label", label.text(),
                 {label.minimumSizeHint().width(), label.heightForWidth(label.width())}, label.size());
        else
            need("label", label.text(), label.sizeHint(), label.size());
    }

    void checkButton(const QAbstractButton &button)
    {
        if (button.text().isEmpty())
            return;
        need("button", button.text(), {advance(button, button.text()), 0}, button.size());
        need("button", button.text(), button.minimumSizeHint(), button.size());
    }

    void checkGroupBox(const QGroupBox &box)
    {
        need("group box", box.title(), {advance(box, box.title()), 0}, box.size());
    }

    // Entries without room go behind an arrow.
    void checkMenuBar(const QMenuBar &bar)
    {
        if (const auto *more = bar.findChild<QWidget *>("qt_menubar_ext_button"); more && more->isVisible())
            faults << "the menu bar is too narrow for its menus";
        for (QAction *action : bar.actions())
            need("menu", action->text(), {advance(bar, action->text()), bar.fontMetrics().height()},
                 bar.actionGeometry(action).intersected(bar.rect()).size());
    }

    void checkToolBar(const QToolBar &bar)
    {
        if (const auto *more = bar.findChild<QWidget *>("qt_toolbar_ext_button"); more && more->isVisible())
            faults << "a tool bar is too narrow for its buttons";
    }

    void checkComboBox(const QComboBox &box)
    {
        QStyleOptionComboBox option;
        option.initFrom(&box);
        option.editable = box.isEditable();
        const QRect field =
            box.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box);
        for (int i = 0; i < box.count(); ++i)
            need("entry of a combo box", box.itemText(i), {advance(box, box.itemText(i)), 0}, field.size());
    }

    void checkLineEdit(const QLineEdit &edit)
    {
        constexpr int cursorRoom = 4;
        need("hint", edit.placeholderText(), {advance(edit, edit.placeholderText()) + cursorRoom, 0},
             edit.contentsRect().size());
    }

    // Tabs without room are reached by arrow buttons.
    void checkTabBar(const QTabBar &bar)
    {
        for (const QAbstractButton *arrow : bar.findChildren<QAbstractButton *>())
            if (arrow->isVisible())
                faults << "a tab bar is too narrow for its tabs";
        const bool upright = bar.shape() == QTabBar::RoundedWest || bar.shape() == QTabBar::RoundedEast;
        for (int i = 0; i < bar.count(); ++i) {
            const QSize place = bar.tabRect(i).intersected(bar.rect()).size();
            need("tab", bar.tabText(i), {advance(bar, bar.tabText(i)), bar.fontMetrics().height()},
                 upright ? place.transposed() : place);
        }
    }

    void checkHeader(const QHeaderView &header)
    {
        if (header.model() == nullptr)
            return;
        const int margin = header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header);
        for (int i = 0; i < header.count(); ++i) {
            const QString text = header.model()->headerData(i, header.orientation()).toString();
            if (text.isEmpty() || header.isSectionHidden(i) || hasFixedWidth(*header.parentWidget(), i))
                continue;
            const bool lying = header.orientation() == Qt::Horizontal;
            const QSize size = lying ? QSize(header.sectionSize(i), header.height())
                                     : QSize(header.width(), header.sectionSize(i));
            need("header", text,
                 {advance(header, text) + 2 * margin, header.fontMetrics().height() + (lying ? margin : 0)},
                 size);
        }
    }

    // The columns of names and of marks in the tree of a viewer have the same width in every language.
    static bool hasFixedWidth(const QWidget &view, int column)
    {
        return view.inherits("EnhancedQTreeView") && column <= 1;
    }

    void checkCell(const QAbstractItemView &view, const QModelIndex &index)
    {
        const QRect place = view.visualRect(index);
        const QString text = index.data().toString();
        const bool isToldInFull = index.data(Qt::ToolTipRole).toString() == text;
        if (place.isEmpty() || view.isPersistentEditorOpen(index) || isToldInFull ||
            hasFixedWidth(view, index.column()))
            return;
        need("cell", text, {advance(view, text), 0}, place.size());
    }

    void checkTree(const QTreeView &tree)
    {
        for (QModelIndex row = tree.indexAt(QPoint(1, 1)); row.isValid(); row = tree.indexBelow(row))
            for (int column = 0; column < tree.model()->columnCount(row.parent()); ++column)
                checkCell(tree, row.siblingAtColumn(column));
    }

    void checkTable(const QTableView &table)
    {
        for (int row = 0; row < table.model()->rowCount(); ++row)
            for (int column = 0; column < table.model()->columnCount(); ++column)
                checkCell(table, table.model()->index(row, column));
    }

    const QWidget &window;
    bool isFileDialog;
    QStringList faults;
};

} // namespace

QStringList cutOffTexts(const QWidget &window)
{
    return Inspection(window).run();
}

QStringList cutOffEntries(const QMenu &menu)
{
    QStringList faults;
    if (!menu.screen()->availableGeometry().contains(menu.geometry()))
        faults << "the menu \"" + menu.title() + "\" is larger than the screen";
    for (QAction *action : menu.actions()) {
        const QSize needed =
            menu.fontMetrics().size(Qt::TextShowMnemonic, action->text()) +
            menu.fontMetrics().size(0, action->shortcut().toString(QKeySequence::NativeText));
        const QSize given = menu.actionGeometry(action).intersected(menu.rect()).size();
        if (!action->isSeparator() && needed.width() > given.width())
            faults << QString("menu entry \"%1\" needs %2, has %3")
                          .arg(action->text())
                          .arg(needed.width())
                          .arg(given.width());
    }
    return faults;
}
