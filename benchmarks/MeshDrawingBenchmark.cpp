// Drawing a lit mesh of 100,000 faces, beside the same triangles from one vertex array and beside one pair of
// begin and end per face; what comes before it after a change; its section with a plane; a snapshot of it.
// Needs a display. "bytes/face" counts a face in the fragment, in its drawing and in one snapshot.
#include "benchmarks/WavySheet.h"
#include "meshes/TriMeshDrawing.h"
#include "meshes/TriMeshFragment.h"
#include "tests/support/GlCanvas.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <vector>

namespace {

using namespace WavySheet;
using MERV::BRep::Point;
using MERV::BRep::TriFace;

constexpr double plane[4] = {0.3, 0.2, 1.0, -17.0};

struct Workplace
{
    int argumentCount = 1;
    char name[8] = "drawing";
    char *arguments[2] = {name, nullptr};
    QGuiApplication application{argumentCount, arguments};
    GlCanvas canvas{1024, 1024};
    TriMeshFragment fragment;

    Workplace()
    {
        canvas.ortho(-5, 80, -10, 70);
        glColor4ub(200, 150, 90, 255);
        fragment.setFaces(faces());
    }

    static void clear() { glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); }
};

Workplace &workplace()
{
    static auto *const place = new Workplace; // the toolkit's end is not measured
    return *place;
}

void lightUp()
{
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    for (const GLenum capability :
         std::initializer_list<GLenum>{GL_LIGHTING, GL_LIGHT0, GL_NORMALIZE, GL_DEPTH_TEST})
        glEnable(capability);
}

void draw(benchmark::State &state)
{
    Workplace &place = workplace();
    place.fragment.render(nullptr);
    for (auto _ : state) {
        Workplace::clear();
        place.fragment.render(nullptr);
        glFinish();
    }
}
BENCHMARK(draw)->Unit(benchmark::kMillisecond);

// The reference: nothing but the call that sends the triangles.
void oneVertexArray(benchmark::State &state)
{
    const std::vector<LitVertex> vertices = litTriangles(workplace().fragment.all());
    const GlAttributeScope attributes(GL_ALL_ATTRIB_BITS);
    lightUp();
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glVertexPointer(4, GL_FLOAT, sizeof(LitVertex), vertices.front().position.data());
    glNormalPointer(GL_FLOAT, sizeof(LitVertex), vertices.front().normal.data());
    for (auto _ : state) {
        Workplace::clear();
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(vertices.size()));
        glFinish();
    }
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
}
BENCHMARK(oneVertexArray)->Unit(benchmark::kMillisecond);

void faceByFace(benchmark::State &state)
{
    const GlAttributeScope attributes(GL_ALL_ATTRIB_BITS);
    lightUp();
    for (auto _ : state) {
        Workplace::clear();
        for (const TriFace &face : workplace().fragment.all()) {
            const GlPrimitive triangle(GL_TRIANGLES);
            const Point normal = face.normal();
            glNormal3d(normal.x, normal.y, normal.z);
            for (int i = 0; i < 3; ++i)
                glVertex4d(face.vertex(i).x, face.vertex(i).y, face.vertex(i).z, face.vertex(i).w);
        }
        glFinish();
    }
}
BENCHMARK(faceByFace)->Unit(benchmark::kMillisecond);

// Before the first drawing after a change.
void makeTriangles(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(litTriangles(workplace().fragment.all()));
}
BENCHMARK(makeTriangles)->Unit(benchmark::kMillisecond);

void drawSection(benchmark::State &state)
{
    for (auto _ : state) {
        Workplace::clear();
        workplace().fragment.renderSection(nullptr, plane);
        glFinish();
    }
}
BENCHMARK(drawSection)->Unit(benchmark::kMillisecond);

void takeSnapshot(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(TriMeshFragment(workplace().fragment).faceCount());
}
BENCHMARK(takeSnapshot)->Unit(benchmark::kMillisecond);

// The driver's own memory is in use before.
void memory(benchmark::State &state)
{
    Workplace &place = workplace();
    place.fragment.render(nullptr);
    glFinish();
    std::size_t used = 0;
    for (auto _ : state) {
        const std::size_t before = heapBytes();
        TriMeshFragment fragment;
        for (const TriFace &face : place.fragment.all())
            fragment.addFace(face);
        fragment.render(nullptr);
        glFinish();
        const TriMeshFragment snapshot(fragment);
        used = heapBytes() - before;
    }
    state.counters["bytes/face"] = static_cast<double>(used) / faceCount;
}
BENCHMARK(memory)->Unit(benchmark::kMillisecond);

} // namespace
