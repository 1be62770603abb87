#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QList>
#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

// Answers the modal dialogs of a test with real key and mouse events, in the order in which they were
// announced, and checks their titles and texts. Announce before the call that opens the dialogs, verify after
// it:
//
//     DialogDriver driver;
//     driver.expectFileDialog("Load images", "/tmp/a.mhd");
//     driver.expectBox(QMessageBox::Information, "Tevora", "1 image(s) have been loaded.", QMessageBox::Ok);
//     manager.loadInteractively();
//     QVERIFY2(driver.verify(), driver.report());
//
// A dialog that was not announced is noted as a fault and rejected, so that no test hangs. Needs non-native
// file dialogs: QApplication::setAttribute(Qt::AA_DontUseNativeDialogs) before the application is made.
class DialogDriver : public QObject
{
public:
    DialogDriver()
    {
        QObject::connect(&timer, &QTimer::timeout, this, [this] { look(); });
        timer.start(10);
    }

    // Any modal dialog that casts to Dialog; `answer` works it and closes it.
    template <class Dialog>
    void expect(const QString &what, std::function<void(Dialog *)> answer)
    {
        if constexpr (std::is_same_v<Dialog, QDialog>) {
            steps.push_back({what, std::move(answer)});
        } else {
            steps.push_back({what, [this, what, answer = std::move(answer)](QDialog *dialog) {
                                 if (auto *wanted = dynamic_cast<Dialog *>(dialog))
                                     answer(wanted);
                                 else
                                     fault(QString("%1 expected, but came %2").arg(what, describe(dialog)),
                                           dialog);
                             }});
        }
    }

