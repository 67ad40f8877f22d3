// SPDX-License-Identifier: MIT
#include "display/x11_server.h"

#ifdef KX_HAVE_X11

#include <X11/Xutil.h>
#include <X11/extensions/Xrandr.h>

#include <string>

namespace {

/// A connection to the server of $DISPLAY and what its first output offers.
class Server {
public:
  Server() : display_(XOpenDisplay(nullptr)) {
    if (display_ == nullptr) return;
    root_ = DefaultRootWindow(display_);
    resources_ = XRRGetScreenResources(display_, root_);
    if (resources_->noutput > 0) output_ = XRRGetOutputInfo(display_, resources_, resources_->outputs[0]);
  }

  ~Server() {
    if (output_ != nullptr) XRRFreeOutputInfo(output_);
    if (resources_ != nullptr) XRRFreeScreenResources(resources_);
    if (display_ != nullptr) XCloseDisplay(display_);
  }

  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// The mode of this size, which is made when it is missing; 0 when it cannot be.
  RRMode mode(int width, int height) {
    // Somebody's real monitor has another name and is left alone.
    if (output_ == nullptr || std::string(output_->name) != "screen") return 0;
    std::string name = std::to_string(width) + "x" + std::to_string(height);
    for (int i = 0; i < resources_->nmode; ++i)
      if (name == resources_->modes[i].name) return resources_->modes[i].id;
    int minWidth = 0, minHeight = 0, maxWidth = 0, maxHeight = 0;
    XRRGetScreenSizeRange(display_, root_, &minWidth, &minHeight, &maxWidth, &maxHeight);
    if (width > maxWidth || height > maxHeight) return 0;
    XRRModeInfo mode{};
    mode.width = mode.hSyncStart = mode.hSyncEnd = mode.hTotal = static_cast<unsigned>(width);
    mode.height = mode.vSyncStart = mode.vSyncEnd = mode.vTotal = static_cast<unsigned>(height);
    mode.dotClock = 60UL * mode.width * mode.height;
    mode.name = name.data();
    mode.nameLength = static_cast<unsigned>(name.size());
    const RRMode made = XRRCreateMode(display_, root_, &mode);
    XRRAddOutputMode(display_, resources_->outputs[0], made);
    return made;
  }

  void show(RRMode mode) {
    XRRSetCrtcConfig(display_, resources_, output_->crtc, CurrentTime, 0, 0, mode, RR_Rotate_0, resources_->outputs, 1);
    XSync(display_, False);
  }

private:
  Display* display_;
  Window root_ = 0;
  XRRScreenResources* resources_ = nullptr;
  XRROutputInfo* output_ = nullptr;
};

}  // namespace

bool offerX11Mode(int width, int height) { return Server().mode(width, height) != 0; }

bool setX11Desktop(int width, int height) {
  Server server;
  const RRMode mode = server.mode(width, height);
  if (mode != 0) server.show(mode);
  return mode != 0;
}

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

bool offerX11Mode(int, int) { return false; }

bool setX11Desktop(int, int) { return false; }

Screenshot takeX11Screenshot() { return {}; }

#endif
