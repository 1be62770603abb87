#include "view/painting/ScenePasses.h"

#include "view/camera/Homogeneous.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(ScenePasses, eachScope_drawsInItsPasses)
{
    struct Row
    {
        int scope;
        Drawing behind, on, before;
    };
    using enum Drawing;
    const Row table[] = {
        {0, Nothing, Nothing, Nothing}, // hidden
        {1, Nothing, Drawing::Point, Nothing},
        {2, Nothing, Nothing, Nothing}, // point and adjacent: offered, drawn nowhere
        {3, Nothing, Drawing::Plane, Nothing},
        {4, Drawing::Plane, Drawing::Plane, Drawing::Plane},
        {5, Whole, Nothing, Whole},
        {6, Whole, Nothing, Nothing},
        {7, Nothing, Nothing, Whole},
        {8, Nothing, Nothing, Nothing},
    };
    for (const Row &row : table) {
        EXPECT_EQ(drawingFor(row.scope, Pass::Behind), row.behind) << row.scope;
        EXPECT_EQ(drawingFor(row.scope, Pass::On), row.on) << row.scope;
        EXPECT_EQ(drawingFor(row.scope, Pass::Before), row.before) << row.scope;
    }
}

TEST(ScenePasses, cameraTurnedByHalf_reversesTheOrder)
{
    const std::array<Pass, 3> backToFront{Pass::Behind, Pass::On, Pass::Before};
    const std::array<Pass, 3> reversed{Pass::Before, Pass::On, Pass::Behind};
    const ::Plane axial{0.0, 0.0, 1.0, -5.0};
    const double half = std::acos(-1.0);
    EXPECT_EQ(passOrder(transformedPlane(*inverseOf(Matrix4::identity()), axial).c), backToFront);
    EXPECT_EQ(passOrder(transformedPlane(*inverseOf(rotation(0.0, half, 0.0)), axial).c), reversed);
    EXPECT_EQ(passOrder(0.0), reversed);
}
