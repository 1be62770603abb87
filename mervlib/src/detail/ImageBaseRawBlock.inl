// The whole voxel buffer as one block in the byte order of the machine.
#pragma once

#include "Common/ImageBase.h"

#include "mervlib/src/detail/RawBlock.h"

#include <span>

namespace MERV {

template <class T>
int ImageBase<T>::load(std::istream &stream, bool skipHeader)
{
    if (skipHeader)
        detail::skipLocalHeader(stream);
    if (data == nullptr && valueCount != 0) {
        if (externalBuffer)
            stream.setstate(std::ios::failbit); // nowhere to put the values
        else if (!detail::blockIsThere(stream, valueCount * sizeof(T)))
            return 1;
        else
            allocate(valueCount);
    }
    return detail::readBlock(stream, std::as_writable_bytes(std::span(data, valueCount)));
}

template <class T>
int ImageBase<T>::load(const char *path, bool skipHeader)
{
    return detail::loadFromFile(path, [&](std::istream &stream) { return load(stream, skipHeader); });
}

template <class T>
int ImageBase<T>::save(std::ostream &stream) const
{
    if (data == nullptr && valueCount != 0)
        stream.setstate(std::ios::failbit); // there are no values
    return detail::writeBlock(stream, std::as_bytes(std::span(data, valueCount)), sizeof(T));
}

template <class T>
int ImageBase<T>::save(const char *path) const
{
    return detail::saveToFile(path, [&](std::ostream &stream) { return save(stream); });
}

} // namespace MERV
