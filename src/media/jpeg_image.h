// JPEGImage: a JPEG picture read through libjpeg and quantised straight to
// the display's colours.
#pragma once

#include <cstdio>

#include "media/image.h"

class JPEGImage : public Image {
 public:
  using Image::Image;
  // Reads the header only, to learn the size.
  explicit JPEGImage(const char* file);

  bool LoadImage(const char* name) override;
  void FillDataScanLine(const unsigned char* row, int rowBytes, int rowIndex);

 private:
  // Each holds libjpeg's jump point for its own pass over an open file, and
  // closes it.
  void ReadHeader(FILE* input);
  bool Decode(FILE* input);
};
