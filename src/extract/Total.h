#pragma once

#include "Amounts.h"
#include "model/Field.h"

namespace Extractor {

/// A labelled total.
struct TotalCandidate {
    double value = 0;
    double confidence = 0; ///< what findTotal gives it when it is chosen
    PageBox box;
    qsizetype row = 0; ///< index in Scan::rows
};

/// The labelled totals, top to bottom. With RuleFeatures::receiptTotals, rows noting the tax included,
/// counting stamps, breaking the total down by tax rate, cash and change rows, and a summary table's
/// "Total net tax" row are no totals; a rounded total is a strong one; a rounding adjustment below 1
/// gives the strongest total above it plus the adjustment.
QList<TotalCandidate> totalCandidates(const Scan &scan);

/// The grand total: the best labelled total (later rows win ties), or else the largest amount at low
/// confidence.
Field findTotal(const Scan &scan);
/// The same from candidates already found (totalCandidates of `scan`).
Field findTotal(const Scan &scan, const QList<TotalCandidate> &candidates);

} // namespace Extractor
