#pragma once

#include "Amounts.h"

namespace Extractor {

/// The grand total: the best labelled total, or else the largest amount at low confidence.
Field findTotal(const Scan &scan);

} // namespace Extractor
