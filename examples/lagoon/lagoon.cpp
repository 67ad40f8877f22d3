// Lagoon, a small game: steer the boat, gather the glass floats, keep away from the sharks. Waves push what swims: the
// wake drives floats away, and a stone thrown into the water stuns the sharks near it.
//   lagoon                                     arrows steer, space throws, F full screen, escape ends
//   lagoon --frames COUNT [--sheet FILE.png]   plays by itself without a window, tells the last picture's checksum
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "display.h"
#include "program.h"
#include "text.h"
#include "world.h"

using namespace lagoon;

namespace {

constexpr int viewWidth = 320, viewHeight = 240;
constexpr int zoom = 2;
constexpr int stepsASecond = 60;

/// As a picture begins with a whole water cell, the canvas is a cell larger than the view.
constexpr int canvasWidth = viewWidth + cellSize, canvasHeight = viewHeight + cellSize;

/// The rules. A step is a sixtieth of a second.
struct Game {
  static constexpr int flight = 28;  ///< steps of a stone

  Game() { begin(1); }

  [[nodiscard]] bool over() const { return lives == 0; }

  void step(const demo::Keys& keys) {
    ++steps;
    if (over()) {
      if (keys.space && steps > stepsASecond) *this = Game();
      return world->flow();
    }
    moveBoat(keys);
    for (Body& glass : floats) drift(glass, 14, 247);
    for (Body& shark : sharks) hunt(shark);
    for (Body& stone : stones) {
      stone.at = stone.at + stone.speed;
      if (--stone.timer == 0) world->splash(stone.pixel(), 6, 1100);
    }
    std::erase_if(stones, [](const Body& stone) { return stone.timer == 0; });
    if (steps % 240 == 0 && ammunition < 3) ++ammunition;
    if (steps % 90 == 0) world->splash({world->below(worldWidth), world->below(worldHeight)}, 2, 200);
    world->flow();
    score += 100 * static_cast<int>(std::erase_if(floats, [&](const Body& glass) { return isNear(glass, boat, 17); }));
    if (!floats.empty()) return;
    score += 500;
    begin(level + 1);
  }

  /// What a careful player would press: along the shortest way to the nearest float; a stone where it would fall on a
  /// shark.
  [[nodiscard]] demo::Keys think() const {
    std::deque<int> goals;
    for (const Body& glass : floats) goals.push_back(glass.tile());
    const std::vector<int> ways = world->waysTo(goals);
    const auto length = [&](int from) { return ways[static_cast<std::size_t>(from)]; };
    int tile = boat.tile();
    for (int i = 0; i < 2; ++i)
      for (const int next : {tile - 1, tile + 1, tile - tilesX, tile + tilesX})
        if (length(next) < length(tile)) tile = next;
    Point goal = middleOf(tile);
    for (const Body& glass : floats)
      if (glass.tile() == tile) goal = glass.at;
    const std::int64_t side = cross(nose(boat.heading), goal - boat.at);
    const std::int64_t along = dot(nose(boat.heading), goal - boat.at);
    demo::Keys keys;
    keys.right = side > std::abs(along) / 8 || (along < 0 && side >= 0);
    keys.left = !keys.right && (side < -std::abs(along) / 8 || along < 0);
    keys.up = along > std::abs(side) / 2;
    const Body fall{boat.at + (boat.speed + nose(boat.heading) * 5 / 2) * flight, {}};
    for (const Body& shark : sharks) keys.space = keys.space || (shark.timer == 0 && isNear(shark, fall, 24));
    return keys;
  }

  void begin(int next) {
    level = next;
    steps = 0;
    world = std::make_unique<World>(level);
    boat = {middleOf(tileCount / 2 + tilesX / 2), {}, 0, 96, 120};
    for (std::vector<Body>* bodies : {&stones, &floats, &sharks}) bodies->clear();
    const std::vector<int> ways = world->waysTo({boat.tile()});
    const auto place = [&](int least) {
      for (;;)
        if (const int tile = world->below(tileCount), way = ways[static_cast<std::size_t>(tile)];
            way >= least && way != World::noWay)
          return middleOf(tile);
    };
    total = 6 + level * 2;
    for (int i = 0; i < total; ++i) floats.push_back({place(6), {}, i % variants});
    for (int i = 0; i < 2 + level; ++i) sharks.push_back({place(14), {}, 0, world->below(256)});
  }

