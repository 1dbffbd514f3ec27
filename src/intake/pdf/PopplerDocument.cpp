// PDF documents read with poppler behind Engines::PdfDocument; the tabrix_pdf module.
#include "intake/Engines.h"

#include <QByteArray>
#include <mutex>
#include <poppler/qt6/poppler-qt6.h>

namespace {

class PopplerPage final : public Engines::PdfPage {
public:
    explicit PopplerPage(std::unique_ptr<Poppler::Page> page) : m_page(std::move(page)) {}

    QSizeF size() const override { return m_page->pageSizeF(); }
    bool upright() const override { return m_page->orientation() == Poppler::Page::Portrait; }

    QList<Engines::PdfWord> words() const override
    {
        const auto boxes = m_page->textList();
        QList<Engines::PdfWord> words;
        words.reserve(qsizetype(boxes.size()));
        for (size_t i = 0; i < boxes.size(); ++i) {
            const Poppler::TextBox &box = *boxes[i];
            const bool linked = i + 1 < boxes.size() && box.nextWord() == boxes[i + 1].get();
            words.append({box.text(), box.boundingBox(), box.hasSpaceAfter(), linked});
        }
        return words;
    }

    QImage render(double xres, double yres, QSize pixels) const override
    {
        return m_page->renderToImage(xres, yres, 0, 0, pixels.width(), pixels.height());
    }

private:
    std::unique_ptr<Poppler::Page> m_page;
};

class PopplerDocument final : public Engines::PdfDocument {
public:
    explicit PopplerDocument(std::unique_ptr<Poppler::Document> doc) : m_doc(std::move(doc)) {}

    int pageCount() const override { return m_doc->numPages(); }

    std::unique_ptr<Engines::PdfPage> page(int index) const override
    {
        std::unique_ptr<Poppler::Page> page(m_doc->page(index));
        if (!page)
            return nullptr;
        return std::make_unique<PopplerPage>(std::move(page));
    }

private:
    std::unique_ptr<Poppler::Document> m_doc;
};

// Poppler reports every syntax problem of a damaged file on the debug output; the user learns of a file
// that cannot be read from its failed status instead.
void silencePoppler()
{
    static std::once_flag once;
    std::call_once(once,
                   [] { Poppler::setDebugErrorFunction([](const QString &, const QVariant &) {}, {}); });
}

} // namespace

extern "C" Q_DECL_EXPORT Engines::PdfDocument *tabrix_open_pdf(const QByteArray &bytes,
                                                               Engines::PdfStatus *status)
{
    silencePoppler();
    // From the bytes intake already read: the file is never opened a second time, by path.
    std::unique_ptr<Poppler::Document> doc = Poppler::Document::loadFromData(bytes);
    if (!doc) {
        *status = Engines::PdfStatus::Damaged;
        return nullptr;
    }
    // A locked document must be unlocked before anything else is asked of it (poppler crashes otherwise).
    // The empty user password opens files that are only protected against editing or printing.
    if (doc->isLocked())
        doc->unlock(QByteArray(), QByteArray());
    if (doc->isLocked()) {
        *status = Engines::PdfStatus::Locked;
        return nullptr;
    }
    doc->setRenderHint(Poppler::Document::Antialiasing);
    doc->setRenderHint(Poppler::Document::TextAntialiasing);
    *status = Engines::PdfStatus::Opened;
    return new PopplerDocument(std::move(doc));
}
