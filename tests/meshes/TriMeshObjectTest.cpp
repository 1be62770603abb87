#include "meshes/TriMeshObject.h"
#include "meshes/TriMesh.h"
#include "meshes/TriMeshFragment.h"

#include <QPointer>
#include <QTest>

class TriMeshObjectTest : public QObject
{
    Q_OBJECT

private slots:
    void isAMeshWithoutRowsBelow()
    {
        const TriMeshObject object("mesh", nullptr);
        QCOMPARE(object.displayName(), QString("mesh"));
        QCOMPARE(object.graphicsType(), 2);
        QCOMPARE(object.imageType(), 3);
        QCOMPARE(object.meshCount(), 0);
        QCOMPARE(object.fragmentCount(), 0);
    }

    void ownsItsFragmentsAndMeshes()
    {
        QPointer<TriMeshFragment> fragment;
        QPointer<TriMesh> mesh;
        {
            TriMeshObject object;
            fragment = object.addFragment("first");
            mesh = object.addMesh("whole");
            QCOMPARE(fragment->parent(), &object);
            QCOMPARE(fragment->parentGraphicsObject(), &object);
            QCOMPARE(fragment->label(), QString("first"));
            QCOMPARE(fragment->faceCount(), 0);
            QCOMPARE(mesh->parent(), &object);
            QCOMPARE(mesh->label(), QString("whole"));
            QCOMPARE(mesh->graphicsType(), 8);
            QCOMPARE(mesh->size(), std::size_t{0});
        }
        QVERIFY(fragment.isNull());
        QVERIFY(mesh.isNull());
    }

    void fragmentsAreInOrderAndNullOutOfRange()
    {
        TriMeshObject object;
        TriMeshFragment *first = object.addFragment("a");
        TriMeshFragment *second = object.addFragment("a");
        object.addMesh("not a fragment");
        QVERIFY(first != second);
        QCOMPARE(object.fragment(0), first);
        QCOMPARE(object.fragment(1), second);
        QVERIFY(object.fragment(2) == nullptr);
        QVERIFY(object.fragment(-1) == nullptr);
        QCOMPARE(object.fragmentCount(), 2);
        QCOMPARE(object.meshCount(), 2);
    }
};

QTEST_GUILESS_MAIN(TriMeshObjectTest)
#include "TriMeshObjectTest.moc"
