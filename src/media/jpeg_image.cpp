#include "media/jpeg_image.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <jpeglib.h>

#include "framework/util.h"

namespace {
// libjpeg reports a fatal fault by calling error_exit, which must not return:
// it jumps back to the caller that set `jump`.
struct TJpegError {
  jpeg_error_mgr manager;
  jmp_buf jump;
  FILE* file;  // kept in memory, so that it survives the jump
};

void JPEGLibErrorExit(j_common_ptr info) {
  TJpegError* error = reinterpret_cast<TJpegError*>(info->err);
  longjmp(error->jump, 1);
}

// Warnings (a picture cut short, for one) are not shown: the process has no
// log beyond its fatal lines.
void JPEGLibSilent(j_common_ptr) {}

[[noreturn]] void FailOpen(const char* name) {
  TRACE("JPEGImage::JPEGImage : can't open %s\n", name);
  (void)name;
  std::exit(1);
}

[[noreturn]] void FailDecode(jpeg_decompress_struct* info, FILE* file) {
  jpeg_destroy_decompress(info);
  std::fclose(file);
  TRACE("JPEGImage::JPEGImage : JPEG code has signaled an error\n");
  std::exit(1);
}

void InstallErrorManager(jpeg_decompress_struct* info, TJpegError* error) {
  info->err = jpeg_std_error(&error->manager);
  error->manager.error_exit = JPEGLibErrorExit;
  error->manager.output_message = JPEGLibSilent;
}
}  // namespace

JPEGImage::JPEGImage(const char* file) {
  FILE* input = file ? std::fopen(file, "rb") : nullptr;
  if (!input) FailOpen(file ? file : "");
  ReadHeader(input);
}

void JPEGImage::ReadHeader(FILE* input) {
  jpeg_decompress_struct info;
  TJpegError error;
  error.file = input;
  InstallErrorManager(&info, &error);
  if (setjmp(error.jump)) FailDecode(&info, error.file);
  jpeg_CreateDecompress(&info, JPEG_LIB_VERSION, sizeof info);
  jpeg_stdio_src(&info, error.file);
  jpeg_read_header(&info, TRUE);
  m_nWidth = static_cast<int>(info.image_width);
  m_nHeight = static_cast<int>(info.image_height);
  jpeg_destroy_decompress(&info);
  std::fclose(error.file);
}

bool JPEGImage::LoadImage(const char* name) {
  if (m_nUsage == k_Usage_SharedAllocColorMap) {
    TRACE("k_Usage_SharedAllocColorMap is not implemented!\n");
    std::exit(0);
  }
  if (m_nUsage == k_Usage_RWAllocColorMap) {
    TRACE("k_Usage_RWAllocColorMap is not implemented!\n");
    std::exit(0);
  }
  FILE* input = name ? std::fopen(name, "rb") : nullptr;
  if (!input) FailOpen(name ? name : "");
  return Decode(input);
}

bool JPEGImage::Decode(FILE* input) {
  // Set before the jump point: after a longjmp only these are used, and the
  // process ends.
  jpeg_decompress_struct info;
  TJpegError error;
  error.file = input;
  InstallErrorManager(&info, &error);
  JSAMPROW colormap[3] = {nullptr, nullptr, nullptr};
  if (setjmp(error.jump)) {
    for (JSAMPROW row : colormap) std::free(row);
    FailDecode(&info, error.file);
  }
  jpeg_CreateDecompress(&info, JPEG_LIB_VERSION, sizeof info);
  jpeg_stdio_src(&info, error.file);
  jpeg_read_header(&info, TRUE);
  if (info.jpeg_color_space == JCS_GRAYSCALE || info.jpeg_color_space == JCS_YCbCr ||
      info.jpeg_color_space == JCS_RGB)
    info.out_color_space = JCS_RGB;
  if (info.out_color_space != JCS_RGB) {
    TRACE("JPEGImage::JPEGImage : JPEG image colorspace not implemented!\n");
    std::exit(-1);
  }

  info.quantize_colors = TRUE;
  info.desired_number_of_colors = m_nNumColors;
  // The display's own colours, 255 of them as the start-up query has always
  // asked; libjpeg then quantises straight to them.
  QueryColorTable(kColorTableSize - 1);
  for (auto& row : colormap) row = static_cast<JSAMPROW>(std::malloc(static_cast<size_t>(m_nNumColors)));
  if (!colormap[0] || !colormap[1] || !colormap[2]) longjmp(error.jump, 1);
  for (int i = 0; i < m_nNumColors; ++i) {
    const XColor& c = m_Colors[m_nStartPixel + i];
    colormap[0][i] = static_cast<JSAMPLE>(c.red >> 8);
    colormap[1][i] = static_cast<JSAMPLE>(c.green >> 8);
    colormap[2][i] = static_cast<JSAMPLE>(c.blue >> 8);
  }
  info.colormap = colormap;
  info.actual_number_of_colors = m_nNumColors;

  jpeg_start_decompress(&info);
  int rowBytes = static_cast<int>(info.output_width) * info.output_components;
  std::free(m_pData);
  m_pData = nullptr;
  m_nWidth = static_cast<int>(info.output_width);
  m_nHeight = static_cast<int>(info.output_height);
  // One byte a pixel must fit an int; a larger picture counts as a fault.
  if (static_cast<size_t>(rowBytes) * static_cast<size_t>(m_nHeight) > 0x7fffffffu) longjmp(error.jump, 1);
  m_nDataSize = rowBytes * m_nHeight;
  JSAMPARRAY row = (*info.mem->alloc_sarray)(reinterpret_cast<j_common_ptr>(&info), JPOOL_IMAGE,
                                             static_cast<JDIMENSION>(rowBytes), 1);
  m_pData = static_cast<unsigned char*>(std::malloc(static_cast<size_t>(m_nDataSize > 0 ? m_nDataSize : 1)));
  if (!m_pData) longjmp(error.jump, 1);
  while (info.output_scanline < info.output_height) {
    int index = static_cast<int>(info.output_scanline);
    jpeg_read_scanlines(&info, row, 1);
    FillDataScanLine(row[0], rowBytes, index);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
  std::fclose(error.file);
  for (JSAMPROW r : colormap) std::free(r);
  return MakeXImage();
}

void JPEGImage::FillDataScanLine(const unsigned char* row, int rowBytes, int rowIndex) {
  if (rowIndex < 0 || rowIndex >= m_nHeight) return;
  unsigned char* out = m_pData + static_cast<size_t>(rowIndex) * rowBytes;
  for (int x = 0; x < rowBytes; ++x) {
    int entry = row[x] + m_nStartPixel;
    if (entry >= kColorTableSize) entry = kColorTableSize - 1;
    // On a colormapped screen the entry is the pixel. A deep screen keeps the
    // entry here and widens it to its pixel when the XImage is made.
    out[x] = IsDeepVisual() ? static_cast<unsigned char>(entry)
                            : static_cast<unsigned char>(m_Colors[entry].pixel);
  }
}
