// Money::parse on arbitrary UTF-8 text: never crashes; a result is finite or infinite, never NaN.
#include "model/Money.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    if (const auto value = Money::parse(text)) {
        if (std::isnan(*value))
            std::abort();
        if (std::isfinite(*value))
            Money::formatQuantity(std::fmod(*value, 1e12));
        Money::twoDecimals(*value);
    }
    return 0;
}
