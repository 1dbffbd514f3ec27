// PDF and image loading on arbitrary bytes: every file either loads or fails with a message, never crashes.
// The first byte picks the loader (the rest is the file), so one corpus exercises poppler, Qt's image
// decoders and libheif; recognition is replaced by an engine that reads nothing.
#include "intake/Ocr.h"
#include "intake/Pipeline.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

namespace {

class NoOcr final : public Ocr::Engine {
public:
    Expected<QList<TextLine>> recognize(const QImage &, int) override { return QList<TextLine>{}; }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    static const QTemporaryDir dir;
    static const char *const names[] = {"f.pdf", "f.png", "f.jpg", "f.tiff", "f.heic"};
    const QString path = dir.filePath(QString::fromLatin1(names[data[0] % 5]));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 0;
    file.write(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    file.close();
    NoOcr ocr;
    Pipeline::LoadOptions options;
    options.renderImages = false;
    options.ocr = &ocr;
    options.threads = 1;
    Pipeline::load(path, options, {});
    return 0;
}
