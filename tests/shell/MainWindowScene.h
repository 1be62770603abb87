#pragma once

#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "shell/MainWindow.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/TestVolume.h"

#include <QApplication>
#include <QDialog>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QRadioButton>
#include <QStringList>

#include <initializer_list>
#include <memory>

// A main window without the event loop, with a hand for its image list.
class MainWindowScene
{
public:
    MainWindowScene() = default;
    // The images are the manager's, which does not delete them.
    ~MainWindowScene()
    {
        // A window may take others with it.
        QList<QPointer<QWidget>> windows;
        for (QWidget *widget : QApplication::topLevelWidgets())
            windows.append(widget);
        for (const QPointer<QWidget> &widget : windows)
            if (widget && widget->parent() == &window)
                delete widget;
        while (manager().imageCount() > 0)
            manager().closeImage(manager().index(0, 0));
    }
    MainWindowScene(const MainWindowScene &) = delete;
    MainWindowScene &operator=(const MainWindowScene &) = delete;

    ImageManager &manager() { return *window.imageManager(); }

    template <class Object>
    Object *add(Object *object)
    {
        manager().addImage(object);
        return object;
    }

    MervImageObject *addVolume(const QString &label, std::unique_ptr<MERV::Image> voxels)
    {
        auto *volume = new MervImageObject(voxels.release(), QString());
        volume->setLabel(label);
        return add(volume);
    }

    // A mesh with a face in each fragment.
    TriMeshObject *addMesh(const QString &label, const QStringList &fragments)
    {
        auto *mesh = new TriMeshObject(label, nullptr);
        for (const QString &name : fragments)
            mesh->addFragment(name)->addFace(MERV::BRep::TriFace({10, 10, 0}, {11, 10, 0}, {10, 11, 0}));
        return add(mesh);
    }

    // Selects the rows in this order; the last one becomes the current one.
    void select(std::initializer_list<int> rows)
    {
        QItemSelectionModel *selection = window.findChild<FileDroppableQListView *>()->selectionModel();
        selection->clear();
        for (const int row : rows)
            selection->setCurrentIndex(manager().index(row, 0), QItemSelectionModel::Select);
    }

    // The image in a row from the end, 0 the last one, as this class; null if it is none.
    template <class Class>
    Class *fromEnd(int row = 0)
    {
        return dynamic_cast<Class *>(manager().image(manager().imageCount() - 1 - row));
    }

    template <class Window>
    static QList<Window *> topLevels()
    {
        QList<Window *> found;
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *wanted = qobject_cast<Window *>(widget))
                found.append(wanted);
        return found;
    }

    const CapturedOutput output{}; // first, as workers write until the images are closed
    MainWindow window;
};

// The entries of a list from the top.
inline QStringList entriesOf(const QListWidget *list)
{
    QStringList entries;
    for (int row = 0; row < list->count(); ++row)
        entries << list->item(row)->text();
    return entries;
}

// All texts of labels in a dialog, in the order in which they were made.
inline QStringList labelsOf(const QDialog *dialog)
{
    QStringList texts;
    for (const QLabel *label : dialog->findChildren<QLabel *>())
        texts << label->text();
    return texts;
}

inline QStringList radioTextsOf(const QDialog *dialog)
{
    QStringList texts;
    for (const QRadioButton *button : dialog->findChildren<QRadioButton *>())
        texts << button->text();
    return texts;
}

inline QRadioButton *radioNamed(const QDialog *dialog, const QString &text)
{
    for (QRadioButton *button : dialog->findChildren<QRadioButton *>())
        if (button->text() == text)
            return button;
    return nullptr;
}
