// The exception tree on the library's side: its layout, and the leaf of a code.
// SPDX-License-Identifier: MIT
#include "frame/exceptions.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

namespace kx {

namespace {

// Two pointers and a code and nothing hidden in any class: callers may look at the objects as plain memory.
static_assert(sizeof(void*) != 4 || sizeof(KX_Exception) == 12);

template <typename Leaf, typename Group>
constexpr bool isPlainLeaf =
    std::is_base_of_v<Group, Leaf>&& std::is_base_of_v<KX_Exception, Group>&& std::is_standard_layout_v<Leaf> &&
    !std::is_polymorphic_v<Leaf> && sizeof(Leaf) == sizeof(KX_Exception);

#define KX_ERROR_GROUP(name, text)
#define KX_ERROR(code, leaf, group, text, english) \
  static_assert(isPlainLeaf<KX_##leaf##_Exception, KX_##group##Exception>);
#include "kxgraphic/exports/errors.inc"
#undef KX_ERROR

template <typename Leaf>
void throwLeaf() {
  throw Leaf();
}

#define KX_ERROR(code, leaf, group, text, english) {KX_##leaf##_Exception(), &throwLeaf<KX_##leaf##_Exception>},
constexpr FaultClass faultClasses[] = {
#include "kxgraphic/exports/errors.inc"
};
#undef KX_ERROR
#undef KX_ERROR_GROUP

constexpr bool precedes(const FaultClass& a, const FaultClass& b) { return a.fault.code < b.fault.code; }

static_assert(std::is_sorted(std::begin(faultClasses), std::end(faultClasses), precedes));

}  // namespace

const FaultClass* findFaultClass(std::uint32_t code) {
  const auto* found = std::lower_bound(std::begin(faultClasses), std::end(faultClasses), code,
                                       [](const FaultClass& a, std::uint32_t wanted) { return a.fault.code < wanted; });
  return found != std::end(faultClasses) && found->fault.code == code ? found : nullptr;
}

}  // namespace kx
