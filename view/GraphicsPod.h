#pragma once

#include "contours/EdgePoint.h"
#include "objects/GraphicsObjectRenderAdvisor.h"

#include <QColor>
#include <QList>
#include <QObject>
#include <QString>

class ImageObject;

// One image object, or one component of it, as one view shows it: colours, visibility, display scope. The
// same object may be shown by many pods in different ways and is not changed by that. Owned by its
// composition, which removes it before the object is deleted; the object is not owned. GUI thread. Forwards
// updated() of the object (and of what a colouring is drawn from); every setter emits configurationChanged().
class GraphicsPod : public QObject, public GraphicsObjectRenderAdvisor
{
    Q_OBJECT

public:
    static constexpr int wholeObject = -1;

    // A failed connection to the object is reported on standard error; the pod stays usable.
    explicit GraphicsPod(ImageObject *shownObject, int shownComponent = wholeObject,
                         QObject *parent = nullptr);
    ~GraphicsPod() override;

    // Whether there is something to show: always.
    virtual bool isShowable() const;
    // 0 none, 1 Sobel; stored only.
    virtual void setInputFilter(int filter);
    virtual int inputFilter() const;
    // The object's label.
    virtual QString label() const;
    // The object's edge points whose coordinates all lie within radius (mm) of the position. The caller owns
    // the list, not the points.
    virtual EdgePointList *edgePointsAround(float x, float y, float z, float radius) const;

    ImageObject *object() const { return shown; }
    int component() const { return shownComponentIndex; }
    // One of DisplayScope; 3, a slice, at first.
    int displayScope() const { return scope; }
    void setDisplayScope(int newScope);
    // When false the pod draws nothing.
    bool display() const { return isDisplayed; }
    void setDisplay(bool on);
    int displayMode() const { return mode; }

    // Colour 0 is the object's own, further ones belong to its child rows: contour p has colour p, fragment q
    // colour (number of contours) + q. Colours that are asked for the first time are made up, always the same
    // ones. Invalid for a negative index.
    QColor color(int index = 0);
    void setColor(const QColor &color);
    // The colours made so far. Writing to the list emits nothing.
    QList<QColor> &colors() { return colorList; }

    // Draw the object in color(0) with this pod as its advisor; what the pod has no opinion on is asked of
    // the advisor given. Need a current OpenGL context.
    void renderPoint(GraphicsObjectRenderAdvisor *advisor, float x, float y, float z);
    void renderPlane(GraphicsObjectRenderAdvisor *advisor, const double plane[4]);
    void render(GraphicsObjectRenderAdvisor *advisor);
    void renderBox(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin, float yMax,
                   float zMin, float zMax);

    bool overrides(GraphicsObject *object, int key, int subKey) override;
    std::uint32_t value(GraphicsObject *object, int key, int subKey) override;

signals:
    void updated();
    void configurationChanged();

private:
    void followColoring();
    template <typename Draw>
    void renderWith(GraphicsObjectRenderAdvisor *advisor, const Draw &draw);

    int filter = 0;
    bool isDisplayed = true;
    int mode = 1;
    int scope = 3;
    ImageObject *shown;
    int shownComponentIndex;
    QList<QColor> colorList;
    GraphicsObjectRenderAdvisor *currentAdvisor = nullptr; // during a render call only
};
