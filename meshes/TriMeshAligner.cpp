#include "meshes/TriMeshAligner.h"

#include "meshes/AlignmentRun.h"
#include "meshes/TriMeshFragment.h"

#include <iostream>

TriMeshAligner::TriMeshAligner(TriMeshFragment *newBase, TriMeshFragment *newFree, QObject *parent)
    : TriMeshObject(tr("%1 aligned to %2")
                        .arg(newFree != nullptr ? newFree->label() : QString(),
                             newBase != nullptr ? newBase->label() : QString()),
                    parent)
    , base(newBase)
    , free(newFree)
{
    // The wording of the message is on purpose. A change of the base starts no run, on purpose too.
    if (newFree == nullptr || !connect(newFree, qOverload<QObject *>(&TriMeshFragment::updated), this,
                                       qOverload<QObject *>(&TriMeshAligner::realign)))
        std::cerr << "Cound not establish connection indicating aligned fragment invalidation." << std::endl;
    realign();
}

QList<ImageObject *> TriMeshAligner::sources() const
{
    QList<ImageObject *> all = TriMeshObject::sources();
    ImageObject *ownerOfBase = rootImageObject(base);
    ImageObject *ownerOfFree = rootImageObject(free);
    if (ownerOfBase != nullptr)
        all.append(ownerOfBase);
    if (ownerOfFree != nullptr && ownerOfFree != ownerOfBase)
        all.append(ownerOfFree);
    return all;
}

void TriMeshAligner::detachFrom(ImageObject *closing)
{
    TriMeshObject::detachFrom(closing);
    if (base != nullptr && rootImageObject(base) == closing)
        base = nullptr;
    if (free != nullptr && rootImageObject(free) == closing)
        free = nullptr;
}

void TriMeshAligner::realign()
{
    realign(nullptr);
}

void TriMeshAligner::realign(QObject *)
{
    if (base == nullptr || free == nullptr)
        return;
    if (fragmentCount() == 0)
        addFragment(free->label());
    ++runs;
    TriMeshFragment *output = fragment(0);
    AlignmentRun run(free->all());
    if (run.isEmpty()) {
        output->setFaces(run.faces());
        emit updated();
    } else {
        runRounds(run);
    }
    output->notifyFragmentUpdated();
    emit output->updated();
}

// Whoever looks at a round may let go of a fragment, or change the free one, which is a run of its own.
void TriMeshAligner::runRounds(AlignmentRun &run)
{
    constexpr int rounds = 50;
    const unsigned current = runs;
    for (int i = 0; i < rounds && runs == current && base != nullptr && free != nullptr; ++i) {
        run.round(i, *base);
        fragment(0)->setFaces(run.faces());
        emit updated();
    }
}
