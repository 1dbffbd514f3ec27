#include "OutputCheck.h"

#include "intake/NativeNames.h"

#include <sys/stat.h>

std::optional<QString> outputIsAnInput(const QString &output, const QStringList &inputs)
{
    struct stat out {};
    if (output.isEmpty() || ::stat(Pipeline::nativeName(output).constData(), &out) != 0 ||
        !S_ISREG(out.st_mode))
        return std::nullopt;
    for (const QString &input : inputs) {
        struct stat in {};
        if (::stat(Pipeline::nativeName(input).constData(), &in) == 0 && in.st_dev == out.st_dev &&
            in.st_ino == out.st_ino)
            return QStringLiteral("tabrix-cli: --output %1 is the input %2; write the export to another file")
                .arg(Pipeline::displayName(output), Pipeline::displayName(input));
    }
    return std::nullopt;
}
