#include "view/EnhancedQComboBox.h"

EnhancedQComboBox::EnhancedQComboBox(QWidget *parent)
    : QComboBox(parent)
{
    connect(this, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &EnhancedQComboBox::emitCurrentIndexChanged);
}

void EnhancedQComboBox::emitCurrentIndexChanged()
{
    emit currentIndexChanged(this);
}
