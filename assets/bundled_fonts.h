#pragma once

namespace corvane::assets {

/// Makes the fonts that the program brings along known to Qt and fontconfig, and the pictograms
/// readable under ":/corvane/pictograms". Takes a few milliseconds the first time, and
/// nothing after that. Main thread.
void registerBundledFonts();

} // namespace corvane::assets
