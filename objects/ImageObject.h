#pragma once

#include "objects/LabeledGraphicsObject.h"
#include "objects/Vector3.h"

#include <QList>

class GraphicsObjectRenderAdvisor;
struct EdgePoint;

// What imageType() answers.
enum ImageType : int
{
    ImageTypeOther = 0,
    ImageTypePixmap = 1, // voxel images
    ImageTypeContours = 2,
    ImageTypeMesh = 3
};

// What the image manager lists: volumes, contours, meshes, samples and all that is computed from them. Each
// operation has a harmless default, so that a class implements only what applies to it. The manager's list
// owns image objects, whatever their QObject parent. Main thread; the render family needs a current OpenGL
// context. All lengths and positions are in mm. No operation reports an error.
class ImageObject : public LabeledGraphicsObject
{
    Q_OBJECT

public:
    ImageObject() = default;
    ImageObject(const QString &label, QObject *parent);
    // Copies the label only; the new object has no parent.
    explicit ImageObject(const LabeledGraphicsObject &other);
    ImageObject(const ImageObject &other);
    ImageObject &operator=(const ImageObject &) = delete;

    // An image object is the root of its tree, even if its QObject parent is a graphics object: always null.
    GraphicsObject *parentGraphicsObject() const override;

    // One of ImageType.
    virtual int imageType() const;

    // Draws what lies in the box; zMin == zMax means the one plane at that z. advisor is never null in this
    // family.
    virtual void renderBox(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin,
                           float yMax, float zMin, float zMax);
    // Draws a marker for one position; position is homogeneous (x, y, z, w).
    virtual void renderPoint(GraphicsObjectRenderAdvisor *advisor, const double position[4]);
    virtual void renderPoint(GraphicsObjectRenderAdvisor *advisor, float x, float y, float z);
    // Draws what lies in the plane a x + b y + c z + d = 0 (a, b, c, d). False if the object cannot draw this
    // plane. The default draws planes with a and b exactly 0 through renderBox at z = -c * d: planes are
    // handed over with c = 1 or c = -1.
    virtual bool renderPlane(GraphicsObjectRenderAdvisor *advisor, const double plane[4]);
    virtual bool renderPlane(GraphicsObjectRenderAdvisor *advisor, const float plane[4]);
    // Draws the whole object.
    virtual void render(GraphicsObjectRenderAdvisor *advisor);
    virtual void beforePaint();

    virtual int meshCount() const;

    // Points whose coordinates each lie within radius of (x, y, z). The caller owns the list, not the points.
    virtual QList<EdgePoint *> *edgePointsAround(float x, float y, float z, float radius);
    // What is under the position. The caller owns the list, not the objects.
    virtual QList<GraphicsObject *> *objectsAround(float x, float y, float z, float radius);
    // Points of contours around the position.
    virtual QList<Vector3> contourPointsAround(const Vector3 &position, float radius);

    // Size of the bounding box from the origin.
    virtual float extentX() const;
    virtual float extentY() const;
    virtual float extentZ() const;
    virtual bool hasContent() const;

    // The z positions that are worth stepping to. A walk is at its end when the result equals the argument
    // (or, for a start beyond the last position, does not go on in the direction of the walk).
    virtual float firstSignificantZ() const;
    virtual float nextSignificantZ(float z) const;
    virtual float previousSignificantZ(float z) const;

    // The smallest meaningful step.
    virtual float granularity() const;

    // The objects that this one was computed from; only those that still exist.
    virtual QList<ImageObject *> sources() const;

    // The closing of an image object. Before closing is deleted, the manager takes it out of its list and
    // calls this on every object that remains. An override lets go of closing and of all parts of it (see
    // rootImageObject()): sets the pointers to null, waits until no worker uses them, and from then on
    // behaves as its class says for an absent source. Without a pointer to closing it does nothing. Overrides
    // call the base. The signal destroyed() comes too late for this: a derived class's data are gone by then.
    virtual void detachFrom(ImageObject *closing);

    // Ends the object's worker thread for good and waits for it; what was published last stays. For the end of
    // the program, where image objects are not deleted. Without a worker it does nothing. May be called again.
    virtual void stopWorking();

    // The path that the object was loaded from; null if it was built in memory.
    QString filePath() const;

protected:
    int origin = 0; // how the object was named: 1 an unnamed image, 2 named after a file; set by voxel images
    QString loadedFrom; // see filePath()
};

// Walks parentGraphicsObject() upwards from object (included) and returns the last image object met, or null.
ImageObject *rootImageObject(GraphicsObject *object);
