// SPDX-License-Identifier: MIT
#include "display/x11_screenshot.h"

#ifdef KX_HAVE_X11

#include <X11/Xutil.h>

Screenshot takeX11Screenshot() {
  Display* server = XOpenDisplay(nullptr);
  if (server == nullptr) return {};
  const Window root = DefaultRootWindow(server);
  XWindowAttributes attributes;
  XGetWindowAttributes(server, root, &attributes);
  Screenshot shot = {attributes.width, attributes.height, {}};
  XImage* image = XGetImage(server, root, 0, 0, static_cast<unsigned>(shot.width), static_cast<unsigned>(shot.height),
                            AllPlanes, ZPixmap);
  for (int y = 0; y < shot.height; ++y)
    for (int x = 0; x < shot.width; ++x) shot.pixels.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y)));
  XDestroyImage(image);
  XCloseDisplay(server);
  return shot;
}

#else

Screenshot takeX11Screenshot() { return {}; }

#endif
