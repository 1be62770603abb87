#include "serialization/framework/BinaryStream.h"

BinaryStream::~BinaryStream() = default;
