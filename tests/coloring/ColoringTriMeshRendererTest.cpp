#include "meshes/ColoringTriMeshRenderer.h"

#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "objects/SparselySampledImageObject.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

class ColoringTriMeshRendererTest : public QObject
{
    Q_OBJECT

private slots:
    void isAnImageObjectOfNoOtherKind();
    void sources_areTheOwnerOfTheMeshAndTheSamples();
    void sources_ofAFragmentAlone_areTheSamples();
    void closingTheMesh_leavesTheSamples();
    void closingTheSamples_leavesTheMesh();
    void closingSomethingElse_changesNothing();
    void deletionWithoutAnnouncement_isNoticed();
    void withoutMeshAndSamples_drawsNothing();
    void changesOfTheSources_emitNothing();
};

namespace {

struct Scene
{
    std::unique_ptr<TriMeshObject> mesh = std::make_unique<TriMeshObject>("mesh", nullptr);
    TriMeshFragment *fragment = mesh->addFragment("ribbon");
    std::unique_ptr<SparselySampledImageObject> samples =
        std::make_unique<SparselySampledImageObject>("thickness", nullptr);
    ColoringTriMeshRenderer coloring{fragment, samples.get(), "coloring of ribbon according to thickness"};
};

using Objects = QList<ImageObject *>;

} // namespace

void ColoringTriMeshRendererTest::isAnImageObjectOfNoOtherKind()
{
    const Scene scene;
    QCOMPARE(scene.coloring.label(), QString("coloring of ribbon according to thickness"));
    QVERIFY(scene.coloring.inherits("ImageRenderer"));
    QCOMPARE(scene.coloring.imageType(), int(ImageTypeOther));
    QCOMPARE(scene.coloring.graphicsType(), int(GraphicsTypeOther));
    QCOMPARE(scene.coloring.meshCount(), 0);
    const QObject parent;
    const ImageRenderer renderer("plain", const_cast<QObject *>(&parent));
    QCOMPARE(renderer.parent(), &parent);
    QVERIFY(renderer.sources().isEmpty());
}

void ColoringTriMeshRendererTest::sources_areTheOwnerOfTheMeshAndTheSamples()
{
    const Scene scene;
    QCOMPARE(scene.coloring.sources(), (Objects{scene.mesh.get(), scene.samples.get()}));
}

void ColoringTriMeshRendererTest::sources_ofAFragmentAlone_areTheSamples()
{
    TriMeshFragment fragment;
    SparselySampledImageObject samples;
    const ColoringTriMeshRenderer coloring(&fragment, &samples, "coloring");
    QCOMPARE(coloring.sources(), Objects{&samples});
}

void ColoringTriMeshRendererTest::closingTheMesh_leavesTheSamples()
{
    Scene scene;
    const QSignalSpy updated(&scene.coloring, &GraphicsObject::updated);
    scene.coloring.detachFrom(scene.mesh.get());
    QCOMPARE(updated.count(), 1);
    QCOMPARE(scene.coloring.sources(), Objects{scene.samples.get()});
    scene.mesh.reset();
    scene.coloring.render(nullptr); // without any OpenGL: nothing may be drawn
    scene.coloring.detachFrom(scene.samples.get());
    QVERIFY(scene.coloring.sources().isEmpty());
}

void ColoringTriMeshRendererTest::closingTheSamples_leavesTheMesh()
{
    Scene scene;
    const QSignalSpy updated(&scene.coloring, &GraphicsObject::updated);
    scene.coloring.detachFrom(scene.samples.get());
    QCOMPARE(updated.count(), 1);
    QCOMPARE(scene.coloring.sources(), Objects{scene.mesh.get()});
    scene.samples.reset();
    scene.coloring.render(nullptr);
}

void ColoringTriMeshRendererTest::closingSomethingElse_changesNothing()
{
    Scene scene;
    const QSignalSpy updated(&scene.coloring, &GraphicsObject::updated);
    TriMeshObject other("other", nullptr);
    scene.coloring.detachFrom(&other);
    QCOMPARE(updated.count(), 0);
    QCOMPARE(scene.coloring.sources(), (Objects{scene.mesh.get(), scene.samples.get()}));
}

void ColoringTriMeshRendererTest::deletionWithoutAnnouncement_isNoticed()
{
    Scene scene;
    scene.mesh.reset();
    QCOMPARE(scene.coloring.sources(), Objects{scene.samples.get()});
    scene.coloring.render(nullptr);
    scene.samples.reset();
    QVERIFY(scene.coloring.sources().isEmpty());
    scene.coloring.render(nullptr);
}

void ColoringTriMeshRendererTest::withoutMeshAndSamples_drawsNothing()
{
    ColoringTriMeshRenderer coloring(nullptr, nullptr, "coloring");
    QVERIFY(coloring.sources().isEmpty());
    coloring.render(nullptr);
}

void ColoringTriMeshRendererTest::changesOfTheSources_emitNothing()
{
    Scene scene;
    const QSignalSpy updated(&scene.coloring, &GraphicsObject::updated);
    scene.fragment->addFace({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    scene.fragment->notifyFragmentUpdated();
    emit scene.mesh->updated();
    scene.samples->setSample({0, 0, 0}, 1.0);
    emit scene.samples->updated();
    QCOMPARE(updated.count(), 0);
}

QTEST_GUILESS_MAIN(ColoringTriMeshRendererTest)
#include "ColoringTriMeshRendererTest.moc"
