#pragma once

#include "tests/endurance/Watched.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <mutex>

// Catches what the toolkit says about models that break their contract and about wrong connections, for as
// long as it lives. All else goes where it went. One at a time.
class ModelComplaints
{
public:
    ModelComplaints()
    {
        first.clear();
        former = qInstallMessageHandler(take);
    }
    ~ModelComplaints() { qInstallMessageHandler(former); }
    ModelComplaints(const ModelComplaints &) = delete;
    ModelComplaints &operator=(const ModelComplaints &) = delete;

    void verifyNone() const
    {
        const std::lock_guard lock(mutex);
        require(first.isEmpty(), first.toStdString());
    }

private:
    // Tables of metrics grow at their end though the new level lies elsewhere, on purpose: the cell above the
    // new rows says something else then, which the model tester does not expect.
    static bool isOnPurpose(const QString &message)
    {
        return message.contains("model->data(model->index(start - 1, 0, c.parent))");
    }
    static void take(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (isOnPurpose(message))
            return;
        if (message.startsWith("FAIL!") || message.startsWith("QObject") || message.startsWith("QAbstract") ||
            message.contains("Index")) {
            const std::lock_guard lock(mutex);
            if (first.isEmpty())
                first = message.toUtf8();
        } else if (former != nullptr) {
            former(type, context, message);
        }
    }

    static inline std::mutex mutex; // guards first
    static inline QByteArray first;
    static inline QtMessageHandler former = nullptr;
};
