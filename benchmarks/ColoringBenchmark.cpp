// Painting a mesh of 100,000 faces coloured by samples, beside the same triangles from one vertex array and
// beside the plain drawing face by face. Needs a display. "bytes/face" counts the faces as they lie in the
// fragment and all that colouring keeps; "cuts/face" are the crossings of a face with the scale's breaks.
#include "benchmarks/WavySheet.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/ColouredTriangles.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/SparselySampledImageObject.h"
#include "tests/coloring/PlainColoring.h"
#include "tests/support/GlCanvas.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

using namespace WavySheet;
using MERV::BRep::Point;
using MERV::BRep::TriFace;

constexpr double wave = 0.24; // cells to radians: about one cut for each face

class NoAdvice : public GraphicsObjectRenderAdvisor
{
public:
    bool overrides(GraphicsObject *, int, int) override { return false; }
    std::uint32_t value(GraphicsObject *, int, int) override { return 0; }
};

struct Workplace
{
    int argumentCount = 1;
    char name[9] = "coloring";
    char *arguments[2] = {name, nullptr};
    QGuiApplication application{argumentCount, arguments};
    GlCanvas canvas{512, 512};
    TriMeshObject object{"mesh", nullptr};
    TriMeshFragment *fragment = object.addFragment("ribbon");
    SparselySampledImageObject samples{"thickness", nullptr};
    ColoringTriMeshRenderer coloring{fragment, &samples, "coloring"};
    double fragmentBytes = 0.0;

    Workplace()
    {
        glDepthFunc(GL_GEQUAL);
        glClearDepth(0.0);
        show(rows);
    }

    void show(int rowCount)
    {
        canvas.ortho(0.0, 0.3 * columns, 0.0, 0.3 * rowCount, 100.0);
        for (int row = 0; row <= rowCount; ++row)
            for (int column = 0; column <= columns; ++column) {
                const Point p = at(column, row);
                samples.setSample({p.x, p.y, p.z},
                                  2.0 + 2.0 * std::sin(wave * column) * std::sin(wave * row));
            }
        const std::size_t before = heapBytes();
        fragment->setFaces(WavySheet::faces(rowCount));
        fragmentBytes = static_cast<double>(heapBytes() - before);
    }

    static void clear() { glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); }

    void draw()
    {
        NoAdvice advice;
        clear();
        coloring.render(&advice);
        glFinish();
    }
};

Workplace &workplace()
{
    static auto *const place = new Workplace; // the toolkit's end is not measured
    return *place;
}

// The argument is the number of rows, each of 500 faces.
void paint(benchmark::State &state)
{
    Workplace &place = workplace();
    const auto rowCount = static_cast<int>(state.range(0));
    const double shownFaces = 2.0 * columns * rowCount;
    place.show(rowCount);
    place.draw();
    for (auto _ : state)
        place.draw();
    const ColouredTriangles triangles =
        colouredTriangles(place.fragment->all(), *place.samples.samples(), bandedColourScale());
    state.counters["cuts/face"] = (static_cast<double>(triangles.vertices.size()) / shownFaces - 3.0) / 2.0;
    state.counters["bytes/face"] =
        (place.fragmentBytes + static_cast<double>(triangles.memory())) / shownFaces;
    place.show(rows);
}
BENCHMARK(paint)->Arg(200)->Arg(400)->Unit(benchmark::kMillisecond);

// The reference: all triangles, with their vertices repeated, from one array.
void oneVertexArray(benchmark::State &state)
{
    Workplace &place = workplace();
    const ColouredTriangles triangles =
        colouredTriangles(place.fragment->all(), *place.samples.samples(), bandedColourScale());
    std::vector<ColouredTriangles::Vertex> vertices;
    vertices.reserve(triangles.indices.size());
    for (const std::uint32_t index : triangles.indices)
        vertices.push_back(triangles.vertices[index]);
    constexpr GLsizei stride = sizeof(ColouredTriangles::Vertex);
    const GlAttributeScope attributes(GL_ALL_ATTRIB_BITS);
    for (const GLenum array : std::initializer_list<GLenum>{GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
        glEnableClientState(array);
    for (const GLenum capability : std::initializer_list<GLenum>{GL_LIGHTING, GL_LIGHT0, GL_NORMALIZE,
                                                                 GL_DEPTH_TEST, GL_COLOR_MATERIAL})
        glEnable(capability);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    glVertexPointer(3, GL_FLOAT, stride, vertices.front().position.data());
    glNormalPointer(GL_FLOAT, stride, vertices.front().normal.data());
    glColorPointer(3, GL_FLOAT, stride, vertices.front().colour.data());
    for (auto _ : state) {
        Workplace::clear();
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(vertices.size()));
        glFinish();
    }
    for (const GLenum array : std::initializer_list<GLenum>{GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
        glDisableClientState(array);
}
BENCHMARK(oneVertexArray)->Unit(benchmark::kMillisecond);

void plainDrawing(benchmark::State &state)
{
    Workplace &place = workplace();
    const GlAttributeScope attributes(GL_ALL_ATTRIB_BITS);
    for (auto _ : state) {
        Workplace::clear();
        PlainColoring::draw(*place.fragment, place.samples);
        glFinish();
    }
}
BENCHMARK(plainDrawing)->Unit(benchmark::kMillisecond);

// After a change of the mesh or the samples.
void rebuild(benchmark::State &state)
{
    Workplace &place = workplace();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            colouredTriangles(place.fragment->all(), *place.samples.samples(), bandedColourScale()));
}
BENCHMARK(rebuild)->Unit(benchmark::kMillisecond);

} // namespace
