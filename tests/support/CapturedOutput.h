#pragma once

#include "tests/support/CapturedText.h"

#include <QString>

// The same in the toolkit's strings.
class CapturedOutput
{
public:
    QString standardOutput() const { return QString::fromLocal8Bit(captured.text().c_str()); }
    QString standardError() const { return QString::fromLocal8Bit(captured.errors().c_str()); }

private:
    CapturedText captured;
};
