#include "Commands.h"
#include "LinesJson.h"
#include "StandardError.h"

#include <QFile>
#include <cstdio>

int runLines(const QString &path, RuleSet rules)
{
    QFile file;
    const bool opened = path == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly)
                                                   : (file.setFileName(path), file.open(QIODevice::ReadOnly));
    if (!opened) {
        printError(QStringLiteral("tabrix-cli: cannot read %1: %2").arg(path, file.errorString()));
        return 1;
    }
    const auto input = LinesJson::parseInput(file.readAll());
    if (const auto *error = std::get_if<TabrixError>(&input)) {
        printError(QStringLiteral("tabrix-cli: ") + error->message);
        return 1;
    }
    const auto &[lines, custom] = std::get<LinesJson::Input>(input);
    const QByteArray out = LinesJson::writeResult(Extractor::extract(lines, custom, rules));
    std::fwrite(out.constData(), 1, size_t(out.size()), stdout);
    std::fputc('\n', stdout);
    return 0;
}
