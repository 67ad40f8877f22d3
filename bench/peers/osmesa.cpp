// OSMesa, software OpenGL without threads: a textured quad against a depth buffer, and triangles with and without one.
// SPDX-License-Identifier: MIT
#include <GL/osmesa.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

#include "../blits.h"
#include "../draws.h"
#include "kxgraphic/types.h"

namespace {

using namespace kxbench;

/// A frame of its own, drawn to in 5-6-5 and copied to the caller at glFinish.
class Mesa {
public:
  Mesa(Picture picture, Picture texels) : picture_(std::move(picture)) {
    setenv("LP_NUM_THREADS", "0", 1);
    context_ = OSMesaCreateContextExt(OSMESA_RGB_565, 24, 0, 0, nullptr);
    use();
    glOrtho(0, frameWidth, 0, frameHeight, 0, 1);
    glScalef(1, 1, -1);  // depth 0 to 1 runs away from the eye
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB565, texels.width(), texels.height(), 0, GL_RGB, GL_UNSIGNED_SHORT_5_6_5,
                 texels.pixels());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glEnable(GL_TEXTURE_2D);
  }
  ~Mesa() { OSMesaDestroyContext(context_); }
  Mesa(const Mesa&) = delete;
  Mesa& operator=(const Mesa&) = delete;

  void use() {
    if (OSMesaGetCurrentContext() != context_)
      OSMesaMakeCurrent(context_, picture_.pixels(), GL_UNSIGNED_SHORT_5_6_5, frameWidth, frameHeight);
  }

private:
  Picture picture_;
  OSMesaContext context_;
};

/// Texels of a power of two, the picture in one corner.
Picture makeTexels(const BlitWork& work) {
  Picture source = work.makeSource(), texels(work.source, 1024, 512);
  for (std::int32_t y = 0; y < work.height; ++y)
    std::copy_n(source.row(y), work.width * source.pixelBytes(), texels.row(y));
  return texels;
}

struct MesaQuad {
  explicit MesaQuad(const BlitWork& work) : mesa(work.makeTarget(), makeTexels(work)) {
    Picture depths = makeZBuffer();
    glDisable(GL_TEXTURE_2D);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_ALWAYS);
    glRasterPos3f(0, 0, 0);
    glDrawPixels(frameWidth, frameHeight, GL_DEPTH_COMPONENT, GL_UNSIGNED_BYTE, depths.pixels());
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glEnable(GL_TEXTURE_2D);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_FALSE);
  }

  void run() {
    mesa.use();
    constexpr float right = frameWidth, bottom = frameHeight, u = right / 1024, v = bottom / 512, z = 128 / 255.0f;
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0), glVertex3f(0, 0, z);
    glTexCoord2f(u, 0), glVertex3f(right, 0, z);
    glTexCoord2f(u, v), glVertex3f(right, bottom, z);
    glTexCoord2f(0, v), glVertex3f(0, bottom, z);
    glEnd();
    glFinish();
  }

  Mesa mesa;
};

struct MesaTriangles {
  explicit MesaTriangles(const DrawWork& given)
      : work(given), mesa(work.makeTarget(), makePicture(work.target, 3, textureSide, textureSide)) {
    if (work.deep) glEnable(GL_DEPTH_TEST);
    if (work.lit && work.alpha < 0) glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    if (work.alpha >= 0) {
      glEnable(GL_BLEND);
      glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    }
  }

  void run() {
    mesa.use();
    if (work.deep) glClear(GL_DEPTH_BUFFER_BIT);
    const auto alpha = static_cast<GLubyte>(work.alpha >= 0 ? 255 - work.alpha : 255);
    glBegin(GL_TRIANGLES);
    for (std::size_t i = 0; i < triangles.size(); ++i)
      for (const Corner& corner : triangles[i].corners) {
        glColor4ub(static_cast<GLubyte>(corner.shade >> 16), static_cast<GLubyte>(corner.shade >> 8),
                   static_cast<GLubyte>(corner.shade), alpha);
        glTexCoord2f(float(corner.u) / textureSide, float(corner.v) / textureSide);
        glVertex3f(float(corner.x), float(corner.y), triangleDepth(i));
      }
    glEnd();
    glFinish();
  }

  const DrawWork& work;
  Mesa mesa;
  std::vector<Triangle> triangles = work.triangles();
};

const Group peer([](std::vector<Row>& rows) {
  addWorks<BlitWork>(
      rows, blitWorks(), "osmesa_quad",
      [](const BlitWork& work) {
        return work.depth == Depth::Buffer && !work.keyed && work.blend == Blend::None && work.target == KX_FORMAT_565;
      },
      [](const BlitWork& work) -> std::function<void()> {
        return [quad = std::make_shared<MesaQuad>(work)] { quad->run(); };
      });
  addWorks<DrawWork>(
      rows, drawWorks(), "osmesa", [](const DrawWork& work) { return work.isTriangles(); },
      [](const DrawWork& work) -> std::function<void()> {
        return [drawing = std::make_shared<MesaTriangles>(work)] { drawing->run(); };
      });
});

}  // namespace
