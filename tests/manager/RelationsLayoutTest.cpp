#include "objects/manager/RelationsLayout.h"

#include "tests/manager/Fakes.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Objects "0", "1", ... whose sources are given by number; a number beyond the list is an object outside of
// it.
struct Graph
{
    explicit Graph(const std::vector<std::vector<std::size_t>> &sources)
        : objects(sources.size())
    {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            for (const std::size_t source : sources[i])
                objects[i].sourceList.append(source < objects.size() ? &objects[source] : &outside);
            list.append(&objects[i]);
        }
        positions = relationsLayout(list);
    }
    QPoint at(std::size_t i) { return positions.value(&objects[i], QPoint(-1, -1)); }

    std::vector<FakeImage> objects;
    FakeImage outside;
    QList<ImageObject *> list;
    QMap<ImageObject *, QPoint> positions;
};

} // namespace

// Prints a point in failure messages.
static void PrintTo(const QPoint &point, std::ostream *stream)
{
    *stream << point.x() << ", " << point.y();
}

TEST(RelationsLayout, ofNothing_isEmpty)
{
    EXPECT_TRUE(relationsLayout({}).isEmpty());
}

TEST(RelationsLayout, roots_standBelowOneAnother)
{
    Graph graph({{}, {}, {}});
    EXPECT_EQ(graph.at(0), QPoint(40, 40));
    EXPECT_EQ(graph.at(1), QPoint(40, 120));
    EXPECT_EQ(graph.at(2), QPoint(40, 200));
}

TEST(RelationsLayout, derived_standsRightOfItsSourcesAtTheirMeanHeight)
{
    Graph graph({{}, {}, {0, 1}, {0, 2}});
    EXPECT_EQ(graph.at(2), QPoint(120, 80)); // (40 + 120) / 2
    EXPECT_EQ(graph.at(3), QPoint(200, 60)); // beside the rightmost source; (40 + 80) / 2
}

TEST(RelationsLayout, meanHeight_isAnIntegerDivision)
{
    Graph graph({{}, {}, {}, {0, 1, 1}});
    EXPECT_EQ(graph.at(3), QPoint(120, 93)); // (40 + 120 + 120) / 3 = 93.3
}

TEST(RelationsLayout, takenPlace_movesDown)
{
    Graph graph({{}, {0}, {0}, {0}});
    EXPECT_EQ(graph.at(1), QPoint(120, 40));
    EXPECT_EQ(graph.at(2), QPoint(120, 120));
    EXPECT_EQ(graph.at(3), QPoint(120, 200));
}

TEST(RelationsLayout, derivedBeforeItsSource_waits)
{
    Graph graph({{1}, {2}, {}});
    EXPECT_EQ(graph.at(2), QPoint(40, 40));
    EXPECT_EQ(graph.at(1), QPoint(120, 40));
    EXPECT_EQ(graph.at(0), QPoint(200, 40));
}

TEST(RelationsLayout, sourcesOutsideOfTheList_areLeftOut)
{
    Graph graph({{}, {9, 0}});
    EXPECT_EQ(graph.at(1), QPoint(120, 40));
}

TEST(RelationsLayout, withOutsideSourcesAlone_standsInTheFirstColumn_skippingARow)
{
    // After one root the next free row is 120; one more step of 80 is added before the object is placed.
    Graph graph({{}, {9}, {9}});
    EXPECT_EQ(graph.at(1), QPoint(40, 200));
    EXPECT_EQ(graph.at(2), QPoint(40, 280));
}

TEST(RelationsLayout, derivedFarDown_movesTheFreeRow)
{
    // Objects 1 to 3 stack up beside the root at 40, 120 and 200; so the free row becomes 200, and 280 is
    // used.
    Graph graph({{}, {0}, {0}, {0}, {9}});
    EXPECT_EQ(graph.at(4), QPoint(40, 280));
}

TEST(RelationsLayout, rings_end)
{
    Graph self(std::vector(1, std::vector<std::size_t>(1, 0)));
    EXPECT_EQ(self.at(0), QPoint(40, 120));
    // The first of the ring stands in the first column: 120 + 80; the others follow it.
    Graph ring({{}, {3}, {1}, {2, 0}});
    EXPECT_EQ(ring.at(1), QPoint(40, 200));
    EXPECT_EQ(ring.at(2), QPoint(120, 200));
    EXPECT_EQ(ring.at(3), QPoint(200, 120)); // (200 + 40) / 2
}
