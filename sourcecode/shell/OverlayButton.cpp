#include "OverlayButton.h"

OverlayButton::OverlayButton(const QString& name, const QString& accessibleName,
                             const QString& image, QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_label(this)
{
    setObjectName(name);
    setAccessibleName(accessibleName);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(24, 24);
    m_label.setObjectName(QStringLiteral("label"));
    m_label.setFixedSize(24, 24);
    setLabelStyle(image);
    m_label.installEventFilter(this);
}
