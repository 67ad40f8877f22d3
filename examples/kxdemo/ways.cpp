// All thirty blits in one picture: five ways to combine pixels, three ways to treat depth, copied and stretched.
// SPDX-License-Identifier: MIT
#include <cmath>
#include <string_view>

#include "art.h"
#include "scene.h"
#include "text.h"

namespace demo {

namespace {

/// A row is a way to treat depth, a column a way to combine. A wall crosses every field of the lower two rows: left of
/// the middle it is behind the ball, to the right of it before.
class Ways final : public Scene {
public:
  explicit Ways(const Material& material)
      : ground_(material.covering(width, height)),
        ball_(makeBall(size, material.format, {250, 200, 40})),
        weights_(makeSoftDisc(size, size)),
        relief_(makeBallDepth(size, 96)),
        field_(makeImage(width, height, material.format)),
        depth_(makeImage(width, height, KX_FORMAT_GREY)) {
    // The plain ways show the whole image: a lit ball on a dark square.
    square_ = makeImage(size, size, material.format);
    KX_CHECK(KX_fillRect(square_.get(), 0, 0, size, size, colour(square_.get(), 36, 58, 120)));
    KX_CHECK(KX_bltCopyTransparent(square_.get(), 0, 0, ball_.get(), 0, 0, size, size));
  }

  void draw(Bitmap* target, const Frame& frame) override {
    KX_CHECK(KX_fillRect(target, 0, 0, frameWidth, frameHeight, colour(target, 24, 27, 34)));
    stretching_ = std::fmod(frame.seconds, 6) >= 3;
    const double swing = std::sin(frame.seconds * 2);
    wide_ = stretching_ ? size + static_cast<int>(std::lround(22 * swing)) : size;
    high_ = stretching_ ? size - static_cast<int>(std::lround(22 * swing)) : size;
    x_ = (width - wide_) / 2 + static_cast<int>(std::lround(stretching_ ? 0 : 23 * swing));
    y_ = (height - high_) / 2;
    target_ = target;
    index_ = 0;
    Bitmap* const weights = weights_.get();
    Bitmap* const relief = relief_.get();

    plain("KX_bltCopy", "KX_bltStretch", KX_bltCopy, KX_bltStretch, square_);
    plain("KX_bltCopyTransparent", "KX_bltStretchTransparent", KX_bltCopyTransparent, KX_bltStretchTransparent, ball_);
    plain("KX_bltCopyAlpha", "KX_bltStretchAlpha", KX_bltCopyAlpha, KX_bltStretchAlpha, square_, alpha);
    plain("KX_bltCopyTransparentAlpha", "KX_bltStretchTransparentAlpha", KX_bltCopyTransparentAlpha,
          KX_bltStretchTransparentAlpha, ball_, alpha);
    plain("KX_bltCopyAlphamap", "KX_bltStretchAlphamap", KX_bltCopyAlphamap, KX_bltStretchAlphamap, square_, weights);

    deep("KX_bltCopyZBuffer", "KX_bltStretchZBuffer", KX_bltCopyZBuffer, KX_bltStretchZBuffer, square_, middle);
    deep("KX_bltCopyTransparentZBuffer", "KX_bltStretchTransparentZBuffer", KX_bltCopyTransparentZBuffer,
         KX_bltStretchTransparentZBuffer, ball_, middle);
    deep("KX_bltCopyAlphaZBuffer", "KX_bltStretchAlphaZBuffer", KX_bltCopyAlphaZBuffer, KX_bltStretchAlphaZBuffer,
         square_, alpha, middle);
    deep("KX_bltCopyTransparentAlphaZBuffer", "KX_bltStretchTransparentAlphaZBuffer", KX_bltCopyTransparentAlphaZBuffer,
         KX_bltStretchTransparentAlphaZBuffer, ball_, alpha, middle);
    deep("KX_bltCopyAlphamapZBuffer", "KX_bltStretchAlphamapZBuffer", KX_bltCopyAlphamapZBuffer,
         KX_bltStretchAlphamapZBuffer, square_, weights, middle);

    deep("KX_bltCopyZMap", "KX_bltStretchZMap", KX_bltCopyZMap, KX_bltStretchZMap, square_, relief, 0);
    deep("KX_bltCopyTransparentZMap", "KX_bltStretchTransparentZMap", KX_bltCopyTransparentZMap,
         KX_bltStretchTransparentZMap, ball_, relief, 0);
    deep("KX_bltCopyAlphaZMap", "KX_bltStretchAlphaZMap", KX_bltCopyAlphaZMap, KX_bltStretchAlphaZMap, square_, alpha,
         relief, 0);
    deep("KX_bltCopyTransparentAlphaZMap", "KX_bltStretchTransparentAlphaZMap", KX_bltCopyTransparentAlphaZMap,
         KX_bltStretchTransparentAlphaZMap, ball_, alpha, relief, 0);
    deep("KX_bltCopyAlphamapZMap", "KX_bltStretchAlphamapZMap", KX_bltCopyAlphamapZMap, KX_bltStretchAlphamapZMap,
         square_, weights, relief, 0);
  }

private:
  static constexpr int columns = 5;
  static constexpr int width = 120;
  static constexpr int height = 112;
  static constexpr int size = 72;
  static constexpr int alpha = 110;
  static constexpr int middle = 114;  ///< the ball's depth

