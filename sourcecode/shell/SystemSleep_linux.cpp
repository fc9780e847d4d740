#include "SystemSleep.h"

class SystemSleep::Watch
{
};

SystemSleep::SystemSleep(QObject* parent)
    : QObject(parent)
{
}

SystemSleep::~SystemSleep() = default;
