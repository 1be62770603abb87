#include "view/GraphicsPod.h"

#include "contours/RenderAdvice.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "objects/MervImageObject.h"
#include "view/DisplayScope.h"

#include <iostream>
#include <utility>

namespace {

QList<QColor> initialColors(ImageObject &object, int component)
{
    if (component == GraphicsPod::wholeObject && object.graphicsType() != GraphicsTypeImage)
        return {};
    if (component == GraphicsPod::wholeObject)
        return {Qt::white};
    const auto *image = qobject_cast<const MervImageObject *>(&object);
    if (image != nullptr && image->voxels() != nullptr && image->voxels()->getChannels() == 1)
        return {Qt::white}; // a single component is the image itself
    return {QColor(component == 0 ? 255 : 0, component == 1 ? 255 : 0, component == 2 ? 255 : 0)};
}

// A colour for child row `index` that is always the same and unlike its neighbours.
QColor madeUpColor(int index)
{
    const qint64 n = static_cast<qint64>(index) + 1;
    const auto level = [n](qint64 factor) { return static_cast<int>(n * factor % 256); };
    return {level(149), level(49), level(219), 255};
}

} // namespace

GraphicsPod::GraphicsPod(ImageObject *shownObject, int shownComponent, QObject *parent)
    : QObject(parent)
    , scope(ScopeSlice)
    , shown(shownObject)
    , shownComponentIndex(shownComponent)
    , colorList(initialColors(*shownObject, shownComponent))
{
    if (!connect(shown, qOverload<>(&ImageObject::updated), this, &GraphicsPod::updated))
        std::cerr << "Connect failed." << std::endl;
    followColoring();
}

GraphicsPod::~GraphicsPod() = default;

// A colouring says nothing when the mesh or the samples that it is drawn from change.
void GraphicsPod::followColoring()
{
    if (qobject_cast<const ColoringTriMeshRenderer *>(shown) == nullptr)
        return;
    const QList<ImageObject *> sources = shown->sources();
    for (ImageObject *source : sources)
        connect(source, qOverload<>(&ImageObject::updated), this, &GraphicsPod::updated,
                Qt::UniqueConnection);
}

bool GraphicsPod::isShowable() const
{
    return true;
}

void GraphicsPod::setInputFilter(int newFilter)
{
    filter = newFilter;
    emit configurationChanged();
}

int GraphicsPod::inputFilter() const
{
    return filter;
}

QString GraphicsPod::label() const
{
    return std::as_const(*shown).label();
}

EdgePointList *GraphicsPod::edgePointsAround(float x, float y, float z, float radius) const
{
    return shown->edgePointsAround(x, y, z, radius);
}

void GraphicsPod::setDisplayScope(int newScope)
{
    scope = newScope;
    emit configurationChanged();
}

void GraphicsPod::setDisplay(bool on)
{
    isDisplayed = on;
    emit configurationChanged();
}

QColor GraphicsPod::color(int index)
{
    if (index < 0)
        return {};
    while (colorList.size() <= index)
        colorList.append(madeUpColor(static_cast<int>(colorList.size())));
    return colorList.at(index);
}

void GraphicsPod::setColor(const QColor &newColor)
{
    color(0); // makes the list long enough
    colorList[0] = newColor;
    emit configurationChanged();
}

template <typename Draw>
void GraphicsPod::renderWith(GraphicsObjectRenderAdvisor *advisor, const Draw &draw)
{
    if (!isDisplayed)
        return;
    applyColor(color(0).rgba());
    struct Restorer
    {
        GraphicsPod &pod;
        GraphicsObjectRenderAdvisor *former;
        ~Restorer() { pod.currentAdvisor = former; }
    } const restorer{*this, std::exchange(currentAdvisor, advisor)};
    draw();
}

void GraphicsPod::renderPoint(GraphicsObjectRenderAdvisor *advisor, float x, float y, float z)
{
    renderWith(advisor, [&] { shown->renderPoint(this, x, y, z); });
}

void GraphicsPod::renderPlane(GraphicsObjectRenderAdvisor *advisor, const double plane[4])
{
    renderWith(advisor, [&] { shown->renderPlane(this, plane); });
}

void GraphicsPod::render(GraphicsObjectRenderAdvisor *advisor)
{
    renderWith(advisor, [&] { shown->render(this); });
}

void GraphicsPod::renderBox(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin,
                            float yMax, float zMin, float zMax)
{
    renderWith(advisor, [&] { shown->renderBox(this, xMin, xMax, yMin, yMax, zMin, zMax); });
}

bool GraphicsPod::overrides(GraphicsObject *object, int key, int subKey)
{
    if (key == RenderKey::Component && shownComponentIndex >= 0)
        return true;
    if (object == shown && key == RenderKey::Color)
        return true;
    return currentAdvisor != nullptr && currentAdvisor->overrides(object, key, subKey);
}

std::uint32_t GraphicsPod::value(GraphicsObject *object, int key, int subKey)
{
    if (key == RenderKey::Component && shownComponentIndex >= 0)
        return static_cast<std::uint32_t>(shownComponentIndex);
    if (object == shown && key == RenderKey::Color)
        return color(0).rgba();
    return currentAdvisor != nullptr ? currentAdvisor->value(object, key, subKey) : 0;
}
