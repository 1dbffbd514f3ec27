#pragma once

namespace Pipeline {

/// Keeps the image decoders' and their libraries' (libpng, libtiff) warnings away from standard error:
/// the user learns of a file that cannot be read from its failure. Other messages pass on unchanged.
void quietDecoderWarnings();

} // namespace Pipeline
