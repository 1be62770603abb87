#pragma once

#include "serialization/framework/StreamImageObjectSerializer.h"

#include <QCoreApplication>

// Writes the points of a slice-wise edge point extractor as a table, lowest slice first. Any set of edge
// points is accepted by canSerialize(), but others than such extractors fail. The stream is not checked while
// writing.
class EdgePointLister : public StreamImageObjectSerializer
{
    Q_DECLARE_TR_FUNCTIONS(EdgePointLister)

public:
    EdgePointLister();

    bool canSerialize(ImageObject *object) override;
    bool serialize(ImageObject *object, std::ostream &stream) override;
};
