#include "Repaints.h"

#include <numeric>
#include <QApplication>
#include <QEvent>

Repaints::Repaints()
{
    qApp->installEventFilter(this);
}

int Repaints::total() const
{
    return std::accumulate(m_counts.begin(), m_counts.end(), 0);
}

bool Repaints::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Paint) {
        const QString name = watched->objectName();
        ++m_counts[name.isEmpty() ? QString::fromLatin1(watched->metaObject()->className()) : name];
    }
    return false;
}
