#pragma once

// The boundary to the separately loaded module "tabrix_engines", which holds the native libraries that only
// some documents need: Tesseract (recognition) and libheif (HEIC/HEIF). Linking them into every program
// would cost each tabrix-cli process about 50 ms of dynamic loading before it reads a single page; loaded
// on first use, a digital PDF never pays for them. Everything here is header-only so that the module and
// the programs share no symbols besides the two entry points.

#include "Ocr.h"

#include <QByteArray>
#include <QImage>
#include <QString>

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

/// Entry points of the module, resolved by name.
/// `modelFolderUtf8` empty: the system's models; `rules`: int(RuleSet).
using CreateTesseract = Ocr::Engine *(*)(const char *languagesUtf8, const char *modelFolderUtf8, int rules);
/// `bytes`: the whole file, which the source keeps (shared) as long as it lives.
using OpenHeif = ImageSource *(*)(const QByteArray &bytes);
constexpr const char *createTesseractName = "tabrix_create_tesseract";
constexpr const char *openHeifName = "tabrix_open_heif";

struct Module {
    CreateTesseract createTesseract = nullptr;
    OpenHeif openHeif = nullptr;
    QString error; ///< why the module could not be loaded; empty when it was
};

/// The module, loaded once per process from the program's folder (or the build folder) on first call.
const Module &module();

/// True when `head` (the first 64 or so bytes of a file) starts an ISO-BMFF file of a HEIF brand.
bool looksLikeHeif(const QByteArray &head);

} // namespace Engines
