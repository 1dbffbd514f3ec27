#pragma once

#include <QString>

/// Repairs of what the recogniser makes of amounts on scans.
namespace AmountRepair {

/// `text` with a space the recogniser put after a decimal point removed: «RM 29. 70» becomes «RM 29.70».
/// Only where digits precede the point and exactly two digits follow the space, and neither side is part of
/// a longer figure such as a date («19. 10. 2018», «12.05. 18») or a time; «1. Item» stays as it is.
QString joinedDecimals(const QString &text);

} // namespace AmountRepair