    // A message box with this icon, title and text, answered with a click on the given standard button.
    void expectBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                   QMessageBox::StandardButton button)
    {
        expect<QMessageBox>("box \"" + text + "\"", [=, this](QMessageBox *box) {
            checkBox(box, icon, title, text);
            click(box, box->button(button));
        });
    }

    // The same, answered with a click on the button that bears `buttonText`; `inspect` may look at the box
    // first.
    void expectBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                   const QString &buttonText, const std::function<void(QMessageBox *)> &inspect = {})
    {
        expect<QMessageBox>("box \"" + text + "\"", [=, this](QMessageBox *box) {
            checkBox(box, icon, title, text);
            if (inspect)
                inspect(box);
            click(box, buttonNamed(box, buttonText));
        });
    }

    // A file dialog with this caption: types the path and presses Return. `inspect` may look at the dialog
    // first (for example choose a filter with selectFilter). A null path cancels with Escape.
    void expectFileDialog(const QString &caption, const QString &path,
                          const std::function<void(QFileDialog *)> &inspect = {})
    {
        expect<QFileDialog>("file dialog \"" + caption + "\"", [=, this](QFileDialog *dialog) {
            check("caption", dialog->windowTitle(), caption);
            if (inspect)
                inspect(dialog);
            if (path.isNull()) {
                QTest::keyClick(dialog, Qt::Key_Escape);
                return;
            }
            auto *edit = dialog->findChild<QLineEdit *>("fileNameEdit");
            // The dialog looks at the folder in a thread of its own, and judges a name only when it is typed.
            const QPointer<QFileDialog> open = dialog;
            for (int attempt = 0; attempt < 20 && isFront(open); ++attempt) {
                type(edit, path);
                QTest::qWait(10);
                edit->completer()->popup()->hide(); // the list of completions would take the Return
                if (edit->text() == path)           // and not what the list of files has made of it meanwhile
                    QTest::keyClick(edit, Qt::Key_Return);
                if (isFront(open))
                    QTest::qWait(50);
            }
        });
    }

    // Types a text in place of the one that is there, key by key.
    static void type(QLineEdit *edit, const QString &text)
    {
        edit->setFocus();
        edit->selectAll();
        for (const QChar character : text) {
            if (character.unicode() < 128)
                QTest::keyClick(edit, character.toLatin1());
            else
                QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(character), Qt::NoModifier);
        }
    }

    // The texts of the filters that a file dialog shows, from the top.
    static QStringList shownFilters(QFileDialog *dialog)
    {
        auto *combo = dialog->findChild<QComboBox *>("fileTypeCombo");
        QStringList texts;
        for (int i = 0; i < combo->count(); ++i)
            texts << combo->itemText(i);
        return texts;
    }

    // Chooses the filter with this text by keys, as a user would.
    void selectFilter(QFileDialog *dialog, const QString &text)
    {
        auto *combo = dialog->findChild<QComboBox *>("fileTypeCombo");
        const int wanted = combo->findText(text);
        if (wanted < 0)
            faults << QString("no filter \"%1\" in: %2").arg(text, shownFilters(dialog).join(" | "));
        combo->setFocus();
        while (wanted >= 0 && combo->currentIndex() != wanted)
            QTest::keyClick(combo, combo->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
    }

    // The button of a dialog that bears this text, mnemonics aside; null when there is none.
    static QAbstractButton *buttonNamed(QDialog *dialog, const QString &text)
    {
        for (QAbstractButton *button : dialog->findChildren<QAbstractButton *>()) {
            if (button->text().remove('&') == QString(text).remove('&'))
                return button;
        }
        return nullptr;
    }

    // Clicks a button with the mouse. A missing button is a fault, and rejects the dialog.
    void click(QDialog *dialog, QAbstractButton *button)
    {
        if (button == nullptr)
            fault("the expected button is missing in " + describe(dialog), dialog);
        else
            QTest::mouseClick(button, Qt::LeftButton);
    }

    // Notes a fault when two texts differ.
    void check(const QString &what, const QString &actual, const QString &expected)
    {
        if (actual != expected)
            faults << QString("%1 is \"%2\" instead of \"%3\"").arg(what, actual, expected);
    }

    // Whether every announced dialog came, and nothing was wrong.
    bool verify()
    {
        for (std::size_t i = next; i < steps.size(); ++i)
            faults << QString("%1 did not come").arg(steps[i].what);
        next = steps.size();
        return faults.isEmpty();
    }

    // What was wrong, for QVERIFY2; valid until the next call.
    const char *report()
    {
        reportText = faults.join("\n").toUtf8();
        return reportText.constData();
    }

private:
    struct Step
    {
        QString what;
        std::function<void(QDialog *)> answer;
    };

    static constexpr int stuckMs = 10000; // a dialog that is answered and still open after this is rejected

    void look()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        // Only what is on the screen takes a click.
        if (dialog == nullptr || !dialog->isVisible() || dialog->windowHandle() == nullptr ||
            !dialog->windowHandle()->isExposed())
            return;
        if (answered.contains(dialog)) {
            if (sinceAnswer.elapsed() > stuckMs)
                fault("still open after its answer: " + describe(dialog), dialog);
            return;
        }
        answered << dialog;
        sinceAnswer.start();
        if (next == steps.size()) {
            fault("unannounced: " + describe(dialog), dialog);
            return;
        }
        // An answer may open a further dialog before it returns (a question about overwriting, say), which is
        // then served by the next step. So it runs apart from this timer, which rests during its own call.
        QTimer::singleShot(0, dialog, [answer = steps[next].answer, dialog] { answer(dialog); });
        ++next;
    }

    void checkBox(QMessageBox *box, QMessageBox::Icon icon, const QString &title, const QString &text)
    {
        check("title", box->windowTitle(), title);
        check("text", box->text(), text);
        if (box->icon() != icon)
            faults << QString("icon of \"%1\" is %2").arg(text).arg(box->icon());
    }

    void fault(const QString &text, QDialog *dialog)
    {
        faults << text;
        dialog->reject();
    }

    static bool isFront(const QPointer<QFileDialog> &dialog)
    {
        return !dialog.isNull() && dialog->isVisible() && QApplication::activeModalWidget() == dialog;
    }

    static QString describe(QDialog *dialog)
    {
        QString text = QString("%1 \"%2\"").arg(dialog->metaObject()->className(), dialog->windowTitle());
        if (auto *box = qobject_cast<QMessageBox *>(dialog))
            text += " with the text \"" + box->text() + "\"";
        return text;
    }

    QTimer timer;
    std::vector<Step> steps;
    std::size_t next = 0;
    QList<QPointer<QDialog>> answered; // those that closed are null
    QElapsedTimer sinceAnswer;
    QStringList faults;
    QByteArray reportText;
};
