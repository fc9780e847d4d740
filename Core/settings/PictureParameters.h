#pragma once

/// The picture settings that the program stores for one camera.
struct PictureParameters
{
    int bright = 0;
    int contrast = 0;
    int saturation = 0;
    int sharpness = 0;
    int imageMode = 0; ///< SvtaPagesView::ImageMode; kept under the key "imagemode"
    /// The preset shown when a camera is selected again. Its key "image_mode" is read but never
    /// written, so such a camera starts with the first preset.
    int reselectedImageMode = 0;

    friend bool operator==(const PictureParameters& a, const PictureParameters& b)
    {
        return a.bright == b.bright && a.contrast == b.contrast && a.saturation == b.saturation &&
               a.sharpness == b.sharpness && a.imageMode == b.imageMode &&
               a.reselectedImageMode == b.reselectedImageMode;
    }
};
