#include "Engines.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QtEndian>
#include <algorithm>

namespace Engines {

Entries resolveModule(const QString &name, std::initializer_list<const char *> symbols)
{
    QStringList folders;
    if (QCoreApplication::instance()) {
        folders.append(QCoreApplication::applicationDirPath());
        // Where `cmake --install` puts it: the library folder beside the programs' folder.
        folders.append(QCoreApplication::applicationDirPath() + QStringLiteral("/" TABRIX_ENGINES_FROM_BIN));
    }
    folders.append(QStringLiteral(TABRIX_ENGINES_DIR));
    QLibrary library; // never unloaded: the module's code is used until the process ends
    bool loaded = false;
    for (const QString &folder : std::as_const(folders)) {
        library.setFileName(folder + u'/' + name);
        if ((loaded = library.load()))
            break;
    }
    if (!loaded)
        return {{}, QStringLiteral("could not be loaded (%1)").arg(library.errorString())};
    Entries entries;
    for (const char *symbol : symbols) {
        const QFunctionPointer entry = library.resolve(symbol);
        if (!entry)
            return {{}, QStringLiteral("is incomplete (%1)").arg(library.fileName())};
        entries.symbols.append(entry);
    }
    return entries;
}

const Module &module()
{
    static const Module loaded = [] {
        Module m;
        const Entries entries =
            resolveModule(QStringLiteral("tabrix_engines"), {createTesseractName, openHeifName});
        if (!entries.error.isEmpty()) {
            m.error = QStringLiteral("the recognition module ") + entries.error;
            return m;
        }
        m.createTesseract = reinterpret_cast<CreateTesseract>(entries.symbols[0]);
        m.openHeif = reinterpret_cast<OpenHeif>(entries.symbols[1]);
        return m;
    }();
    return loaded;
}

const PdfModule &pdfModule()
{
    static const PdfModule loaded = [] {
        PdfModule m;
        const Entries entries = resolveModule(QStringLiteral("tabrix_pdf"), {openPdfName});
        if (!entries.error.isEmpty())
            m.error = QStringLiteral("the PDF module ") + entries.error;
        else
            m.openPdf = reinterpret_cast<OpenPdf>(entries.symbols[0]);
        return m;
    }();
    return loaded;
}

bool looksLikeHeif(const QByteArray &head)
{
    // An ISO-BMFF file starts with its "ftyp" box: size, "ftyp", major brand, minor version, then
    // compatible brands. Phones write HEIC under several major brands, so compatible ones count too.
    if (head.size() < 12 || head.mid(4, 4) != "ftyp")
        return false;
    static const QByteArrayList brands{"heic", "heix", "hevc", "hevx", "heim", "heis",
                                       "hevm", "hevs", "mif1", "msf1", "avif", "avis"};
    if (brands.contains(head.mid(8, 4)))
        return true;
    const qsizetype boxEnd = std::min<qsizetype>(head.size(), qFromBigEndian<quint32>(head.constData()));
    for (qsizetype at = 16; at + 4 <= boxEnd; at += 4)
        if (brands.contains(head.mid(at, 4)))
            return true;
    return false;
}

} // namespace Engines
