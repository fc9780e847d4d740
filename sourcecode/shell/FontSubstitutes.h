#pragma once

/// Fonts that replace the font family of the forms. Defined in FontSubstitutes_<platform>.cpp.
namespace FontSubstitutes {

/// Sets the fonts that Qt uses where the family of the forms is not installed. Call it when the
/// application object exists.
void install();

} // namespace FontSubstitutes
