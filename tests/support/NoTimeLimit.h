#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <limits>

// Lets the functions of this test program run as long as they take: the toolkit ends one after five minutes.
// Call before QTest starts.
inline void liftTimeLimit()
{
    qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(std::numeric_limits<int>::max())); // ms
}
