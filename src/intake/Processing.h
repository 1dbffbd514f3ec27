#pragma once

#include "Pipeline.h"
#include "extract/Extractor.h"
#include "model/CustomFieldDef.h"
#include "model/PageData.h"
#include "model/TabrixError.h"

#include <QList>
#include <QString>
#include <functional>

/// The work done for one document off the main thread: load the file, then extract its fields.
/// Shared by the store (one document at a time) and the command-line tool (several at once), which is
/// why it lives below both.
namespace Processing {

/// Everything read from one document: its pages and what the extractor found in them.
struct Loaded {
    QList<PagePtr> pages;
    Extractor::Result extraction;
    /// When the file was cut at the loader's page or frame limit: pages read and in the file; else 0.
    int pagesRead = 0;
    int pagesInFile = 0;
};

/// Turns a file into pages, reporting progress as it goes. The default is Pipeline::load; tests
/// substitute their own so no real file, renderer or OCR engine is needed. Must be safe to call from a
/// worker thread; must not throw. An unsupported file type is the loader's failure to report.
using Loader = std::function<Expected<QList<PagePtr>>(const QString &path, const Pipeline::Report &report)>;

/// The intake pipeline as a Loader. `options.renderImages` false keeps digital pages unrendered.
Loader pipelineLoader(Pipeline::LoadOptions options = {});

/// Loads `path` with `loader`, reports (Extracting, 0.92), then runs the extractor over every page's lines
/// in page order with `customFields` and `rules`. Touches no shared state; `report` may be called from this
/// thread and must return at once. Returns the loader's error unchanged when loading fails.
Expected<Loaded> run(const QString &path, const QList<CustomFieldDef> &customFields,
                     const Pipeline::Report &report, const Loader &loader, RuleSet rules = RuleSet::Full);

} // namespace Processing
