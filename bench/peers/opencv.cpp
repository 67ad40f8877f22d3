// OpenCV: whole images inverted, mirrored, made grey, brightened, measured.
// SPDX-License-Identifier: MIT
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "../draws.h"

namespace {

using namespace kxbench;

class OpenCvImage {
public:
  explicit OpenCvImage(const DrawWork& work)
      : work_(work),
        picture_(work.makeTarget()),
        image_(picture_.height(), picture_.width(), CV_8UC(picture_.pixelBytes()), picture_.pixels(),
               static_cast<std::size_t>(picture_.pitch())) {}

  void run() {
    const bool wide = work_.target == 6;
    switch (work_.drawing) {
      case Drawing::Grey:
        cv::cvtColor(image_, grey_, wide ? cv::COLOR_BGR5652GRAY : cv::COLOR_BGR2GRAY);
        cv::cvtColor(grey_, image_, wide ? cv::COLOR_GRAY2BGR565 : cv::COLOR_GRAY2BGR);
        break;
      case Drawing::Brighten:
        image_.convertTo(image_, -1, 300.0 / 256);
        break;
      case Drawing::Invert:
        cv::bitwise_not(image_, image_);
        break;
      case Drawing::MirrorX:
        cv::flip(image_, image_, 0);
        break;
      case Drawing::MirrorY:
        cv::flip(image_, image_, 1);
        break;
      default:
        if (wide) cv::cvtColor(image_, grey_, cv::COLOR_BGR5652GRAY);
        keep(static_cast<std::uint32_t>(cv::mean(wide ? grey_ : image_)[0]));
    }
  }

private:
  const DrawWork& work_;
  Picture picture_;
  cv::Mat image_, grey_;
};

const Group peer([](std::vector<Row>& rows) {
  cv::setNumThreads(1);
  addWorks<DrawWork>(
      rows, drawWorks(), "opencv", [](const DrawWork& work) { return work.drawing >= Drawing::Grey; },
      [](const DrawWork& work) -> std::function<void()> {
        return [image = std::make_shared<OpenCvImage>(work)] { image->run(); };
      });
});

}  // namespace
