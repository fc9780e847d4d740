#include "ParameterModel.h"

#include "ParameterKeys.h"

#include <QDebug>

using namespace ParameterKeys;

void ParameterModel::setPicture(const PictureParameters& picture)
{
    paramDateMap[Bright] = picture.bright;
    paramDateMap[Contrast] = picture.contrast;
    paramDateMap[Saturation] = picture.saturation;
    paramDateMap[Sharpness] = picture.sharpness;
    paramDateMap[ImageMode] = picture.imageMode;
    for (const auto key : {Bright, Contrast, Saturation, Sharpness, ImageMode})
        paramDateChangeMap[key] = paramDateMap[key];
}

PictureParameters ParameterModel::editedPicture()
{
    PictureParameters picture;
    picture.bright = paramDateChangeMap[Bright];
    picture.contrast = paramDateChangeMap[Contrast];
    picture.saturation = paramDateChangeMap[Saturation];
    picture.sharpness = paramDateChangeMap[Sharpness];
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
    for (const auto key : {AutoFrameSwitch, FrameMaster, AutoFrameMode, PickupSensitivity,
                           CameraView, HorizontalMirror, Intelligent})
        paramDateChangeMap[key] = paramDateMap[key];
}

bool ParameterModel::isSameData()
{
    qDebug() << "paramDateChangeMap[CameraView] = " << paramDateChangeMap[CameraView] << "----"
             << "paramDateMap[CameraView]" << paramDateMap[CameraView];
    qDebug() << "paramDateChangeMap[HorizontalMirror] = " << paramDateChangeMap[HorizontalMirror]
             << "----"
             << "paramDateMap[HorizontalMirror]" << paramDateMap[HorizontalMirror];
    qDebug() << "paramDateChangeMap[FigureCenter] = " << paramDateChangeMap[FigureCenter] << "----"
             << "paramDateMap[FigureCenter]" << paramDateMap[FigureCenter];
    for (const auto key :
         {FigureCenter, HorizontalMirror, CameraView, Bright, Contrast, Saturation, Sharpness,
          AutoFrameSwitch, FrameMaster, AutoFrameMode, Intelligent, PickupSensitivity}) {
        if (paramDateChangeMap[key] != paramDateMap[key])
            return false;
    }
    return true;
}

void ParameterModel::clear()
{
    paramDateMap.clear();
    paramDateChangeMap.clear();
}
