#pragma once

#include "model/DocStatus.h"
#include "model/RuleSet.h"

#include <functional>

namespace Ocr {
class Engine;
}

namespace Pipeline {

/// Progress callback: the in-progress status (Reading or Recognizing) and a fraction 0…1.
/// Called from the loading threads, possibly two at once, and must return at once; the receiver posts it
/// to wherever it is needed. May be empty.
using Report = std::function<void(DocStatus::Kind status, double progress)>;

/// How the loaders read a file.
struct LoadOptions {
    /// False where no one will look at the pages (the CLI): pages with enough digital text are not
    /// rasterised and PageData::image stays null. Pages that need recognition are still rendered for OCR.
    bool renderImages = true;
    /// The recogniser; null means each loading thread's own Tesseract engine for `rules` (Ocr::threadEngine).
    /// One passed in is used from the calling thread only, so its PDF pages are read one at a time.
    Ocr::Engine *ocr = nullptr;
    /// Threads reading the pages of one PDF: the calling one plus helpers from the global thread pool, taken
    /// only when free at once. 0: as many as the machine has cores. The batch command, which already reads
    /// several documents at once, passes 1.
    int threads = 0;
    /// Core reads scans with the plain recognition procedure; Full adds what we do for receipts and scans.
    RuleSet rules = RuleSet::Full;
};

} // namespace Pipeline
