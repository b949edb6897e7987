// Colours: red lowest, then green, then blue.
#include "qxRgbColor.h"

namespace qx
{

void rgbColor::setRGB(unsigned char red, unsigned char green, unsigned char blue)
{
    mValue = red | static_cast<unsigned int>(green) << 8 | static_cast<unsigned int>(blue) << 16;
}

} // namespace qx
