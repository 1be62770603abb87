#include "recovery/RecoveryJournal.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/manager/ImageManager.h"
#include "recovery/RecoveryFiles.h"
#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"
#include "serialization/formats/TextSlicSerializer.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <fstream>
#include <memory>

// What the journal leaves on the disk, and when.
class RecoveryJournalTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    std::unique_ptr<QTemporaryDir> root;
    std::unique_ptr<ImageManager> manager;
    std::unique_ptr<RecoveryJournal> journal;
    SlicSerializer slic;
    TextSlicSerializer text;

    QString session() const { return root->filePath("session"); }
    QStringList generations() const { return QDir(session()).entryList({"*.slic"}, QDir::Files, QDir::Name); }
    bool isMarkedSaved(int object) const
    {
        return QFile::exists(session() + '/' + RecoveryFiles::savedMark(object));
    }

    // Contours in the list, one fragment with a line of two points.
    SlicedContoursObject *addContours(const QString &label = "knee")
    {
        auto *contours = new SlicedContoursObject(label);
        contours->newFragment("bone")->newSegment({1, 2}, 3)->addPointBack({4, 5});
        manager->addImage(contours);
        return contours;
    }
    static void draw(SlicedContoursObject *contours, double x)
    {
        contours->fragment(0)->segment(0)->addPointBack({x, x * x});
    }
    std::unique_ptr<SlicedContoursObject> read(const QString &name) const
    {
        std::ifstream stream((session() + '/' + name).toStdString(), std::ios::binary);
        SlicUnserializer reader;
        auto *object = static_cast<StreamImageObjectUnserializer &>(reader).unserialize(stream);
        return std::unique_ptr<SlicedContoursObject>(qobject_cast<SlicedContoursObject *>(object));
    }
    void save(SlicedContoursObject *contours, const QString &path, const QString &filterPart)
    {
        DialogDriver driver;
        driver.expect<QFileDialog>("Save Image as", [&](QFileDialog *dialog) {
            for (const QString &filter : dialog->nameFilters())
                if (filter.contains(filterPart))
                    dialog->selectNameFilter(filter);
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
            QTest::keyClick(dialog->findChild<QLineEdit *>("fileNameEdit"), Qt::Key_Return);
        });
        QVERIFY(manager->saveImage(contours));
        QVERIFY2(driver.verify(), driver.report());
    }

