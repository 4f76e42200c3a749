// Padded text: a value written left-justified to a width, the rest filled with a fill character.
// The renderer writes it in place; the show code uses JustifyLeft("", n, ' ') for indentation.
#pragma once

#include <cstdint>

namespace Strix {

template <typename T>
struct JustifyLeft {
   JustifyLeft(T justified, std::uint32_t columns, char filler = ' ')
       : value(justified), width(columns), fill(filler) {}

   T value;
   std::uint32_t width;
   char fill;
};

}  // namespace Strix
