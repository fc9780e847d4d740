#include "ParameterModel.h"

#include "DeviceSettings.h"
#include "LogCategories.h"
#include "ParameterKeys.h"
#include "PictureSettings.h"

#include <algorithm>
#include <vector>

using namespace ParameterKeys;

namespace {

struct ComparedKey
{
    int position;
    QLatin1String key;
};

/// What isSameData() compares, in its order: the rows of both tables at their own positions, and
/// the two keys that belong to no row.
std::vector<ComparedKey> makeComparedKeys()
{
    std::vector<ComparedKey> keys{{1, FigureCenter}, {11, Intelligent}};
    for (const DeviceSettingRow& row : DeviceSettings::rows())
        keys.push_back({row.comparisonPosition, row.key});
    for (const PictureSettingRow& row : PictureSettings::rows())
        keys.push_back({row.comparisonPosition, row.key});
    std::sort(keys.begin(), keys.end(),
              [](const ComparedKey& a, const ComparedKey& b) { return a.position < b.position; });
    return keys;
}

} // namespace

void ParameterModel::setPicture(const PictureParameters& picture)
{
    for (const PictureSettingRow& row : PictureSettings::rows())
        paramDateMap[row.key] = picture.*row.value;
    paramDateMap[ImageMode] = picture.imageMode;
    for (const PictureSettingRow& row : PictureSettings::rows())
        paramDateChangeMap[row.key] = paramDateMap[row.key];
    paramDateChangeMap[ImageMode] = paramDateMap[ImageMode];
}

PictureParameters ParameterModel::editedPicture()
{
    PictureParameters picture;
    for (const PictureSettingRow& row : PictureSettings::rows())
        picture.*row.value = paramDateChangeMap[row.key];
    picture.imageMode = paramDateChangeMap[ImageMode];
    return picture;
}

void ParameterModel::deriveIntelligent()
{
    const bool autoFraming = paramDateMap[AutoFrameSwitch] != 0;
    const bool frameMaster = paramDateMap[FrameMaster] != 0;
    paramDateMap[Intelligent] = autoFraming || frameMaster ? 1 : 0;
}

void ParameterModel::copyDeviceParameters()
{
    for (const DeviceSettingRow& row : DeviceSettings::rows())
        paramDateChangeMap[row.key] = paramDateMap[row.key];
    paramDateChangeMap[Intelligent] = paramDateMap[Intelligent];
}

bool ParameterModel::isSameData()
{
    qCDebug(settingsLog) << "paramDateChangeMap[CameraView] = " << paramDateChangeMap[CameraView]
                         << "----"
                         << "paramDateMap[CameraView]" << paramDateMap[CameraView];
    qCDebug(settingsLog) << "paramDateChangeMap[HorizontalMirror] = "
                         << paramDateChangeMap[HorizontalMirror] << "----"
                         << "paramDateMap[HorizontalMirror]" << paramDateMap[HorizontalMirror];
    qCDebug(settingsLog) << "paramDateChangeMap[FigureCenter] = "
                         << paramDateChangeMap[FigureCenter] << "----"
                         << "paramDateMap[FigureCenter]" << paramDateMap[FigureCenter];
    static const std::vector<ComparedKey> compared = makeComparedKeys();
    return std::all_of(compared.begin(), compared.end(), [this](const ComparedKey& entry) {
        return isUnknown(entry.key) || paramDateChangeMap[entry.key] == paramDateMap[entry.key];
    });
}

void ParameterModel::setUnknown(const QString& key)
{
    m_unknown.insert(key);
    m_unread.insert(key);
}

void ParameterModel::setKnown(const QString& key)
{
    m_unknown.remove(key);
    m_unread.remove(key);
}

void ParameterModel::setReported(const QString& key, int value)
{
    setKnown(key);
    paramDateMap[key] = value;
    paramDateChangeMap[key] = value;
}

void ParameterModel::keepEdited()
{
    paramDateMap = paramDateChangeMap;
    m_unread = m_unknown;
}

void ParameterModel::clear()
{
    paramDateMap.clear();
    paramDateChangeMap.clear();
    m_unknown.clear();
    m_unread.clear();
}
