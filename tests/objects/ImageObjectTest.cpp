#include "objects/ImageObject.h"
#include "objects/FunctionalImageObject.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/RegularGridImageObject.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <memory>
#include <vector>

namespace {

constexpr float openRange = std::numeric_limits<float>::max();

class SilentAdvisor : public GraphicsObjectRenderAdvisor
{
public:
    bool overrides(GraphicsObject *, int, int) override { return false; }
    std::uint32_t value(GraphicsObject *, int, int) override { return 0; }
};

// Notes the calls of the drawing operations.
class RecordingObject : public ImageObject
{
public:
    using ImageObject::renderPlane;
    using ImageObject::renderPoint;
    void renderBox(GraphicsObjectRenderAdvisor *, float xMin, float xMax, float yMin, float yMax, float zMin,
                   float zMax) override
    {
        boxes.push_back({xMin, xMax, yMin, yMax, zMin, zMax});
    }
    void renderPoint(GraphicsObjectRenderAdvisor *, float x, float y, float z) override
    {
        points.push_back({x, y, z});
    }

    std::vector<std::vector<float>> boxes;
    std::vector<std::vector<float>> points;
};

class Fragment : public LabeledGraphicsObject
{
public:
    using LabeledGraphicsObject::LabeledGraphicsObject;
};

class Function : public RegularGridImageObject
{
public:
    Function(const QStringList &names, const QString &range)
    {
        axes = names;
        rangeText = range;
    }
    const QString &axisLabel(int axis) const override { return labels ? labels->at(axis) : axisName(axis); }

    std::unique_ptr<QStringList> labels;
};

} // namespace

class ImageObjectTest : public QObject
{
    Q_OBJECT

private slots:
    void parentOfAGraphicsObjectIsItsQObjectParent();
    void parentOfAnImageObjectIsAlwaysNull();
    void rootImageObjectIsTheTopOfTheChain();
    void kindsAndNames();
    void labels();
    void setLabelEmitsNothing();
    void copiesTakeTheLabelOnly();
    void entityCanBeCastDown();
    void defaults();
    void renderPlaneCallsRenderBoxForPlanesAcrossZ();
    void renderPlaneLeavesTiltedPlanesAlone();
    void renderPlaneComparesAfterNarrowing();
    void renderPlaneIsAProductNotAQuotient();
    void renderPointDividesByTheFourthCoordinate();
    void functionalDefaults();
    void signatureIsJoinedByNoBreakSpaces();
    void signatureIsKeptUntilCleared();
};

void ImageObjectTest::parentOfAGraphicsObjectIsItsQObjectParent()
{
    Fragment parent(QStringLiteral("parent"), nullptr);
    Fragment child(QStringLiteral("child"), &parent);
    QObject plain;
    GraphicsObject stranger(&plain);
    QCOMPARE(child.parentGraphicsObject(), &parent);
    QVERIFY(parent.parentGraphicsObject() == nullptr);
    QVERIFY(stranger.parentGraphicsObject() == nullptr);
}

void ImageObjectTest::parentOfAnImageObjectIsAlwaysNull()
{
    Fragment parent(QStringLiteral("parent"), nullptr);
    ImageObject image(QStringLiteral("image"), &parent);
    QCOMPARE(image.parent(), &parent);
    QVERIFY(image.parentGraphicsObject() == nullptr);
}

void ImageObjectTest::rootImageObjectIsTheTopOfTheChain()
{
    ImageObject image(QStringLiteral("image"), nullptr);
    Fragment fragment(QStringLiteral("fragment"), &image);
    GraphicsObject segment(&fragment);
    Fragment orphan(QStringLiteral("orphan"), nullptr);
    QCOMPARE(rootImageObject(&segment), &image);
    QCOMPARE(rootImageObject(&image), &image);
    QVERIFY(rootImageObject(&orphan) == nullptr);
    QVERIFY(rootImageObject(nullptr) == nullptr);
}

