#include "serialization/dialogs/ListChoiceDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

ListChoiceDialog::ListChoiceDialog(const QString &title, const QString &labelText, const QStringList &entries,
                                   QWidget *parent)
    : QDialog(parent)
    , list(new QListWidget)
{
    setWindowTitle(title);
    setModal(true);
    auto *layout = new QVBoxLayout(this);
    if (!labelText.isEmpty()) {
        auto *label = new QLabel(labelText);
        label->setTextFormat(Qt::PlainText);
        layout->addWidget(label);
    }
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->addItems(entries);
    list->setCurrentRow(entries.isEmpty() ? -1 : 0);
    layout->addWidget(list);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(list, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
}

int ListChoiceDialog::chosenRow() const
{
    return list->currentRow();
}
