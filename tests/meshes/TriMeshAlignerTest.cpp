#include "meshes/TriMeshAligner.h"

#include "meshes/TriMeshFragment.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PlainAlignment.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <random>

namespace {

using MERV::BRep::Point;
using MERV::BRep::TriFace;
using Faces = std::vector<TriFace>;
using Motion = std::function<Point(const Point &)>;

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

auto meshUpdated()
{
    return qOverload<QObject *>(&TriMeshFragment::updated);
}

auto plainUpdated()
{
    return qOverload<>(&GraphicsObject::updated);
}

// A mesh object with one fragment.
struct Mesh
{
    explicit Mesh(const QString &label, Faces faces = {})
        : object(std::make_unique<TriMeshObject>(QStringLiteral("object of %1").arg(label), nullptr))
        , fragment(object->addFragment(label))
    {
        fragment->setFaces(std::move(faces));
    }

    std::unique_ptr<TriMeshObject> object;
    TriMeshFragment *fragment;
};

Faces facesOf(const TriMeshFragment &fragment)
{
    return {fragment.all().begin(), fragment.all().end()};
}

Faces movedBy(const Faces &faces, const Motion &motion)
{
    Faces result;
    for (const TriFace &face : faces)
        result.emplace_back(motion(face.vertex(0)), motion(face.vertex(1)), motion(face.vertex(2)));
    return result;
}

Motion shift(double x, double y, double z)
{
    return [=](const Point &p) { return Point(p.x + x, p.y + y, p.z + z); };
}

// The six sides of a box with a corner at the origin, two right triangles each.
Faces box(double a, double b, double c)
{
    const auto corner = [=](int i) {
        return Point((i & 1) != 0 ? a : 0.0, (i & 2) != 0 ? b : 0.0, (i & 4) != 0 ? c : 0.0);
    };
    const std::array<std::array<int, 4>, 6> sides{
        {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}};
    Faces faces;
    for (const auto &[i, j, k, l] : sides) {
        faces.emplace_back(corner(i), corner(j), corner(k));
        faces.emplace_back(corner(i), corner(k), corner(l));
    }
    return faces;
}

// A bumpy strip: neighbours share points, as ribbons do.
Faces strip(std::mt19937 &random, int columns, int rows)
{
    std::uniform_real_distribution<double> noise(-0.3, 0.3);
    std::vector<std::vector<Point>> grid;
    for (int r = 0; r <= rows; ++r) {
        grid.emplace_back();
        for (int c = 0; c <= columns; ++c)
            grid.back().emplace_back(c + noise(random), std::sin(0.7 * c) + noise(random), 1.5 * r);
    }
    Faces faces;
    const auto at = [&grid](int r, int c) {
        return grid[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
    };
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) {
            faces.emplace_back(at(r, c), at(r + 1, c), at(r, c + 1));
            faces.emplace_back(at(r + 1, c), at(r + 1, c + 1), at(r, c + 1));
        }
    return faces;
}

double largestDistance(const Faces &left, const Faces &right)
{
    if (left.size() != right.size())
        return noNumber;
    double largest = 0.0;
    for (std::size_t f = 0; f < left.size(); ++f)
        for (int i = 0; i < 3; ++i) {
            const double d = MERV::BRep::distance(left[f].vertex(i), right[f].vertex(i));
            if (!(d <= largest))
                largest = d;
        }
    return largest;
}

std::array<std::uint64_t, 4> bitsOf(const Point &p)
{
    return {std::bit_cast<std::uint64_t>(p.x), std::bit_cast<std::uint64_t>(p.y),
            std::bit_cast<std::uint64_t>(p.z), std::bit_cast<std::uint64_t>(p.w)};
}

// Bit by bit.
bool identical(const Faces &left, const Faces &right)
{
    if (left.size() != right.size())
        return false;
    for (std::size_t f = 0; f < left.size(); ++f)
        for (int i = 0; i < 3; ++i)
            if (bitsOf(left[f].vertex(i)) != bitsOf(right[f].vertex(i)))
                return false;
    return true;
}

QStringList linesFrom(const CapturedOutput &output, const QString &start)
{
    return output.standardOutput()
        .split(QLatin1Char('\n'))
        .filter(QRegularExpression(QStringLiteral("^") + QRegularExpression::escape(start)));
}

std::vector<double> rmsValues(const CapturedOutput &output)
{
    std::vector<double> values;
    for (const QString &line : linesFrom(output, QStringLiteral("Iteration #")))
        values.push_back(line.section(QLatin1Char(' '), -1).toDouble());
    return values;
}

const Faces wideTriangle{{{-100, -100, 0}, {100, -100, 0}, {0, 200, 0}}};

} // namespace

