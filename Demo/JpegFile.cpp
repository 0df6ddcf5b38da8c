// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "JpegFile.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

// jpeglib.h needs FILE and size_t but does not include them.
#include <jpeglib.h>

namespace bildkurier {

std::string encodeJpeg(const Picture& picture, int quality) {
    jpeg_error_mgr errors;
    jpeg_compress_struct jpeg;
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);

    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &bytes, &size);
    jpeg.image_width = static_cast<JDIMENSION>(picture.width);
    jpeg.image_height = static_cast<JDIMENSION>(picture.height);
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, quality, TRUE);

    jpeg_start_compress(&jpeg, TRUE);
    const std::size_t rowSize = static_cast<std::size_t>(picture.width) * 3;
    while (jpeg.next_scanline < jpeg.image_height) {
        auto* row = const_cast<JSAMPROW>(picture.points.data() + jpeg.next_scanline * rowSize);
        jpeg_write_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);

    std::string file(reinterpret_cast<const char*>(bytes), size);
    std::free(bytes);
    return file;
}

}  // namespace bildkurier