  /// Moves a body by its speed; the shore throws it back.
  void move(Body& body, int reach) const {
    const auto blocked = [&](Point at) {
      for (const Point side : {Point{reach, 0}, Point{-reach, 0}, Point{0, reach}, Point{0, -reach}})
        if (world->isLand(at / one + side)) return true;
      return false;
    };
    for (int Point::*axis : {&Point::x, &Point::y}) {
      Point next = body.at;
      next.*axis += body.speed.*axis;
      if (blocked(next) && !blocked(body.at))
        body.speed.*axis /= -2;
      else
        body.at = next;
    }
  }

  /// Waves push by their slope; `kept` 256ths of the speed remain.
  void drift(Body& body, int push, int kept) const {
    body.speed = body.speed * kept / 256 + world->slope(body.pixel()) * push / 64;
    body.speed = {std::clamp(body.speed.x, -4 * one, 4 * one), std::clamp(body.speed.y, -4 * one, 4 * one)};
    move(body, 5);
  }

  void moveBoat(const demo::Keys& keys) {
    boat.heading += (keys.right ? 4 : 0) - (keys.left ? 4 : 0);
    const Point bow = nose(boat.heading);
    boat.speed = boat.speed + bow * (keys.up ? 14 : keys.down ? -7 : 0) / one;
    // Water resists a hull sideways more than lengthwise.
    const int pace = static_cast<int>(dot(boat.speed, bow) / one);
    const Point lengthwise = bow * pace / one;
    boat.speed = lengthwise * 248 / 256 + (boat.speed - lengthwise) * 225 / 256;
    drift(boat, 3, 256);
    if (std::abs(pace) > 60 && steps % 2 == 0) world->splash(boat.pixel() - bow * 13 / one, 1, std::abs(pace) / 4);
    if (boat.timer > 0) --boat.timer;
    if (keys.space && !fired && ammunition > 0) {
      --ammunition;
      stones.push_back({boat.at, boat.speed + bow * 5 / 2, 0, 0, flight});
    }
    fired = keys.space;
  }

  void hunt(Body& shark) {
    if (std::abs(world->wave(shark.pixel())) > 240) shark.timer = 150;
    if (shark.timer > 0) {
      --shark.timer;
      return drift(shark, 20, 244);
    }
    const Point bow = nose(shark.heading);
    const bool hunting = boat.timer == 0 && isNear(shark, boat, 110);
    if (hunting)
      shark.heading += cross(bow, boat.at - shark.at) > 0 ? 3 : -3;
    else if (world->isLand(shark.pixel() + bow * 26 / one))
      shark.heading += 6;
    else if (steps % 30 == 0)
      shark.heading += world->below(25) - 12;
    shark.speed = bow * (hunting ? 300 + level * 10 : 130) / one;
    move(shark, 6);
    if (steps % 8 == 0) world->splash(shark.pixel(), 0, 120);
    if (boat.timer > 0 || !isNear(shark, boat, 15)) return;
    --lives;
    boat.timer = shark.timer = 180;
    if (over()) steps = 0;
    world->splash(boat.pixel(), 6, 700);
  }

  std::unique_ptr<World> world;
  Body boat;
  std::vector<Body> floats, sharks, stones;
  int level = 0, steps = 0, total = 0, score = 0, lives = 3, ammunition = 3;
  bool fired = true;
};

const Image& seen(const Pictures& pictures, const Body& body) {
  const int index = pictures.size() == directions ? (body.heading + 4) / 8 : body.kind;
  return pictures[static_cast<std::size_t>(index) % pictures.size()];
}

/// The picture of a game: water, ground, then everything that stands or swims, sorted by a Z buffer.
class View {
public:
  void draw(const Game& game) {
    if (world_ != game.world.get()) newLevel(game);
    // The camera looks a little ahead.
    const Point camera = game.boat.pixel() + game.boat.speed / 8 - Point{viewWidth, viewHeight} / 2;
    const Point eye{std::clamp(camera.x, 4, worldWidth - canvasWidth - 4),
                    std::clamp(camera.y, 4, worldHeight - canvasHeight - 4)};
    inset = {eye.x % cellSize, eye.y % cellSize};
    origin_ = eye - inset;
    world_->water().draw(canvas.get(), origin_ / cellSize, Point{canvasWidth, canvasHeight} / cellSize, cellSize,
                         floor_.get(), origin_, 7);
    for (const Body& shark : game.sharks) shade(sharks_, shark, 130);
    demo::stamp(canvas.get(), Point{} - origin_, land_);
    drawThings(game);
    drawPanel(game);
  }

