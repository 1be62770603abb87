#pragma once

#include "objects/GraphicsObjectRenderAdvisor.h"
#include "view/ViewState.h"

#include <QCursor>
#include <QElapsedTimer>
#include <QOpenGLWidget>
#include <QPointer>
#include <QString>

#include <map>
#include <memory>

class FullScreenPlace;
class GraphicsPod;
class ImageComposition;
class ImageObject;
class InteractionMode;
enum class Drawing;

// The cursors of the interaction modes that are no standard shapes.
struct ViewCursors
{
    QCursor hand;
    QCursor fist;
    QCursor magnifier;
    QCursor magnifierPlus;
    QCursor magnifierMinus;
    QCursor window;
};

// Looks at an image composition: slices, contours and meshes in one world of mm, cut and ordered by one
// movable plane, the working plane. One interaction mode is in force at any time: the base mode, which the
// toolbar shows, or a temporary one while its key is held. Deletes itself on close. GUI thread; OpenGL only
// in the paint functions. Holds no image object beyond its composition's announcement of closing.
class QStackedSliceView : public QOpenGLWidget, public GraphicsObjectRenderAdvisor
{
    Q_OBJECT

public:
    // The composition is borrowed; with none the view makes its own.
    explicit QStackedSliceView(QWidget *parent, ImageComposition *composition = nullptr);
    ~QStackedSliceView() override;

    ImageComposition *imageComposition() const { return composition; }
    const ViewState &state() const { return viewState; }
    const ViewCursors &cursors() const { return modeCursors; }

    // Camera. View operations act at once, target operations are followed in steps.
    void translateView(double dx, double dy);
    void translateTarget(double dx, double dy);
    void scaleTarget(double factor);
    // Turns the camera (view and target), the working plane, or both, by angles in radians.
    void rotate(double rx, double ry, double rz, bool rotateCamera, bool keepPlane);
    // Turns the target to the axis view that is nearest, keeping scale and centre of the scene.
    void snapTargetToAxis();
    // Makes the plane of this z (mm) the working plane.
    void setWorkingZ(float z);
    void setWorkingPlane(const Plane &plane);
    // The whole scene at once, on the first significant z of the first object.
    void resetView();
    // The whole scene, animated.
    void fitView();
    void setPerspective(float shearX, float shearY, float strength);
    // cursorWorld as "x = .. mm; y = .. mm; z = .. mm".
    QString coordinatesText() const;
    // Recomputes the cursor for the present pick ray, plane and camera; emits currentCoordinatesChanged().
    // Keeps the old cursor when the view matrix cannot be inverted.
    void updateCursor();

    void enterMode(InteractMode mode);
    void setBaseMode(InteractMode mode);

    // Repaints at the next tick, or at once.
    void requestRepaint();
    void repaintNow();
    bool isFullScreenView() const;
    void enterFullScreen();
    void leaveFullScreen();

    // Highlight, dashes and line width; all else is the composition's.
    bool overrides(GraphicsObject *object, int key, int subKey) override;
    std::uint32_t value(GraphicsObject *object, int key, int subKey) override;

signals:
    void interactModePerspectiveEntered();
    void interactModeMoveEntered();
    void interactModeZoomEntered();
    void interactModeTraceEntered();
    void interactModeDrawEntered();
    void interactModeWindowEntered();
    void interactModeGuessEntered();
    void interactModeEraseEntered();
    void interactModeLoadEntered();
    void interactBaseModePerspectiveSet();
    void interactBaseModeMoveSet();
    void interactBaseModeZoomSet();
    void interactBaseModeTraceSet();
    void interactBaseModeDrawSet();
    void interactBaseModeWindowSet();
    void interactBaseModeGuessSet();
    void interactBaseModeEraseSet();
    void interactBaseModeLoadSet();
    void currentCoordinatesChanged();

public slots:
    void imageCompositionUpdated();
    void setInteractBaseModePerspective();
    void setInteractBaseModeMove();
    void setInteractBaseModeZoom();
    void setInteractBaseModeTrace();
    void setInteractBaseModeDraw();
    void setInteractBaseModeWindow();
    void setInteractBaseModeGuess();
    void setInteractBaseModeErase();
    void setInteractBaseModeLoad();

protected:
    bool event(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;

private:
    friend class RepaintCollector;
    void makeModes();
    void loadCursors(double devicePixelRatio);
    void screenChanged();
    InteractionMode *presentMode() const;
    void announceMode(InteractMode mode);
    void rebuildProjection();
    void objectClosing(ImageObject *closing);

    QPointF centred(const QPointF &position) const;
    QPointF pointerOf(const QMouseEvent &event) const;
    void aim(const QPointF &position);
    template <typename Handle>
    void handleMouse(const QMouseEvent &event, const Handle &handle);
    void stepSlice(bool next);
    bool handleRepeatingKey(const QKeyEvent &event);
    bool handleModeKey(const QKeyEvent &event);
    bool handleOtherKey(const QKeyEvent &event);
    bool animate(double ticks);
    void paintObjects();
    void paintPod(GraphicsPod &pod, Drawing drawing);

    ImageComposition *composition;
    ViewState viewState;
    ViewCursors modeCursors;
    double cursorRatio = 1.0; // device pixels per logical pixel in the cursors
    std::map<InteractMode, std::unique_ptr<InteractionMode>> modes; // those with a behaviour of their own
    std::unique_ptr<FullScreenPlace> savedPlace;                    // while in full screen
    QPointF pointer;                                                // at the last mouse event, in view space
    int timerId = 0;
    QElapsedTimer tickClock;
    bool scrollLocked = false; // toggled by its key, shows nowhere
    bool painting = false;
    int collectingRepaints = 0; // > 0: repaints wait for the end of a RepaintCollector
    bool repaintCollected = false;
};
