// OpenCV: whole images inverted, mirrored, made grey, brightened, measured; lines and flood fills; sums of two weighted
// images, copies under a mask, lookups.
// SPDX-License-Identifier: MIT
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "../blits.h"
#include "../draws.h"

namespace {

using namespace kxbench;

cv::Mat wrap(Picture& picture, int type) {
  return {picture.height(), picture.width(), type, picture.pixels(), static_cast<std::size_t>(picture.pitch())};
}

class OpenCvImage {
public:
  explicit OpenCvImage(const DrawWork& work)
      : work_(work), picture_(work.makeTarget()), image_(wrap(picture_, CV_8UC(picture_.pixelBytes()))) {}

  void run() {
    const bool wide = work_.target == 6;
    switch (work_.drawing) {
      case Drawing::Lines:
        for (const Line& each : lines_) cv::line(image_, {each.x1, each.y1}, {each.x2, each.y2}, colour(drawColour));
        break;
      case Drawing::Maze:
      case Drawing::Solid:
        flip_ = !flip_;
        cv::floodFill(image_, {mazeStart.x, mazeStart.y}, colour(flip_ ? mazeFill : mazeOpen));
        break;
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
  static cv::Scalar colour(std::uint32_t lowByte) { return cv::Scalar(lowByte); }

  const DrawWork& work_;
  Picture picture_;
  cv::Mat image_, grey_;
  std::vector<Line> lines_ = makeLines();
  bool flip_ = false;
};

bool canDraw(const DrawWork& work) {
  const bool hasWords = work.target == 5 || work.target == 6;
  const bool fillsOrLines =
      work.alpha < 0 && !hasWords &&
      (work.drawing == Drawing::Lines || work.drawing == Drawing::Maze || work.drawing == Drawing::Solid);
  return fillsOrLines || work.drawing >= Drawing::Grey;
}

class OpenCvBlit {
public:
  explicit OpenCvBlit(const BlitWork& work)
      : work_(work),
        targetPixels_(work.makeTarget()),
        sourcePixels_(work.makeSource()),
        target_(wrap(targetPixels_, typeOf(work.target))),
        source_(wrap(sourcePixels_, typeOf(work.source))) {
    if (work.keyed) cv::compare(sumOfChannels(), 0, mask_, cv::CMP_NE);
    const Bytes palette = makePalette();
    colours_.create(1, 256, CV_16UC1);
    for (int i = 0; i < 256; ++i) {
      const std::uint8_t* const c = &palette[static_cast<std::size_t>(3 * i)];
      colours_.at<std::uint16_t>(i) = static_cast<std::uint16_t>(pixelOf(6, c[2], c[1], c[0]));
    }
  }

  void run() {
    for (const Move& m : work_.moves) {
      cv::Mat to = target_(area(m.to));
      const cv::Mat from = source_(area(m.from));
      if (work_.blend == Blend::Constant)
        cv::addWeighted(from, 1 - work_.alpha / 255.0, to, work_.alpha / 255.0, 0, to);
      else if (work_.keyed)
        from.copyTo(to, mask_(area(m.from)));
      else
        cv::LUT(from, colours_, to);
    }
  }

  static bool can(const BlitWork& work) {
    if (work.depth != Depth::None || work.stretches() || work.packed || work.blend == Blend::Map) return false;
    if (work.source != work.target) return work.target == 6 && !work.keyed;
    if (work.blend == Blend::Constant) return !work.keyed && work.target != 5 && work.target != 6;
    return work.keyed;
  }

private:
  static int typeOf(std::uint32_t format) { return format == 7 ? CV_8UC3 : format >= 5 ? CV_16UC1 : CV_8UC1; }
  static cv::Rect area(const Rectangle& r) { return {r.x, r.y, r.width, r.height}; }

  [[nodiscard]] cv::Mat sumOfChannels() const {
    cv::Mat sum = source_;
    if (source_.channels() == 3) cv::transform(source_, sum, cv::Matx13f(1, 1, 1));
    return sum;
  }

  const BlitWork& work_;
  Picture targetPixels_, sourcePixels_;
  cv::Mat target_, source_, mask_, colours_;
};

const Group peer([](std::vector<Row>& rows) {
  cv::setNumThreads(1);
  addWorks<DrawWork>(rows, drawWorks(), "opencv", canDraw, [](const DrawWork& work) -> std::function<void()> {
    return [image = std::make_shared<OpenCvImage>(work)] { image->run(); };
  });
  addWorks<BlitWork>(rows, blitWorks(), "opencv", OpenCvBlit::can, [](const BlitWork& work) -> std::function<void()> {
    return [blit = std::make_shared<OpenCvBlit>(work)] { blit->run(); };
  });
});

}  // namespace
