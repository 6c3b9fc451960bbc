// Draws the three pictures of the installation directory and writes them as
// JPEG files. Run by hand when a picture changes; the outputs are committed:
//   c++ -O2 -o /tmp/make_images resources/make_images.cpp -ljpeg && /tmp/make_images resources
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include <jpeglib.h>

namespace {
struct Canvas {
  int width, height;
  std::vector<unsigned char> rgb;
  Canvas(int w, int h) : width(w), height(h), rgb(static_cast<size_t>(w) * h * 3) {}
  void Set(int x, int y, int r, int g, int b) {
    if (x < 0 || y < 0 || x >= width || y >= height) return;
    unsigned char* p = &rgb[(static_cast<size_t>(y) * width + x) * 3];
    p[0] = static_cast<unsigned char>(r);
    p[1] = static_cast<unsigned char>(g);
    p[2] = static_cast<unsigned char>(b);
  }
  void Fill(int x0, int y0, int x1, int y1, int r, int g, int b) {
    for (int y = y0; y < y1; ++y)
      for (int x = x0; x < x1; ++x) Set(x, y, r, g, b);
  }
  // A thick straight stroke from (x0, y0) to (x1, y1).
  void Line(double x0, double y0, double x1, double y1, double thickness, int r, int g, int b) {
    double dx = x1 - x0, dy = y1 - y0, length2 = dx * dx + dy * dy;
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) {
        double t = ((x - x0) * dx + (y - y0) * dy) / length2;
        t = t < 0 ? 0 : (t > 1 ? 1 : t);
        double px = x0 + t * dx - x, py = y0 + t * dy - y;
        if (px * px + py * py <= thickness * thickness / 4) Set(x, y, r, g, b);
      }
  }
};

bool Write(const Canvas& canvas, const std::string& path) {
  FILE* out = std::fopen(path.c_str(), "wb");
  if (!out) return false;
  jpeg_compress_struct info;
  jpeg_error_mgr error;
  info.err = jpeg_std_error(&error);
  jpeg_create_compress(&info);
  jpeg_stdio_dest(&info, out);
  info.image_width = static_cast<JDIMENSION>(canvas.width);
  info.image_height = static_cast<JDIMENSION>(canvas.height);
  info.input_components = 3;
  info.in_color_space = JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 90, TRUE);
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    JSAMPROW row = const_cast<JSAMPROW>(&canvas.rgb[static_cast<size_t>(info.next_scanline) * canvas.width * 3]);
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  return std::fclose(out) == 0;
}

// The letter Z as three strokes inside the box (x, y, size).
void DrawZ(Canvas& c, double x, double y, double size, double thickness, int r, int g, int b) {
  c.Line(x, y, x + size, y, thickness, r, g, b);
  c.Line(x + size, y, x, y + size, thickness, r, g, b);
  c.Line(x, y + size, x + size, y + size, thickness, r, g, b);
}

Canvas Splash() {
  Canvas c(360, 200);
  for (int y = 0; y < c.height; ++y)
    for (int x = 0; x < c.width; ++x) c.Set(x, y, 20 + y / 4, 40 + y / 3, 110 + y / 2);
  DrawZ(c, 40, 50, 100, 14, 250, 250, 250);
  // A fraction bar and a radical sign: the viewer draws mathematics.
  c.Line(180, 100, 320, 100, 4, 255, 200, 60);
  c.Line(190, 60, 205, 80, 4, 255, 255, 255);
  c.Line(205, 80, 220, 40, 4, 255, 255, 255);
  c.Line(220, 40, 300, 40, 4, 255, 255, 255);
  c.Line(230, 120, 260, 160, 4, 120, 230, 160);
  c.Line(260, 120, 230, 160, 4, 120, 230, 160);
  c.Fill(0, 190, 360, 200, 10, 20, 60);
  return c;
}

Canvas Missing() {
  Canvas c(32, 32);
  c.Fill(0, 0, 32, 32, 200, 200, 200);
  c.Fill(1, 1, 31, 31, 235, 235, 235);
  c.Line(6, 6, 26, 26, 3, 220, 30, 30);
  c.Line(26, 6, 6, 26, 3, 220, 30, 30);
  return c;
}

Canvas Logo() {
  Canvas c(64, 64);
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) c.Set(x, y, 20 + y, 40 + y, 110 + y);
  DrawZ(c, 14, 14, 36, 7, 250, 250, 250);
  return c;
}
}  // namespace

int main(int argc, char** argv) {
  std::string dir = argc > 1 ? argv[1] : ".";
  bool ok = Write(Splash(), dir + "/zdv16.jpg") && Write(Missing(), dir + "/mi.jpg") &&
            Write(Logo(), dir + "/smzephrin.jpg");
  return ok ? 0 : 1;
}
