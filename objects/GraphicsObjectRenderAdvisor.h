#pragma once

#include <cstdint>

class GraphicsObject;

// Keys of the display settings that an object asks for while it draws. An object without advice uses its own
// default.
namespace RenderKey {
constexpr int Component = 0;   // index of the image component to show
constexpr int DisplayMode = 1; // display mode of the image; 1 allows glyphs
constexpr int Color = 2;       // packed ARGB, alpha in the top byte
constexpr int Highlight = 4;   // not 0: highlight the polyline
constexpr int Dashed = 5;      // not 0: draw the polyline dashed
constexpr int Smooth = 7;      // 0: no smoothing of lines and points; without advice they are smooth
constexpr int EndPoints =
    8; // not 0: mark the ends of the polyline in the colour value(object, Color, EndPoints)
constexpr int LineWidthFactor = 9; // without advice 1
} // namespace RenderKey

// The channel by which the settings of a view reach the code that draws. A caller asks value() only after
// overrides() was true for the same arguments. subKey is 0 except for the colour of end points. Called on the
// thread that draws; the advisor must outlive the call that it is handed to.
class GraphicsObjectRenderAdvisor
{
public:
    virtual bool overrides(GraphicsObject *object, int key, int subKey) = 0;
    virtual std::uint32_t value(GraphicsObject *object, int key, int subKey) = 0;

protected:
    GraphicsObjectRenderAdvisor() = default;
    GraphicsObjectRenderAdvisor(const GraphicsObjectRenderAdvisor &) = default;
    GraphicsObjectRenderAdvisor &operator=(const GraphicsObjectRenderAdvisor &) = default;
    ~GraphicsObjectRenderAdvisor() = default; // nobody deletes an object through this interface
};
