#include "PixelSize.h"

class PixelSize::Filter
{
};

PixelSize::PixelSize() = default;

PixelSize::~PixelSize() = default;
