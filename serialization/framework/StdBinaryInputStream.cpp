#include "serialization/framework/StdBinaryInputStream.h"

#include <istream>

StdBinaryInputStream::StdBinaryInputStream(std::istream *source)
    : stream(source)
{}

bool StdBinaryInputStream::bad()
{
    return stream->bad();
}

bool StdBinaryInputStream::eof()
{
    return stream->eof();
}

bool StdBinaryInputStream::fail()
{
    return stream->fail();
}
