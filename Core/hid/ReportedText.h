#pragma once

#include <QString>

/// What a camera reports about itself.
namespace ReportedText {

/// What a text reads as when the interface of the camera cannot be opened: one noncharacter, which
/// no camera reports.
inline const QString& notOpened()
{
    static const QString text(QChar(0xFFFF));
    return text;
}

/// @p answer, or empty when the camera could not be asked: there is nothing to show then, and
/// nothing to store settings under.
inline QString orEmpty(const QString& answer)
{
    return answer == notOpened() ? QString() : answer;
}

} // namespace ReportedText
