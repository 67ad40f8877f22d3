// The span between KX_beginRendering and KX_endRendering, in which the floating-point unit rounds to nearest.
// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstring>

#include "frame/checks.h"
#include "kxgraphic/kxgraphic.h"
#include "platform/float_control.h"

namespace kx {

namespace {

/// The record has a field for the x87 control word only. The two rounding bits of the SSE unit are kept in the two
/// bytes of padding behind it, which every record has, whoever allocated it.
constexpr std::size_t savedSseOffset = offsetof(Device3D, savedControlWord) + sizeof(Device3D::savedControlWord);
static_assert(savedSseOffset + sizeof(std::uint16_t) <= sizeof(Device3D));

void saveFloatControl(Device3D* device) {
  device->savedControlWord = platform::x87ControlWord();
  const auto sse = static_cast<std::uint16_t>(platform::sseControl() & platform::sseRoundingControl);
  std::memcpy(reinterpret_cast<std::byte*>(device) + savedSseOffset, &sse, sizeof sse);
}

void loadRenderingControl() {
  using namespace platform;
  const std::uint16_t word = x87ControlWord();
  const auto wanted =
      static_cast<std::uint16_t>((word & ~(x87PrecisionControl | x87RoundingControl)) | x87ExceptionMasks);
  if (word != wanted) setX87ControlWord(wanted);
  const std::uint32_t sse = sseControl();
  if ((sse & sseRoundingControl) != 0) setSseControl(sse & ~sseRoundingControl);
}

/// Exception masks and flags of the SSE unit stay as they are now.
void restoreFloatControl(const Device3D* device) {
  using namespace platform;
  setX87ControlWord(device->savedControlWord);
  std::uint16_t saved;
  std::memcpy(&saved, reinterpret_cast<const std::byte*>(device) + savedSseOffset, sizeof saved);
  const std::uint32_t sse = sseControl();
  const std::uint32_t wanted = (sse & ~sseRoundingControl) | (saved & sseRoundingControl);
  if (sse != wanted) setSseControl(wanted);
}

Result beginRendering(Device3D* device) {
  KX_TRY(checkWritable(device));
  device->renderingDepth = static_cast<std::int32_t>(static_cast<std::uint32_t>(device->renderingDepth) + 1);
  if (device->renderingDepth != 1) return Result::Ok;
  saveFloatControl(device);
  loadRenderingControl();
  return Result::Ok;
}

Result endRendering(Device3D* device) {
  KX_TRY(checkWritable(device));
  if (device->renderingDepth == 0) return Result::RenderingNotStarted;
  device->renderingDepth = static_cast<std::int32_t>(static_cast<std::uint32_t>(device->renderingDepth) - 1);
  if (device->renderingDepth == 0) restoreFloatControl(device);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_beginRendering(Device3D* device) { return kx::toCode(kx::beginRendering(device)); }

std::uint32_t KX_CALL KX_endRendering(Device3D* device) { return kx::toCode(kx::endRendering(device)); }
