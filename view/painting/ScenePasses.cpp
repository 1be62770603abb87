#include "view/painting/ScenePasses.h"

#include "view/DisplayScope.h"

Drawing drawingFor(int displayScope, Pass pass)
{
    const auto when = [](bool drawn, Drawing drawing) { return drawn ? drawing : Drawing::Nothing; };
    switch (displayScope) {
    case ScopePoint:
        return when(pass == Pass::On, Drawing::Point);
    case ScopeSlice:
        return when(pass == Pass::On, Drawing::Plane);
    case ScopeSliceAndAdjacent:
        return Drawing::Plane;
    case ScopeVolume:
        return when(pass != Pass::On, Drawing::Whole);
    case ScopeVolumeBehind:
        return when(pass == Pass::Behind, Drawing::Whole);
    case ScopeVolumeBefore:
        return when(pass == Pass::Before, Drawing::Whole);
    default: // hidden, and on purpose also "Point and adjacent"
        return Drawing::Nothing;
    }
}

std::array<Pass, 3> passOrder(double normalZ)
{
    if (normalZ > 0.0)
        return {Pass::Behind, Pass::On, Pass::Before};
    return {Pass::Before, Pass::On, Pass::Behind};
}
