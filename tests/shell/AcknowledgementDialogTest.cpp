#include "shell/AcknowledgementDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMap>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTranslator>
#include <QVBoxLayout>

// The names of the languages in a language that sorts them in another order than English.
class OtherNames : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *comment, int) const override
    {
        if (qstrcmp(context, "AcknowledgementDialog") != 0 || qstrcmp(comment, "ACK_LANG") != 0)
            return {};
        const QMap<QString, QString> names{{"English", "c"}, {"German", "b"}, {"French", "a"}};
        return names.value(source);
    }
    bool isEmpty() const override { return false; }
};

class AcknowledgementDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void hasItsTextsAndLanguages()
    {
        AcknowledgementDialog dialog(nullptr);
        QCOMPARE(dialog.windowTitle(), QString("Acknowledging Usage of Tevora"));
        QVERIFY(dialog.windowFlags().testFlag(Qt::WindowTitleHint));
        QVERIFY(dialog.windowFlags().testFlag(Qt::WindowSystemMenuHint));
        QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        QStringList labels;
        for (const QLabel *label : dialog.findChildren<QLabel *>())
            labels << label->text();
        QCOMPARE(labels, (QStringList{"Acknowledge having used Tevora for your study in a",
                                      "publication by including a remark analogous to the following."}));
        const auto *languages = dialog.findChild<QComboBox *>();
        QCOMPARE(languages->count(), 3);
        const char *const expected[][2] = {{"English", "en"}, {"French", "fr"}, {"German", "de"}};
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(languages->itemText(row), QString(expected[row][0]));
            QCOMPARE(languages->itemData(row).toString(), QString(expected[row][1]));
        }
        QVERIFY(dialog.findChild<QTextBrowser *>()->openExternalLinks());
        QVERIFY(dialog.findChild<QTextBrowser *>()->isReadOnly());
    }

    void partsStandBelowOneAnother()
    {
        const AcknowledgementDialog dialog(nullptr);
        const auto labels = dialog.findChildren<QLabel *>();
        const QList<QWidget *> expected{labels.at(0), dialog.findChild<QComboBox *>(), labels.at(1),
                                        dialog.findChild<QTextBrowser *>(),
                                        dialog.findChild<QDialogButtonBox *>()};
        auto *column = qobject_cast<QVBoxLayout *>(dialog.layout());
        QVERIFY(column);
        QList<QWidget *> found;
        for (int i = 0; i < column->count(); ++i)
            found << column->itemAt(i)->widget();
        QCOMPARE(found, expected);
        QCOMPARE(dialog.findChild<QDialogButtonBox *>()->standardButtons(), QDialogButtonBox::Ok);
    }

    void theRemarkFollowsTheLanguage()
    {
        AcknowledgementDialog dialog(nullptr);
        auto *languages = dialog.findChild<QComboBox *>();
        auto *browser = dialog.findChild<QTextBrowser *>();
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QVERIFY(browser->toPlainText().startsWith("Segmentation and morphometry"));
        QVERIFY(browser->toHtml().contains("href="));
        languages->setFocus();
        QTest::keyClick(languages, Qt::Key_Down);
        QVERIFY(browser->toPlainText().startsWith("La segmentation"));
        QTest::keyClick(languages, Qt::Key_Down);
        QVERIFY(browser->toPlainText().startsWith("Segmentierung"));
        // The documents of the earlier languages stay until the dialog ends.
        QCOMPARE(browser->findChildren<QTextDocument *>(QString(), Qt::FindDirectChildrenOnly).size(), 3);
        languages->setItemData(1, "xx");
        dialog.showMessage(1);
        QCOMPARE(browser->toPlainText(), QString("language unavailable"));
    }

    void translatedNamesAreSortedWithTheirLanguages()
    {
        OtherNames names;
        QVERIFY(QCoreApplication::installTranslator(&names));
        AcknowledgementDialog dialog(nullptr);
        QCoreApplication::removeTranslator(&names);
        auto *languages = dialog.findChild<QComboBox *>();
        const auto *browser = dialog.findChild<QTextBrowser *>();
        // English stays the chosen one, wherever its name has come to stand.
        QCOMPARE(languages->currentText(), QString("c"));
        QVERIFY(browser->toPlainText().startsWith("Segmentation and morphometry"));
        const char *const expected[][3] = {
            {"a", "fr", "La segmentation"}, {"b", "de", "Segmentierung"}, {"c", "en", "Segmentation and"}};
        for (int row = 0; row < 3; ++row) {
            languages->setCurrentIndex(row);
            QCOMPARE(languages->itemText(row), QString(expected[row][0]));
            QCOMPARE(languages->itemData(row).toString(), QString(expected[row][1]));
            QVERIFY(browser->toPlainText().startsWith(expected[row][2]));
        }
    }

    void okCloses()
    {
        AcknowledgementDialog dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(AcknowledgementDialogTest)
#include "AcknowledgementDialogTest.moc"
