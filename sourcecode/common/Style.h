#pragma once

#include <array>
#include <QColor>
#include <QString>

/// The colours of the program, each with one name. A colour that stands in more than one file has
/// its name here, and C++ code uses no other; scripts/check-colours checks both. The forms contain
/// the values, because Qt Designer cannot show a named colour.
namespace Style {

struct Colour
{
    const char* name; ///< as style sheets of C++ code write it, with a "@" before it
    const char* value;
};

inline constexpr std::array kColours{
    Colour{"surface", "#FFFFFF"},         ///< pages, dialogs, cards
    Colour{"text", "#141414"},            ///< texts and titles
    Colour{"text-secondary", "#999999"},  ///< captions and hints
    Colour{"text-label", "#666666"},      ///< labels beside values
    Colour{"line", "#F2F2F2"},            ///< borders of bars and pages
    Colour{"card-line", "#EBEBEB"},       ///< borders of cards
    Colour{"card", "#F7F8FA"},            ///< cards without a border
    Colour{"panel-line", "#C5C6C9"},      ///< borders of dialogs
    Colour{"control-line", "#DBDBDB"},    ///< borders of buttons and menu entries
    Colour{"list", "#F4F4F4"},            ///< behind the cards of the device list
    Colour{"accent", "#3476FF"},          ///< what is chosen, and the main button of a dialog
    Colour{"accent-hover", "#5289FF"},    ///< accent, under the pointer
    Colour{"accent-pressed", "#2A62D9"},  ///< accent, pressed
    Colour{"accent-disabled", "#C7D8FF"}, ///< accent, disabled
    Colour{"accent-light", "#EEF3FF"},    ///< secondary buttons, pressed
    Colour{"focus", "#1B4AB0"},           ///< border of the main button with the focus
    Colour{"focus-ring", "#163E9C"},      ///< ring around a control with the focus
    Colour{"start", "#004DA6"},           ///< start page and the title bar above it
    Colour{"menu-hover", "#2dabf9"},      ///< entry of the tray menu under the pointer
    Colour{"scroll-handle", "#C9CDD4"},
    Colour{"scroll-handle-hover", "#A9AEB8"},
    Colour{"switch-off", "#DDDDDD"},
    Colour{"connected", "#60DD00"},
    Colour{"failed", "#FF5E56"},
};

/// The value of the colour @p name: "#FFFFFF" for "surface". The name is one of kColours.
[[nodiscard]] QString colour(const char* name);

/// @p styleSheet with the value of each colour in the place of its name: "color: @text;".
[[nodiscard]] QString sheet(const char* styleSheet);

} // namespace Style
