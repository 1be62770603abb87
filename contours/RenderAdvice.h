#pragma once

#include <cstdint>

class GraphicsObject;
class GraphicsObjectRenderAdvisor;

// The value for key, or fallback if the advisor leaves it to the object.
std::uint32_t adviceOr(GraphicsObjectRenderAdvisor *advisor, GraphicsObject *object, int key,
                       std::uint32_t fallback);

// Makes the packed ARGB colour the current colour of OpenGL.
void applyColor(std::uint32_t argb);
// Makes the advised colour the current one; leaves the current one without advice.
void applyAdvisedColor(GraphicsObjectRenderAdvisor *advisor, GraphicsObject *object);
