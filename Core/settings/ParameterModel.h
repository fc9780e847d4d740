#pragma once

#include "PictureParameters.h"

#include <QMap>
#include <QSet>
#include <QString>

/// The settings of the camera that is open, twice: as last read or saved, and as now edited.
///
/// Both maps have the meaning of their subscript operator throughout: a key that is absent reads as
/// 0 and is present from then on. GUI thread.
class ParameterModel
{
public:
    [[nodiscard]] QMap<QString, int>& stored() { return paramDateMap; }
    [[nodiscard]] QMap<QString, int>& edited() { return paramDateChangeMap; }

    /// Takes @p picture as the stored and the edited picture settings.
    void setPicture(const PictureParameters& picture);
    /// The edited picture settings.
    [[nodiscard]] PictureParameters editedPicture();

    /// Sets the stored "intelligent" from the stored framing values: on when either of them is.
    void deriveIntelligent();
    /// Copies the settings that the camera itself keeps, "intelligent" last, from stored to edited.
    void copyDeviceParameters();

    /// The value of @p key is not known, because the camera has not reported it. It reads as 0, and
    /// is neither compared nor written, until setKnown() or setChosen().
    void setUnknown(const QString& key);
    /// The camera has reported the value.
    void setKnown(const QString& key);
    /// Another program has given the camera @p value: it is what the program would store and show,
    /// and an edit of the same key is replaced, as the camera replaced it.
    void setReported(const QString& key, int value);
    /// The user has set the value; what the camera had before stays unknown.
    void setChosen(const QString& key) { m_unknown.remove(key); }
    /// The values that the user has set without knowing what the camera had are unknown again:
    /// there is nothing to restore.
    void dropChoices() { m_unknown = m_unread; }
    [[nodiscard]] bool isUnknown(const QString& key) const { return m_unknown.contains(key); }
    [[nodiscard]] const QSet<QString>& unknownKeys() const { return m_unknown; }

    /// Whether nothing is edited. The image mode does not count: a preset that changes no value
    /// changes nothing in the picture.
    bool isSameData();

    void keepEdited();
    void discardEdited() { paramDateChangeMap = paramDateMap; }
    void clear();

private:
    QMap<QString, int> paramDateMap;
    QMap<QString, int> paramDateChangeMap;
    QSet<QString> m_unknown; ///< of the edited values
    QSet<QString> m_unread;  ///< of the stored values
};
