// A name in the recovery folder. A generation's name that is made anew from what it says is understood in the
// same way.
#include "recovery/RecoveryFiles.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString name =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    RecoveryFiles::isHalf(name);
    RecoveryFiles::parseSavedMark(name);
    const auto generation = RecoveryFiles::parse(name);
    if (!generation)
        return 0;
    const auto again = RecoveryFiles::parse(RecoveryFiles::name(*generation));
    if (!again || again->object != generation->object || again->time != generation->time)
        __builtin_trap();
    return 0;
}
