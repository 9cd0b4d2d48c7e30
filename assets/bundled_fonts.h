#pragma once

namespace corvane::assets {

/// Registers the embedded fonts with Qt and fontconfig, and makes the pictograms available under
/// ":/corvane/pictograms". Takes a few milliseconds on the first call; later calls do nothing. Main
/// thread.
void registerBundledFonts();

} // namespace corvane::assets