class TriMeshAlignerTest : public QObject
{
    Q_OBJECT

private slots:
    void labels_andSources()
    {
        const CapturedOutput quiet;
        const Mesh base(QStringLiteral("base %1"), box(1, 2, 3)),
            free(QStringLiteral("free %2"), box(1, 2, 3));
        const TriMeshAligner aligner(base.fragment, free.fragment);
        QCOMPARE(aligner.label(), QStringLiteral("free %2 aligned to base %1"));
        QCOMPARE(aligner.fragmentCount(), 1);
        QCOMPARE(aligner.fragment(0)->label(), QStringLiteral("free %2"));
        QCOMPARE(aligner.sources(), (QList<ImageObject *>{base.object.get(), free.object.get()}));
        const TriMeshAligner within(base.fragment, base.object->addFragment(QStringLiteral("second")));
        QCOMPARE(within.sources(), QList<ImageObject *>{base.object.get()});
    }

    // A small triangle 2 mm above a wide one: every foot is straight below, 2 mm away. The points' mean is
    // (0, 0, 2), that of the feet (0, 0, 0); S = diag(2/3, 2, 0), so the largest eigenvalue of Q is its trace
    // 8/3 with the vector (1, 0, 0, 0): no rotation, and a translation by (0, 0, -2). Then nothing is left.
    void parallelTriangle_isLoweredInOneRound()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const CapturedOutput output;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        QVERIFY(largestDistance(facesOf(*aligner.fragment(0)), {{{-1, -1, 0}, {1, -1, 0}, {0, 2, 0}}}) <
                1e-12);
        const QStringList lines = output.standardOutput().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 151); // three a round, and what follows the last end of line
        QCOMPARE(lines[0], QStringLiteral("Iteration #0; rms distance of free to base fragment is 2"));
        QString eigenvector = lines[1];
        QCOMPARE(eigenvector.remove(QLatin1Char('-')),
                 QStringLiteral("Eigenvector is 1, 0, 0, 0, having 2norm of 1"));
        QVERIFY(lines[1].endsWith(QStringLiteral(", having 2-norm of 1")));
        QCOMPARE(lines[2], QStringLiteral("Translation is 0, 0, -2"));
        QCOMPARE(lines[3], QStringLiteral("Iteration #1; rms distance of free to base fragment is 0"));
        QCOMPARE(lines[147].section(QLatin1Char(';'), 0, 0), QStringLiteral("Iteration #49"));
        QVERIFY(lines[150].isEmpty());
    }

    // From far off all points have the same closest point, the corner V = (-100, -100, -100): S = m V^T - m
    // V^T = 0, all eigenvalues are 0, the first vector is taken: no rotation, and a translation by V - m. Two
    // points belong to both faces and count twice: m = (2, 2, 1), while the mean of the four is
    // (1.5, 1.5, 1.5).
    void sharedVertices_weighAsMuchAsTheirFaces()
    {
        const Mesh base(QStringLiteral("base"),
                        {{{-100, -100, -100}, {-200, -100, -100}, {-100, -200, -100}}});
        const Mesh free(QStringLiteral("free"), {{{0, 0, 0}, {6, 0, 0}, {0, 6, 0}}, //
                                                 {{6, 0, 0}, {0, 6, 0}, {0, 0, 6}}});
        const CapturedOutput output;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        const QStringList lines = output.standardOutput().split(QLatin1Char('\n'));
        QCOMPARE(lines[1], QStringLiteral("Eigenvector is 1, 0, 0, 0, having 2-norm of 1"));
        QCOMPARE(lines[2], QStringLiteral("Translation is -102, -102, -101"));
    }

    void equalFragments_stayWhereTheyAre()
    {
        const Mesh base(QStringLiteral("base"), box(5, 7, 9)), free(QStringLiteral("free"), box(5, 7, 9));
        const CapturedOutput output;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        QVERIFY(largestDistance(facesOf(*aligner.fragment(0)), box(5, 7, 9)) < 1e-12);
        QCOMPARE(rmsValues(output).front(), 0.0);
        QCOMPARE(rmsValues(output).size(), std::size_t{50});
    }

    void fragmentOntoItself_staysWhereItIs()
    {
        const Mesh mesh(QStringLiteral("mesh"), box(5, 7, 9));
        const CapturedOutput output;
        const TriMeshAligner aligner(mesh.fragment, mesh.fragment);
        QVERIFY(largestDistance(facesOf(*aligner.fragment(0)), box(5, 7, 9)) < 1e-12);
        QCOMPARE(aligner.sources(), QList<ImageObject *>{mesh.object.get()});
    }

    void smallMotion_isUndone_data()
    {
        QTest::addColumn<double>("degrees");
        QTest::addColumn<double>("x");
        QTest::newRow("translation") << 0.0 << 0.3;
        QTest::newRow("rotation") << 6.0 << 0.0;
        QTest::newRow("both") << -5.0 << 0.4;
    }

    // A box has one place only where all corners of its copy lie on it (but for turns by half a circle), so
    // the alignment of a copy that was moved a little ends on the box itself. Every round lowers the rms.
    void smallMotion_isUndone()
    {
        QFETCH(const double, degrees);
        QFETCH(const double, x);
        const Faces original = box(10, 14, 20);
        const double angle = degrees * std::acos(-1.0) / 180.0, c = std::cos(angle), s = std::sin(angle);
        const Motion motion = [=](const Point &p) {
            return Point(c * p.x - s * p.y + x, s * p.x + c * p.y - 0.5 * x, p.z + 0.25 * x);
        };
        const Mesh base(QStringLiteral("base"), original);
        const Mesh free(QStringLiteral("free"), movedBy(original, motion));
        const CapturedOutput output;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        QVERIFY(largestDistance(facesOf(*aligner.fragment(0)), original) < 1e-6);
        QVERIFY(largestDistance(facesOf(*free.fragment), movedBy(original, motion)) == 0.0);
        const std::vector<double> rms = rmsValues(output);
        QCOMPARE(rms.size(), std::size_t{50});
        for (std::size_t i = 1; i < 10; ++i)
            QVERIFY(rms[i] < rms[i - 1]);
    }

    // The corners are at most 0.35 mm from the box and 8.6 mm or more from each of its middle axes: they turn
    // it by about 0.04 at most, and the cosine of half of that is 0.9998.
    void translation_hardlyTurnsInTheFirstRound()
    {
        const Mesh base(QStringLiteral("base"), box(10, 14, 20));
        const Mesh free(QStringLiteral("free"), movedBy(box(10, 14, 20), shift(0.3, -0.15, 0.075)));
        const CapturedOutput output;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        const QString first = linesFrom(output, QStringLiteral("Eigenvector is ")).front();
        const double q0 = first.section(QLatin1Char(' '), 2, 2).remove(QLatin1Char(',')).toDouble();
        QVERIFY2(std::abs(q0) > 0.999, qPrintable(first));
    }

    // Nothing of a run is kept for the next one: it says and does the same again.
    void everyRun_beginsWhereTheFreeFragmentIs()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const CapturedOutput output;
        TriMeshAligner aligner(base.fragment, free.fragment);
        const QString once = output.standardOutput();
        const Faces result = facesOf(*aligner.fragment(0));
        aligner.realign();
        QCOMPARE(output.standardOutput(), once + once);
        QVERIFY(identical(facesOf(*aligner.fragment(0)), result));
    }

    void result_isThatOfThePlainRounds()
    {
        std::mt19937 random(11);
        for (int round = 0; round < 4; ++round) {
            const Faces baseFaces = strip(random, 9, 4 + round);
            const Motion motion = shift(0.4, -0.3 * round, 0.2);
            const Faces freeFaces = movedBy(strip(random, 7 + 6 * round, 3), motion);
            const Mesh base(QStringLiteral("base"), baseFaces), free(QStringLiteral("free"), freeFaces);
            const CapturedOutput quiet;
            const TriMeshAligner aligner(base.fragment, free.fragment);
            PlainAlignment plain(baseFaces, freeFaces);
            for (int i = 0; i < 50; ++i)
                plain.round();
            QVERIFY(identical(facesOf(*aligner.fragment(0)), plain.faces()));
            QVERIFY(largestDistance(plain.faces(), freeFaces) > 0.01);
        }
    }

    // Homogeneous corners count with their place.
    void homogeneousCorners_areTakenWithTheirPlace()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-2, -2, 4, 2}, {4, -4, 8, 4}, {0, 1, 1, 0.5}}});
        const CapturedOutput quiet;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        QVERIFY(largestDistance(facesOf(*aligner.fragment(0)), {{{-1, -1, 0}, {1, -1, 0}, {0, 2, 0}}}) <
                1e-12);
        QCOMPARE(aligner.fragment(0)->face(0).vertex(2).w, 1.0);
    }

    void signals_areOnePerRoundAndTheOutputsOwnAtTheEnd()
    {
        const Mesh base(QStringLiteral("base"), box(5, 7, 9)), free(QStringLiteral("free"), box(5, 7, 9));
        const CapturedOutput output;
        TriMeshAligner aligner(base.fragment, free.fragment);
        QStringList log;
        connect(&aligner, &GraphicsObject::updated, this, [&log] { log << QStringLiteral("round"); });
        TriMeshFragment *out = aligner.fragment(0);
        connect(out, meshUpdated(), this, [&](QObject *object) {
            log << (object == out ? QStringLiteral("output with object") : QStringLiteral("another"));
        });
        connect(out, plainUpdated(), this, [&log] { log << QStringLiteral("output"); });
        const auto before = out->revision();
        aligner.realign();
        QCOMPARE(log.size(), 52);
        QCOMPARE(log.count(QStringLiteral("round")), 50);
        QCOMPARE(log[50], QStringLiteral("output with object"));
        QCOMPARE(log[51], QStringLiteral("output"));
        QCOMPARE(out->revision(), before + 50); // rewritten whole in every round
        QCOMPARE(linesFrom(output, QStringLiteral("Iteration #")).size(), 100);
    }

    void rounds_areThereToSee()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const CapturedOutput quiet;
        TriMeshAligner aligner(base.fragment, free.fragment);
        std::vector<double> heights;
        connect(&aligner, &GraphicsObject::updated, this,
                [&] { heights.push_back(aligner.fragment(0)->face(0).vertex(0).z); });
        free.fragment->setFaces({{{-1, -1, 5}, {1, -1, 5}, {0, 2, 5}}});
        free.fragment->notifyFragmentUpdated();
        QCOMPARE(heights.size(), std::size_t{50});
        QVERIFY(std::abs(heights.front()) < 1e-12);
    }

    // On purpose: only the free fragment starts a run.
    void changes_ofTheFreeFragmentOnlyStartARun()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const CapturedOutput output;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        const QSignalSpy updates(&aligner, &GraphicsObject::updated);
        base.fragment->setFaces(movedBy(wideTriangle, shift(0, 0, 7)));
        base.fragment->notifyFragmentUpdated();
        emit base.fragment->updated();
        QCOMPARE(updates.count(), 0);
        emit free.fragment->updated(); // without its object: not the signal that a rebuild ends with
        QCOMPARE(updates.count(), 0);
        free.fragment->notifyFragmentUpdated();
        QCOMPARE(updates.count(), 50);
        QCOMPARE(linesFrom(output, QStringLiteral("Iteration #")).size(), 100);
        QVERIFY(std::abs(aligner.fragment(0)->face(0).vertex(0).z - 7.0) < 1e-12); // on the base as it is now
        QCOMPARE(aligner.fragmentCount(), 1);
    }

    void emptyFreeFragment_givesAnEmptyOutputWithoutRounds()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        CapturedOutput output;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        const QSignalSpy updates(&aligner, &GraphicsObject::updated);
        const QSignalSpy withObject(aligner.fragment(0), meshUpdated());
        const QSignalSpy plain(aligner.fragment(0), plainUpdated());
        free.fragment->clear();
        free.fragment->notifyFragmentUpdated();
        QCOMPARE(aligner.fragment(0)->faceCount(), 0);
        QCOMPARE(updates.count(), 1);
        QCOMPARE(withObject.count(), 1);
        QCOMPARE(plain.count(), 1);
        QCOMPARE(linesFrom(output, QStringLiteral("Iteration #")).size(), 50); // those of the first run
    }

    void baseWithoutAnswer_leavesTheFreeFragmentWhereItIs_data()
    {
        QTest::addColumn<bool>("hasFaces");
        QTest::newRow("no faces") << false;
        QTest::newRow("faces without area") << true;
    }

    void baseWithoutAnswer_leavesTheFreeFragmentWhereItIs()
    {
        QFETCH(const bool, hasFaces);
        const Mesh base(QStringLiteral("base"),
                        hasFaces ? Faces{{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}}
                                 : Faces());
        const Mesh free(QStringLiteral("free"), box(1, 2, 3));
        const CapturedOutput output;
        TriMeshAligner aligner(base.fragment, free.fragment);
        QVERIFY(identical(facesOf(*aligner.fragment(0)), box(1, 2, 3)));
        const QStringList lines = output.standardOutput().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 151);
        QCOMPARE(lines[0], QStringLiteral("Iteration #0; rms distance of free to base fragment is nan"));
        QCOMPARE(linesFrom(output, QStringLiteral("Iteration #")).size(), 50);
        const QSignalSpy updates(&aligner, &GraphicsObject::updated);
        aligner.realign();
        QCOMPARE(updates.count(), 50);
    }

    // A point that is no number, and the infinite one, take no part; the others are aligned.
    void pointsThatAreNotFinite_takeNoPart()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}, //
                                                 {{noNumber, 0, 0}, {0, 0, INFINITY}, {0, 0, 1, 0}}});
        const CapturedOutput output;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        QCOMPARE(aligner.fragment(0)->faceCount(), 2);
        QVERIFY(std::abs(aligner.fragment(0)->face(0).vertex(0).z) < 1e-12);
        QVERIFY(std::isnan(aligner.fragment(0)->face(1).vertex(0).x));
        QCOMPARE(rmsValues(output).front(), 2.0);
    }

    void hostileSizes_end_data()
    {
        QTest::addColumn<double>("size");
        for (const double size : {1e-320, 1e-170, 1e-160, 1e-80, 1e80, 1e150, 1e155, 1e200, 1e308})
            QTest::addRow("%g", size) << size;
    }

    void hostileSizes_end()
    {
        QFETCH(const double, size);
        const Motion scaled = [size](const Point &p) { return Point(p.x * size, p.y * size, p.z * size); };
        const Faces large = movedBy(box(0.5, 0.7, 0.9), scaled);
        const Faces plain = box(1, 2, 3);
        const CapturedOutput output;
        for (const auto &[baseFaces, freeFaces] :
             {std::pair(large, large), std::pair(plain, large), std::pair(large, plain)}) {
            const Mesh base(QStringLiteral("base"), baseFaces), free(QStringLiteral("free"), freeFaces);
            const TriMeshAligner aligner(base.fragment, free.fragment);
            QCOMPARE(aligner.fragment(0)->faceCount(), 12);
            for (const TriFace &face : aligner.fragment(0)->all())
                for (int i = 0; i < 3; ++i)
                    QVERIFY(std::isfinite(face.vertex(i).x));
        }
        QCOMPARE(linesFrom(output, QStringLiteral("Iteration #")).size(), 150);
    }

    void defaultMadeFaces_areCarriedAlong()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {TriFace(), {{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}, TriFace()});
        const Mesh nothing(QStringLiteral("nothing"), {TriFace()});
        const CapturedOutput quiet;
        const TriMeshAligner aligner(base.fragment, free.fragment);
        QCOMPARE(aligner.fragment(0)->faceCount(), 3);
        QVERIFY(!aligner.fragment(0)->face(0).isValid());
        QVERIFY(std::abs(aligner.fragment(0)->face(1).vertex(0).z) < 1e-12);
        const TriMeshAligner withoutCorners(base.fragment, nothing.fragment);
        QCOMPARE(withoutCorners.fragment(0)->faceCount(), 1);
    }

    void closedSources_areForgottenAndTheCopyStays()
    {
        Mesh base(QStringLiteral("base"), wideTriangle);
        Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const Mesh stranger(QStringLiteral("stranger"));
        const CapturedOutput quiet;
        TriMeshAligner aligner(base.fragment, free.fragment);
        const Faces copy = facesOf(*aligner.fragment(0));
        const QSignalSpy updates(&aligner, &GraphicsObject::updated);

        aligner.detachFrom(stranger.object.get());
        QCOMPARE(aligner.sources(), (QList<ImageObject *>{base.object.get(), free.object.get()}));
        aligner.detachFrom(base.object.get());
        QCOMPARE(aligner.sources(), QList<ImageObject *>{free.object.get()});
        base.object.reset();
        free.fragment->setFaces(box(1, 2, 3));
        free.fragment->notifyFragmentUpdated();
        QVERIFY(identical(facesOf(*aligner.fragment(0)), copy));
        aligner.detachFrom(free.object.get());
        QCOMPARE(aligner.sources(), QList<ImageObject *>());
        free.object.reset();
        aligner.realign();
        QVERIFY(identical(facesOf(*aligner.fragment(0)), copy));
        QCOMPARE(updates.count(), 0);
    }

    void deletedFragments_withoutAnnouncementDoNoHarm()
    {
        Mesh base(QStringLiteral("base"), wideTriangle);
        Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const CapturedOutput quiet;
        TriMeshAligner aligner(base.fragment, free.fragment);
        base.object.reset();
        free.fragment->notifyFragmentUpdated();
        QCOMPARE(aligner.sources(), QList<ImageObject *>{free.object.get()});
        free.object.reset();
        aligner.realign();
        QCOMPARE(aligner.sources(), QList<ImageObject *>());
        QCOMPARE(aligner.fragment(0)->faceCount(), 1);
    }

    void sourceClosedByAListener_endsTheRun_data()
    {
        QTest::addColumn<bool>("isBase");
        QTest::addColumn<bool>("isDeleted");
        QTest::newRow("base") << true << false;
        QTest::newRow("free") << false << false;
        QTest::newRow("base, deleted") << true << true;
        QTest::newRow("free, deleted") << false << true;
    }

    void sourceClosedByAListener_endsTheRun()
    {
        QFETCH(const bool, isBase);
        QFETCH(const bool, isDeleted);
        Mesh base(QStringLiteral("base"), wideTriangle);
        Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        std::unique_ptr<TriMeshObject> &closing = (isBase ? base : free).object;
        const CapturedOutput quiet;
        TriMeshAligner aligner(base.fragment, free.fragment);
        const Faces copy = facesOf(*aligner.fragment(0));
        const QSignalSpy updates(&aligner, &GraphicsObject::updated);
        const QSignalSpy output(aligner.fragment(0), meshUpdated());
        connect(&aligner, &GraphicsObject::updated, this, [&] {
            if (updates.count() != 3)
                return;
            aligner.detachFrom(closing.get());
            if (isDeleted)
                closing.reset();
        });
        aligner.realign();
        QCOMPARE(updates.count(), 3);
        QCOMPARE(output.count(), 1);
        QVERIFY(largestDistance(facesOf(*aligner.fragment(0)), copy) < 1e-12);
    }

    // The run of the change is the one whose result stays.
    void freeFragmentChangedByAListener_isWhatIsAligned()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const CapturedOutput quiet;
        TriMeshAligner aligner(base.fragment, free.fragment);
        const QSignalSpy updates(&aligner, &GraphicsObject::updated);
        connect(&aligner, &GraphicsObject::updated, this, [&] {
            if (updates.count() != 3)
                return;
            free.fragment->setFaces({{{-4, -4, 2}, {4, -4, 2}, {0, 8, 2}}});
            free.fragment->notifyFragmentUpdated();
        });
        aligner.realign();
        QCOMPARE(updates.count(), 53);
        QVERIFY(largestDistance(facesOf(*aligner.fragment(0)), {{{-4, -4, 0}, {4, -4, 0}, {0, 8, 0}}}) <
                1e-12);
    }

    void freeFragmentEmptiedByAListener_leavesAnEmptyOutput()
    {
        const Mesh base(QStringLiteral("base"), wideTriangle);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const CapturedOutput quiet;
        TriMeshAligner aligner(base.fragment, free.fragment);
        const QSignalSpy updates(&aligner, &GraphicsObject::updated);
        connect(&aligner, &GraphicsObject::updated, this, [&] {
            if (updates.count() != 3)
                return;
            free.fragment->clear();
            free.fragment->notifyFragmentUpdated();
        });
        aligner.realign();
        QCOMPARE(updates.count(), 4);
        QCOMPARE(aligner.fragment(0)->faceCount(), 0);
    }

    // The live base is what is searched, also by the rounds of a run that has begun, and also if the faces
    // that were found before are no longer there.
    void baseChangedByAListener_isSearchedAsItIs()
    {
        Faces manyFaces = box(1, 1, 1);
        for (TriFace &face : manyFaces)
            face = movedBy({face}, shift(0, 0, 500)).front();
        manyFaces.push_back(wideTriangle.front());
        const Mesh base(QStringLiteral("base"), manyFaces);
        const Mesh free(QStringLiteral("free"), {{{-1, -1, 2}, {1, -1, 2}, {0, 2, 2}}});
        const CapturedOutput quiet;
        TriMeshAligner aligner(base.fragment, free.fragment);
        const QSignalSpy updates(&aligner, &GraphicsObject::updated);
        connect(&aligner, &GraphicsObject::updated, this, [&] {
            if (updates.count() == 3)
                base.fragment->setFaces(movedBy(wideTriangle, shift(0, 0, 7)));
        });
        aligner.realign();
        QCOMPARE(updates.count(), 50);
        QVERIFY(std::abs(aligner.fragment(0)->face(0).vertex(0).z - 7.0) < 1e-12);
    }

    void missingFragment_isReportedInTheAgreedWords()
    {
        const Mesh mesh(QStringLiteral("mesh"), wideTriangle);
        const CapturedOutput output;
        const TriMeshAligner withoutFree(mesh.fragment, nullptr);
        QCOMPARE(
            output.standardError(),
            QStringLiteral("Cound not establish connection indicating aligned fragment invalidation.\n"));
        QCOMPARE(withoutFree.fragmentCount(), 0);
        QCOMPARE(withoutFree.sources(), QList<ImageObject *>{mesh.object.get()});
        const TriMeshAligner withoutBase(nullptr, mesh.fragment);
        QCOMPARE(withoutBase.fragmentCount(), 0);
        QVERIFY(output.standardOutput().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TriMeshAlignerTest)
#include "TriMeshAlignerTest.moc"