  /// The view is the part of the canvas that begins at `inset`.
  Image canvas = demo::makeImage(canvasWidth, canvasHeight, format);
  Point inset;

private:
  void newLevel(const Game& game) {
    world_ = game.world.get();
    floor_ = paintGround(0, sand);
    land_ = demo::converted(paintGround(sand, layers.size()), format | KX_STORAGE_PACKED);
    for (int tile = 0; tile < tileCount; ++tile)
      for (const Layer& layer : layers)
        if (world_->grid(tile % tilesX, tile / tilesX) >= layer.from)
          KX_CHECK(KX_setPixel(map_.get(), tile % tilesX, tile / tilesX, pixelOf(layer.tone)));
  }

  /// Some of the layers, one over the other: a tile for each shape of its corners.
  [[nodiscard]] Image paintGround(std::size_t first, std::size_t end) const {
    Image ground = demo::makeImage(worldWidth, worldHeight, format);
    for (std::size_t layer = first; layer < end; ++layer)
      for (int tile = 0; tile < tileCount; ++tile) {
        const std::size_t shape = layer * 16 + world_->corners(layer, tile);
        const int variant = demo::grain(tile % tilesX, tile / tilesX) % variants;
        demo::stamp(ground.get(), cornerOf(tile), tiles_[shape * variants + static_cast<std::size_t>(variant)]);
      }
    return ground;
  }

  /// A shadow, or what is under water: blended around a place of the world.
  void shade(const Pictures& pictures, const Body& body, int alpha) const {
    const Image& image = seen(pictures, body);
    demo::stampAlpha(canvas.get(), body.pixel() - origin_ - Point{image->width, image->height} / 2, image, alpha);
  }

  /// A thing that stands `foot` pixels above its image's bottom: what stands lower on the screen is nearer.
  void put(const Pictures& pictures, const Body& body, int foot) const {
    const Image& image = seen(pictures, body);
    const Point at = body.pixel() - origin_;
    demo::stampDepth(canvas.get(), depth_.get(), at - Point{image->width / 2, image->height - foot}, image,
                     std::clamp(250 - at.y, 0, 255));
  }

  void drawThings(const Game& game) const {
    const auto bob = [&](const Body& body) { return std::clamp(world_->wave(body.pixel()) / 50, -3, 3); };
    KX_CHECK(KX_fillRect(depth_.get(), 0, 0, canvasWidth, canvasHeight, 255));
    for (const Body& palm : world_->palms) shade(palmShadow_, palm, 150);
    for (const Body& stone : game.stones) shade(stoneShadow_, stone, 150);
    shade(boatShadow_, game.boat, 170);
    for (const Body& rock : world_->rocks) put(rocks_, rock, 4);
    for (const Body& palm : world_->palms) put(palms_, palm, 1);
    for (const Body& glass : game.floats) put(floats_, glass, 4 - bob(glass));
    for (const Body& shark : game.sharks) put(fins_, shark, 16 + (shark.timer > 0 ? 3 : -bob(shark)));
    if (game.boat.timer / 6 % 2 == 0 && !game.over()) put(boats_, game.boat, 16 - bob(game.boat));
    for (const Body& stone : game.stones) put(stones_, stone, -stone.timer * (Game::flight - stone.timer) / 6);
  }

