#pragma once

#include <QCheckBox>

// A check box for tables: says who it is whenever its state is set, so that an edit commits at once.
class EnhancedQCheckBox : public QCheckBox
{
    Q_OBJECT

public:
    explicit EnhancedQCheckBox(QWidget *parent = nullptr)
        : QCheckBox(parent)
    {}

signals:
    // After each state set by the user or by the program; hides the signal of the base.
    void stateChanged(QWidget *widget);

protected:
    void checkStateSet() override;
    void nextCheckState() override;
};
