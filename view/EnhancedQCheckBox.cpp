#include "view/EnhancedQCheckBox.h"

void EnhancedQCheckBox::checkStateSet()
{
    QCheckBox::checkStateSet();
    emit stateChanged(this);
}

void EnhancedQCheckBox::nextCheckState()
{
    QCheckBox::nextCheckState();
    emit stateChanged(this);
}
