#include "Common/ImageBase.h"

#include "mervlib/src/detail/ImageBaseMembers.inl"

template class MERV::ImageBase<char>;
