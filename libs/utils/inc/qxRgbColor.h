// A colour as a number.
//
//     qx::rgbColor colour;
//     colour.setRGB(255, 128, 0);
//     colour.colorValue(); // 255 + 128 * 256
//
// A value of four bytes. Nothing fails.
#pragma once

#include "qxExport.h"

namespace qx
{

// Black to begin with.
class QXUTILS_API rgbColor
{
public:
    // Each part from 0, nothing of it, to 255.
    void setRGB(unsigned char red, unsigned char green, unsigned char blue);

    // red + green * 256 + blue * 65536.
    unsigned int colorValue() const { return mValue; }

private:
    unsigned int mValue = 0;
};

} // namespace qx
