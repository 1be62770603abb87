#pragma once

#include <QComboBox>

// A combo box for tables: says who it is whenever its index changes, so that an edit commits at once.
class EnhancedQComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit EnhancedQComboBox(QWidget *parent = nullptr);

signals:
    void currentIndexChanged(QWidget *widget); // beside the base's signal with the index

public slots:
    void emitCurrentIndexChanged();
};
