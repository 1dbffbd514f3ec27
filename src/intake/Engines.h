#pragma once

// The boundary to the separately loaded modules that hold the native libraries only some documents need:
// "tabrix_engines" with Tesseract (recognition) and libheif (HEIC/HEIF), and "tabrix_pdf" with poppler
// (the export's "tabrix_zip" with libzip is found by resolveModule too).
// Linking them into every program would cost each tabrix-cli process tens of milliseconds of dynamic
// loading before it reads a single page; loaded on first use, `--lines` never pays for them and a digital
// PDF never pays for the recogniser. Everything here is header-only so that the modules and the programs
// share no symbols besides the entry points.
//
// Ownership: an entry point returns a new object that the caller owns and deletes (the virtual destructor
// runs the module's code, and modules are never unloaded); the wrappers below hand it over as a
// std::unique_ptr at once. Objects returned by the interfaces' own functions are owners too.

#include "Ocr.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <initializer_list>
#include <memory>

namespace Engines {

/// The frames of an image file that Qt's decoders do not read.
class ImageSource {
public:
    virtual ~ImageSource() = default;
    virtual int frameCount() const = 0;
    /// Frame `index` decoded upright, its longer side at most `maxSide` pixels; null when it cannot be
    /// decoded.
    virtual QImage frame(int index, int maxSide) = 0;
};

/// One word of a PDF page's text layer, in the order the PDF library reads them.
struct PdfWord {
    QString text;
    QRectF box; ///< points of the crop box, top-left origin
    bool spaceAfter = false;
    bool linkedToNext = false; ///< the word after it in the list continues the same line
};

/// One page of an open PDF. Not to be shared between threads.
class PdfPage {
public:
    virtual ~PdfPage() = default;
    /// The crop box turned by the page's rotation, in points: the upright display size.
    virtual QSizeF size() const = 0;
    /// Whether the page is shown unturned, so that its text boxes are in display coordinates.
    virtual bool upright() const = 0;
    virtual QList<PdfWord> words() const = 0;
    /// The crop box drawn upright at `xres` × `yres` dots per inch, `pixels` of it from the top left;
    /// null on failure.
    virtual QImage render(double xres, double yres, QSize pixels) const = 0;
};

/// An open, unlocked PDF. Not to be shared between threads: each thread opens its own.
class PdfDocument {
public:
    virtual ~PdfDocument() = default;
    virtual int pageCount() const = 0;
    /// Page `index` (0-based), null when the document does not have it.
    virtual std::unique_ptr<PdfPage> page(int index) const = 0;
};

enum class PdfStatus { Opened, Damaged, Locked };

/// Entry points of the modules, resolved by name; each returns a new object the caller owns.
/// `modelFolderUtf8` empty: the system's models; `rules`: int(RuleSet).
using CreateTesseract = Ocr::Engine *(*)(const char *languagesUtf8, const char *modelFolderUtf8, int rules);
/// `bytes`: the whole file, which the source keeps (shared) as long as it lives; null when it is not an
/// image libheif reads.
using OpenHeif = ImageSource *(*)(const QByteArray &bytes);
/// `bytes`: the whole file, which the document keeps (shared) as long as it lives. Null unless `*status` is
/// Opened; a document whose empty password opens it counts as unlocked.
using OpenPdf = PdfDocument *(*)(const QByteArray &bytes, PdfStatus *status);
constexpr const char *createTesseractName = "tabrix_create_tesseract";
constexpr const char *openHeifName = "tabrix_open_heif";
constexpr const char *openPdfName = "tabrix_open_pdf";

struct Module {
    CreateTesseract createTesseract = nullptr;
    OpenHeif openHeif = nullptr;
    QString error; ///< why the module could not be loaded; empty when it was
};

struct PdfModule {
    OpenPdf openPdf = nullptr;
    QString error; ///< why the module could not be loaded; empty when it was
};

/// The entry points of a module, in the order asked, or why they cannot be had.
struct Entries {
    QList<QFunctionPointer> symbols;
    QString error; ///< "could not be loaded (reason)" or "is incomplete (file)"; empty on success
};

/// Loads the module `name` ("tabrix_engines") from the program's folder, the library folder of an
/// installation, or the build folder, for the life of the process, and resolves `symbols` in it.
Entries resolveModule(const QString &name, std::initializer_list<const char *> symbols);

/// The recognition module, loaded once per process from the program's folder (or the build folder) on
/// first call.
const Module &module();

/// The PDF module, loaded the same way.
const PdfModule &pdfModule();

/// True when `head` (the first 64 or so bytes of a file) starts an ISO-BMFF file of a HEIF brand.
bool looksLikeHeif(const QByteArray &head);

} // namespace Engines
