// SPDX-License-Identifier: MIT
#include "measure.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <numeric>
#include <vector>

#include "display.h"
#include "scene.h"
#include "window.h"

namespace demo {

namespace {

constexpr int measuredFrames = 300;

double mean(const std::vector<double>& times) {
  return std::accumulate(times.begin(), times.end(), 0.0) / static_cast<double>(times.size());
}

}  // namespace

void measureScenes(const Image& picture, std::string_view pictureName) {
  const std::unique_ptr<Window> window = openWindow(frameWidth, frameHeight);
  std::unique_ptr<Display> display;
  if (window) {
    display = std::make_unique<Display>(*window);
    display->setMode(2, false);
  }
  const Material material{picture, pictureName, display ? display->format() : std::uint32_t{KX_FORMAT_555}};
  std::printf("milliseconds a frame of %d x %d%s\n%-12s %9s %9s %9s\n", frameWidth, frameHeight,
              display ? "" : " (no display: nothing is presented)", "scene", "drawing", "at most", "flip");
  double slowest = 0;
  for (std::size_t i = 0; i < scenes().size(); ++i) {
    std::vector<double> drawing;
    double presenting = 0;
    double begin = 0;
    played(i, material, measuredFrames, [&](int frame, const Image& image) {
      const double drawn = secondsNow();
      // The first frame includes making the scene.
      if (frame > 0) drawing.push_back((drawn - begin) * 1000);
      if (window) {
        window->poll();
        display->present(image, 0, 0, frameWidth, frameHeight);
      }
      begin = secondsNow();
      presenting += (begin - drawn) * 1000;
    });
    const double flip = presenting / (measuredFrames + 1);
    std::printf("%-12s %9.2f %9.2f %9.2f\n", scenes()[i].name, mean(drawing),
                *std::max_element(drawing.begin(), drawing.end()), flip);
    slowest = std::max(slowest, mean(drawing) + flip);
  }
  std::printf("the slowest scene takes %.0f%% of a sixtieth of a second\n", slowest * framesASecond / 10);
}

}  // namespace demo
