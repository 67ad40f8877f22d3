// The one loop over rows and chunks: fetch, translate, test, combine, store.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <optional>

#include "blit/packed_reader.h"
#include "blit/plan.h"

namespace kx {

namespace {

/// Pixels that pass through the stages at a time; their buffers stay in the first-level cache.
constexpr std::size_t longestChunk = GatherColumns::longest;

constexpr std::size_t noColumn = ~std::size_t{0};

/// Pixels go from one place to the other as they are.
bool isPlainCopy(const BlitPlan& plan) {
  return plan.isCopy && plan.test == RowTest::All && plan.lookupTable == nullptr && plan.convert == nullptr &&
         !plan.destinationBits && plan.combine != nullptr;
}

class Runner {
public:
  explicit Runner(const BlitPlan& plan) : plan_(plan), kernels_(rowKernels()) {
    if (plan.nearestTo != nullptr) nearest_.emplace(plan.nearestTo);
    if (plan.lookupTable != nullptr) kernels_.prepareLookup[plan.lookupBytes - 1](lookup_, plan.lookupTable);
  }

  /// Stretches go strip by strip, so that columns are stepped once and repeated rows are still at hand.
  void run() {
    const auto width = static_cast<std::size_t>(plan_.width);
    const std::size_t strip = plan_.strips ? longestChunk : width;
    for (std::size_t left = 0; left < width; left += strip) {
      fetchedRow_ = -1;
      fetchedTo_ = nullptr;
      for (std::int32_t y = 0; y < plan_.height; ++y) drawRow(y, left, std::min(left + strip, width));
    }
  }

private:
  [[nodiscard]] std::size_t chunkLimit() const { return plan_.pixelByPixel ? 1 : longestChunk; }

  void drawRow(std::int32_t y, std::size_t left, std::size_t right) {
    y_ = y;
    sourceRow_ = plan_.sourceRow(y);
    repeated_ = plan_.strips && sourceRow_ == fetchedRow_;  // the buffers hold the whole strip
    fetchedRow_ = sourceRow_;
    if (plan_.fetch == Fetch::Packed && !repeated_) right = openPackedRow(right);
    for (std::size_t x = left; x < right;) {
      const std::size_t count = std::min(chunkLimit(), right - x);
      drawChunk(x, count);
      x += count;
    }
  }

  /// Goes to the rectangle's left edge. Settled: the rest of a run that begins left of it is drawn whole, beyond the
  /// right edge too; it ends with the memory of the destination or of what is read beside it.
  std::size_t openPackedRow(std::size_t right) {
    packed_ = PackedReader(plan_.source.start + plan_.packedRows[sourceRow_],
                           static_cast<std::uint32_t>(plan_.sourceBytes), plan_.source.end);
    packed_.skip(plan_.sourceX);
    packedColumn_ = 0;
    if (!plan_.overruns || packed_.leftInPacket() <= right) return right;
    std::size_t room = roomBehind(plan_.destination, y_, plan_.destinationBytes);
    for (const Plane* plane : {&plan_.zBuffer, &plan_.zMap, &plan_.alphamap})
      if (plane->start != nullptr) room = std::min(room, roomBehind(*plane, y_, 1));
    return std::max(right, std::min(packed_.leftInPacket(), room));
  }

  static std::size_t roomBehind(const Plane& plane, std::int64_t y, std::size_t pixelBytes) {
    return static_cast<std::size_t>(plane.end - plane.row(y)) / pixelBytes;
  }

  void stepColumns(std::size_t x, std::size_t count) {
    if (columnsFrom_ == x) return;
    columnsFrom_ = x;
    fillColumns(columns_, x, count);
    if (plan_.fetch == Fetch::Rows) kernels_.prepareColumns[plan_.sourceBytes - 1](columns_);
    if (plan_.alphamap.start == nullptr && plan_.zMap.start == nullptr) return;
    fillColumns(mapColumns_, x, count);
    kernels_.prepareColumns[0](mapColumns_);
  }

  void fillColumns(GatherColumns& columns, std::size_t x, std::size_t count) const {
    std::int64_t position = static_cast<std::int64_t>(x) * plan_.stepX;
    for (std::size_t i = 0; i < count; ++i, position += plan_.stepX)
      columns.column[i] = static_cast<std::uint32_t>(position >> 16);
    columns.count = count;
    columns.limit = static_cast<std::uint32_t>(plan_.sourceWidth);
  }

  void drawChunk(std::size_t x, std::size_t count) {
    if (plan_.stretched) stepColumns(x, count);
    if (gathersInPlace_) return gatherInPlace(x, count);
    if (!repeated_) fetch(x, count);
    if (plan_.test == RowTest::Masked) test(x, count);
    // After the test, whose depths may be stored over the weights.
    if (!repeated_) weights_ = besideSource(plan_.alphamap, weightBuffer_, x);
    if (plan_.combine != nullptr) combine(x, count);
  }

  /// A plain stretched row goes straight to its place; where the row above shows the same it is copied from there.
  void gatherInPlace(std::size_t x, std::size_t count) {
    std::uint8_t* const row = plan_.destination.row(y_) + x * plan_.destinationBytes;
    if (repeated_)
      std::memcpy(row, fetchedTo_, count * plan_.destinationBytes);
    else
      kernels_.gather[plan_.sourceBytes - 1](row, plan_.source.row(sourceRow_), columns_);
    fetchedTo_ = row;
  }

