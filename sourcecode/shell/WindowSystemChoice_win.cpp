#include "WindowSystemChoice.h"

// Windows has only one platform plug-in, and that one loads GL when a window asks for it.
WindowSystemChoice::WindowSystemChoice() = default;

WindowSystemChoice::~WindowSystemChoice() = default;
