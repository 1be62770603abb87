#pragma once

#include <QHash>
#include <QString>

#include <memory>

class BinaryInputStream;
class SlicedContour;
class SlicedContoursFragment;
class SlicedContoursObject;
class SlicedContoursSegment;

// Reads one SLIC tree from a stream; see SlicChunk.h for the layout. Used once.
class SlicReader
{
public:
    // The stream is borrowed.
    explicit SlicReader(BinaryInputStream &source);

    // The contours, without parent; null when the file is damaged.
    std::unique_ptr<SlicedContoursObject> read();

private:
    struct Header
    {
        QString tag;
        quint64 identity = 0;
        quint64 size = 0; // of the whole chunk
    };

    Header readHeader();
    // Reads the children of a chunk of this size, each by readInto(parent, header). False when they are
    // damaged.
    template <class Parent>
    bool readChildren(quint64 size, Parent &parent);

    void readInto(SlicedContoursObject &contours, const Header &header);
    void readInto(SlicedContoursFragment &fragment, const Header &header);
    void readInto(SlicedContoursSegment &segment, const Header &header);
    void readInto(SlicedContour &contour, const Header &header);

    void readFragment(SlicedContoursObject &contours, const Header &header);
    void readContour(SlicedContoursObject &contours, const Header &header);
    void readSegment(SlicedContoursFragment &fragment, const Header &header);
    void readPoint(SlicedContoursSegment &segment);
    void readReference(SlicedContour &contour, const Header &header);
    template <class Object>
    void readName(Object &object, const Header &header);
    double readDouble();
    void skipBody(const Header &header);

    BinaryInputStream &stream;
    QHash<quint64, SlicedContoursFragment *> fragments; // by identity
};
