#pragma once

#include <QTextCodec>

/// Sets the local 8-bit encoding for its lifetime, so that a test does not depend on the locale it
/// is started in.
class LocaleCodec
{
public:
    explicit LocaleCodec(const char* name)
        : m_previous(QTextCodec::codecForLocale())
    {
        QTextCodec* codec = QTextCodec::codecForName(name);
        Q_ASSERT(codec);
        QTextCodec::setCodecForLocale(codec);
    }
    ~LocaleCodec() { QTextCodec::setCodecForLocale(m_previous); }
    LocaleCodec(const LocaleCodec&) = delete;
    LocaleCodec& operator=(const LocaleCodec&) = delete;

private:
    QTextCodec* m_previous;
};