  void drawPanel(const Game& game) const {
    const Point at = inset + Point{4, 4};
    char line[96];
    static_cast<void>(std::snprintf(line, sizeof line, "Level %d   Score %05d   Floats %d/%d\nBoats %d   Stones %d",
                                    game.level, game.score, game.total - static_cast<int>(game.floats.size()),
                                    game.total, game.lives, game.ammunition));
    KX_CHECK(KX_fillRectAlpha(canvas.get(), at.x, at.y, 186, 24, pixelOf({10, 30, 60}), 110));
    demo::drawText(canvas.get(), at.x + 4, at.y + 3, line, pixelOf({255, 255, 255}));
    const int mapX = inset.x + viewWidth - tilesX - 4;
    KX_CHECK(KX_bltCopyAlpha(canvas.get(), mapX, at.y, map_.get(), 0, 0, tilesX, tilesY, 60));
    const auto dot = [&](const Body& body, Tone tone) {
      const Point tile = body.pixel() / tileSize;
      KX_CHECK(KX_fillRect(canvas.get(), mapX + tile.x, at.y + tile.y, 2, 2, pixelOf(tone)));
    };
    for (const Body& glass : game.floats) dot(glass, {255, 220, 80});
    for (const Body& shark : game.sharks) dot(shark, {230, 50, 50});
    dot(game.boat, {255, 255, 255});
    if (!game.over() && game.steps > 200) return;
    const auto text = [&](int y, const char* words, Tone tone, int scale) {
      const int x = (viewWidth - demo::textWidth(words, scale)) / 2;
      demo::drawText(canvas.get(), inset.x + x, at.y + y, words, pixelOf(tone), scale);
    };
    const char* banner = game.over() ? "THE SHARKS HAVE WON" : game.level > 1 ? "NEXT LAGOON" : "LAGOON";
    text(61, banner, {10, 30, 60}, 2);
    text(60, banner, {255, 255, 255}, 2);
    text(84, game.over() ? "space begins again" : "arrows steer, space throws a stone", {255, 214, 110}, 1);
  }

  const World* world_ = nullptr;
  Point origin_;
  Pictures tiles_ = paintTiles(), boats_ = paintBoats(), fins_ = paintFins(), sharks_ = paintSharks();
  Pictures palms_ = demo::palms(variants, format), rocks_ = demo::rocks(variants, format), floats_ = paintFloats();
  Pictures palmShadow_ = demo::ellipse(26, 10, format, {8, 20, 40}),
           boatShadow_ = demo::ellipse(28, 14, format, {8, 20, 40});
  Pictures stones_ = demo::ellipse(6, 6, format, {130, 124, 120}),
           stoneShadow_ = demo::ellipse(6, 4, format, {8, 20, 40});
  Image floor_, land_, map_ = demo::makeImage(tilesX, tilesY, format);
  Image depth_ = demo::makeImage(canvasWidth, canvasHeight, KX_FORMAT_GREY);
};

/// Plays in a window. Steps keep pace with the clock, however long a picture takes.
int play() {
  const std::unique_ptr<demo::Window> window = demo::openWindow(viewWidth * zoom, viewHeight * zoom);
  if (!window) throw demo::Error(demo::exitNoDisplay, "no display; --frames COUNT --sheet FILE.png plays without one");
  window->setTitle("Lagoon");
  demo::Display display(*window);
  display.setMode(2, false);
  Game game;
  View view;
  double due = demo::secondsNow();
  for (;;) {
    const demo::Events events = window->poll();
    if (events.quit) return 0;
    if (events.fullScreen) display.setMode(2, !display.full());
    // After a long wait the game does not race to catch up.
    due = std::max(due, demo::secondsNow() - 0.1);
    while (due <= demo::secondsNow()) {
      game.step(window->keys);
      due += 1.0 / stepsASecond;
    }
    view.draw(game);
    display.present(view.canvas, view.inset.x, view.inset.y, viewWidth, viewHeight);
    const double left = due - demo::secondsNow();
    if (left > 0) demo::sleepFor(static_cast<int>(left * 1000) + 1);
  }
}

/// Plays by itself and tells what came of it.
int playAlone(int frames, const std::string& sheet) {
  Game game;
  View view;
  for (int i = 0; i < frames; ++i) {
    game.step(game.think());
    view.draw(game);
  }
  const Image picture = demo::makeImage(viewWidth * zoom, viewHeight * zoom, format);
  KX_CHECK(KX_bltStretch(picture.get(), 0, 0, picture->width, picture->height, view.canvas.get(), view.inset.x,
                         view.inset.y, viewWidth, viewHeight));
  std::printf("frame %d: level %d, score %d, boats %d, CRC %08X\n", frames, game.level, game.score, game.lives,
              KX_calculateCRC(picture->pixels, picture->pitch * picture->height));
  if (!sheet.empty()) demo::savePicture(picture, sheet);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  return demo::guarded("lagoon", [&] {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty()) return play();
    if (words[0] == "--frames" && (words.size() == 2 || (words.size() == 4 && words[2] == "--sheet")))
      return playAlone(demo::numberOf(words[0], words[1], 1), words.size() == 4 ? words[3] : "");
    static_cast<void>(std::fputs("usage: lagoon [--frames COUNT [--sheet FILE.png]]\n", stderr));
    return demo::exitUsage;
  });
}
