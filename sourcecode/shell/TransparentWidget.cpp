#include "TransparentWidget.h"

TransparentWidget::TransparentWidget(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_label(this)
{
    setObjectName(QStringLiteral("TransparentWidget"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFixedSize(360, 202);
    m_label.setObjectName(QStringLiteral("label"));
    m_label.setFixedSize(360, 202);
    m_label.setStyleSheet(QStringLiteral("image: url(:/images/line.png);"));
}