private slots:
    void init()
    {
        root = std::make_unique<QTemporaryDir>();
        manager = std::make_unique<ImageManager>(nullptr);
        manager->addSerializer(&slic);
        manager->addSerializer(&text);
        journal = std::make_unique<RecoveryJournal>(*manager, session());
    }
    void cleanup()
    {
        journal.reset();
        while (manager->imageCount() > 0)
            manager->closeImage(manager->index(0, 0));
        manager.reset();
    }

    void contoursThatDoNotChange_leaveNothing()
    {
        addContours();
        journal->writeNow();
        journal.reset();
        QVERIFY(!QFile::exists(session()));
    }

    void change_isWrittenByItselfInTime()
    {
        SlicedContoursObject *contours = addContours();
        draw(contours, 7);
        QTRY_COMPARE_WITH_TIMEOUT(generations().size(), 1, 4 * RecoveryJournal::intervalMs);
        const auto kept = read(generations().first());
        QVERIFY(kept);
        QCOMPARE(kept->label(), "knee");
        QCOMPARE(kept->fragmentCount(), 1);
        QCOMPARE(kept->fragment(0)->segment(0)->lastPoint(), QPointF(7, 49));
        QCOMPARE(kept->fragment(0)->segment(0)->z(), 3.0f);
    }

    void unchangedSinceTheLastGeneration_isNotWrittenAgain()
    {
        SlicedContoursObject *contours = addContours();
        draw(contours, 7);
        journal->writeNow();
        const QStringList before = generations();
        journal->writeNow();
        QCOMPARE(generations(), before);
    }

    void everyKindOfChange_isWritten()
    {
        SlicedContoursObject *contours = addContours();
        const auto keeps = [&](auto &&holds) {
            journal->writeNow();
            const auto kept = generations().isEmpty() ? nullptr : read(generations().last());
            return kept && holds(*kept);
        };
        contours->setLabel("renamed"); // announces nothing
        QVERIFY(keeps([](auto &kept) { return kept.label() == "renamed"; }));
        contours->setLabel("s"); // sorts behind the former name
        contours->fragment(0)->setLabel("cartilage");
        QVERIFY(keeps([](auto &kept) { return kept.fragment(0)->label() == "cartilage"; }));
        contours->newFragment("second");
        QVERIFY(keeps([](auto &kept) { return kept.fragmentCount() == 2; }));
        contours->newContour("loop")->addFragmentReference(contours->fragment(0));
        QVERIFY(keeps(
            [](auto &kept) { return kept.contourCount() == 1 && kept.contour(0)->fragmentCount() == 1; }));
        contours->fragment(0)->segment(0)->setZ(9);
        QVERIFY(keeps([](auto &kept) { return kept.fragment(0)->segment(0)->z() == 9; }));
        delete contours->fragment(0)->segment(0);
        QVERIFY(keeps([](auto &kept) { return kept.fragment(0)->segmentCount() == 0; }));
    }

    void closing_writesFirst()
    {
        draw(addContours(), 7);
        manager->closeImage(manager->index(0, 0));
        journal->writeNow();
        QCOMPARE(generations().size(), 1);
        QCOMPARE(read(generations().first())->fragment(0)->segment(0)->pointCount(), 3);
    }

    void contoursDeletedWithoutTheManager_areForgotten()
    {
        SlicedContoursObject *loose = addContours("loose");
        SlicedContoursObject *other = addContours("other");
        draw(loose, 7);
        draw(other, 8);
        std::destroy_at(loose);
        std::construct_at(loose, "new"); // in its place, for the list still knows it
        journal->writeNow();
        QCOMPARE(generations().size(), 1);
        QCOMPARE(read(generations()[0])->label(), "other");
        draw(other, 9);
        journal->writeNow();
        QCOMPARE(RecoveryFiles::parse(generations().last())->object, 2);
        QCOMPARE(read(generations().last())->fragment(0)->segment(0)->lastPoint(), QPointF(9, 81));
    }

    void contoursClosedWhileTheyFail_doNotSilenceTheNext()
    {
        const CapturedOutput output;
        QFile obstacle(session());
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        for (int i = 1; i <= 2; ++i) {
            draw(addContours(), 7);
            manager->closeImage(manager->index(0, 0));
            journal->writeNow();
            QCOMPARE(output.standardError().count('\n'), i);
        }
    }

    void end_writesWhatChanged()
    {
        draw(addContours(), 7);
        journal.reset();
        QCOMPARE(generations().size(), 1);
        QVERIFY(!QFile::exists(session() + "/running.lock"));
    }

    void objectsHaveFilesOfTheirOwn()
    {
        SlicedContoursObject *first = addContours("knee");
        SlicedContoursObject *second = addContours("knee");
        draw(first, 7);
        draw(second, 8);
        journal->writeNow();
        QCOMPARE(generations().size(), 2);
        QCOMPARE(RecoveryFiles::parse(generations()[0])->object, 1);
        QCOMPARE(read(generations()[0])->fragment(0)->segment(0)->lastPoint(), QPointF(7, 49));
        QCOMPARE(RecoveryFiles::parse(generations()[1])->object, 2);
        QCOMPARE(read(generations()[1])->fragment(0)->segment(0)->lastPoint(), QPointF(8, 64));
    }

    void saving_writesFirstAndMarksTheGenerationsAsSaved()
    {
        SlicedContoursObject *contours = addContours();
        draw(contours, 7);
        bool writtenBefore = false;
        connect(manager.get(), &ImageManager::imageWritten, this,
                [&] { writtenBefore = generations().size() == 1; });
        save(contours, root->filePath("mine.slic"), "slic");
        QVERIFY(writtenBefore);
        journal->writeNow();
        QVERIFY(isMarkedSaved(1));
        draw(contours, 8);
        journal->writeNow();
        QVERIFY(!isMarkedSaved(1));
    }

    void savingAsText_isNotSaving()
    {
        SlicedContoursObject *contours = addContours();
        draw(contours, 7);
        save(contours, root->filePath("mine.txt"), "txt");
        journal->writeNow();
        QCOMPARE(generations().size(), 1);
        QVERIFY(!isMarkedSaved(1));
    }

    void failedWriting_isTriedAgain()
    {
        SlicedContoursObject *contours = addContours();
        QFile obstacle(session());
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        draw(contours, 7);
        journal->writeNow();
        QVERIFY(obstacle.remove());
        journal->writeNow();
        QCOMPARE(generations().size(), 1);
    }
};

QTEST_MAIN(RecoveryJournalTest)
#include "RecoveryJournalTest.moc"
