#include "view/EnhancedQItemDelegate.h"

#include "view/EnhancedQCheckBox.h"
#include "view/EnhancedQComboBox.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyle>

namespace {

bool isBoolean(const QVariant &value)
{
    return value.typeId() == QMetaType::Bool;
}

bool isStringList(const QVariant &value)
{
    return value.typeId() == QMetaType::QStringList;
}

// Fills the box and makes the present text current without committing that as an edit.
void fillComboBox(EnhancedQComboBox &box, const QStringList &texts, const QString &current)
{
    const QSignalBlocker silent(box);
    for (const QString &text : texts)
        if (box.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0)
            box.addItem(text);
    if (texts.contains(current))
        box.setCurrentIndex(box.findText(current, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

} // namespace

QWidget *EnhancedQItemDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                             const QModelIndex &index) const
{
    if (!index.flags().testFlag(Qt::ItemIsEditable))
        return nullptr;
    auto *self =
        const_cast<EnhancedQItemDelegate *>(this); // the filter and the signals need a non-const object
    const QVariant value = index.data(Qt::EditRole);
    QWidget *editor = nullptr;
    if (isBoolean(value)) {
        auto *box = new EnhancedQCheckBox(parent);
        connect(box, qOverload<QWidget *>(&EnhancedQCheckBox::stateChanged), self,
                &EnhancedQItemDelegate::commitData);
        editor = box;
    } else if (isStringList(value)) {
        auto *box = new EnhancedQComboBox(parent);
        connect(box, qOverload<QWidget *>(&EnhancedQComboBox::currentIndexChanged), self,
                &EnhancedQItemDelegate::commitData);
        editor = box;
    } else {
        editor = QItemDelegate::createEditor(parent, option, index);
        if (auto *line = qobject_cast<QLineEdit *>(editor)) {
            line->setFrame(false); // keeps a tree with persistent editors calm
            if (!value.isValid())
                line->setMaximumWidth(line->fontMetrics().height()); // nothing to show: no wide column
        }
    }
    if (editor != nullptr) {
        editor->setAutoFillBackground(true); // hides the mark that is painted below it
        editor->setBackgroundRole(QPalette::Base);
        editor->installEventFilter(self);
    }
    return editor;
}

void EnhancedQItemDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *box = qobject_cast<EnhancedQComboBox *>(editor)) {
        const QString current = index.data(Qt::DisplayRole).toString();
        fillComboBox(*box, index.data(Qt::EditRole).toStringList(), current);
    } else if (auto *check = qobject_cast<EnhancedQCheckBox *>(editor)) {
        const QSignalBlocker silent(check);
        check->setChecked(index.data(Qt::EditRole).toBool());
    } else {
        QItemDelegate::setEditorData(editor, index);
    }
}

void EnhancedQItemDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                         const QModelIndex &index) const
{
    const QVariant value = index.data(Qt::EditRole);
    auto *check = qobject_cast<EnhancedQCheckBox *>(editor);
    auto *box = qobject_cast<EnhancedQComboBox *>(editor);
    if (isBoolean(value) && check != nullptr)
        model->setData(index, check->checkState() == Qt::Checked, Qt::EditRole);
    else if (isStringList(value) && box != nullptr)
        model->setData(index, box->currentText(), Qt::EditRole);
    else
        QItemDelegate::setModelData(editor, model, index);
}

void EnhancedQItemDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                 const QModelIndex &index) const
{
    if (qobject_cast<EnhancedQCheckBox *>(editor) != nullptr)
        editor->setGeometry(option.rect);
    else
        QItemDelegate::updateEditorGeometry(editor, option, index);
}

void EnhancedQItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const
{
    const QVariant value = index.data(Qt::DisplayRole);
    if (!isBoolean(value)) {
        QItemDelegate::paint(painter, option, index);
        return;
    }
    if (option.state.testFlag(QStyle::State_Selected))
        painter->fillRect(option.rect, option.palette.highlight());
    const QStyle *style = option.widget != nullptr ? option.widget->style() : QApplication::style();
    const QSize size(style->pixelMetric(QStyle::PM_IndicatorWidth, &option, option.widget),
                     style->pixelMetric(QStyle::PM_IndicatorHeight, &option, option.widget));
    const QRect box =
        QStyle::alignedRect(option.direction, Qt::AlignLeft | Qt::AlignVCenter, size, option.rect);
    drawCheck(painter, option, box, value.toBool() ? Qt::Checked : Qt::Unchecked);
}
