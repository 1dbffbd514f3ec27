// The --lines seam on arbitrary bytes: any input either fails cleanly or extracts without faults.
#include "LinesJson.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto input =
        LinesJson::parseInput(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (const auto *ok = std::get_if<LinesJson::Input>(&input)) {
        const auto result = Extractor::extract(ok->lines, ok->customFields, RuleSet::Full);
        LinesJson::writeResult(result);
        LinesJson::writeLines(ok->lines);
    }
    return 0;
}
