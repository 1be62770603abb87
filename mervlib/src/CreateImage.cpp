#include "Common/ImageBase.h"

namespace MERV {

Image::~Image() = default;

Image *createImage(int dataType)
{
    switch (dataType) {
    case TypeChar:
        return new ImageBase<char>;
    case TypeUChar:
        return new ImageBase<unsigned char>;
    case TypeShort:
        return new ImageBase<short>;
    case TypeUShort:
        return new ImageBase<unsigned short>;
    case TypeInt:
        return new ImageBase<int>;
    case TypeUInt:
        return new ImageBase<unsigned int>;
    case TypeFloat:
        return new ImageBase<float>;
    case TypeDouble:
        return new ImageBase<double>;
    default:
        return nullptr;
    }
}

} // namespace MERV
