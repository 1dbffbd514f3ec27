#include "Engines.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QtEndian>
#include <algorithm>

namespace Engines {

QString loadModule(QLibrary &library, const QString &name)
{
    QStringList folders;
    if (QCoreApplication::instance()) {
        folders.append(QCoreApplication::applicationDirPath());
        // Where `cmake --install` puts it: the library folder beside the programs' folder.
        folders.append(QCoreApplication::applicationDirPath() + QStringLiteral("/" TABRIX_ENGINES_FROM_BIN));
    }
    folders.append(QStringLiteral(TABRIX_ENGINES_DIR));
    for (const QString &folder : std::as_const(folders)) {
        library.setFileName(folder + u'/' + name);
        if (library.load())
            return {};
    }
    return library.errorString();
}

const Module &module()
{
    static const Module loaded = [] {
        Module m;
        QLibrary library;
        if (const QString failed = loadModule(library, QStringLiteral("tabrix_engines")); !failed.isEmpty()) {
            m.error = QStringLiteral("the recognition module could not be loaded (%1)").arg(failed);
            return m;
        }
        m.createTesseract = reinterpret_cast<CreateTesseract>(library.resolve(createTesseractName));
        m.openHeif = reinterpret_cast<OpenHeif>(library.resolve(openHeifName));
        if (!m.createTesseract || !m.openHeif)
            m.error = QStringLiteral("the recognition module is incomplete (%1)").arg(library.fileName());
        return m;
    }();
    return loaded;
}

const PdfModule &pdfModule()
{
    static const PdfModule loaded = [] {
        PdfModule m;
        QLibrary library;
        if (const QString failed = loadModule(library, QStringLiteral("tabrix_pdf")); !failed.isEmpty()) {
            m.error = QStringLiteral("the PDF module could not be loaded (%1)").arg(failed);
            return m;
        }
        m.openPdf = reinterpret_cast<OpenPdf>(library.resolve(openPdfName));
        if (!m.openPdf)
            m.error = QStringLiteral("the PDF module is incomplete (%1)").arg(library.fileName());
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
