#include "JpegEncoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace virtualcamera {

namespace {

constexpr int kQuality = 82;

/// JPEG uses the full range of a byte; the camera's YUYV uses the narrower range of video.
std::array<std::uint8_t, 256> fullRange(double middle, double gain, double center)
{
    std::array<std::uint8_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<std::uint8_t>(
            std::lround(std::clamp((static_cast<double>(i) - middle) * gain + center, 0.0, 255.0)));
    return table;
}

} // namespace

std::vector<std::uint8_t> encodeJpeg(const std::uint8_t* yuyv, int width, int height)
{
    static const auto luma = fullRange(16, 255.0 / 219, 0);
    static const auto chroma = fullRange(128, 255.0 / 224, 128);

    jpeg_compress_struct encoder{};
    jpeg_error_mgr errors{};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* output = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&encoder, &output, &size);
    encoder.image_width = static_cast<JDIMENSION>(width);
    encoder.image_height = static_cast<JDIMENSION>(height);
    encoder.input_components = 3;
    encoder.in_color_space = JCS_YCbCr;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, kQuality, TRUE);
    encoder.comp_info[0].h_samp_factor = 2;
    encoder.comp_info[0].v_samp_factor = 1;
    encoder.dct_method = JDCT_IFAST;
    jpeg_start_compress(&encoder, TRUE);

    std::vector<std::uint8_t> line(static_cast<std::size_t>(width) * 3);
    while (encoder.next_scanline < encoder.image_height) {
        const std::uint8_t* from =
            yuyv + encoder.next_scanline * static_cast<std::size_t>(width) * 2;
        std::uint8_t* to = line.data();
        for (int x = 0; x + 1 < width; x += 2, from += 4, to += 6) {
            to[0] = luma[from[0]];
            to[3] = luma[from[2]];
            to[1] = to[4] = chroma[from[1]];
            to[2] = to[5] = chroma[from[3]];
        }
        JSAMPROW row = line.data();
        jpeg_write_scanlines(&encoder, &row, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    std::vector<std::uint8_t> result(output, output + size);
    std::free(output);
    return result;
}

} // namespace virtualcamera
