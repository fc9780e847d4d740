#pragma once

#include <QCursor>
#include <QGuiApplication>

/// Shows the busy cursor while the GUI thread waits for a camera, which takes up to three seconds
/// for each read. GUI thread.
class BusyCursor
{
public:
    BusyCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};
