// All member definitions of ImageBase<T>; included only by the sources that instantiate it.
#pragma once

#include "mervlib/src/detail/ImageBaseArithmetic.inl"
#include "mervlib/src/detail/ImageBaseCore.inl"
#include "mervlib/src/detail/ImageBaseFilters.inl"
#include "mervlib/src/detail/ImageBaseRawBlock.inl"
#include "mervlib/src/detail/ImageBaseReaders.inl"
#include "mervlib/src/detail/ImageBaseResampling.inl"
#include "mervlib/src/detail/ImageBaseSlices.inl"
