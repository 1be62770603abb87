#pragma once

#include "serialization/framework/BinaryInputStream.h"

#include <iosfwd>

// A binary stream over a std::istream, which the caller owns and keeps alive; never null.
class StdBinaryInputStream : public BinaryInputStream
{
public:
    explicit StdBinaryInputStream(std::istream *stream);

    bool bad() override;
    bool eof() override;
    bool fail() override;

protected:
    std::istream *stream;
};