  /// Source pixels as they are stored, and as the destination stores them.
  void fetch(std::size_t x, std::size_t count) {
    stored_ = fetchStored(x, count);
    translated_ = stored_;
    if (plan_.lookupTable != nullptr) {
      kernels_.lookup[plan_.lookupBytes - 1](colours_, translated_, lookup_, count);
      translated_ = colours_;
    }
    if (plan_.convert != nullptr) {
      plan_.convert(converted_, translated_, count, nearest_ ? &*nearest_ : nullptr);
      translated_ = converted_;
    }
    depths_ = besideSource(plan_.zMap, depthBuffer_, x);
  }

  const std::uint8_t* fetchStored(std::size_t x, std::size_t count) {
    const std::size_t bytes = plan_.sourceBytes;
    switch (plan_.fetch) {
      case Fetch::Rows: {
        const std::uint8_t* row = plan_.source.row(sourceRow_);
        if (plan_.stretched)
          kernels_.gather[bytes - 1](fetched_, row, columns_);
        else if (plan_.pixelByPixel)
          std::memcpy(fetched_, row + x * bytes, bytes);  // the depth test may store over it
        else
          return row + x * bytes;
        break;
      }
      case Fetch::Bits: {
        const std::uint8_t* row = plan_.source.row(sourceRow_);
        if (!plan_.stretched) kernels_.readBits(fetched_, row, plan_.sourceX + x, count);
        for (std::size_t i = 0; plan_.stretched && i < count; ++i)
          kernels_.readBits(fetched_ + i, row, plan_.sourceX + columns_.column[i], 1);
        break;
      }
      case Fetch::Packed:
        if (plan_.stretched)
          gatherPacked(count);
        else
          packed_.read(fetched_, count);
        break;
      case Fetch::Nothing:
        std::memset(fetched_, 0, count);
        break;
    }
    return fetched_;
  }

  void gatherPacked(std::size_t count) {
    const std::size_t bytes = plan_.sourceBytes;
    for (std::size_t i = 0; i < count; ++i) {
      packed_.skip(columns_.column[i] - packedColumn_);
      packedColumn_ = columns_.column[i];
      std::memcpy(fetched_ + i * bytes, packed_.peek(), bytes);
    }
  }

  const std::uint8_t* besideSource(const Plane& plane, std::uint8_t* buffer, std::size_t x) {
    if (plane.start == nullptr) return nullptr;
    const std::uint8_t* row = plane.row(sourceRow_);
    if (!plan_.stretched) return row + x;
    kernels_.gather[0](buffer, row, mapColumns_);
    return buffer;
  }

  void test(std::size_t x, std::size_t count) {
    if (plan_.keyed) kernels_.keyMask[plan_.sourceBytes - 1](mask_, stored_, count);
    if (plan_.zBuffer.start != nullptr)
      kernels_.depth({mask_, plan_.zBuffer.row(y_) + x, count, plan_.keyed, depths_, plan_.z});
  }

  void combine(std::size_t x, std::size_t count) {
    std::uint8_t* row = plan_.destination.row(y_);
    if (!plan_.destinationBits) {
      plan_.combine({row + x * plan_.destinationBytes, translated_, count, mask_, weights_, plan_.alpha});
      return;
    }
    const std::size_t first = plan_.destinationX + x;
    if (plan_.readsDestination) kernels_.readBits(bits_, row, first, count);
    plan_.combine({bits_, translated_, count, mask_, weights_, plan_.alpha});
    kernels_.writeBits(row, first, bits_, count);
  }

  const BlitPlan& plan_;
  const RowKernels& kernels_;
  std::optional<NearestEntries> nearest_;

  std::int32_t y_ = 0;
  std::int64_t sourceRow_ = 0, fetchedRow_ = -1;
  bool repeated_ = false;
  const std::uint8_t* fetchedTo_ = nullptr;  ///< of plain stretches: where the row above was drawn
  const bool gathersInPlace_ = plan_.strips && plan_.fetch == Fetch::Rows && isPlainCopy(plan_);
  std::size_t columnsFrom_ = noColumn;
  PackedReader packed_;
  std::size_t packedColumn_ = 0;

  // The chunk at the stages it has passed.
  const std::uint8_t* stored_ = nullptr;
  const std::uint8_t* translated_ = nullptr;
  const std::uint8_t* weights_ = nullptr;
  const std::uint8_t* depths_ = nullptr;

  GatherColumns columns_, mapColumns_;  ///< the second for maps of a byte a pixel
  LookupTable lookup_;
  std::uint8_t fetched_[3 * longestChunk + PackedReader::slack];
  std::uint8_t colours_[3 * longestChunk], converted_[3 * longestChunk];
  std::uint8_t mask_[longestChunk], weightBuffer_[longestChunk], depthBuffer_[longestChunk], bits_[longestChunk];
};

/// Palettised source rows go through the table straight to their place.
bool translatesInPlace(const BlitPlan& plan) {
  return plan.lookupTable != nullptr && plan.fetch == Fetch::Rows && !plan.stretched && !plan.pixelByPixel &&
         plan.convert == nullptr && plan.combine != nullptr && plan.zBuffer.start == nullptr && plan.isCopy;
}

/// Palettised rows that are copied, with or without those of index 0.
void translateInPlace(const BlitPlan& plan) {
  const RowKernels& kernels = rowKernels();
  LookupTable table;
  kernels.prepareLookup[plan.lookupBytes - 1](table, plan.lookupTable);
  const RowKernels::LookupRow lookup = (plan.keyed ? kernels.lookupKeyed : kernels.lookup)[plan.lookupBytes - 1];
  for (std::int32_t y = 0; y < plan.height; ++y)
    lookup(plan.destination.row(y), plan.source.row(y), table, static_cast<std::size_t>(plan.width));
}

}  // namespace

void run(const BlitPlan& plan) {
  if (plan.empty) return;
  if (translatesInPlace(plan)) return translateInPlace(plan);
  Runner(plan).run();
}

}  // namespace kx