void ImageObjectTest::kindsAndNames()
{
    GraphicsObject object;
    Fragment labelled(QStringLiteral("a name"), nullptr);
    ImageObject image;
    QCOMPARE(object.graphicsType(), 0);
    QCOMPARE(labelled.graphicsType(), 0);
    QCOMPARE(image.graphicsType(), 0);
    QCOMPARE(image.imageType(), 0);
    QCOMPARE(object.displayName(), QStringLiteral("some graphics object"));
    // One shared string.
    QCOMPARE(&object.displayName(), &GraphicsObject().displayName());
    QCOMPARE(labelled.displayName(), QStringLiteral("a name"));
    QCOMPARE(int(GraphicsTypeImage), 1);
    QCOMPARE(int(GraphicsTypeGroup), 2);
    QCOMPARE(int(GraphicsTypeContour), 3);
    QCOMPARE(int(GraphicsTypeFragment), 4);
    QCOMPARE(int(GraphicsTypeSegment), 5);
    QCOMPARE(int(GraphicsTypeMesh), 8);
}

void ImageObjectTest::labels()
{
    ImageObject image;
    QVERIFY(image.label().isNull());
    QVERIFY(image.parent() == nullptr);
    image.label() = QStringLiteral("by reference");
    QCOMPARE(image.displayName(), QStringLiteral("by reference"));
    image.setLabel(QStringLiteral("set"));
    QCOMPARE(std::as_const(image).label(), QStringLiteral("set"));
}

void ImageObjectTest::setLabelEmitsNothing()
{
    ImageObject image;
    const QSignalSpy updated(&image, &GraphicsObject::updated);
    image.setLabel(QStringLiteral("new"));
    QCOMPARE(updated.count(), 0);
}

void ImageObjectTest::copiesTakeTheLabelOnly()
{
    QObject owner;
    Fragment fragment(QStringLiteral("label"), &owner);
    const LabeledGraphicsObject copy(fragment);
    QCOMPARE(copy.label(), QStringLiteral("label"));
    QVERIFY(copy.parent() == nullptr);
    const ImageObject image(fragment);
    QCOMPARE(image.label(), QStringLiteral("label"));
    QVERIFY(image.parent() == nullptr);
    QVERIFY(image.filePath().isNull());
    const ImageObject second(image);
    QCOMPARE(second.label(), QStringLiteral("label"));
}

void ImageObjectTest::entityCanBeCastDown()
{
    const std::unique_ptr<Entity> image = std::make_unique<ImageObject>();
    QVERIFY(dynamic_cast<GraphicsObject *>(image.get()) != nullptr);
    const auto plain = std::make_unique<Entity>();
    const Entity *entity = plain.get();
    QVERIFY(dynamic_cast<const GraphicsObject *>(entity) == nullptr);
}

void ImageObjectTest::defaults()
{
    ImageObject image;
    SilentAdvisor advisor;
    image.render(&advisor);
    image.beforePaint();
    image.renderPoint(&advisor, 1.0f, 2.0f, 3.0f);
    image.detachFrom(&image);
    QCOMPARE(image.meshCount(), 0);
    const std::unique_ptr<QList<EdgePoint *>> edges(image.edgePointsAround(0.0f, 0.0f, 0.0f, 1.0f));
    QVERIFY(edges->isEmpty());
    const std::unique_ptr<QList<GraphicsObject *>> objects(image.objectsAround(0.0f, 0.0f, 0.0f, 1.0f));
    QVERIFY(objects->isEmpty());
    QVERIFY(image.contourPointsAround({}, 1.0f).isEmpty());
    QCOMPARE(image.extentX(), 0.0f);
    QCOMPARE(image.extentY(), 0.0f);
    QCOMPARE(image.extentZ(), 0.0f);
    QVERIFY(image.hasContent());
    QCOMPARE(image.firstSignificantZ(), 0.0f);
    QCOMPARE(image.nextSignificantZ(5.0f), 5.0f);
    QCOMPARE(image.previousSignificantZ(5.0f), 5.0f);
    QCOMPARE(image.granularity(), 1.0f);
    QVERIFY(image.sources().isEmpty());
    QVERIFY(image.filePath().isNull());
}

void ImageObjectTest::renderPlaneCallsRenderBoxForPlanesAcrossZ()
{
    RecordingObject object;
    SilentAdvisor advisor;
    const double up[4] = {0.0, 0.0, 1.0, -4.5};
    const double down[4] = {0.0, 0.0, -1.0, 4.5};
    QVERIFY(object.renderPlane(&advisor, up));
    QVERIFY(object.renderPlane(&advisor, down));
    const std::vector<float> box = {-openRange, openRange, -openRange, openRange, 4.5f, 4.5f};
    QCOMPARE(object.boxes.size(), std::size_t(2));
    QVERIFY(object.boxes[0] == box);
    QVERIFY(object.boxes[1] == box);
}

