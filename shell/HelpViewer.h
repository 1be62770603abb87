#pragma once

#include <QWidget>

class QTextEdit;

// The help window: follows the latest topic of Help. Deletes itself on close and remembers its place.
class HelpViewer : public QWidget
{
    Q_OBJECT

public:
    HelpViewer();
    ~HelpViewer() override;

public slots:
    void setText(const QString &html);

private:
    QTextEdit *page; // child
};
