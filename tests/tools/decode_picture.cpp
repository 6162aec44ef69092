// SPDX-License-Identifier: MIT

// decode_picture FILE: the picture as a line "WIDTH HEIGHT" and then bytes R, G, B, A, channels premultiplied; nothing
// when the file holds no picture. For scripts that compare with another decoder.

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "tavrin/images/image_decoder.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::ifstream file(argv[1], std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file) return 2;
    const auto picture = tavrin::decodeImage(bytes);
    if (!picture) return 0;
    std::string out = std::to_string(picture->width()) + ' ' + std::to_string(picture->height()) + '\n';
    for (int y = 0; y < picture->height(); ++y)
        for (int x = 0; x < picture->width(); ++x)
            for (const int shift : {16, 8, 0, 24}) out += static_cast<char>(picture->row(y)[x] >> shift & 0xFF);
    std::cout << out;
    return 0;
}