  /// A field without depth: what follows the source rectangle is `more`.
  template <typename Copy, typename Stretch, typename... More>
  void plain(std::string_view copyName, std::string_view stretchName, Copy copy, Stretch stretch, const Image& source,
             More... more) {
    begin(false);
    Bitmap* field = field_.get();
    KX_CHECK(stretching_ ? stretch(field, x_, y_, wide_, high_, source.get(), 0, 0, size, size, more...)
                         : copy(field, x_, y_, source.get(), 0, 0, size, size, more...));
    end(stretching_ ? stretchName : copyName);
  }

  /// A field with a Z buffer.
  template <typename Copy, typename Stretch, typename... More>
  void deep(std::string_view copyName, std::string_view stretchName, Copy copy, Stretch stretch, const Image& source,
            More... more) {
    begin(true);
    Bitmap* field = field_.get();
    Bitmap* z = depth_.get();
    KX_CHECK(stretching_ ? stretch(field, z, x_, y_, wide_, high_, source.get(), 0, 0, size, size, more...)
                         : copy(field, z, x_, y_, source.get(), 0, 0, size, size, more...));
    end(stretching_ ? stretchName : copyName);
  }

  void begin(bool walled) {
    Bitmap* field = field_.get();
    KX_CHECK(KX_bltCopy(field, 0, 0, ground_.get(), 0, 0, width, height));
    if (!walled) return;
    KX_CHECK(KX_fillRect(depth_.get(), 0, 0, width, height, 255));
    // Planks, the nearer the further to the right.
    for (int x = 4; x + 7 < width; x += 15) {
      const auto shade = static_cast<unsigned>(90 + x);
      KX_CHECK(KX_fillRectZBuffer(field, depth_.get(), x, 6, 7, height - 12,
                                  colour(field, shade, shade * 2 / 3, shade / 2), 150 - x * 78 / width));
    }
  }

  void end(std::string_view name) {
    const int x = 8 + index_ % columns * (width + 6);
    const int y = headHeight + 4 + index_ / columns * (height + 30);
    ++index_;
    KX_CHECK(KX_bltCopy(target_, x, y, field_.get(), 0, 0, width, height));
    // The name in two lines, each short enough for the field.
    const std::string_view key = "Transparent";
    std::size_t end = stretching_ ? 13 : 10;
    if (name.size() > end + key.size() && name.substr(end).starts_with(key)) end += key.size();
    drawText(target_, x, y + height + 3, name.substr(0, end), colour(target_, 205, 212, 224));
    drawText(target_, x, y + height + 13, name.substr(end), colour(target_, 255, 214, 110));
  }

  Image ground_;
  Image ball_;
  Image square_;
  Image weights_;
  Image relief_;
  Image field_;
  Image depth_;
  Bitmap* target_ = nullptr;
  bool stretching_ = false;
  int index_ = 0;
  int x_ = 0, y_ = 0, wide_ = 0, high_ = 0;
};

}  // namespace

std::unique_ptr<Scene> makeWays(const Material& material) { return std::make_unique<Ways>(material); }

}  // namespace demo
