// tabrix-cli: the extraction pipeline without a window, for batches and scripts.
#include "Arguments.h"
#include "Commands.h"
#include "StandardError.h"
#include "intake/DecoderWarnings.h"
#include "intake/NativeNames.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    Pipeline::quietDecoderWarnings();
    // From the bytes, not app.arguments(): a file name that is not UTF-8 must still name its file.
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args.append(Pipeline::decodeNativeName(QByteArray(argv[i])));

    const Expected<Invocation> parsed = parseArguments(args);
    if (const auto *error = std::get_if<TabrixError>(&parsed)) {
        printError(QStringLiteral("tabrix-cli: ") + error->message);
        std::fputs(usageText(), stderr);
        return 1;
    }
    const Invocation &call = std::get<Invocation>(parsed);
    switch (call.mode) {
    case Invocation::Mode::help:
        std::fputs(usageText(), stdout);
        return 0;
    case Invocation::Mode::version:
        std::printf("%s\n", versionLine().toUtf8().constData());
        return 0;
    case Invocation::Mode::lines:
        return runLines(call.input, call.options.rules);
    case Invocation::Mode::dumpLines:
        return runDumpLines(call.input, call.options.rules);
    case Invocation::Mode::merge:
        return runMerge(call.options);
    case Invocation::Mode::batch:
        break;
    }
    return runBatch(call.options);
}
