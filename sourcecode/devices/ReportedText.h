#pragma once

#include <QString>

/// What a camera reported about itself, or empty when it could not be asked: a link that does not
/// open reads as the single noncharacter U+FFFF, which is no text to show or to file settings
/// under.
inline QString reportedText(const QString& answer)
{
    return answer == QString(QChar(0xFFFF)) ? QString() : answer;
}
