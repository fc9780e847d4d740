#pragma once

#include <memory>

/// While an object of this class exists, the windows of a program that does not scale them keep
/// their size in pixels when the scale of their monitor changes. Windows suggests another size
/// then, in which a window of fixed size is clipped or has an empty border. On Linux nobody
/// suggests a size. GUI thread.
class PixelSize
{
public:
    PixelSize();
    ~PixelSize();
    PixelSize(const PixelSize&) = delete;
    PixelSize& operator=(const PixelSize&) = delete;

private:
    class Filter;
    std::unique_ptr<Filter> m_filter;
};