void ImageObjectTest::renderPlaneLeavesTiltedPlanesAlone()
{
    RecordingObject object;
    SilentAdvisor advisor;
    const float tiltedX[4] = {1e-30f, 0.0f, 1.0f, -4.5f};
    const float tiltedY[4] = {0.0f, -0.5f, 0.5f, -4.5f};
    QVERIFY(!object.renderPlane(&advisor, tiltedX));
    QVERIFY(!object.renderPlane(&advisor, tiltedY));
    QVERIFY(object.boxes.empty());
}

void ImageObjectTest::renderPlaneComparesAfterNarrowing()
{
    RecordingObject object;
    SilentAdvisor advisor;
    const double plane[4] = {1e-50, 0.0, 1.0, -3.0}; // 1e-50 is 0 in single precision
    QVERIFY(object.renderPlane(&advisor, plane));
    QCOMPARE(object.boxes.size(), std::size_t(1));
    QCOMPARE(object.boxes[0][4], 3.0f);
}

void ImageObjectTest::renderPlaneIsAProductNotAQuotient()
{
    RecordingObject object;
    SilentAdvisor advisor;
    const float plane[4] = {0.0f, 0.0f, 2.0f, -3.0f};
    QVERIFY(object.renderPlane(&advisor, plane));
    QCOMPARE(object.boxes[0][4], 6.0f);
    QCOMPARE(object.boxes[0][5], 6.0f);
}

void ImageObjectTest::renderPointDividesByTheFourthCoordinate()
{
    RecordingObject object;
    SilentAdvisor advisor;
    const double position[4] = {2.0, 4.0, 6.0, 4.0};
    object.ImageObject::renderPoint(&advisor, position);
    QCOMPARE(object.points.size(), std::size_t(1));
    QVERIFY((object.points[0] == std::vector<float>{0.5f, 1.0f, 1.5f}));
}

void ImageObjectTest::functionalDefaults()
{
    const Function function({QStringLiteral("x"), QStringLiteral("t")}, QStringLiteral("value"));
    QCOMPARE(function.dimensionCount(), 2);
    QCOMPARE(function.axisName(1), QStringLiteral("t"));
    QCOMPARE(function.axisLabel(1), QStringLiteral("t"));
    QVERIFY(!function.isAxisDiscrete(0));
    for (const QString *empty : {&function.axisName(2), &function.axisName(-1), &function.axisUnit(0),
                                 &function.axisUnit(0, 1), &function.rangeUnit()}) {
        QVERIFY(empty->isEmpty());
        QVERIFY(!empty->isNull());
    }
    QCOMPARE(function.rangeName(), QStringLiteral("value"));
    QCOMPARE(function.rangeLabel(), QStringLiteral("value"));
}

void ImageObjectTest::signatureIsJoinedByNoBreakSpaces()
{
    const QChar blank(0x00A0);
    const QChar times(0x00D7);
    const QChar arrow(0x2192);
    const Function function({QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")},
                            QStringLiteral("range"));
    const QString expected = QString(QLatin1Char('x')) + blank + times + blank + QLatin1Char('y') + blank +
                             times + blank + QLatin1Char('z') + blank + arrow + blank +
                             QStringLiteral("range");
    QCOMPARE(function.signature(), expected);
    const Function constant({}, QStringLiteral("range"));
    QCOMPARE(constant.signature(), QString(blank) + arrow + blank + QStringLiteral("range"));
}

void ImageObjectTest::signatureIsKeptUntilCleared()
{
    Function function({QStringLiteral("x")}, QStringLiteral("range"));
    const QString before = function.signature();
    function.labels = std::make_unique<QStringList>(QStringList{QStringLiteral("width")});
    QCOMPARE(function.signature(), before);
    function.clearSignature();
    QVERIFY(function.signature().startsWith(QStringLiteral("width")));
}

QTEST_APPLESS_MAIN(ImageObjectTest)
#include "ImageObjectTest.moc"
