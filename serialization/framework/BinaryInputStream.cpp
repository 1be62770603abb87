#include "serialization/framework/BinaryInputStream.h"

BinaryInputStream &BinaryInputStream::read(quint64 &value)
{
    return readUInt64(value);
}
