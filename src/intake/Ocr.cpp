#include "Ocr.h"

#include "AmountRepair.h"
#include "Engines.h"
#include "model/Money.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <algorithm>

namespace Ocr {

QString languages()
{
    QString chosen = qEnvironmentVariable("TABRIX_OCR_LANGUAGES").trimmed();
    if (!chosen.isEmpty())
        return chosen;
    // Tesseract names languages by their ISO 639-2/T code; one whose data is not installed is skipped
    // when the engine loads, so English alone remains.
    const QString local = QLocale::languageToCode(Money::userLocale().language(), QLocale::ISO639Part2T);
    const QString english = QStringLiteral("eng");
    return local.isEmpty() || local == english ? english : english + u'+' + local;
}

namespace {

// Stands in for an engine that could not be made, so the documents that need one fail with the reason.
class FailedEngine final : public Engine {
public:
    explicit FailedEngine(const QString &reason)
        : m_error{QStringLiteral("Text recognition failed: ") + reason}
    {
    }
    Expected<QList<TextLine>> recognize(const QImage &, int) override { return m_error; }

private:
    TabrixError m_error;
};

} // namespace

QStringList modelFolders()
{
    QStringList folders;
    const QString chosen = qEnvironmentVariable("TABRIX_TESSDATA");
    if (!chosen.isEmpty())
        folders.append(chosen);
    if (QCoreApplication::instance())
        folders.append(QCoreApplication::applicationDirPath() + QStringLiteral("/tessdata"));
    folders.append(QStringLiteral(TABRIX_TESSDATA_DIR));
    return folders;
}

QString modelFolder(const QString &languages, const QStringList &folders)
{
    const QStringList names = languages.split(u'+', Qt::SkipEmptyParts);
    if (names.isEmpty())
        return {};
    for (const QString &folder : folders) {
        const QDir dir(folder);
        const bool complete = std::all_of(names.begin(), names.end(), [&](const QString &name) {
            return QFileInfo(dir.filePath(name + QStringLiteral(".traineddata"))).isFile();
        });
        if (complete)
            return dir.absolutePath();
    }
    return {};
}

std::unique_ptr<Engine> createTesseract(const QString &languages, RuleSet rules)
{
    // Core reads with the system's models so that it stays what it always was.
    const QString folder = rules == RuleSet::Full ? modelFolder(languages, modelFolders()) : QString();
    return createTesseract(languages, folder, rules);
}

std::unique_ptr<Engine> createTesseract(const QString &languages, const QString &modelFolder, RuleSet rules)
{
    const Engines::Module &module = Engines::module();
    if (!module.createTesseract)
        return std::make_unique<FailedEngine>(module.error);
    return std::unique_ptr<Engine>(
        module.createTesseract(languages.toUtf8().constData(), modelFolder.toUtf8().constData(), int(rules)));
}

Engine &threadEngine(RuleSet rules)
{
    struct Cached {
        QString languages;
        std::unique_ptr<Engine> engine;
    };
    thread_local Cached cached[2]; // by rule set
    Cached &mine = cached[rules == RuleSet::Full];
    const QString wanted = languages();
    if (!mine.engine || mine.languages != wanted)
        mine = {wanted, createTesseract(wanted, rules)};
    return *mine.engine;
}

Expected<QList<TextLine>> read(Engine &engine, const QImage &image, int page, RuleSet rules)
{
    auto lines = engine.recognize(image, page);
    if (rules == RuleSet::Full)
        if (auto *read = std::get_if<QList<TextLine>>(&lines))
            for (TextLine &line : *read)
                line.text = AmountRepair::joinedDecimals(line.text);
    return lines;
}

} // namespace Ocr
